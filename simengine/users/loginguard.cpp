// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/loginguard.h"

#include <QFile>
#include <algorithm>
#include <time.h>

namespace sim {

BootTime bootTime() {
    static QString const boot = [] {
        QFile file(QStringLiteral("/proc/sys/kernel/random/boot_id"));
        return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()).trimmed() : QString();
    }();
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return {boot, static_cast<qint64>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000};
}

/// What cannot be read or written is at least counted for as long as the program runs.
LoginAttempts& LoginGuard::attempts() {
    if (!m_attempts)
        m_attempts = m_store.attempts().value_or(LoginAttempts());
    return *m_attempts;
}

int LoginGuard::lockedMs() {
    LoginAttempts const& counted = attempts();
    if (counted.wrong < kLoginAttempts)
        return 0;
    BootTime const now = m_clock();
    // Of a pause that a restart of the machine has cut short, what the machine has been up since is known to be over.
    qint64 const since = now.boot == counted.boot ? now.ms - counted.ms : now.ms;
    return static_cast<int>(std::clamp<qint64>(kLoginPauseMs - since, 0, kLoginPauseMs));
}

bool LoginGuard::begin() {
    if (lockedMs() > 0)
        return false;
    BootTime const now = m_clock();
    LoginAttempts& counted = attempts();
    counted.wrong = counted.wrong >= kLoginAttempts ? 1 : counted.wrong + 1;
    counted.boot = now.boot;
    counted.ms = now.ms;
    m_store.setAttempts(counted);
    return true;
}

void LoginGuard::succeed() {
    m_attempts = LoginAttempts();
    m_store.setAttempts(*m_attempts);
}

} // namespace sim
