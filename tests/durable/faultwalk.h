// SPDX-License-Identifier: MIT
#pragma once

#include "faultio.h"
#include "scratchtest.h"

#include <cerrno>
#include <functional>

/// How operations fail in one walk.
struct FaultStyle {
    unsigned operations = FaultAll & ~FaultUnlink;
    int error = 0;
    FaultKind kind = FaultFails;
    bool sticky = false;
};

/// What one step of a walk left behind.
struct FaultStep {
    int nth = 0;
    bool fired = false;      ///< false in the last step: the save had fewer than nth operations
    QString trace;           ///< the operations, for messages
    QString failedOperation; ///< the first that failed: "fsync /dir/name"
};

/// Runs `save` with its first operation failing, then with its second, until one run meets no fault any more.
/// `prepare` makes the situation before each run, without faults; `check` judges after it and gives an empty text or
/// what is wrong. The result is empty or the first complaint. `steps` counts the runs with a fault.
inline QString walkFaults(const QString& directories, const FaultStyle& style, const std::function<void()>& prepare,
                          const std::function<void()>& save, const std::function<QString(const FaultStep&)>& check,
                          int& steps) {
    constexpr int bound = 500;
    const QByteArray native = QFile::encodeName(directories);
    for (int nth = 1; nth <= bound; ++nth) {
        prepare();
        const FaultPlan plan = {native.constData(), style.operations, nth, style.error, style.kind, style.sticky};
        faultio_arm(&plan);
        save();
        FaultStep step;
        step.nth = nth;
        step.fired = faultio_disarm() > 0;
        step.trace = QString::fromUtf8(faultio_trace());
        for (const QString& line : step.trace.split('\n')) {
            if (line.endsWith(" !")) {
                step.failedOperation = line.chopped(2);
                break;
            }
        }
        const QString complaint = check(step);
        if (!complaint.isEmpty())
            return QStringLiteral("operation %1 failing: %2\n%3").arg(nth).arg(complaint, step.trace);
        steps = nth - 1;
        if (!step.fired)
            return QString();
    }
    return QStringLiteral("more than %1 operations").arg(bound);
}

/// The columns of a table of fault styles; its rows come by addFaultStyle().
inline void addFaultStyleColumns() {
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("sticky");
}

inline void addFaultStyle(const char* name, int error, FaultKind kind, bool sticky = false) {
    QTest::newRow(name) << error << int(kind) << sticky;
}

/// Rows of operations that fail altogether, once or from there on.
inline void addFailures() {
    addFaultStyle("one input or output error", EIO, FaultFails);
    addFaultStyle("input and output errors from there on", EIO, FaultFails, true);
    addFaultStyle("no space at one operation", ENOSPC, FaultFails);
    addFaultStyle("no space from there on", ENOSPC, FaultFails, true);
}

/// The style of the current row.
inline FaultStyle fetchedFaultStyle() {
    QFETCH(int, error);
    QFETCH(int, kind);
    QFETCH(bool, sticky);
    FaultStyle style;
    style.error = error;
    style.kind = FaultKind(kind);
    style.sticky = sticky;
    return style;
}
