// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>
#include <QStringList>
#include <atomic>
#include <cstddef>
#include <memory>

class QProcess;

namespace sim {

/// What may end a decoding or tracing before it is done.
struct TracerLimit {
    double seconds = 4.5;                         ///< of processor time: a busy machine refuses no picture more
    QDeadlineTimer deadline{60000};               ///< for a program that neither works nor answers
    const std::atomic<bool>* cancelled = nullptr; ///< may be set from any thread

    bool isCancelled() const { return cancelled && cancelled->load(); }
};

/// The program that decodes and traces, beside the engine's library or in the folder of programs beside that; empty
/// when it is missing.
QString tracerProgram();

/// One call of the program. Belongs to the thread that makes it; its destructor ends the process.
class TracerProcess {
public:
    explicit TracerProcess(TracerLimit limit);
    ~TracerProcess();
    TracerProcess(const TracerProcess&) = delete;
    TracerProcess& operator=(const TracerProcess&) = delete;

    /// With a command of sim::wire and what follows the limit.
    bool start(const char* command, const QStringList& arguments = {});
    /// Gives the program its input, and its end.
    bool write(const QByteArray& head, const void* data, std::size_t size);
    /// Waits for exactly `size` bytes of the answer; false when they do not come in time.
    bool read(void* data, std::size_t size);
    /// The reason why it gave no answer, for the operator; empty when it was cancelled.
    QString fault();

private:
    bool wait();

    TracerLimit m_limit;
    std::unique_ptr<QProcess> m_process;
    bool m_late = false;
};

} // namespace sim
