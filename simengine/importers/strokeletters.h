// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/strokefonts.h"

#include <QHash>

namespace sim {

/// Letters of the plainest single-line font, each looked for once: the shelf of fonts makes a new one at every call.
class StrokeLetters {
public:
    const StrokeGlyph& letter(uint character) {
        auto known = m_letters.find(character);
        if (known == m_letters.end())
            known = m_letters.insert(character, strokeGlyph(m_font, character));
        return *known;
    }

private:
    QString m_font = QString::fromLatin1(strokeFonts().front().name);
    QHash<uint, StrokeGlyph> m_letters;
};

} // namespace sim
