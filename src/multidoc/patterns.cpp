// SPDX-License-Identifier: MIT
#include "multidoc/patterns.h"

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

QVector<QPair<int, int>> Clashes(QVector<TrigerDoc*> const& docs) {
    QVector<QPair<int, int>> pairs;
    for (int i = 0; i < docs.size(); ++i) {
        for (int j = i + 1; j < docs.size(); ++j) {
            if (CanFireTogether(*docs.at(i), *docs.at(j)))
                pairs.append({i, j});
        }
    }
    return pairs;
}

} // namespace tessera
