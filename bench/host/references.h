// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <cstdint>
#include <memory>
#include <thread>

namespace bench {

/// A bare server of Qt on a thread of its own: for every read that ends a question the same answer, written and
/// flushed, and nothing else.
class QtReference {
public:
    explicit QtReference(QByteArray answer);
    ~QtReference();
    std::uint16_t port() const { return m_port; }

private:
    class Thread;

    std::unique_ptr<Thread> m_thread;
    std::uint16_t m_port = 0;
};

/// The same straight on the system's calls.
class EpollReference {
public:
    explicit EpollReference(QByteArray answer);
    ~EpollReference();
    std::uint16_t port() const { return m_port; }

private:
    void serve();

    QByteArray m_answer;
    int m_listener = -1;
    int m_end = -1; ///< readable when the thread is to end
    std::uint16_t m_port = 0;
    std::thread m_thread;
};

} // namespace bench
