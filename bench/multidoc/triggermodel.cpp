// SPDX-License-Identifier: MIT
#include "bench/multidoc/triggermodel.h"

#include <algorithm>
#include <set>

namespace bench {

int TriggerTable::take(unsigned int word) {
    int found = -1;
    for (std::size_t row = m_entries.size(); row-- > 0;) {
        bool holds = true;
        bool changed = false;
        for (unsigned int bit = 1; bit != 0; bit <<= 1) {
            if ((m_entries[row].m_nMask & bit) == 0)
                continue;
            holds = holds && ((word & bit) != 0) == ((m_entries[row].m_nValue & bit) != 0);
            changed = changed || ((word & bit) != 0) != ((m_last & bit) != 0);
        }
        if (holds && changed)
            found = int(row);
    }
    m_last = word;
    return found;
}

QStringList TriggerTable::lines(unsigned int last, unsigned int word, int entry) const {
    if (last == word)
        return {};
    const auto hex = [](unsigned int number) { return QString::number(number, 16).toUpper(); };
    QStringList lines{QStringLiteral("MultDocMark Triger File Input:Last->") + hex(last) + QStringLiteral(",Input->") +
                      hex(word)};
    if (entry < 0)
        return lines;
    TrigerDoc const& doc = m_entries[std::size_t(entry)];
    QString line = QStringLiteral("MultDocMark Triger File: ") + QString::number(entry) + QLatin1Char(',');
    for (unsigned int number :
         {word & doc.m_nMask, last & doc.m_nMask, doc.m_nMask & doc.m_nValue, last, word, doc.m_nMask, doc.m_nValue})
        line += QString::number(int(number)) + QLatin1Char(',');
    return lines << line + doc.m_FileName;
}

bool QueueModel::trigger(int document, bool shown) {
    if ((shown && document == m_current) || std::count(m_queue.begin(), m_queue.end(), document) > 0)
        return false;
    m_queue.push_back(document);
    return true;
}

int QueueModel::take() {
    if (m_queue.empty())
        return -1;
    m_current = m_queue.front();
    m_queue.pop_front();
    return m_current;
}

/// Runs are begun in the order in which triggers were taken, so that it is enough to know how many were: the numbers
/// that are possible after each trigger are followed to the end.
bool canComeOf(std::vector<int> const& runs, std::vector<FreeTrigger> const& triggers) {
    const auto among = [&runs](int document, std::size_t from, std::size_t to) {
        const auto at = [&runs](std::size_t place) { return runs.begin() + std::ptrdiff_t(place); };
        return from < to && std::find(at(from), at(to), document) != at(to);
    };
    std::set<std::size_t> taken{0};
    for (FreeTrigger const& trigger : triggers) {
        std::set<std::size_t> next;
        for (std::size_t count : taken) {
            // The oldest may have left the queue without having begun.
            const bool waitsAfter = among(trigger.document, trigger.begunAfter + 1, count);
            const bool mayBeTaken = !waitsAfter && count < runs.size() && runs[count] == trigger.document;
            const std::size_t inHand = trigger.begunBefore - (trigger.begunBefore > trigger.endedBefore ? 1 : 0);
            const bool mayBeDropped = among(trigger.document, inHand, std::max(count, trigger.begunAfter));
            if (mayBeTaken && count + 1 >= trigger.begunAfter)
                next.insert(count + 1);
            if (mayBeDropped && count >= trigger.begunAfter)
                next.insert(count);
        }
        taken = std::move(next);
    }
    return taken.count(runs.size()) > 0;
}

} // namespace bench
