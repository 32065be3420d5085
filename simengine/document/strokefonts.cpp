// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/strokefonts.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>

// the header knows no C++
extern "C" {
#include <hersheyfont.h>
}

namespace sim {

namespace {

/// Height of a capital letter in the units of the fonts.
constexpr double kCapUnits = 21.0;
constexpr uint kFirstCharacter = ' ';
constexpr uint kLastCharacter = '~';
constexpr uint kDegreeSign = 0xb0;
constexpr unsigned char kDegreePlace = 127;

struct FontDeleter {
    void operator()(hershey_font* font) const { hershey_font_free(font); }
};
using FontPtr = std::unique_ptr<hershey_font, FontDeleter>;

/// Loaded fonts by name; a file that could not be read is looked for again.
class FontShelf {
public:
    /// Null when the font cannot be read. Fonts stay where they are once loaded.
    const hershey_font* font(const QString& name) {
        if (!strokeFont(name))
            return nullptr;
        const std::lock_guard<std::mutex> lock(m_mutex);
        FontPtr& font = m_fonts[name];
        if (!font)
            font.reset(hershey_font_load(name.toLatin1().constData()));
        return font.get();
    }

private:
    std::mutex m_mutex;
    std::map<QString, FontPtr> m_fonts;
};

FontShelf& shelf() {
    static FontShelf fonts;
    return fonts;
}

PathShape strokesOf(const hershey_glyph& glyph) {
    PathShape path;
    for (const hershey_path* stroke = glyph.paths; stroke; stroke = stroke->next) {
        if (stroke->nverts == 0)
            continue;
        for (int i = 0; i < stroke->nverts; ++i) {
            const QPointF p(stroke->verts[i].x / kCapUnits, stroke->verts[i].y / kCapUnits);
            if (i == 0)
                path.moveTo(p);
            else
                path.lineTo(p);
        }
        // a dot of one vertex is still a place for the laser
        if (stroke->nverts == 1)
            path.lineTo(path.points.last());
    }
    return path;
}

} // namespace

const std::vector<StrokeFontInfo>& strokeFonts() {
    static const std::vector<StrokeFontInfo> fonts = {
        {"rowmans", "罗马体", true},         {"futural", "等线体", false},        {"scripts", "手写体", true},
        {"cursive", "花体", false},          {"greeks", "希腊文单笔", true},      {"futuram", "等线体双笔", false},
        {"rowmand", "罗马体双笔", true},     {"rowmant", "罗马体三笔", true},     {"timesr", "衬线", false},
        {"timesrb", "衬线粗体", false},      {"timesi", "衬线斜体", false},       {"timesib", "衬线粗斜体", false},
        {"scriptc", "手写体双笔", true},     {"gothiceng", "英式哥特体", false},  {"gothicger", "德式哥特体", false},
        {"gothicita", "意式哥特体", false},  {"gothgbt", "英式哥特体三笔", true}, {"gothgrt", "德式哥特体三笔", true},
        {"gothitt", "意式哥特体三笔", true}, {"greek", "希腊文", false},          {"greekc", "希腊文双笔", true},
        {"timesg", "希腊文衬线", false},     {"cyrillic", "西里尔文", false},     {"cyrilc_1", "西里尔文双笔", true},
        {"mathlow", "数学符号小写", false},  {"mathupp", "数学符号大写", false},  {"symbolic", "图形符号", false},
        {"markers", "标记符号", false},      {"music", "音乐符号", false},        {"meteorology", "气象符号", false},
        {"astrology", "天文符号", false},
    };
    return fonts;
}

const StrokeFontInfo* strokeFont(const QString& name) {
    const auto& fonts = strokeFonts();
    const auto found = std::find_if(fonts.begin(), fonts.end(),
                                    [&](const StrokeFontInfo& font) { return name == QLatin1String(font.name); });
    return found == fonts.end() ? nullptr : &*found;
}

StrokeGlyph strokeGlyph(const QString& name, uint character) {
    StrokeGlyph glyph;
    const hershey_font* font = shelf().font(name);
    const bool degree = character == kDegreeSign && font && strokeFont(name)->degreeSign;
    if (!font || (!degree && (character < kFirstCharacter || character > kLastCharacter)))
        return glyph;
    const hershey_glyph& drawn = font->glyphs[degree ? kDegreePlace : static_cast<unsigned char>(character)];
    glyph.path = strokesOf(drawn);
    glyph.width = drawn.width / kCapUnits;
    glyph.known = !glyph.path.verbs.isEmpty() || character == ' ';
    return glyph;
}

bool isStrokeFontInstalled(const QString& font) {
    return shelf().font(font) != nullptr;
}

} // namespace sim
