// SPDX-License-Identifier: MIT
#pragma once

#include "commandline.h"
#include "rootdirectory.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <memory>

namespace tessera {

class AutomationServer;
class MachineControl;
class StartJobs;
class TouchKeyboard;
class UnixSignals;

/// Life of the program in its order: root, application, main window, start-up, what the command line orders, event
/// loop, end. Main thread, one object.
class Launcher : public QObject {
    Q_OBJECT
public:
    explicit Launcher(CommandLine const& commandLine);
    ~Launcher() override;

    /// Runs the program; gives its exit code: 0 all went well, 1 something could not be done, 2 wrong arguments.
    int run(int argc, char** argv);

    /// Ends the event loop with the exit code so far, after a job under way has been stopped.
    void endProgram();

private:
    bool prepare();
    bool openAutomation();
    bool chooseKeyboard() const;
    void makeKeyboard();
    void begin();
    void jobsFinished(bool ok);
    void signalled();
    void leaveWhenIdle();

    CommandLine m_commandLine;
    RootDirectory m_root;
    std::unique_ptr<MachineControl> m_machine;
    std::unique_ptr<UnixSignals> m_signals;
    std::unique_ptr<TouchKeyboard> m_keyboard;
    std::unique_ptr<AutomationServer> m_automation;
    std::unique_ptr<StartJobs> m_jobs;
    QTimer m_idlePoll;
    QElapsedTimer m_sinceEnd;
    int m_exitCode = 0;
};

} // namespace tessera
