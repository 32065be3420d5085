// SPDX-License-Identifier: MIT
#include "shell/alarmhistory.h"

#include <algorithm>

namespace tessera {

AlarmHistory::AlarmHistory(int limit)
    : m_nLimit(std::max(1, limit)) {}

/// What comes in the same look in which the last alarm goes still belongs to that group.
QVector<AlarmEntry> AlarmHistory::Update(QVector<ActiveAlarm> const& active, qint64 nowMs) {
    QVector<AlarmEntry> changed;
    bool firstOut = m_Active.isEmpty();
    QSet<QString> present;
    for (ActiveAlarm const& alarm : active)
        present.insert(alarm.code);
    const QStringList before = m_Active.keys();
    for (QString const& code : before) {
        if (!present.contains(code)) {
            if (AlarmEntry const* entry = End(code, AlarmEnd::Cleared, nowMs))
                changed.append(*entry);
        }
    }
    std::sort(changed.begin(), changed.end(),
              [](AlarmEntry const& a, AlarmEntry const& b) { return a.number < b.number; });
    for (ActiveAlarm const& alarm : active) {
        if (m_Active.contains(alarm.code))
            continue;
        AlarmEntry entry;
        entry.number = ++m_nLast;
        entry.code = Shared(alarm.code);
        entry.text = Shared(alarm.text);
        entry.firstOut = firstOut;
        entry.raisedMs = nowMs;
        firstOut = false;
        m_Active.insert(entry.code, entry.number);
        m_Entries.push_back(entry);
        changed.append(entry);
    }
    Trim();
    return changed;
}

QVector<AlarmEntry> AlarmHistory::EndAll(qint64 nowMs) {
    QVector<AlarmEntry> changed;
    const QStringList codes = m_Active.keys();
    for (QString const& code : codes) {
        if (AlarmEntry const* entry = End(code, AlarmEnd::ProgramEnd, nowMs))
            changed.append(*entry);
    }
    std::sort(changed.begin(), changed.end(),
              [](AlarmEntry const& a, AlarmEntry const& b) { return a.number < b.number; });
    return changed;
}

std::optional<AlarmEntry> AlarmHistory::Acknowledge(qint64 number, QString const& user, qint64 nowMs) {
    AlarmEntry* entry = Find(number);
    if (!entry || entry->IsAcknowledged())
        return std::nullopt;
    entry->acknowledgedMs = nowMs;
    entry->acknowledgedBy = user;
    return *entry;
}

QVector<AlarmEntry> AlarmHistory::AcknowledgeAll(QString const& user, qint64 nowMs) {
    QVector<AlarmEntry> changed;
    for (AlarmEntry& entry : m_Entries) {
        if (entry.IsAcknowledged())
            continue;
        entry.acknowledgedMs = nowMs;
        entry.acknowledgedBy = user;
        changed.append(entry);
    }
    return changed;
}

AlarmEntry* AlarmHistory::Find(qint64 number) {
    const auto found = std::lower_bound(m_Entries.begin(), m_Entries.end(), number,
                                        [](AlarmEntry const& entry, qint64 value) { return entry.number < value; });
    return found != m_Entries.end() && found->number == number ? &*found : nullptr;
}

/// Null for an alarm whose entry has been dropped.
AlarmEntry* AlarmHistory::End(QString const& code, AlarmEnd end, qint64 nowMs) {
    AlarmEntry* entry = Find(m_Active.take(code));
    if (entry) {
        entry->end = end;
        entry->clearedMs = nowMs;
    }
    return entry;
}

QString AlarmHistory::Shared(QString const& text) {
    return *m_Texts.insert(text);
}

void AlarmHistory::Trim() {
    while (static_cast<int>(m_Entries.size()) > m_nLimit) {
        const auto over =
            std::find_if(m_Entries.begin(), m_Entries.end(), [](AlarmEntry const& entry) { return !entry.IsActive(); });
        m_Entries.erase(over != m_Entries.end() ? over : m_Entries.begin());
    }
}

} // namespace tessera
