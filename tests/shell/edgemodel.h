// SPDX-License-Identifier: MIT
#pragma once

#include "shell/inputedges.h"

#include <QtGlobal>
#include <vector>

namespace tests {

constexpr int kBits = 32;

/// What follows from the answers to four questions. `keeps`: the watched bits are written into the record.
struct EdgeModelRow {
    bool first;     ///< no wired function has been asked yet
    bool changed;   ///< a watched bit differs from the record
    bool isActive;  ///< every watched bit has the level of the pattern
    bool wasActive; ///< every watched bit of the record had it
    int result;
    bool keeps;
};

constexpr EdgeModelRow kEdgeModel[] = {
    {false, false, false, false, -1, false}, {false, false, true, true, -1, false},
    {false, true, false, false, -2, true},   {false, true, false, true, 0, true},
    {false, true, true, false, 1, true},     {true, false, false, false, -2, true},
    {true, false, true, true, 1, true},      {true, true, false, false, -2, true},
    {true, true, false, true, 0, true},      {true, true, true, false, 1, true},
};

/// What an edge of an input function is, read bit by bit from the table.
class EdgeModel {
public:
    int ask(IOFuncList& function, unsigned int input) {
        bool watched = false;
        bool changed = false;
        bool isActive = true;
        bool wasActive = true;
        unsigned int now = 0;
        for (int i = 0; i < kBits; ++i) {
            const auto bit = [i](unsigned int word) { return ((word >> i) & 1U) != 0; };
            // The record may hold bits that the mask no longer watches; they count as a change and as not active.
            if (!bit(function.InputMask)) {
                changed = changed || bit(function.LastInput);
                wasActive = wasActive && !bit(function.LastInput);
                continue;
            }
            watched = true;
            changed = changed || bit(input) != bit(function.LastInput);
            isActive = isActive && bit(input) == bit(function.InputValue);
            wasActive = wasActive && bit(function.LastInput) == bit(function.InputValue);
            if (bit(input))
                now += 1U << i;
        }
        if (!watched || !function.InputEnable)
            return -2;
        for (EdgeModelRow const& row : kEdgeModel) {
            if (row.first != m_first || row.changed != changed || row.isActive != isActive ||
                row.wasActive != wasActive)
                continue;
            m_first = false;
            if (row.keeps)
                function.LastInput = now;
            return row.result;
        }
        qFatal("the table has no row for first %d changed %d active %d before %d", m_first, changed, isActive,
               wasActive);
    }

private:
    bool m_first = true;
};

/// Every word with one bit, then every word with two.
inline std::vector<unsigned int> singlesAndPairs() {
    std::vector<unsigned int> words;
    for (int i = 0; i < kBits; ++i)
        words.push_back(1U << i);
    for (int i = 0; i < kBits; ++i) {
        for (int j = i + 1; j < kBits; ++j)
            words.push_back((1U << i) | (1U << j));
    }
    return words;
}

} // namespace tests
