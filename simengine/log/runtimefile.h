// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

namespace sim {

/// Estimate and actual time of one laser run, ms.
struct RunTime {
    QString document;         ///< path of its file, empty for one without a file
    QDateTime when;           ///< the run's beginning
    double estimateMs = -1.0; ///< below 0 when none could be made
    double actualMs = 0.0;    ///< on the card
    double wallMs = 0.0;      ///< of the wall's clock, from the call to its return
    bool whole = false;       ///< not stopped
    bool selectedOnly = false;

    /// Actual by estimated time; 0 when they cannot be compared.
    double ratio() const { return whole && estimateMs > 0.0 ? actualMs / estimateMs : 0.0; }
};

/// The newest runs of the documents of a station, in a file of one JSON object a line that grows by appending. What
/// cannot be read of it is passed over, as the last line after a power cut. Not thread-safe.
class RunTimeFile {
public:
    static constexpr std::size_t kPerDocument = 20;
    static constexpr std::size_t kAll = 2000;
    static constexpr qint64 kMaxBytes = 512 * 1024;

    /// Reads another file, if it is another one.
    void open(const QString& path);
    const std::vector<RunTime>& runs() const { return m_runs; } ///< oldest first
    /// Keeps a run; older ones of its document, or of all, give way.
    void add(const RunTime& run);
    /// Brings what was added to the disk; false with the reason in `error`. It is tried again the next time.
    bool save(QString& error);
    bool isSaved() const { return m_unsaved.isEmpty() && !m_rewrite; }

private:
    void keepNewest();
    void trim(const QString& document);

    QString m_path;
    std::vector<RunTime> m_runs;
    QByteArray m_unsaved;
    bool m_rewrite = false; ///< the file has grown too large, or holds what cannot be read
};

QByteArray lineOf(const RunTime& run);
/// False when the line is none of a run.
bool readLine(const QByteArray& line, RunTime& run);

} // namespace sim
