// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/textmaker.h"

#include "simengine/document/outlinetext.h"
#include "simengine/document/strokefonts.h"

#include <QStringList>
#include <cmath>

namespace sim {

namespace {

/// Slope of italic strokes: 12 degrees.
constexpr double kItalicSlope = 0.21255656167002213;

void append(TextShape& shape, const PathShape& part) {
    if (part.verbs.isEmpty())
        return;
    shape.outline.verbs += part.verbs;
    shape.outline.points += part.points;
    shape.characterContours.append(part.contourCount());
}

double alignedStart(TextAlign align, double width) {
    return align == TextAlign::Left ? 0.0 : align == TextAlign::Center ? -width / 2.0 : -width;
}

/// One line of strokes in heights; `spacing` too.
struct StrokeLine {
    std::vector<StrokeGlyph> glyphs;
    double width = 0.0;
};

StrokeLine strokeLine(const QString& line, const QString& font, double spacing, QString& missing) {
    StrokeLine result;
    for (uint character : line.toUcs4()) {
        StrokeGlyph glyph = strokeGlyph(font, character);
        const QString written = QString::fromUcs4(&character, 1);
        if (!glyph.known && !missing.contains(written))
            missing += written;
        result.width += glyph.width + spacing;
        result.glyphs.push_back(std::move(glyph));
    }
    result.width -= result.glyphs.empty() ? 0.0 : spacing;
    return result;
}

void makeStrokes(const TextSpec& spec, MadeText& made) {
    if (!isStrokeFontInstalled(spec.family)) {
        made.fault = TextFault::NoStrokeFont;
        made.characters = spec.family;
        return;
    }
    const double spacing = spec.letterSpacing / spec.height;
    const double slope = spec.italic ? kItalicSlope : 0.0;
    double base = 0.0;
    for (const QString& text : spec.text.split(QLatin1Char('\n'))) {
        const StrokeLine line = strokeLine(text, spec.family, spacing, made.characters);
        double x = alignedStart(spec.align, line.width);
        for (const StrokeGlyph& glyph : line.glyphs) {
            const QTransform place(spec.height, 0.0, slope * spec.height, spec.height, x * spec.height,
                                   base * spec.height);
            append(made.shape, mapPath(glyph.path, place));
            x += glyph.width + spacing;
        }
        base -= spec.lineSpacing;
    }
    if (!made.characters.isEmpty())
        made.fault = TextFault::MissingCharacters;
}

void makeOutlines(const TextSpec& spec, MadeText& made) {
    OutlineText text = outlineText(spec);
    made.usedFamily = text.usedFamily;
    made.borrowed = text.borrowed;
    if (!text.missing.isEmpty()) {
        made.fault = TextFault::MissingCharacters;
        made.characters = text.missing;
        return;
    }
    for (const PathShape& glyph : text.glyphs)
        append(made.shape, glyph);
}

} // namespace

MadeText makeText(const TextSpec& spec) {
    return makeText(spec, spec.text);
}

MadeText makeText(const TextSpec& spec, const QString& shown) {
    MadeText made;
    made.fault = specFault(spec, &made.characters);
    TextSpec laidOut = spec;
    if (spec.variables) {
        laidOut.text = shown;
        laidOut.variables = false;
        if (made.ok())
            made.fault = specFault(laidOut, &made.characters);
        made.shape.shown = shown;
    }
    made.shape.spec = spec;
    if (!made.ok())
        return made;
    if (spec.singleLine)
        makeStrokes(laidOut, made);
    else
        makeOutlines(laidOut, made);
    if (made.ok() && made.shape.outline.verbs.isEmpty())
        made.fault = TextFault::NothingDrawn;
    return made;
}

} // namespace sim
