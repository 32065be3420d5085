// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerdata.h"
#include "engine/marktypes.h"

namespace tessera {

/// The frequency of a pen in Hz, as hosts and stations read it: three laser types keep theirs in kHz.
inline double FrequencyInHertz(LayerData const& pen, MarkCardType laser) {
    const bool isKilo = laser == MarkCardFilber || laser == MarkCardSPI || laser == MarkCardEP;
    return isKilo ? pen.Fre * 1000 : pen.Fre;
}

} // namespace tessera
