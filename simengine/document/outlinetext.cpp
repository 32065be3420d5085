// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/outlinetext.h"

#include "simengine/document/glyphunion.h"
#include "simengine/document/painterpath.h"

#include <QFontDatabase>
#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>
#include <algorithm>
#include <map>

namespace sim {

namespace {

/// Size in which fonts are asked for their outlines. Large, so that positions in 1/64 of it are fine enough; the
/// outlines themselves come unhinted and hold for every size.
constexpr int kFontPixels = 1000;
/// Height of a capital letter of a font that has none, in sizes.
constexpr double kUsualCapHeight = 0.7;
/// How far united letters may be off, in heights of a capital letter: 0.25 micrometres at 5 mm.
constexpr double kUnionTolerance = 5.0e-5;
constexpr int kMostBorrowedNamed = 20;

QFont fontOf(const TextSpec& spec) {
    QFont font(spec.family);
    font.setPixelSize(kFontPixels);
    font.setBold(spec.bold);
    font.setItalic(spec.italic);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::PreferOutline);
    return font;
}

double capHeight(const QRawFont& font) {
    const QVector<quint32> glyphs = font.glyphIndexesForString(QStringLiteral("H"));
    const double drawn =
        glyphs.isEmpty() || glyphs.first() == 0 ? 0.0 : -font.pathForGlyph(glyphs.first()).boundingRect().top();
    if (drawn > 0.0)
        return drawn;
    return font.capHeight() > 0.0 ? font.capHeight() : kUsualCapHeight * kFontPixels;
}

/// Lays lines out one after the other and gathers their letters, in pixels of the font.
class OutlineLayout {
public:
    OutlineLayout(const TextSpec& spec, OutlineText& result)
        : m_spec(spec)
        , m_result(result)
        , m_font(fontOf(spec))
        , m_rawFont(QRawFont::fromFont(m_font))
        , m_cap(capHeight(m_rawFont))
        , m_scale(spec.height / m_cap) {
        m_spacing = spec.letterSpacing / m_scale;
        if (m_spacing != 0.0)
            m_font.setLetterSpacing(QFont::AbsoluteSpacing, m_spacing);
        if (!QFontDatabase().hasFamily(spec.family))
            result.usedFamily = m_rawFont.familyName();
    }

    void run() {
        double base = 0.0;
        for (const QString& line : m_spec.text.split(QLatin1Char('\n'))) {
            addLine(line, base);
            base -= m_spec.lineSpacing * m_cap;
        }
        if (!m_result.missing.isEmpty())
            return;
        const QTransform toMm = QTransform::fromScale(m_scale, m_scale);
        for (const PathShape& glyph : unitedGlyphs(m_glyphs, kUnionTolerance * m_cap))
            m_result.glyphs.push_back(mapPath(glyph, toMm));
    }

private:
    QList<QGlyphRun> runsOf(const QString& text, double* width, double* ascent) const {
        QTextLayout layout(text, m_font);
        QTextOption option;
        option.setUseDesignMetrics(true);
        option.setWrapMode(QTextOption::NoWrap);
        layout.setTextOption(option);
        layout.beginLayout();
        QTextLine line = layout.createLine();
        if (!line.isValid())
            return {};
        layout.endLayout();
        *width = line.naturalTextWidth();
        *ascent = line.y() + line.ascent();
        return layout.glyphRuns();
    }

    void addLine(const QString& text, double base) {
        double width = 0.0;
        double ascent = 0.0;
        bool lacks = false;
        bool borrows = false;
        const auto first = static_cast<std::ptrdiff_t>(m_glyphs.size());
        const QList<QGlyphRun> runs = runsOf(text, &width, &ascent);
        width = qMax(0.0, width - m_spacing);
        const double start = m_spec.align == TextAlign::Left     ? 0.0
                             : m_spec.align == TextAlign::Center ? -width / 2.0
                                                                 : -width;
        for (const QGlyphRun& run : runs) {
            const QVector<quint32> glyphs = run.glyphIndexes();
            const QVector<QPointF> places = run.positions();
            borrows = borrows || run.rawFont().familyName() != m_rawFont.familyName();
            for (int i = 0; i < glyphs.size(); ++i) {
                lacks = lacks || glyphs[i] == 0;
                add(run.rawFont(), glyphs[i], {start + places[i].x(), base + ascent - places[i].y()});
            }
        }
        // the runs come font by font; the laser goes along the line
        std::stable_sort(m_glyphs.begin() + first, m_glyphs.end(),
                         [](const PlacedGlyph& a, const PlacedGlyph& b) { return a.place.x() < b.place.x(); });
        if (lacks || borrows)
            nameForeign(text);
    }

    void add(const QRawFont& font, quint32 glyph, const QPointF& place) {
        auto& outline = m_outlines[{fontIndex(font), glyph}];
        if (!outline)
            outline = std::make_shared<const PathShape>(
                pathFromPainter(font.pathForGlyph(glyph), QTransform::fromScale(1.0, -1.0)));
        // glyph 0 stands for what the font lacks
        if (glyph != 0 && !outline->verbs.isEmpty())
            m_glyphs.push_back({outline, place});
    }

    int fontIndex(const QRawFont& font) {
        int index = m_fonts.indexOf(font);
        if (index < 0) {
            index = m_fonts.size();
            m_fonts.append(font);
        }
        return index;
    }

    /// Says which characters of a line no font has and which another font lends.
    void nameForeign(const QString& text) {
        for (uint character : text.toUcs4()) {
            const QString written = QString::fromUcs4(&character, 1);
            if (m_rawFont.supportsCharacter(character) || m_result.missing.contains(written) ||
                m_result.borrowed.contains(written) || isInvisible(character))
                continue;
            double width = 0.0;
            double ascent = 0.0;
            bool found = true;
            for (const QGlyphRun& run : runsOf(written, &width, &ascent))
                found = found && !run.glyphIndexes().contains(0);
            if (!found)
                m_result.missing += written;
            else if (m_result.borrowed.size() < kMostBorrowedNamed)
                m_result.borrowed += written;
        }
    }

    /// Joiners and marks of direction draw nothing in any font.
    static bool isInvisible(uint character) { return QChar::category(character) == QChar::Other_Format; }

    const TextSpec& m_spec;
    OutlineText& m_result;
    QFont m_font;
    QRawFont m_rawFont;
    double m_cap;
    double m_scale;
    double m_spacing = 0.0;
    QVector<QRawFont> m_fonts;
    std::map<std::pair<int, quint32>, std::shared_ptr<const PathShape>> m_outlines;
    std::vector<PlacedGlyph> m_glyphs;
};

} // namespace

OutlineText outlineText(const TextSpec& spec) {
    OutlineText result;
    OutlineLayout(spec, result).run();
    return result;
}

} // namespace sim
