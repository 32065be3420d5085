// SPDX-License-Identifier: MIT
#pragma once

#include "simengine/importers/dxfimport.h"

#include <algorithm>

/// Drawings as text: "0,LINE;8,CUT;10,1.5" is three pairs of code and value.
namespace dxf {

/// A line of 10 units.
inline const QByteArray kUnitLine = "0,LINE;8,0;10,0;20,0;11,10;21,0;";

inline QByteArray pairs(const QByteArray& text) {
    QByteArray out;
    out.reserve(2 * text.size());
    for (int at = 0; at < text.size();) {
        const int found = text.indexOf(';', at);
        const int end = found < 0 ? text.size() : found;
        const char* const pair = text.constData() + at;
        const char* const comma = std::find(pair, text.constData() + end, ',');
        const int code = int(comma - pair);
        if (code > 0 && code < end - at)
            out.append("  ").append(pair, code).append("\r\n").append(comma + 1, end - at - code - 1).append("\r\n");
        at = end + 1;
    }
    return out;
}

inline QByteArray section(const QByteArray& name, const QByteArray& body) {
    return body.isEmpty() ? QByteArray() : "0,SECTION;2," + name + ";" + body + "0,ENDSEC;";
}

/// A file in millimetres with the given layers, blocks and entities.
inline QByteArray file(const QByteArray& entities, const QByteArray& blocks = {}, const QByteArray& layers = {},
                       const QByteArray& header = "9,$INSUNITS;70,4;") {
    const QByteArray tables = layers.isEmpty() ? QByteArray() : "0,TABLE;2,LAYER;70,9;" + layers + "0,ENDTAB;";
    return pairs(section("HEADER", header) + section("TABLES", tables) + section("BLOCKS", blocks) +
                 section("ENTITIES", entities) + "0,EOF");
}

/// The drawing's origin comes to lie on the field's.
inline sim::ImportResult read(const QByteArray& bytes) {
    sim::ImportOptions options;
    options.placement = sim::ImportPlacement::CenterPage;
    return sim::importDxfData(bytes, options);
}

} // namespace dxf
