// SPDX-License-Identifier: MIT
#pragma once

#include "run/runloop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace runtest {

using Calls = std::vector<std::string>;

/// Upper bound of every wait, scaled for sanitized builds.
inline std::chrono::milliseconds patience() {
    const char* scale = std::getenv("TESSERA_TIMEOUT_SCALE");
    return std::chrono::milliseconds(10000) * (scale ? std::max(1, std::atoi(scale)) : 1);
}

/// A port that writes down every call and runs the worker on a thread of its own. What marking does is up to the test.
class RecordingPort : public tessera::RunPort {
public:
    explicit RecordingPort(tessera::RunLoop** loop)
        : m_Loop(loop) {}
    ~RecordingPort() override { join(); }

    std::function<bool()> mark = [] { return true; };
    std::function<void()> beforeWorker = [] {};
    std::function<void(MarkStatus)> onStatus = [](MarkStatus) {};
    std::function<void()> onStop = [] {};
    std::atomic<bool> buffer{false};

    void join() {
        if (m_Worker.joinable())
            m_Worker.join();
    }

    Calls calls() const {
        const std::lock_guard<std::mutex> lock(m_Lock);
        return m_Calls;
    }

    void clear() {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_Calls.clear();
    }

    int count(std::string const& call) const {
        const std::lock_guard<std::mutex> lock(m_Lock);
        return static_cast<int>(std::count(m_Calls.begin(), m_Calls.end(), call));
    }

    /// Waits until `call` was made `times` times.
    bool waitFor(std::string const& call, int times = 1) {
        std::unique_lock<std::mutex> lock(m_Lock);
        return m_Changed.wait_for(lock, patience(),
                                  [&] { return std::count(m_Calls.begin(), m_Calls.end(), call) >= times; });
    }

    void startWorker() override {
        join();
        beforeWorker();
        m_Worker = std::thread([this] { (*m_Loop)->run(); });
    }
    void loopMarkDelay(double ms) override { note("delay " + std::to_string(static_cast<int>(ms))); }
    void setMarkStatus(MarkStatus status) override {
        note("status " + std::to_string(status));
        onStatus(status);
    }
    void stopMark() override {
        note("stop");
        onStop();
    }
    void waitMarkStopped() override { note("settle"); }
    bool bufferLoop() override { return buffer; }
    bool markFile(MarkType type, bool select, bool loop) override {
        note("mark " + std::to_string(type) + (select ? " select" : "") + (loop ? " loop" : ""));
        const bool ok = mark();
        note(ok ? "marked" : "not marked");
        return ok;
    }
    void event(tessera::RunEvent event) override {
        static const char* const kNames[] = {"started", "resumed", "paused", "pass", "ended", "to red loop"};
        note(kNames[static_cast<int>(event)]);
    }
    void trace(tessera::RunTrace place, tessera::RunTraceData const& data) override {
        static const char* const kNames[] = {"triggered", "before", "after", "ended"};
        std::string text = std::string("trace ") + kNames[static_cast<int>(place)];
        if (place == tessera::RunTrace::Ended)
            text += " " + std::to_string(data.type) + "," + std::to_string(data.loop) + "," + std::to_string(data.ok) +
                    "," + std::to_string(data.stop);
        note(text);
    }

private:
    void note(std::string const& call) {
        {
            const std::lock_guard<std::mutex> lock(m_Lock);
            m_Calls.push_back(call);
        }
        m_Changed.notify_all();
    }

    tessera::RunLoop** m_Loop;
    mutable std::mutex m_Lock;
    std::condition_variable m_Changed;
    Calls m_Calls;
    std::thread m_Worker;
};

/// Holds marking until it is let go.
class Gate {
public:
    void pass() {
        std::unique_lock<std::mutex> lock(m_Lock);
        m_Changed.wait_for(lock, patience(), [this] { return m_bOpen; });
    }
    void open() {
        {
            const std::lock_guard<std::mutex> lock(m_Lock);
            m_bOpen = true;
        }
        m_Changed.notify_all();
    }
    void close() {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bOpen = false;
    }

private:
    std::mutex m_Lock;
    std::condition_variable m_Changed;
    bool m_bOpen = false;
};

class RunLoopTest : public ::testing::Test {
protected:
    ~RunLoopTest() override {
        gate.open();
        loop.StopTriger();
        port.join();
    }
    void start(bool repeat = false, int delay = 50, MarkType type = MarkTypeLaser) {
        loop.RunTriger(false, repeat, delay, type);
    }

    std::atomic<int> passes{0};
    Gate gate;
    tessera::RunLoop* address = nullptr;
    RecordingPort port{&address};
    tessera::RunLoop loop{port};

    void SetUp() override { address = &loop; }
};

} // namespace runtest
