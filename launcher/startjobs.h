// SPDX-License-Identifier: MIT
#pragma once

#include "commandline.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <memory>

namespace tessera {

class ConsoleProgress;
class MachineControl;
class MarkJob;

/// What the command line orders once the window is up: opens, imports, marks, then writes traces, screenshot and
/// report. Main thread.
class StartJobs : public QObject {
    Q_OBJECT
public:
    StartJobs(CommandLine const& commandLine, MachineControl* machine, QObject* parent = nullptr);
    ~StartJobs() override;

    /// finished() follows in every case.
    void start();
    /// Writes the trace of the last job for a command line without --mark; at the end of the program.
    bool writeTraces();
    bool isMarking() const { return m_marking; }

signals:
    /// `ok` when everything went well; each failure has been told on the console.
    void finished(bool ok);

private:
    bool openDocuments();
    bool importDrawings();
    void startMarking();
    void markingEnded(QString const& error);
    void showProgress();
    bool writeScreenshot();
    /// `elapsed` in ms, from the first press of Start to the end of the last pass.
    void printReport(qint64 elapsed);
    bool fail(QString const& sentence);

    CommandLine m_commandLine;
    MachineControl* m_machine;
    std::unique_ptr<ConsoleProgress> m_progress;
    MarkJob* m_job = nullptr;
    QTimer m_progressTimer;
    QElapsedTimer m_elapsed;
    bool m_marking = false;
};

} // namespace tessera
