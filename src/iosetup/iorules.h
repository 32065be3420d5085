// SPDX-License-Identifier: MIT
#pragma once

#include "engine/iofunclist.h"

#include <QVector>

namespace tessera {

/// Sets bit `bit`, 0 to 31, of `word` for a `value` other than 0, else clears it. A bit outside changes nothing.
void setBitValue(unsigned int& word, unsigned int bit, unsigned int value);

/// Which fields of the end signal matter for a way of clearing it.
struct EndSignalFields {
    bool duration = false;
    bool acknowledge = false; ///< input, level and time-out
};
EndSignalFields endSignalFields(int clearType);
/// A way of clearing that a file holds; the engine takes a number that it does not know as 0, which blocks for a time.
int knownClearType(int stored);

/// The edited functions with the last input words of the running ones, by name: what the edge detection has seen
/// belongs to the supervision, and an older state would be taken for a new edge.
QVector<IOFuncList> withLiveInputs(QVector<IOFuncList> edited, QVector<IOFuncList> const& live);

} // namespace tessera
