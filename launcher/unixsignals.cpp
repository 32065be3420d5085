// SPDX-License-Identifier: MIT
#include "unixsignals.h"

#include <QSocketNotifier>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace tessera {

namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

/// Write end of the pipe for the handler; a handler may use nothing but such plain data.
std::atomic<int> g_pipe{-1};

void handle(int number) {
    int const saved = errno;
    unsigned char const byte = static_cast<unsigned char>(number);
    // A full pipe already holds an order to end.
    ssize_t const written = ::write(g_pipe.load(), &byte, 1);
    static_cast<void>(written);
    errno = saved;
}

} // namespace

UnixSignals::UnixSignals(QObject* parent)
    : QObject(parent) {
    if (::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    g_pipe = m_pipe[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &UnixSignals::read);
    struct sigaction action {};
    action.sa_handler = handle;
    action.sa_flags = SA_RESTART | SA_RESETHAND;
    sigemptyset(&action.sa_mask);
    for (int number : kSignals)
        ::sigaction(number, &action, nullptr);
}

UnixSignals::~UnixSignals() {
    for (int number : kSignals)
        ::signal(number, SIG_DFL);
    g_pipe = -1;
    m_notifier.reset();
    for (int descriptor : m_pipe) {
        if (descriptor >= 0)
            ::close(descriptor);
    }
}

void UnixSignals::read() {
    unsigned char number = 0;
    if (::read(m_pipe[0], &number, 1) == 1)
        emit endWanted(number);
}

} // namespace tessera
