// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// A TCP client of the loopback without any library. One thread at a time, but one may send while another reads.
class Wire {
public:
    Wire() = default;
    ~Wire() { close(); }
    Wire(Wire const&) = delete;
    Wire& operator=(Wire const&) = delete;

    /// `from` is the address that the other end sees.
    bool connect(std::uint16_t port, char const* from = "127.0.0.1", int receiveBuffer = 0);
    bool isOpen() const { return m_descriptor >= 0; }
    /// All bytes; false when the other end does not take them within `limitMs` or has gone.
    bool send(std::string const& bytes, int limitMs = 5000);
    /// What is there, at least one byte; empty when nothing comes within `limitMs` or the other end has gone.
    std::string receive(int limitMs = 5000);
    /// Up to and with the next semicolon; empty when it does not come within `limitMs` or the other end has gone.
    std::string answer(int limitMs = 5000);
    /// A question and the time to its answer in ms, which must be `answer`; below 0 when it is another or none.
    double ask(std::string const& question, std::string const& answer, int limitMs = 1000);
    void close();
    /// Closes with a reset.
    void reset();
    void shutDown();

private:
    bool waitFor(short events, int limitMs) const;

    int m_descriptor = -1;
    std::string m_rest;
};

} // namespace bench
