// SPDX-License-Identifier: MIT
#include "bench/stop/plant.h"

#include "bench/stop/distribution.h"
#include "engine/glassparam.h"
#include "engine/iocheckedsys.h"
#include "engine/markcardinstance.h"
#include "engine/systemparam.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"

#include <chrono>
#include <sched.h>
#include <thread>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// Above the card's worker and the program's own poll.
constexpr int kPriority = 20;
constexpr milliseconds kPatience{3000};
/// An output that nothing else uses: its write is the mark of an edge in the journal.
constexpr int kMarkOutput = 30;

template<typename Condition>
bool waitUntil(Condition condition, milliseconds limit) {
    for (const Clock::time_point end = Clock::now() + limit; Clock::now() < end;) {
        if (condition())
            return true;
        std::this_thread::sleep_for(milliseconds(1));
    }
    return condition();
}

template<typename Function>
void onMainThread(Function function) {
    QMetaObject::invokeMethod(MainWindow::Instance(), function, Qt::BlockingQueuedConnection);
}

std::int64_t firstNumber(sim::SimCall const& call) {
    return call.args.empty() ? -1 : std::get<std::int64_t>(call.args[0]);
}

} // namespace

Plant::Plant(sim::SimControl& machine)
    : m_machine(machine) {
    MainWindow* window = MainWindow::Instance();
    m_beat = QObject::connect(
        window, &MainWindow::TimerUpDate, window, [this] { ++m_beats; }, Qt::DirectConnection);
    // Behind the window's own slot, as it was connected later.
    m_poll = QObject::connect(
        window, &MainWindow::TimerUpDate, window, [this] { ++m_polls; }, Qt::QueuedConnection);
}

/// What is still queued for the main thread is waited for.
Plant::~Plant() {
    QObject::disconnect(m_beat);
    QObject::disconnect(m_poll);
    onMainThread([] {});
}

Plant::Loss Plant::lossOfLastEdge() const {
    // One may have looked just before the edge.
    if (m_pollsOfEdge > 1)
        return Loss::NoStop;
    return m_beatsOfEdge > 0 || m_beatWaited ? Loss::NoPoll : Loss::NoBeat;
}

void Plant::wire() {
    SystemParam::Instance()->m_nResponseIO = 1;
    GlassParam::Instance()->SetCheckSafeInRun(false);
    QVector<IOFuncList> functions;
    for (Kind const& kind : kKinds) {
        if (kind.pauses)
            continue;
        IOFuncList function;
        function.Name = QString::fromUtf8(kind.function);
        function.InputEnable = true;
        function.InputMask = function.InputValue = 1U << kind.input;
        functions.append(function);
    }
    IOCheckedSys::Instance()->SetIOFunctions(functions);
}

bool Plant::aboveTheProgram() {
    sched_param parameter{};
    parameter.sched_priority = kPriority;
    // The load's threads are started from this one and are not to have its priority.
    return sched_setscheduler(0, SCHED_FIFO | SCHED_RESET_ON_FORK, &parameter) == 0;
}

bool Plant::startJob(Kind const& kind) {
    const auto start = [&kind] {
        bool idle = false;
        onMainThread([&idle, &kind] {
            Form_Marking* dialog = Form_Marking::Instance();
            IOFuncList const* function = IOCheckedSys::Instance()->GetFunObject(QString::fromUtf8(kind.function));
            idle = !dialog->IsRunning() && MainWindow::Instance()->centralWidget()->isEnabled() &&
                   MainWindow::Instance()->GetSafeAlarm() == 0 && function->LastInput == 0;
            if (!idle)
                return;
            GlassParam::Instance()->SetSafeTrigerType(kind.pauses ? SafeTrigerPause : SafeTrigerStop);
            dialog->StartMark(false);
        });
        return idle;
    };
    const auto running = [this] { return m_machine.state().activity == sim::SimActivity::Running; };
    return waitUntil(start, kPatience) && waitUntil(running, kPatience);
}

double Plant::edge(Kind const& kind) {
    std::this_thread::sleep_for(std::chrono::microseconds(m_random() % (kPollMs * 1000)));
    m_machine.clearJournal();
    const std::uint64_t since = m_machine.journalEnd();
    const int polls = m_polls;
    const int beats = m_beats;
    // While one waits no other is given.
    m_beatWaited = beats > polls;
    MarkCardInstance::Instance()->SetOutputBit(kMarkOutput, 1);
    m_machine.setInput(kind.input, true);
    const double seen = waitAnswer(kind, since, 2 * kPollMs);
    m_machine.setInput(kind.input, false);
    m_beatsOfEdge = m_beats - beats;
    m_pollsOfEdge = m_polls - polls;
    // The poll may have sampled the input in the last moment.
    return seen < 0.0 ? waitAnswer(kind, since, 10 * kPollMs) : seen;
}

void Plant::endJob() {
    onMainThread([] { Form_Marking::Instance()->StopMark(); });
}

double Plant::waitAnswer(Kind const& kind, std::uint64_t since, int limitMs) const {
    double ms = -1.0;
    waitUntil([&] { return (ms = answer(kind, since)) >= 0.0; }, milliseconds(limitMs));
    return ms;
}

/// A hold is the card's change of state; the call that follows it comes when the dialog has been told.
double Plant::answer(Kind const& kind, std::uint64_t since) const {
    double edge = -1.0;
    for (sim::SimCall const& call : m_machine.journal(since)) {
        if (edge < 0.0 && call.name == "SetOutputBit" && firstNumber(call) == kMarkOutput)
            edge = call.ms;
        const bool stops = call.name == "StopMark";
        const bool holds = call.name == "SetMarkStaus" && firstNumber(call) == MarkStatusPause;
        if (edge >= 0.0 && (kind.pauses ? holds : stops))
            return call.ms - edge;
    }
    return -1.0;
}

} // namespace bench
