// SPDX-License-Identifier: MIT
#pragma once

#include "multidoc/trigerdoc.h"

#include <QPair>
#include <QString>
#include <QVector>

namespace tessera {

/// Inputs of a card.
constexpr int kProjectInputs = 32;

/// The pattern of an entry, a letter for each input from 0 on: '1' set, '0' clear, '-' not watched.
QString PatternText(TrigerDoc const& doc);
/// Number of the inputs that a list shows: the ten that can be chosen, or up to the highest one that is watched.
int ShownInputs(QVector<TrigerDoc*> const& docs);
/// There is a change of the input word that puts both on their patterns. Only the upper one is marked then.
bool CanFireTogether(TrigerDoc const& first, TrigerDoc const& second);
/// So does a change of a single input.
bool OneInputFiresBoth(TrigerDoc const& first, TrigerDoc const& second);

/// The pairs of a project that can fire together, by what it takes. Nearly every project has pairs that fire together
/// when several inputs change within one poll; those that a single input fires are what an operator has to know of.
struct Clashes {
    QVector<QPair<int, int>> named; ///< places of the first pairs that a single input fires, the upper entry first
    qint64 more = 0;                ///< further ones of that kind
    qint64 several = 0;             ///< those that need a change of several inputs at once
};
/// At most `limit` pairs are named.
Clashes FindClashes(QVector<TrigerDoc*> const& docs, int limit);
/// What the operator is told, a line for each kind, empty without a clash: `single` with the named pairs behind it,
/// `several` with the number of the others in place of its %1.
QString ClashText(Clashes const& clashes, QString const& single, QString const& several);

} // namespace tessera
