// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/faults.h"

#include "simengine/card/statuswords.h"

#include <utility>

namespace sim {

namespace {

constexpr CardFault kFaults[] = {
    {"card_open_fails", 0, 0, 0},
    {"job_fails", 0, 0, 0},
    {"flash_fails", 0, 0, 0},
    {"stop_hangs", 0, 0, 0},
    {"card_alarm", alarmword::kLaser, 0, 0},
    {"outputs_stuck", 0, 0, 0},
    {"laser_no_ready", 0, 0, 0},
    {"laser_no_emission", 0, 0, 0},
    {"laser_temperature", 0, 0, 0},
    {"laser_pd", 0, 0, 0},
    {"io_timeout", 0, 0, markinfo::kTimeOut},
    {"data_underrun", 0, 0, markinfo::kUnderrun},
    {"wait_input", 0, 0, markinfo::kWaitInput},
    {"wait_motion", 0, 0, markinfo::kWaitMotion},
    {"wait_encoder", 0, 0, markinfo::kWaitEncoder},
    {"wait_mirror", 0, 0, markinfo::kWaitMirror},
    {"encoder_stopped", 0, 0, 0},
    {"splitter_link", 0, 0, 0},
    {"splitter_stuck", 0, 0, 0},
    {"scan_open_loop", 0, 0, 0},
    {"scan_loop", 0, scanstate::kLoopBad, 0},
    {"scan_feedback_x", 0, scanstate::kFeedbackX, 0},
    {"scan_feedback_y", 0, scanstate::kFeedbackY, 0},
    {"scan_alarm_x", 0, scanstate::kAlarmX, 0},
    {"scan_alarm_y", 0, scanstate::kAlarmY, 0},
    {"scan_no_feedback_x", 0, scanstate::kNoFeedbackX, 0},
    {"scan_no_feedback_y", 0, scanstate::kNoFeedbackY, 0},
    {"scan_init", 0, scanstate::kInitialising, 0},
    {"scan_overcurrent", 0, scanstate::kOvercurrent, 0},
    {"scan_power", 0, scanstate::kPower, 0},
    {"scan_position_x", 0, scanstate::kPositionX, 0},
    {"scan_position_y", 0, scanstate::kPositionY, 0},
    {"scan_link", 0, scanstate::kLink, 0},
};

/// What the card keeps of this fault.
std::uint32_t keptBits(const std::string& name) {
    for (const CardFault& fault : kFaults) {
        if (name == fault.name)
            return fault.infoBits & (markinfo::kTimeOut | markinfo::kUnderrun);
    }
    return 0;
}

} // namespace

FaultBank::FaultBank() {
    for (const CardFault& fault : kFaults)
        m_faults[fault.name] = false;
}

void FaultBank::declare(const std::string& name) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.emplace(name, false);
}

bool FaultBank::set(const std::string& name, bool on) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto fault = m_faults.find(name);
        if (fault == m_faults.end())
            return false;
        fault->second = on;
        if (on)
            m_kept |= keptBits(name);
    }
    tellObservers();
    return true;
}

int FaultBank::observe(std::function<void()> changed) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const int number = m_observers.empty() ? 1 : m_observers.rbegin()->first + 1;
    m_observers.emplace(number, std::move(changed));
    return number;
}

void FaultBank::forgetObserver(int number) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_observers.erase(number);
}

/// Without the lock: an observer looks at the faults.
void FaultBank::tellObservers() {
    std::map<int, std::function<void()>> observers;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        observers = m_observers;
    }
    for (const auto& observer : observers)
        observer.second();
}

bool FaultBank::isOn(const std::string& name) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto fault = m_faults.find(name);
    return fault != m_faults.end() && fault->second;
}

std::vector<std::string> FaultBank::names() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<std::string> list;
    for (const auto& fault : m_faults)
        list.push_back(fault.first);
    return list;
}

void FaultBank::clear() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (auto& fault : m_faults)
            fault.second = false;
        m_kept = 0;
    }
    tellObservers();
}

void FaultBank::forget() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_kept = 0;
}

std::uint32_t FaultBank::infoBits() const {
    const std::uint32_t now = bits(&CardFault::infoBits);
    const std::lock_guard<std::mutex> lock(m_mutex);
    return now | m_kept;
}

std::uint32_t FaultBank::bits(std::uint32_t CardFault::*field) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::uint32_t word = 0;
    for (const CardFault& fault : kFaults) {
        if (!m_faults.at(fault.name))
            continue;
        // Two waits at once are not a number of their own: the first of the table is shown.
        const std::uint32_t add = fault.*field;
        if (field == &CardFault::infoBits && (word & markinfo::kWaitMask) && (add & markinfo::kWaitMask))
            continue;
        word |= add;
    }
    return word;
}

} // namespace sim
