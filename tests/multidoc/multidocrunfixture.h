// SPDX-License-Identifier: MIT
#pragma once

#include "tests/multidoc/multidocfixture.h"

#include <QColor>
#include <mutex>

namespace tests {

/// A project of the documents "A" and "B" in the marking window, run by inputs 0 and 1; the test hands over each word
/// itself.
class MultiDocRunFixture : protected MultiDocFixture {
protected:
    void beginRuns() {
        begin();
        dialog().SetCurMultiMarkFile(QStringLiteral("set"));
        addOpen(QStringLiteral("A"), 1, 1);
        addOpen(QStringLiteral("B"), 2, 2);
        window().ShowMultDocMarkWindow();
        QObject::connect(
            worker(), &MultiMarkThread::markstatusChange, worker(),
            [this](int status, QString const& name) {
                const std::lock_guard<std::mutex> lock(m_Lock);
                m_Told.append(QString::number(status) + name);
            },
            Qt::DirectConnection);
    }
    void endRuns() {
        end();
        m_Told.clear();
    }
    void addOpen(QString const& name, unsigned int value, unsigned int mask) {
        makeFile(name);
        add(name, value, mask);
    }
    static MultiMarkThread* worker() { return part<MultiMarkThread>(""); }
    QStringList told() {
        const std::lock_guard<std::mutex> lock(m_Lock);
        return m_Told;
    }
    /// The documents that were begun, in order.
    QStringList begun() {
        QStringList names;
        for (QString const& line : told()) {
            if (line.startsWith('1'))
                names.append(line.mid(1));
        }
        return names;
    }
    static bool statusIs(MultiMarkStatus status) { return dialog().GetMarkStatus() == status; }
    void run() {
        press("pushButtonRun");
        QTRY_VERIFY(statusIs(MultiMarkWaiting));
        machine().clearJournal();
    }
    void endRun() {
        machine().setSpeed(0.0);
        press("pushButtonStop");
        QTRY_VERIFY(statusIs(MultiMarkIdle));
    }
    /// Lets a document go on until it is stopped.
    void startSlowly(unsigned int word) {
        machine().setSpeed(kSlowRun);
        take(word);
        QTRY_VERIFY(statusIs(MultiMarkMarking));
        QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    }
    void letEnd() {
        machine().setSpeed(0.0);
        QTRY_VERIFY(statusIs(MultiMarkWaiting));
        QTRY_COMPARE(told().last(), QStringLiteral("0"));
        QCoreApplication::processEvents();
    }
    bool windowIsFree() { return m_Window->child<QWidget>("centralwidget")->isEnabled(); }
    /// The inputs as they are now have been seen.
    void waitForPolls() {
        QObject context;
        int polls = 0;
        QObject::connect(&window(), &MainWindow::TimerUpDate, &context, [&polls] { ++polls; });
        QTRY_VERIFY(polls >= 3);
    }
    static QString journalText() {
        QString text;
        for (JournalEntry const& entry : machineJournal())
            text += QStringLiteral("%1 %2(%3) ").arg(entry.timeMs).arg(entry.name, entry.arguments.join(','));
        return text;
    }
    static QColor statusColor() { return part<QLabel>("labelStatus")->palette().color(QPalette::WindowText); }

private:
    std::mutex m_Lock;
    QStringList m_Told;
};

} // namespace tests
