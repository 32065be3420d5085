// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importnotes.h"
#include "simengine/importers/importresult.h"

#include <ctime>

namespace sim {

/// What one import may take. A file that is made to exhaust the machine ends here, with a reason, before five seconds
/// and 512 MiB. The time is that of this thread alone, so that a busy machine refuses nothing that it takes when idle.
class ImportBudget {
public:
    static constexpr qint64 kMostBytes = qint64(128) << 20;
    static constexpr qint64 kMostPoints = 4'000'000;
    /// Points when curves are lines: what the document needs of them wherever it is marked or shown.
    static constexpr qint64 kMostFlatPoints = 40'000'000;
    /// Bytes that an import may hold beside the file and the drawing.
    static constexpr qint64 kMostMemory = qint64(192) << 20;
    static constexpr qint64 kMostElements = 2'000'000;
    static constexpr int kMostDepth = 200;

    explicit ImportBudget(double mostSeconds = ImportOptions().mostSeconds)
        : m_begin(cpuSeconds())
        , m_mostSeconds(mostSeconds) {}

    /// Counts points of the drawing, references followed. False when there were too many, or too much time has gone.
    bool points(qint64 count) { return spend(m_points, count, kMostPoints, Note::TooManyPoints); }
    /// The same for elements of the file.
    bool elements(qint64 count = 1) { return spend(m_elements, count, kMostElements, Note::TooManyElements); }
    /// The points could still be had; for a path that is on its way to the drawing, where they are counted.
    bool hasRoom(qint64 points) {
        if (m_points + points > kMostPoints)
            fail(Note::TooManyPoints);
        return ok();
    }
    /// The same for points that the curves of the drawing have as lines, as flattenedPointCount() tells them.
    bool flatPoints(qint64 count) { return hold(m_flatPoints, count, kMostFlatPoints, Note::TooManyPoints); }
    /// Takes bytes that the import holds until it gives them back as a negative number. Ask before they are taken.
    bool memory(qint64 bytes) { return hold(m_memory, bytes, kMostMemory, Note::TooMuchMemory); }
    /// For work that makes neither: a few microseconds and `cost` bytes or points that are gone through. The clock is
    /// looked at by the sum of the work, not by the number of calls.
    bool step(qint64 cost = 0) { return ok() && lookAtTime(1 + cost / kCostOfStep); }
    bool ok() const { return !m_failed; }
    void fail(Note note) {
        if (!m_failed)
            m_note = note;
        m_failed = true;
    }
    /// Why it was not ok().
    Note note() const { return m_note; }

private:
    /// Steps between two looks at the clock.
    static constexpr qint64 kSteps = 512;
    /// Bytes or points that take as long as a plain step.
    static constexpr qint64 kCostOfStep = 16;

    static double cpuSeconds() {
        timespec now{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
    }
    bool spend(qint64& sum, qint64 count, qint64 most, Note note) {
        if (m_failed)
            return false;
        sum += count;
        if (sum > most)
            fail(note);
        return lookAtTime(count + 1);
    }
    bool hold(qint64& sum, qint64 count, qint64 most, Note note) {
        sum += count;
        if (sum > most)
            fail(note);
        return ok() && lookAtTime(1);
    }
    bool lookAtTime(qint64 steps) {
        m_steps += steps;
        if (m_steps >= kSteps) {
            m_steps = 0;
            if (cpuSeconds() - m_begin > m_mostSeconds)
                fail(Note::TooLong);
        }
        return !m_failed;
    }

    double m_begin;
    double m_mostSeconds;
    qint64 m_points = 0;
    qint64 m_elements = 0;
    qint64 m_flatPoints = 0;
    qint64 m_memory = 0;
    qint64 m_steps = 0;
    Note m_note = Note::TooLong;
    bool m_failed = false;
};

} // namespace sim
