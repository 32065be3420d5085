// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>

namespace tessera {

constexpr int kIOLines = 32;

/// Names of the card's lines in the operator's language.
struct IONameTable {
    std::array<QString, kIOLines> inputs;  ///< "In0" to "In31" where the card gives no name
    std::array<QString, kIOLines> outputs; ///< "Out0" to "Out31" likewise
};

/// Key of a line in the names file, and its name when it has no other.
QString inputKey(int line);
QString outputKey(int line);

/// The names that a card of this type gives its lines; a type outside 0 to 5 adds nothing to the three lines that all
/// cards have.
IONameTable cardLineNames(int cardType);

/// Output of the pilot beam for the test button, -1 for a card without one.
int redLightOutput(int cardType);

} // namespace tessera
