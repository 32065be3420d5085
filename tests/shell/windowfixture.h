// SPDX-License-Identifier: MIT
#pragma once

#include "engine/iooutputset.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"
#include "shell/statuseview.h"
#include "simengine/simcontrol.h"
#include "tests/support/journalmatcher.h"
#include "tests/support/temporaryroot.h"
#include "tests/support/waitfor.h"

#include <QListWidget>
#include <QtTest>

namespace tests {

inline sim::SimControl& machine() {
    return *tessera_sim_control();
}

/// Calls that the machine recorded since it was last cleared.
inline QVector<JournalEntry> machineJournal() {
    return toJournal(machine().journal(0), [](sim::SimCall const& call) {
        JournalEntry entry{call.ms, QString::fromStdString(call.name), {}};
        for (sim::SimValue const& value : call.args) {
            if (auto const* text = std::get_if<std::string>(&value))
                entry.arguments.append(QString::fromStdString(*text));
            else if (auto const* number = std::get_if<double>(&value))
                entry.arguments.append(QString::number(*number, 'g', 17));
            else
                entry.arguments.append(QString::number(std::get<std::int64_t>(value)));
        }
        return entry;
    });
}

/// How often the machine recorded a call of this name.
inline int machineCalls(char const* name) {
    return only(machineJournal(), {QString::fromLatin1(name)}).size();
}

/// Output numbers of the lamps and the ready signal in these tests.
constexpr int kRed = 20;
constexpr int kGreen = 21;
constexpr int kYellow = 22;
constexpr int kReady = 7;

/// The state in which every test begins: settings as delivered, lamps on known outputs, the machine at real speed.
inline void resetMachine() {
    SystemParam* system = SystemParam::Instance();
    system->SetSysMode(false);
    system->SetWorkMode(0);
    system->SetStartUpMark(0);
    system->SetBufLoop(false);
    system->SetMarkDebugMode(false);
    system->SetEnableTriggerWhenRedLoop(false);
    system->m_nCustomUIType = 0;
    system->m_nHideMainMenu = 0;
    system->m_nResponseShortcut = 1;
    IOOutputSet* outputs = IOOutputSet::Instance();
    outputs->SetLight(kRed, kGreen, kYellow, -1);
    outputs->SetOutputInv(false);
    outputs->SetReadyOut(kReady);
    outputs->SetEnableReadyOut(false);
    machine().clearFaults();
    machine().setInputs(0);
    machine().setSpeed(1.0);
    machine().clearJournal();
}

/// The main window from start to end of the program. A test makes at most one at a time.
class RunningWindow {
public:
    explicit RunningWindow(bool show = true) {
        MainWindow::InitMainWnd();
        if (show)
            MainWindow::Instance()->show();
    }
    ~RunningWindow() { close(); }
    void close() {
        if (MainWindow::Instance())
            MainWindow::ClearMainWnd();
    }
    MainWindow* operator->() const { return MainWindow::Instance(); }
    MainWindow& operator*() const { return *MainWindow::Instance(); }

    /// A document of `points` single points, the active one.
    QRulerView* newDocument(int points = 1, QString const& name = QStringLiteral("test")) {
        MainWindow::Instance()->NewFile(name);
        QRulerView* view = MainWindow::Instance()->GetActiveView();
        for (int i = 0; i < points; ++i)
            view->AddMarkPoint(QPointF(i, 0.0));
        machine().clearJournal();
        return view;
    }
    /// The child of this name, which must be there.
    template<typename T>
    T* child(char const* name) const {
        T* found = MainWindow::Instance()->findChild<T*>(QString::fromLatin1(name));
        if (!found)
            qFatal("no %s in the main window", name);
        return found;
    }
    /// The list of alarms and messages; the one of the open documents has the same object name.
    QListWidget* statusList() const {
        auto const* view = MainWindow::Instance()->findChild<StatuseView*>();
        auto* list = view ? view->findChild<QListWidget*>(QStringLiteral("listWidget")) : nullptr;
        if (!list)
            qFatal("no status list in the main window");
        return list;
    }
};

} // namespace tests
