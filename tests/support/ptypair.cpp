// SPDX-License-Identifier: MIT
#include "tests/support/ptypair.h"

#include <QtTest>

#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace tests {

PtyPair::PtyPair() {
    int master = -1;
    char name[PATH_MAX] = {};
    termios raw = {};
    ::cfmakeraw(&raw);
    ::cfsetspeed(&raw, B115200);
    raw.c_cflag |= CREAD | CLOCAL;
    if (::openpty(&master, &m_slave, name, &raw, nullptr) != 0) {
        QTest::qFail(qPrintable(QStringLiteral("PtyPair: %1").arg(std::strerror(errno))), __FILE__, __LINE__);
        return;
    }
    ::fcntl(master, F_SETFD, FD_CLOEXEC);
    ::fcntl(m_slave, F_SETFD, FD_CLOEXEC);
    m_slavePath = QString::fromLocal8Bit(name);
    reset(master);
}

PtyPair::~PtyPair() {
    releaseSlave();
}

void PtyPair::releaseSlave() {
    if (m_slave >= 0)
        ::close(m_slave);
    m_slave = -1;
}

void PtyPair::hangUp() {
    releaseSlave();
    close();
}

} // namespace tests
