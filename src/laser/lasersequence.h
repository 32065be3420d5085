// SPDX-License-Identifier: MIT
#pragma once

#include "laser/laserport.h"
#include "laser/laserstep.h"

namespace tessera {

/// Lasers that are switched alike.
enum class LaserFamily {
    None, ///< no lines of its own
    Fibre,
    Yag,
    Ylr,
    Yls,
    Sn
};

/// Types 1 and 5, which are wired alike.
bool IsYlrType(int cardType);

/// Family of a laser type; `variant` tells the lasers of the YLR types apart.
LaserFamily LaserFamilyOf(int cardType, int variant);

extern const LaserSequence kFibreStart;
extern const LaserSequence kFibreEnd;
extern const LaserSequence kYagStart; ///< without a step
extern const LaserSequence kYlrStart;
extern const LaserSequence kYlrEnd;
extern const LaserSequence kYlsStart;
extern const LaserSequence kSnStart;
extern const LaserSequence kYlsSnEnd;
/// Change of the laser type while the machine runs: with the shutter closed, and open whatever was before.
extern const LaserSequence kTypeChange;

/// Walks a sequence to its end. A poll that finds nothing shows its notice and the walk goes on. Whether the card is
/// open is the caller's to ask. Main thread, which it blocks.
void RunLaserSequence(LaserSequence const& sequence, LaserChoices const& choices, LaserPort& port);

} // namespace tessera
