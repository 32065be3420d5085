// SPDX-License-Identifier: MIT
#pragma once

#include "multidoc/trigerdoc.h"

#include <QPair>
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
/// Places of all such pairs, the upper entry first.
QVector<QPair<int, int>> Clashes(QVector<TrigerDoc*> const& docs);

} // namespace tessera
