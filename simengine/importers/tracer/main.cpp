// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/tracer/decoder.h"
#include "simengine/importers/tracer/tracer.h"
#include "simengine/importers/tracewire.h"

#include <QCoreApplication>
#include <QFile>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sched.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

/// Memory that a picture may take, bytes.
constexpr rlim_t kMostMemory = rlim_t(440) << 20;
/// Processor time, s. The caller allows less; this is for a signal that does not come.
constexpr rlim_t kMostTime = 20;

void limitSelf() {
    // The main window's thread is lent a real-time class for moments, which a new process takes over.
    const sched_param usual{};
    sched_setscheduler(0, SCHED_OTHER, &usual);
    const rlimit time{kMostTime, kMostTime};
    setrlimit(RLIMIT_CPU, &time);
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    const rlimit memory{kMostMemory, kMostMemory};
    setrlimit(RLIMIT_DATA, &memory);
#endif
}

void endTooLong(int) {
    ::_exit(sim::wire::ExitTooLong);
}

/// Ends the program after so many milliseconds of its own work.
bool limitWork(const char* ms) {
    const long most = std::strtol(ms, nullptr, 10);
    if (most <= 0)
        return false;
    std::signal(SIGPROF, endTooLong);
    itimerval timer{};
    timer.it_value.tv_sec = most / 1000;
    timer.it_value.tv_usec = most % 1000 * 1000;
    return setitimer(ITIMER_PROF, &timer, nullptr) == 0;
}

} // namespace

int main(int argc, char** argv) {
    limitSelf();
    if (argc < 3 || !limitWork(argv[2]))
        return sim::wire::ExitWrongUse;
    try {
        if (argc == 3 && std::strcmp(argv[1], sim::wire::kTrace) == 0)
            return sim::traceBitmap();
        if (argc == 4 && std::strcmp(argv[1], sim::wire::kDecode) == 0) {
            const QCoreApplication app(argc, argv); // tells where the readers' plug-ins are
            return sim::decodeImage(QFile::decodeName(argv[3]));
        }
    } catch (const std::bad_alloc&) {
        return sim::wire::ExitNoMemory;
    }
    return sim::wire::ExitWrongUse;
}
