// SPDX-License-Identifier: MIT
#include "tests/support/waitfor.h"

#include "tests/support/timeoutscale.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QtTest>

#include <chrono>
#include <thread>

namespace tests {

bool waitFor(const std::function<bool()>& condition, int milliseconds) {
    const int limit = scaled(milliseconds);
    const QCoreApplication* const application = QCoreApplication::instance();
    if (application != nullptr && application->thread() == QThread::currentThread())
        return QTest::qWaitFor(condition, limit);
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(limit))
            return condition();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace tests
