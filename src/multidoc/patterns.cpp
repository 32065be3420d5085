// SPDX-License-Identifier: MIT
#include "multidoc/patterns.h"

#include <QStringList>
#include <algorithm>

namespace tessera {

namespace {

constexpr int kLeastShown = 10;

} // namespace

QString PatternText(TrigerDoc const& doc) {
    QString text(kProjectInputs, QLatin1Char('-'));
    for (int i = 0; i < kProjectInputs; ++i) {
        if ((doc.m_nMask >> i & 1U) != 0)
            text[i] = QLatin1Char((doc.m_nValue >> i & 1U) != 0 ? '1' : '0');
    }
    return text;
}

int ShownInputs(QVector<TrigerDoc*> const& docs) {
    int shown = kLeastShown;
    for (TrigerDoc const* doc : docs) {
        while (shown < kProjectInputs && doc->m_nMask >> shown != 0)
            ++shown;
    }
    return shown;
}

/// Where the inputs that both watch are wanted alike, some word is on both patterns, and the word of all other levels
/// before it is on neither.
bool CanFireTogether(TrigerDoc const& first, TrigerDoc const& second) {
    const unsigned int shared = first.m_nMask & second.m_nMask;
    return first.m_nMask != 0 && second.m_nMask != 0 && ((first.m_nValue ^ second.m_nValue) & shared) == 0;
}

/// A single input that fires both is one that both watch: before its change all others are where both want them.
bool OneInputFiresBoth(TrigerDoc const& first, TrigerDoc const& second) {
    return CanFireTogether(first, second) && (first.m_nMask & second.m_nMask) != 0;
}

Clashes FindClashes(QVector<TrigerDoc*> const& docs, int limit) {
    Clashes clashes;
    for (int i = 0; i < docs.size(); ++i) {
        for (int j = i + 1; j < docs.size(); ++j) {
            if (!CanFireTogether(*docs.at(i), *docs.at(j)))
                continue;
            if (!OneInputFiresBoth(*docs.at(i), *docs.at(j)))
                ++clashes.several;
            else if (clashes.named.size() < limit)
                clashes.named.append({i, j});
            else
                ++clashes.more;
        }
    }
    return clashes;
}

QString ClashText(Clashes const& clashes, QString const& single, QString const& several) {
    QStringList lines;
    if (!clashes.named.isEmpty()) {
        QStringList pairs;
        for (QPair<int, int> const& pair : clashes.named)
            pairs.append(QStringLiteral("%1-%2").arg(pair.first).arg(pair.second));
        const QString more = clashes.more > 0 ? QStringLiteral(" +%1").arg(clashes.more) : QString();
        lines.append(single + QStringLiteral(": ") + pairs.join(QStringLiteral(", ")) + more);
    }
    if (clashes.several > 0)
        lines.append(several.arg(clashes.several));
    return lines.join(QLatin1Char('\n'));
}

} // namespace tessera
