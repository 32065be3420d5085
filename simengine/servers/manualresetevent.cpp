// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/manualresetevent.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

struct ManualResetEvent::Private {
    std::mutex lock;
    std::condition_variable changed;
    bool set = false;
};

ManualResetEvent::ManualResetEvent(bool set)
    : d(std::make_unique<Private>()) {
    d->set = set;
}

ManualResetEvent::~ManualResetEvent() = default;

void ManualResetEvent::Set() {
    std::lock_guard<std::mutex> guard(d->lock);
    d->set = true;
    d->changed.notify_all();
}

void ManualResetEvent::Reset() {
    std::lock_guard<std::mutex> guard(d->lock);
    d->set = false;
}

bool ManualResetEvent::IsSet() const {
    std::lock_guard<std::mutex> guard(d->lock);
    return d->set;
}

bool ManualResetEvent::WaitOne(int ms) {
    std::unique_lock<std::mutex> guard(d->lock);
    auto const isSet = [this] { return d->set; };
    if (ms >= 0)
        return d->changed.wait_for(guard, std::chrono::milliseconds(ms), isSet);
    d->changed.wait(guard, isSet);
    return true;
}
