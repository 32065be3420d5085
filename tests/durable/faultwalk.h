// SPDX-License-Identifier: MIT
#pragma once

#include "faultio.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

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

inline QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
}

inline void putContent(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("cannot prepare %s", qPrintable(path));
}

inline QStringList everythingIn(const QString& directory) {
    return QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}
