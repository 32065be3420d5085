// SPDX-License-Identifier: MIT
#pragma once

#include "samples.h"
#include "simengine/document/codemaker.h"

/// Codes as they are asked for.
namespace codes {

inline sim::CodeSpec spec(sim::Symbology symbology, const QString& text,
                          sim::CodeMarking marking = sim::CodeMarking::Outline) {
    sim::CodeSpec spec;
    spec.text = text;
    spec.symbology = symbology;
    spec.marking = marking;
    spec.quietZone = sim::usualQuietZone(symbology);
    return spec;
}

inline sim::ObjectPtr object(const sim::CodeSpec& spec) {
    return samples::object(sim::makeCode(spec).shape);
}

} // namespace codes
