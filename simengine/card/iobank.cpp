// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/iobank.h"

#include <algorithm>
#include <utility>

namespace sim {

bool IoBank::setBit(std::atomic<std::uint32_t>& word, int bit, bool on, std::uint32_t* result) {
    if (!isLine(bit))
        return false;
    const std::uint32_t mask = 1u << bit;
    const std::uint32_t before = on ? word.fetch_or(mask) : word.fetch_and(~mask);
    if (result)
        *result = on ? before | mask : before & ~mask;
    return true;
}

bool IoBank::setOutput(int bit, bool on) {
    std::uint32_t word = 0;
    if (!setBit(m_outputs, bit, on, &word))
        return false;
    std::shared_ptr<const Followers> followers;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        followers = m_followers;
    }
    for (const Follower& follower : *followers)
        follower.listener(bit, on, word);
    return true;
}

int IoBank::addOutputListener(OutputListener listener) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    auto followers = std::make_shared<Followers>(*m_followers);
    followers->push_back({++m_lastNumber, std::move(listener)});
    m_followers = std::move(followers);
    return m_lastNumber;
}

void IoBank::removeOutputListener(int number) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    auto followers = std::make_shared<Followers>(*m_followers);
    followers->erase(std::remove_if(followers->begin(), followers->end(),
                                    [number](const Follower& follower) { return follower.number == number; }),
                     followers->end());
    m_followers = std::move(followers);
}

} // namespace sim
