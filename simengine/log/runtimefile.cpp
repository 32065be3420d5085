// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/log/runtimefile.h"

#include "support/durablefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>
#include <unistd.h>

namespace sim {

namespace {

bool readNumber(const QJsonObject& object, const char* key, double& number) {
    const QJsonValue value = object.value(QLatin1String(key));
    number = value.toDouble(std::nan(""));
    return value.isDouble() && std::isfinite(number);
}

} // namespace

QByteArray lineOf(const RunTime& run) {
    QJsonObject object;
    object[QStringLiteral("document")] = run.document;
    object[QStringLiteral("when")] = run.when.toUTC().toString(Qt::ISODateWithMs);
    object[QStringLiteral("estimate")] = run.estimateMs;
    object[QStringLiteral("actual")] = run.actualMs;
    object[QStringLiteral("wall")] = run.wallMs;
    object[QStringLiteral("whole")] = run.whole;
    object[QStringLiteral("selected")] = run.selectedOnly;
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

bool readLine(const QByteArray& line, RunTime& run) {
    const QJsonDocument document = QJsonDocument::fromJson(line);
    if (!document.isObject())
        return false;
    const QJsonObject object = document.object();
    run.document = object.value(QLatin1String("document")).toString();
    run.when = QDateTime::fromString(object.value(QLatin1String("when")).toString(), Qt::ISODateWithMs);
    run.whole = object.value(QLatin1String("whole")).toBool();
    run.selectedOnly = object.value(QLatin1String("selected")).toBool();
    return run.when.isValid() && readNumber(object, "estimate", run.estimateMs) &&
           readNumber(object, "actual", run.actualMs) && readNumber(object, "wall", run.wallMs);
}

void RunTimeFile::open(const QString& path) {
    if (m_path == path)
        return;
    m_path = path;
    m_runs.clear();
    m_unsaved.clear();
    m_rewrite = false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    // What is far larger than what is kept was not written here, or its end alone counts.
    if (file.size() > 2 * kMaxBytes)
        file.seek(file.size() - 2 * kMaxBytes);
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        RunTime run;
        if (line.isEmpty())
            continue;
        if (!readLine(line, run)) {
            m_rewrite = true;
            continue;
        }
        m_runs.push_back(run);
    }
    if (!lines.isEmpty() && !lines.last().isEmpty())
        m_rewrite = true; // a line behind one without an end would be lost with it
    keepNewest();
}

/// Of a whole file at once: a file that has grown for long holds thousands of lines too many.
void RunTimeFile::keepNewest() {
    QHash<QString, std::size_t> counts;
    std::vector<RunTime> kept;
    for (auto run = m_runs.rbegin(); run != m_runs.rend() && kept.size() < kAll; ++run) {
        if (++counts[run->document] <= kPerDocument)
            kept.push_back(std::move(*run));
    }
    std::reverse(kept.begin(), kept.end());
    m_runs = std::move(kept);
}

void RunTimeFile::add(const RunTime& run) {
    m_runs.push_back(run);
    m_unsaved += lineOf(run);
    trim(run.document);
}

void RunTimeFile::trim(const QString& document) {
    const auto ofDocument = [&](const RunTime& run) { return run.document == document; };
    auto count = static_cast<std::size_t>(std::count_if(m_runs.begin(), m_runs.end(), ofDocument));
    for (; count > kPerDocument; --count)
        m_runs.erase(std::find_if(m_runs.begin(), m_runs.end(), ofDocument));
    if (m_runs.size() > kAll)
        m_runs.erase(m_runs.begin(), m_runs.end() - static_cast<std::ptrdiff_t>(kAll));
}

bool RunTimeFile::save(QString& error) {
    if (isSaved())
        return true;
    m_rewrite = m_rewrite || QFileInfo(m_path).size() + m_unsaved.size() > kMaxBytes;
    if (m_rewrite) {
        QByteArray all;
        for (const RunTime& run : m_runs)
            all += lineOf(run);
        const auto written = tessera::writeFileDurably(m_path, all);
        if (!written) {
            error = written.message();
            return false;
        }
    } else {
        QFile file(m_path);
        const bool done = QDir().mkpath(QFileInfo(m_path).path()) &&
                          file.open(QIODevice::Append | QIODevice::Unbuffered) &&
                          file.write(m_unsaved) == m_unsaved.size() && ::fdatasync(file.handle()) == 0;
        if (!done) {
            error = file.errorString();
            m_rewrite = true; // part of it may be there
            return false;
        }
    }
    m_unsaved.clear();
    m_rewrite = false;
    return true;
}

} // namespace sim
