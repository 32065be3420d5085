// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/eventflag.h"

#include <QtGlobal>
#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace sim {

EventFlag::EventFlag()
    : m_descriptor(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (m_descriptor < 0)
        qFatal("eventfd: %d", errno);
}

EventFlag::~EventFlag() {
    ::close(m_descriptor);
}

// A full counter or an empty one cannot be added to or read: then the flag is as it is to be.
void EventFlag::set() {
    std::uint64_t const one = 1;
    ssize_t result = 0;
    do
        result = ::write(m_descriptor, &one, sizeof one);
    while (result < 0 && errno == EINTR);
}

void EventFlag::clear() {
    std::uint64_t count = 0;
    ssize_t result = 0;
    do
        result = ::read(m_descriptor, &count, sizeof count);
    while (result < 0 && errno == EINTR);
}

} // namespace sim
