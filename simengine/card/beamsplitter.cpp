// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/beamsplitter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sim {

namespace {

constexpr int kSetParameters = 0x4855;
constexpr int kRead = 0x4955;
constexpr int kMove = 0x4A55;
constexpr int kStorePath = 0x4B55;

/// Shown in bits 20 to 25 of the position word.
constexpr std::uint32_t kVersion = 0x12u << 20;
constexpr std::uint32_t kLinkUp = 1u << 28;
constexpr int kCardNumberShift = 16;

// The status word above the stored place.
constexpr int kPathInUse = 16;
constexpr std::uint32_t kShutterClosed = 1u << 20;
constexpr std::uint32_t kAtPlanned = 1u << 21;
constexpr std::uint32_t kFeedbackGood = 1u << 22;
constexpr std::uint32_t kSettled = 1u << 23;
constexpr std::uint32_t kLaserMayGoOn = 1u << 24;
constexpr int kPathOpen = 28;

/// The mirror stands at a place when it is no farther from it.
constexpr double kTolerance = 8.0;
constexpr double kCountsPerMsOfSpeed = 10.0;

int inRange(int place) {
    return std::clamp(place, 0, BeamSplitter::kLast);
}

bool isPath(int index) {
    return index >= 0 && index < BeamSplitter::kPaths;
}

} // namespace

BeamSplitter::BeamSplitter(const DeviceClock& clock, FaultBank& faults, std::function<bool()> emits)
    : m_clock(clock)
    , m_faults(faults)
    , m_emits(std::move(emits))
    , m_observer(faults.observe([this] { stick(); })) {}

BeamSplitter::~BeamSplitter() {
    m_faults.forgetObserver(m_observer);
}

bool BeamSplitter::command(int code, int a, int b, int& out1, int& out2) {
    if (code == kRead) {
        const bool emits = m_emits();
        const std::lock_guard<std::mutex> lock(m_mutex);
        const double now = m_clock.now();
        out1 = static_cast<int>(status(a, now, emits));
        out2 = static_cast<int>(static_cast<std::uint32_t>(std::lround(place(now))) |
                                static_cast<std::uint32_t>(m_number) << kCardNumberShift | kVersion |
                                (isLinked() ? kLinkUp : 0u));
        return true;
    }
    if (code != kSetParameters && code != kMove && code != kStorePath)
        return false;
    if (cardNumber() != 0)
        return true;
    if (code == kMove)
        move(b);
    else if (code == kStorePath)
        storePath(a, b);
    else
        store(a, b);
    return true;
}

void BeamSplitter::store(int a, int b) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        rebase(m_clock.now());
        m_store.delayMs = std::max(a, 0);
        m_store.parameters = static_cast<std::uint32_t>(b);
    }
    tell();
}

void BeamSplitter::storePath(int a, int b) {
    if (!isPath(a))
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_store.positions[static_cast<std::size_t>(a)] = inRange(b);
    }
    tell();
}

void BeamSplitter::move(int place) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!isLinked())
        return;
    const double now = m_clock.now();
    m_from = this->place(now);
    m_since = now;
    m_planned = inRange(place);
    m_to = m_stuck ? m_from : m_planned;
    m_stuckEnd = now + std::abs(m_planned - m_from) / countsPerMs();
}

/// A fault was switched: what is stuck from now on stays here, what comes loose goes on from here.
void BeamSplitter::stick() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool stuck = m_faults.isOn("splitter_stuck"); // of two switchings at once the later look is right
    if (stuck == m_stuck)
        return;
    m_stuck = stuck;
    const double now = m_clock.now();
    m_stuckEnd = arrival();
    rebase(now);
    if (stuck) {
        m_to = m_from;
    } else if (m_to != m_planned) {
        m_since = now;
        m_to = m_planned;
    }
}

/// Lets a mirror that is on its way begin anew from here; one that has arrived did so when it did.
void BeamSplitter::rebase(double now) {
    const double end = arrival();
    m_from = place(now);
    m_since = std::min(now, end);
}

bool BeamSplitter::setCardNumber(int number) {
    if (number < 0 || number >= kCards)
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_number = number;
    return true;
}

int BeamSplitter::cardNumber() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_number;
}

void BeamSplitter::setStore(const SplitterStore& store) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    rebase(m_clock.now());
    m_store = store;
    for (int& position : m_store.positions)
        position = inRange(position);
    m_store.delayMs = std::max(store.delayMs, 0);
}

SplitterStore BeamSplitter::store() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_store;
}

void BeamSplitter::setStoreListener(std::function<void(const SplitterStore&)> listener) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_listener = std::move(listener);
}

void BeamSplitter::tell() {
    std::function<void(const SplitterStore&)> listener;
    SplitterStore store;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        listener = m_listener;
        store = m_store;
    }
    if (listener)
        listener(store);
}

int BeamSplitter::mirror() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return static_cast<int>(std::lround(place(m_clock.now())));
}

int BeamSplitter::path() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return pathAt(m_clock.now());
}

double BeamSplitter::switchMs(int from, int to) const {
    if (!isPath(from) || !isPath(to))
        return 0.0;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto placeOf = [this](int path) { return m_store.positions[static_cast<std::size_t>(path)]; };
    return std::abs(placeOf(to) - placeOf(from)) / countsPerMs() + m_store.delayMs;
}

double BeamSplitter::countsPerMs() const {
    return kCountsPerMsOfSpeed * std::max(m_store.parameters & 0xFFu, 1u);
}

double BeamSplitter::arrival() const {
    return m_since + std::abs(m_to - m_from) / countsPerMs();
}

double BeamSplitter::place(double now) const {
    const double end = arrival();
    if (now >= end)
        return m_to;
    return m_from + (m_to - m_from) * (now - m_since) / (end - m_since);
}

int BeamSplitter::pathAt(double now) const {
    if (now < arrival() + m_store.delayMs)
        return 0;
    for (int path = 0; path < kPaths; ++path) {
        if (std::abs(m_store.positions[static_cast<std::size_t>(path)] - m_to) <= kTolerance)
            return path + 1;
    }
    return 0;
}

/// With everything in order all lights of the five in the middle are lit; the paths' own tell where the beam goes.
std::uint32_t BeamSplitter::status(int index, double now, bool emits) const {
    std::uint32_t word =
        isPath(index) ? static_cast<std::uint32_t>(m_store.positions[static_cast<std::size_t>(index)]) : 0;
    if (!isLinked())
        return word;
    const bool arrived = now >= arrival();
    const bool settled = now >= arrival() + m_store.delayMs;
    const bool feedback = arrived && std::abs(m_to - m_planned) <= kTolerance;
    const int path = feedback ? pathAt(now) : 0;
    if (path > 0)
        word |= 1u << (kPathInUse + path - 1);
    if (path > 0 && emits)
        word |= 1u << (kPathOpen + path - 1);
    if (!emits)
        word |= kShutterClosed;
    if (now >= (m_stuck ? m_stuckEnd : arrival()))
        word |= kAtPlanned;
    if (feedback)
        word |= kFeedbackGood;
    if (settled)
        word |= kSettled;
    if (feedback && settled)
        word |= kLaserMayGoOn;
    return word;
}

} // namespace sim
