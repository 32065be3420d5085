// SPDX-License-Identifier: MIT
#pragma once

#include "engine/glassparam.h"
#include "engine/iocheckedsys.h"
#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "engine/rundatagather.h"
#include "iosetup/laseralarmpara.h"
#include "laser/runlaserstart.h"
#include "shell/alarmctrl.h"
#include "tests/shell/windowcase.h"

#include <QPushButton>
#include <memory>

namespace tests {

/// Input of a function in these tests: the machine is wired one function to an input, active high.
enum Input {
    InRun,
    InPause,
    InStop,
    InPreview,
    InManual,
    InAuto,
    InReady,
    InDoor1,
    InDoor2,
    InDoor3,
    InDoor4,
    InDoor5,
    InCurtain,
    InEmergency,
    InLaser,
    InChiller,
    InputCount
};

constexpr char const* kInputNames[InputCount] = {
    "运行",        "暂停",        "终止",        "红光预览",    "手动",     "自动",     "机台就绪",   "机台安全门1",
    "机台安全门2", "机台安全门3", "机台安全门4", "机台安全门5", "安全光栅", "急停按钮", "激光器报警", "水冷机报警",
};

/// Slow enough that a job of one point is still under way when the test looks at it.
constexpr double kSlowJob = 0.0001;

/// The whole program with every input function wired, a document of one point, and the poll running.
class SupervisionCase : protected WindowCase {
protected:
    void beginSupervision() {
        beginCase();
        SystemParam::Instance()->m_nResponseIO = 1;
        GlassParam::Instance()->SetCheckSafeInRun(false);
        GlassParam::Instance()->SetSafeTrigerType(SafeTrigerStop);
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardFilber);
        RunLaserStart::Instance()->nFiberAlarm = 0;
        LaserAlarmPara::Instance()->m_EnableLaserAlarm = false;
        RunDataGather::Instance()->SetRunStatus(RunStatusNormal);
        QVector<IOFuncList> functions;
        for (int i = 0; i < InputCount; ++i) {
            IOFuncList function;
            function.Name = QString::fromUtf8(kInputNames[i]);
            function.InputEnable = true;
            function.InputMask = function.InputValue = 1U << i;
            functions.append(function);
        }
        IOCheckedSys::Instance()->SetIOFunctions(functions);
    }
    void endSupervision() {
        machine().setInputs(0);
        machine().setSpeed(0.0);
        if (Form_Marking* dialog = Form_Marking::Instance())
            dialog->StopAndWait();
        endCase();
    }

    static IOFuncList& function(Input input) {
        return *IOCheckedSys::Instance()->GetFunObject(QString::fromUtf8(kInputNames[input]));
    }
    Form_Marking& dialog() { return *Form_Marking::Instance(); }
    /// The poll has looked at the inputs at least once since the call.
    bool polled() {
        // shared: a queued call may still come after the connection is gone
        const auto polls = std::make_shared<int>(0);
        const auto connection = QObject::connect(
            &window(), &MainWindow::TimerUpDate, &window(), [polls] { ++*polls; }, Qt::QueuedConnection);
        const bool seen = waitFor([&polls] { return *polls >= 2; });
        QObject::disconnect(connection);
        return seen;
    }
    /// The fault lines of a laser that tells its faults in two bits, active high.
    static constexpr unsigned int kLaserHot = 3U << 22;
    static constexpr unsigned int kLaserDiode = 2U << 22;
    static void watchLaser() {
        LaserAlarmPara* para = LaserAlarmPara::Instance();
        para->m_EnableLaserAlarm = true;
        para->m_LaserType = 5;
        para->m_CheckNeg = true;
    }
    /// A level that lasts until the poll has seen it.
    bool hold(Input input, bool on = true) {
        machine().setInput(input, on);
        return polled();
    }
    bool pulse(Input input) { return hold(input) && hold(input, false); }

    /// The program with the run dialog up, its first poll done.
    bool startWithDialog() {
        start();
        m_Window->newDocument();
        window().ShowNormalMarkWindow();
        if (!polled())
            return false;
        machine().clearJournal();
        return true;
    }
    /// The same with a job under way that does not end by itself.
    bool startWithJob() {
        if (!startWithDialog())
            return false;
        machine().setSpeed(kSlowJob);
        dialog().StartMark(false);
        const bool runs = waitFor([this] { return isRunning() && !window().centralWidget()->isEnabled(); });
        machine().clearJournal();
        return runs;
    }
    static bool isRunning() { return machine().state().activity == sim::SimActivity::Running; }
    static bool isPaused() { return machine().state().activity == sim::SimActivity::Paused; }
    /// The worker is done and the dialog has taken it in.
    bool hasEnded() { return !dialog().IsRunning() && window().centralWidget()->isEnabled(); }

    static bool light(bool red, bool green, bool yellow) {
        bool now[3] = {};
        IOOutputSet::Instance()->GetLightStatus(now[0], now[1], now[2]);
        return now[0] == red && now[1] == green && now[2] == yellow;
    }
    /// The calls of a stop, which brackets the state with two stops of the card.
    static bool stoppedOnce() {
        return matchJournal(
                   only(machineJournal(), {QStringLiteral("StopMark"), QStringLiteral("SetMarkStaus")}).mid(0, 3),
                   {call("StopMark"), call("SetMarkStaus", 2), call("StopMark")})
                   .ok &&
               machineCalls("StopMark") == 2;
    }
    /// Colour of an indicator of the status bar: "red" or "green".
    QString indicator(char const* name) {
        auto const* label = m_Window->child<AlarmCtrl>(name)->findChild<QLabel*>(QStringLiteral("labelImg"));
        const QColor colour = label->pixmap(Qt::ReturnByValue).toImage().pixelColor(8, 8);
        return colour.red() > colour.green() ? QStringLiteral("red") : QStringLiteral("green");
    }
    QStringList statusLines() {
        QStringList lines;
        const auto* list = m_Window->statusList();
        for (int i = 0; i < list->count(); ++i)
            lines.append(list->item(i)->text());
        return lines;
    }
};

} // namespace tests
