// SPDX-License-Identifier: MIT
#include "launcher.h"

#include "appmethods.h"
#include "automation/automationserver.h"
#include "automation/uimethods.h"
#include "cardmethods.h"
#include "console.h"
#include "engine/languagemanager.h"
#include "machinecontrol.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"
#include "startjobs.h"
#include "support/version.h"
#include "touchkeyboard.h"
#include "unixsignals.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>

namespace tessera {

namespace {

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;
/// How long a job under way is given to stop when the program ends, and how often that is looked at, ms.
constexpr qint64 kStopTime = 5000;
constexpr int kIdlePeriod = 10;

bool jobRuns() {
    return Form_Marking::Instance() && Form_Marking::Instance()->IsRunning();
}

} // namespace

Launcher::Launcher(CommandLine const& commandLine)
    : m_commandLine(commandLine) {
    m_idlePoll.setInterval(kIdlePeriod);
    connect(&m_idlePoll, &QTimer::timeout, this, &Launcher::leaveWhenIdle);
}

Launcher::~Launcher() = default;

int Launcher::run(int argc, char** argv) {
    for (QString const& file : m_commandLine.import) {
        if (!QFileInfo(file).isFile()) {
            Console::complain(QStringLiteral("There is no drawing \"%1\".").arg(file));
            return kExitUsage;
        }
    }
    if (!prepare())
        return kExitFailed;
    QCoreApplication::setApplicationName(QStringLiteral("Tessera"));
    QCoreApplication::setApplicationVersion(version());
    bool const keyboard = chooseKeyboard();
    QApplication application(argc, argv);
    m_signals = std::make_unique<UnixSignals>();
    connect(m_signals.get(), &UnixSignals::endWanted, this, &Launcher::signalled);
    if (!m_commandLine.language.isEmpty())
        LanguageManager::SetCurrentLan(m_commandLine.language);
    if (keyboard)
        makeKeyboard();
    MainWindow::InitMainWnd();
    if (!m_commandLine.size.isEmpty())
        MainWindow::Instance()->resize(m_commandLine.size);
    MainWindow::Instance()->show();
    MainWindow::Instance()->StartUp();
    bool const listening = openAutomation();
    if (listening) {
        QMetaObject::invokeMethod(this, &Launcher::begin, Qt::QueuedConnection);
        // A signal that came while a message of the start was up has ended that message's event loop and no other.
        if (m_sinceEnd.isValid())
            m_idlePoll.start();
        QApplication::exec();
    }
    if (m_jobs && m_commandLine.mark == 0 && !m_jobs->writeTraces())
        m_exitCode = kExitFailed;
    m_jobs.reset();
    m_automation.reset();
    m_keyboard.reset();
    MainWindow::ClearMainWnd();
    m_signals.reset();
    return listening ? m_exitCode : kExitFailed;
}

bool Launcher::prepare() {
    QString error;
    if (!m_root.take(m_commandLine.root, error)) {
        Console::complain(error);
        return false;
    }
    m_machine = std::make_unique<MachineControl>();
    bool const needed = m_commandLine.simSpeed || m_commandLine.panel || !m_commandLine.traces.isEmpty() ||
                        !m_commandLine.faults.isEmpty();
    if (needed && !m_machine->isSimulated()) {
        Console::complain(
            QStringLiteral("--sim-speed, --fault, --panel and --trace need a simulated machine, and the engine "
                           "that this program is linked with is none."));
        return false;
    }
    // Only a client of the automation port can read it.
    m_machine->setJournal(!m_commandLine.automation.isEmpty());
    if (m_commandLine.simSpeed)
        m_machine->setSpeed(*m_commandLine.simSpeed);
    for (QString const& fault : qAsConst(m_commandLine.faults)) {
        if (!m_machine->setFault(fault, error)) {
            Console::complain(error);
            return false;
        }
    }
    return true;
}

bool Launcher::openAutomation() {
    if (m_commandLine.automation.isEmpty())
        return true;
    m_automation = std::make_unique<AutomationServer>();
    m_automation->addFamily(std::make_unique<UiMethods>());
    m_automation->addFamily(std::make_unique<CardMethods>(*m_machine));
    m_automation->addFamily(std::make_unique<AppMethods>([this] { endProgram(); }));
    QString error;
    if (m_automation->listen(m_commandLine.automation, error))
        return true;
    Console::complain(error + QLatin1Char('.'));
    return false;
}

/// Before the application: the toolkit takes its input method when it starts.
bool Launcher::chooseKeyboard() const {
    QFile devices{QLatin1String(kInputDevicesFile)};
    QByteArray const list = devices.open(QIODevice::ReadOnly) ? devices.readAll() : QByteArray();
    if (!wantsKeyboard(m_commandLine.keyboard, list))
        return false;
    TouchKeyboard::prepareToolkit();
    return true;
}

void Launcher::makeKeyboard() {
    m_keyboard = std::make_unique<TouchKeyboard>(QCoreApplication::applicationDirPath() +
                                                     QStringLiteral("/plugins/libtessera_keyboardpanel.so"),
                                                 [] { return LanguageManager::GetCurrentLan(); });
    connect(m_keyboard.get(), &TouchKeyboard::failed, this, [](QString const& reason) {
        Console::complain(QStringLiteral("The keyboard on the screen cannot be shown: %1").arg(reason));
    });
}

void Launcher::begin() {
    m_jobs = std::make_unique<StartJobs>(m_commandLine, m_machine.get());
    connect(m_jobs.get(), &StartJobs::finished, this, &Launcher::jobsFinished);
    m_jobs->start();
}

void Launcher::jobsFinished(bool ok) {
    if (!ok)
        m_exitCode = kExitFailed;
    if (m_commandLine.quit)
        endProgram();
}

void Launcher::signalled() {
    if (m_jobs && m_jobs->isMarking()) {
        Console::complain(QStringLiteral("Ended by a signal before all passes had ended."));
        m_exitCode = kExitFailed;
    }
    endProgram();
}

void Launcher::endProgram() {
    if (m_sinceEnd.isValid())
        return;
    m_sinceEnd.start();
    if (jobRuns())
        Form_Marking::Instance()->StopMark();
    m_idlePoll.start();
}

void Launcher::leaveWhenIdle() {
    if (jobRuns() && m_sinceEnd.elapsed() < kStopTime)
        return;
    m_idlePoll.stop();
    QCoreApplication::exit(m_exitCode);
}

} // namespace tessera
