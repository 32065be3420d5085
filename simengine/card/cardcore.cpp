// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/cardcore.h"

#include "simengine/card/statuswords.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace sim {

CardCore::CardCore()
    : m_deviceClock([this] { return speed(); })
    , m_encoder(m_deviceClock, m_faults)
    , m_splitter(m_deviceClock, m_faults, [this] { return emits(); })
    , m_runner(m_trace) {}

CardCore::~CardCore() = default;

/// The kind set now is that of the next job.
bool CardCore::emits() const {
    const HeadState state = m_runner.head();
    return state.activity == Activity::Running && state.kind == MarkKind::Laser;
}

bool CardCore::open() {
    if (isOpen())
        return true;
    if (m_faults.isOn("card_open_fails"))
        return false;
    m_runner.open();
    return true;
}

void CardCore::close() {
    m_runner.close();
    {
        const std::lock_guard<std::mutex> lock(m_waitMutex);
        ++m_closings;
    }
    m_waitChanged.notify_all();
    {
        const std::lock_guard<std::mutex> lock(m_listMutex);
        m_list.clear();
        m_listOpen = false;
    }
    const std::lock_guard<std::mutex> lock(m_listenerMutex);
    if (m_closedListener)
        m_closedListener();
}

void CardCore::setClosedListener(std::function<void()> listener) {
    const std::lock_guard<std::mutex> lock(m_listenerMutex);
    m_closedListener = std::move(listener);
}

void CardCore::setSpeed(double factor) {
    m_runner.setSpeed(factor);
    m_deviceClock.now(); // up to here the devices go by the factor before
    {
        const std::lock_guard<std::mutex> lock(m_waitMutex); // a waiter has either not looked yet or hears the call
    }
    m_waitChanged.notify_all();
}

bool CardCore::waitSimulated(double ms) {
    using Clock = std::chrono::steady_clock;
    std::unique_lock<std::mutex> lock(m_waitMutex);
    const std::uint64_t closings = m_closings;
    while (isOpen() && m_closings == closings) {
        const double factor = speed();
        if (ms <= 0.0 || factor <= 0.0)
            return true;
        const std::chrono::duration<double, std::milli> left(std::min(ms / factor, 3600e3));
        const Clock::time_point begin = Clock::now();
        m_waitChanged.wait_for(lock, left);
        ms -= std::chrono::duration<double, std::milli>(Clock::now() - begin).count() * factor;
    }
    return false;
}

bool CardCore::reboot(double ms, const std::function<void()>& atEnd) {
    const std::uint64_t number = m_runner.beginReboot();
    if (number == 0)
        return false;
    const bool complete = waitSimulated(ms);
    if (complete && atEnd)
        atEnd();
    m_runner.endReboot(number);
    return complete;
}

void CardCore::setPens(const PenTable& pens) {
    if (!isOpen())
        return;
    const std::lock_guard<std::mutex> lock(m_pensMutex);
    m_pens = pens;
}

PenTable CardCore::pens() const {
    const std::lock_guard<std::mutex> lock(m_pensMutex);
    return m_pens;
}

JobRunner::Ticket CardCore::arm() const {
    JobRunner::Ticket ticket = m_runner.arm();
    ticket.kind = kind();
    return ticket;
}

RunResult CardCore::run(Job job, bool loop, const JobRunner::Ticket& ticket, PenService penService) {
    return runNow(std::move(job), loop && m_bufferLoop.load(), false, ticket, std::move(penService));
}

RunResult CardCore::runNow(Job job, bool loop, bool direct, const JobRunner::Ticket& ticket, PenService penService) {
    if (m_faults.isOn("job_fails"))
        return {};
    job.kind = ticket.kind;
    JobSetup setup;
    setup.pens = pens();
    setup.plan = planSettings();
    setup.loop.loop = loop;
    setup.loop.delayMs = m_loopDelayMs.load();
    if (job.kind == MarkKind::Laser)
        setup.penService = std::move(penService);
    setup.head = m_headWay.beginJob(job.kind != MarkKind::Laser, direct);
    if (job.kind == MarkKind::Laser)
        setup.fly = m_encoder.motion();
    measureStrokes(job, setup.pens);
    measureBorder(job, setup.plan.border);
    if (head().activity == Activity::Idle) // another job's time-out is not this one's to drop
        m_faults.forget();
    return m_runner.run(job, setup, ticket);
}

JobTime CardCore::estimate(Job job) const {
    job.kind = kind();
    return sim::estimate(job, pens(), head().at, planSettings());
}

void CardCore::setBorder(const BorderSettings& border) {
    const std::lock_guard<std::mutex> lock(m_pensMutex);
    m_border = border;
}

PlanSettings CardCore::planSettings() const {
    PlanSettings settings;
    settings.penChangeDelayMs = m_penChangeDelayMs.load();
    const std::lock_guard<std::mutex> lock(m_pensMutex);
    settings.border = m_border;
    return settings;
}

HeadState CardCore::head() const {
    HeadState state = m_runner.head();
    if (state.activity != Activity::Idle)
        state.at = m_trace.fly().commanded(state.at, state.passMs);
    return state;
}

Point CardCore::spot() const {
    const HeadState state = head();
    const std::shared_ptr<const HeadMap> way =
        state.activity == Activity::Idle ? m_headWay.now(kind() != MarkKind::Laser) : m_trace.head();
    const Point place = way ? way->withoutNoise(state.at) : state.at;
    return state.activity == Activity::Idle ? place : m_trace.fly().onProduct(place, state.passMs);
}

void CardCore::beginList() {
    const std::lock_guard<std::mutex> lock(m_listMutex);
    m_list.clear();
    m_listOpen = false;
    openList();
}

/// Called with the list's lock held. Strokes that come without an opened list open one themselves.
void CardCore::openList() {
    if (m_listOpen)
        return;
    m_listTicket = m_runner.armDirect();
    m_listOpen = true;
}

void CardCore::addPolyline(int pen, std::vector<Point> points) {
    if (!isOpen() || points.empty())
        return;
    const std::lock_guard<std::mutex> lock(m_listMutex);
    openList();
    Stroke stroke;
    stroke.pen = pen;
    stroke.points = std::move(points);
    m_list.push_back(std::move(stroke));
}

void CardCore::addPoint(int pen, Point point, double dwellUs) {
    if (!isOpen())
        return;
    const std::lock_guard<std::mutex> lock(m_listMutex);
    openList();
    Stroke stroke;
    stroke.pen = pen;
    stroke.points = {point};
    stroke.dwellUs = dwellUs;
    m_list.push_back(std::move(stroke));
}

RunResult CardCore::endList(PenService penService) {
    Job job;
    JobRunner::Ticket ticket;
    {
        const std::lock_guard<std::mutex> lock(m_listMutex);
        job.strokes.swap(m_list);
        ticket = m_listTicket;
        ticket.kind = kind();
        if (!std::exchange(m_listOpen, false))
            return {};
    }
    return runNow(std::move(job), false, true, ticket, std::move(penService));
}

void CardCore::setState(RunState state) {
    if (isOpen())
        m_runner.setState(state);
}

RunState CardCore::state() const {
    return isOpen() ? m_runner.state() : RunState::Stop;
}

std::uint32_t CardCore::markInfo() const {
    if (!isOpen())
        return 0;
    std::uint32_t word = m_faults.infoBits() & ~markinfo::kWaitMask;
    word |= static_cast<std::uint32_t>(waitCode()) << markinfo::kWaitShift;
    const int alarmMs = m_devices.alarmTime();
    if (alarmMs > 0 && m_runner.longestInputWaitMs() >= alarmMs)
        word |= markinfo::kTimeOut;
    const Activity activity = head().activity;
    if (activity == Activity::Idle) {
        if (m_runner.jobs() > m_clearedJob.load())
            word |= m_runner.lastOutcome() == Outcome::Stopped ? markinfo::kStopped : markinfo::kSuccess;
    } else {
        word |= activity == Activity::Paused ? markinfo::kPaused : markinfo::kRunning;
    }
    return word;
}

int CardCore::waitCode() const {
    if (!isOpen() || head().activity != Activity::Waiting)
        return 0;
    return static_cast<int>((m_faults.infoBits() & markinfo::kWaitMask) >> markinfo::kWaitShift);
}

std::uint32_t CardCore::scanState() const {
    if (!isOpen())
        return 0;
    const std::uint32_t faults = m_faults.scanBits();
    if (m_faults.isOn("scan_open_loop"))
        return faults & ~scanstate::kLoopMask;
    const std::uint32_t loop = faults & scanstate::kLoopMask ? scanstate::kLoopBad : scanstate::kLoopGood;
    return (faults & ~scanstate::kLoopMask) | loop | scanstate::kClosedLoop;
}

std::uint32_t CardCore::alarmWord() const {
    return isOpen() ? m_faults.alarmBits() : 0;
}

void CardCore::clearAlarm() {
    m_clearedJob.store(m_runner.endedJobs());
    m_faults.forget();
    m_runner.forgetWaits();
}

void CardCore::setErrorOutput(bool on) {
    if (isOpen())
        m_errorOutput.store(on);
}

bool CardCore::setFault(const std::string& name, bool on) {
    if (!m_faults.set(name, on))
        return false;
    const std::uint32_t wait = m_faults.infoBits() & markinfo::kWaitMask;
    m_runner.setWaiting(wait != 0, wait == markinfo::kWaitInput);
    m_runner.setDeaf(m_faults.isOn("stop_hangs"));
    return true;
}

void CardCore::clearFaults() {
    m_faults.clear();
    m_runner.setWaiting(false);
    m_runner.setDeaf(false);
}

CardCore& simulatedCard() {
    static CardCore card;
    return card;
}

} // namespace sim
