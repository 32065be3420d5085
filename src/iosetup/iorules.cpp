// SPDX-License-Identifier: MIT
#include "iosetup/iorules.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr int kClearTypes = 4;

} // namespace

void setBitValue(unsigned int& word, unsigned int bit, unsigned int value) {
    if (bit > 31)
        return;
    if (value != 0)
        word |= 1U << bit;
    else
        word &= ~(1U << bit);
}

EndSignalFields endSignalFields(int clearType) {
    switch (clearType) {
    case 0:
    case 3:
        return {true, false};
    case 2:
        return {false, true};
    default:
        return {false, false};
    }
}

int knownClearType(int stored) {
    return stored >= 0 && stored < kClearTypes ? stored : 0;
}

QVector<IOFuncList> withLiveInputs(QVector<IOFuncList> edited, QVector<IOFuncList> const& live) {
    for (IOFuncList& function : edited) {
        const auto found = std::find_if(live.cbegin(), live.cend(),
                                        [&function](IOFuncList const& other) { return other.Name == function.Name; });
        if (found != live.cend())
            function.LastInput = found->LastInput;
    }
    return edited;
}

} // namespace tessera
