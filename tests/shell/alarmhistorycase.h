// SPDX-License-Identifier: MIT
#pragma once

#include "shell/alarmhistorystore.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <limits>
#include <memory>

namespace tests {

constexpr qint64 kStart = 5'000'000;
constexpr qint64 kNewest = std::numeric_limits<qint32>::max();
constexpr int kAll = 1'000'000;

inline tessera::AlarmEntry entry(qint64 number, tessera::AlarmEnd end = tessera::AlarmEnd::Cleared) {
    tessera::AlarmEntry made;
    made.number = number;
    made.code = QStringLiteral("door%1").arg(number % 5 + 1);
    made.text = QStringLiteral("安全门%1报警").arg(number % 5 + 1);
    made.firstOut = number % 3 == 0;
    made.raisedMs = 1000 + number;
    made.clearedMs = end == tessera::AlarmEnd::Active ? 0 : 2000 + number;
    made.end = end;
    return made;
}

inline tessera::AlarmBatch range(qint64 from, qint64 to) {
    tessera::AlarmBatch batch;
    for (qint64 number = from; number <= to; ++number)
        batch.entries.insert(number, entry(number));
    return batch;
}

/// Everything in the file as an opening finds it, newest first.
inline QVector<tessera::AlarmEntry> contentOf(QString const& file, int limit = tessera::kAlarmHistoryLimit) {
    tessera::AlarmHistoryStore store(file, kStart, limit);
    QVector<tessera::AlarmEntry> all;
    if (!store.Read(kNewest, kAll, all))
        qWarning("%s", qPrintable(store.Error()));
    return all;
}

/// A history in a folder of its own, anew for every test. Its file is made by what is tested.
class AlarmHistoryCase {
protected:
    void begin() {
        m_Folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_Folder->isValid());
        m_File = m_Folder->filePath(QStringLiteral("history/alarms.db"));
    }
    void end() { m_Folder.reset(); }

    std::unique_ptr<QTemporaryDir> m_Folder;
    QString m_File;
};

} // namespace tests
