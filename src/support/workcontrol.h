// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>
#include <atomic>

namespace tessera {

/// What a long piece of work and the window that waits for it tell each other. Any thread.
class WorkControl {
public:
    /// Asks the work to end soon and to leave nothing half done behind.
    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }

    /// From here on the work is carried through: it does not look at cancel() any more.
    void makeFinal() { m_final = true; }
    bool isFinal() const { return m_final; }

    /// How much there is to do and how much of it is done, in the work's own unit; a total of 0 is not known.
    void setTotal(qint64 total) {
        m_done = 0;
        m_total = total;
    }
    void add(qint64 amount) { m_done += amount; }
    qint64 total() const { return m_total; }
    qint64 done() const { return m_done; }

private:
    std::atomic<bool> m_cancelled{false};
    std::atomic<bool> m_final{false};
    std::atomic<qint64> m_total{0};
    std::atomic<qint64> m_done{0};
};

} // namespace tessera
