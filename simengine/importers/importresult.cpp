// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/importresult.h"

namespace sim {

void ImportResult::tally(QVector<ImportSkip>& list, const QString& kind, const QString& reason, int count) {
    // a hostile file can name as many kinds as it has elements
    const QString shown = kind.size() > kLongestKind ? kind.left(kLongestKind) + QChar(0x2026) : kind;
    const bool full = list.size() >= kMostKinds;
    for (ImportSkip& known : list) {
        if (known.reason == reason && (known.kind == shown || (full && known.kind == QLatin1String("...")))) {
            known.count += count;
            return;
        }
    }
    if (list.size() <= kMostKinds + kSpareKinds)
        list.append({full ? QStringLiteral("...") : shown, reason, count});
    else
        list.last().count += count;
}

} // namespace sim
