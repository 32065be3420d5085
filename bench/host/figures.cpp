// SPDX-License-Identifier: MIT
#include "bench/host/figures.h"

#include "bench/support/percentile.h"
#include "shell/mainwindow.h"
#include "tests/support/processstatus.h"

#include <QDir>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <utility>

namespace bench {

namespace {

constexpr double kPollMs = 30.0;

} // namespace

std::string summary(std::vector<double> const& ms) {
    char text[128];
    std::snprintf(text, sizeof text, "median %7.3f  99 %% %7.3f  longest %7.3f ms (%zu)", percentile(ms, 0.5),
                  percentile(ms, 0.99), percentile(ms, 1.0), ms.size());
    return text;
}

double residentMiB() {
    return double(tests::processStatus("VmRSS:")) / 1024.0;
}

int openSockets() {
    int count = 0;
    for (QFileInfo const& one : QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System))
        count += one.symLinkTarget().contains(QStringLiteral("socket:[")) ? 1 : 0;
    return count;
}

struct PollWatch::State {
    std::mutex lock;
    std::vector<double> deviations;
    Clock::time_point last;
    bool hasLast = false;

    void beat() {
        const Clock::time_point now = Clock::now();
        const std::lock_guard<std::mutex> guard(lock);
        if (hasLast)
            deviations.push_back(std::fabs(std::chrono::duration<double, std::milli>(now - last).count() - kPollMs));
        last = now;
        hasLast = true;
    }
};

PollWatch::PollWatch()
    : m_state(std::make_shared<State>())
    , m_connection(QObject::connect(
          MainWindow::Instance(), &MainWindow::TimerUpDate, MainWindow::Instance(),
          [state = m_state] { state->beat(); }, Qt::QueuedConnection)) {}

PollWatch::~PollWatch() {
    QObject::disconnect(m_connection);
}

std::vector<double> PollWatch::take() {
    const std::lock_guard<std::mutex> guard(m_state->lock);
    return std::exchange(m_state->deviations, {});
}

} // namespace bench
