// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgstyle.h"

#include "simengine/importers/svgnumbers.h"

#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// The id in "url(#id)".
QString idOf(const QString& value) {
    static const QRegularExpression form(QStringLiteral("^url\\(\\s*['\"]?#([^'\")]*)['\"]?\\s*\\)"));
    return form.match(value).captured(1);
}

bool is(const QString& value, const char* word) {
    return value == QLatin1String(word);
}

/// Names something, "none" being nothing.
bool isSet(const QString& value) {
    return !value.isEmpty() && !is(value, "none") && !is(value, "inherit") && !is(value, "initial");
}

bool hasDashes(const QString& value) {
    return isSet(value) && std::any_of(value.begin(), value.end(),
                                       [](QChar c) { return c >= QLatin1Char('1') && c <= QLatin1Char('9'); });
}

double opacityOf(const QString& value) {
    const auto number = SvgNumbers(QStringRef(&value)).number();
    return number.value_or(1.0);
}

SvgPaint paintOf(const QString& value, const SvgStyle& style, const SvgPaint& parent) {
    SvgPaint paint;
    if (value == QLatin1String("inherit"))
        return parent;
    if (value.startsWith(QLatin1String("url("))) {
        paint.kind = SvgPaint::Server;
        paint.server = idOf(value);
        const QString rest = value.mid(value.indexOf(QLatin1Char(')')) + 1).trimmed();
        if (!rest.isEmpty())
            paint.color = parseSvgColor(rest).value_or(QColor());
        return paint;
    }
    if (value == QLatin1String("currentColor") || value == QLatin1String("currentcolor")) {
        paint.kind = SvgPaint::Color;
        paint.color = style.color;
    } else if (value != QLatin1String("none") && value != QLatin1String("transparent")) {
        const auto color = parseSvgColor(value);
        if (!color)
            return parent;
        paint.kind = color->alpha() == 0 ? SvgPaint::None : SvgPaint::Color;
        paint.color = *color;
    }
    return paint;
}

using Apply = void (*)(SvgStyle& style, const SvgStyle& parent, const QString& value);

void applyMarker(SvgStyle& style, const SvgStyle&, const QString& value) {
    style.markers = value.startsWith(QLatin1String("url(")) || (style.markers && !is(value, "none"));
}

template<SvgProperty property>
void applyFont(SvgStyle& style, const SvgStyle&, const QString& value) {
    if (!is(value, "inherit"))
        style.font[size_t(property) - size_t(SvgProperty::FontFamily)] = value;
}

struct PropertyRule {
    QLatin1String name;
    SvgProperty property;
    Apply apply;
};

const PropertyRule kProperties[] = {
    {QLatin1String("fill"), SvgProperty::Fill,
     [](SvgStyle& s, const SvgStyle& p, const QString& v) { s.fill = paintOf(v, s, p.fill); }},
    {QLatin1String("stroke"), SvgProperty::Stroke,
     [](SvgStyle& s, const SvgStyle& p, const QString& v) { s.stroke = paintOf(v, s, p.stroke); }},
    {QLatin1String("color"), SvgProperty::Color,
     [](SvgStyle& s, const SvgStyle& p, const QString& v) {
         s.color = is(v, "inherit") ? p.color : parseSvgColor(v).value_or(s.color);
     }},
    {QLatin1String("fill-opacity"), SvgProperty::FillOpacity,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.fillVisible = opacityOf(v) > 0.0; }},
    {QLatin1String("stroke-opacity"), SvgProperty::StrokeOpacity,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.strokeVisible = opacityOf(v) > 0.0; }},
    {QLatin1String("stroke-width"), SvgProperty::StrokeWidth,
     [](SvgStyle& s, const SvgStyle&, const QString& v) {
         const auto width = parseSvgLength(v);
         s.lineWidth = !width || width->number > 0.0;
     }},
    {QLatin1String("stroke-dasharray"), SvgProperty::StrokeDash,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.dashed = hasDashes(v); }},
    // obeyed by doing nothing: an area comes as its outline
    {QLatin1String("fill-rule"), SvgProperty::FillRule, [](SvgStyle&, const SvgStyle&, const QString&) {}},
    {QLatin1String("clip-rule"), SvgProperty::ClipRule,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.clipEvenOdd = is(v, "evenodd"); }},
    {QLatin1String("visibility"), SvgProperty::Visibility,
     [](SvgStyle& s, const SvgStyle& p, const QString& v) {
         s.visible = is(v, "inherit") ? p.visible : !is(v, "hidden") && !is(v, "collapse");
     }},
    {QLatin1String("display"), SvgProperty::Display,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.displayed = !is(v, "none"); }},
    {QLatin1String("opacity"), SvgProperty::Opacity,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.opaque = opacityOf(v) > 0.0; }},
    {QLatin1String("clip-path"), SvgProperty::ClipPath,
     [](SvgStyle& s, const SvgStyle&, const QString& v) {
         s.clip = idOf(v);
         s.clipShape = s.clip.isEmpty() && isSet(v);
     }},
    {QLatin1String("mask"), SvgProperty::Mask,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.masked = isSet(v); }},
    {QLatin1String("filter"), SvgProperty::Filter,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.filtered = isSet(v); }},
    {QLatin1String("marker-start"), SvgProperty::MarkerStart, applyMarker},
    {QLatin1String("marker-mid"), SvgProperty::MarkerMid, applyMarker},
    {QLatin1String("marker-end"), SvgProperty::MarkerEnd, applyMarker},
    {QLatin1String("marker"), SvgProperty::MarkerEnd, applyMarker},
    {QLatin1String("overflow"), SvgProperty::Overflow,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.overflow = is(v, "visible") || is(v, "auto"); }},
    {QLatin1String("stop-color"), SvgProperty::StopColor,
     [](SvgStyle& s, const SvgStyle&, const QString& v) {
         s.stopColor = is(v, "currentColor") ? s.color : parseSvgColor(v).value_or(s.stopColor);
     }},
    {QLatin1String("font-family"), SvgProperty::FontFamily, applyFont<SvgProperty::FontFamily>},
    {QLatin1String("font-size"), SvgProperty::FontSize, applyFont<SvgProperty::FontSize>},
    {QLatin1String("font-weight"), SvgProperty::FontWeight, applyFont<SvgProperty::FontWeight>},
    {QLatin1String("font-style"), SvgProperty::FontStyle, applyFont<SvgProperty::FontStyle>},
    {QLatin1String("text-anchor"), SvgProperty::TextAnchor, applyFont<SvgProperty::TextAnchor>},
    {QLatin1String("transform"), SvgProperty::Transform,
     [](SvgStyle& s, const SvgStyle&, const QString& v) { s.transform = v; }},
};

/// Properties that change what is drawn and are not obeyed.
const QLatin1String kTold[] = {
    QLatin1String("all"),
    QLatin1String("alignment-baseline"),
    QLatin1String("baseline-shift"),
    QLatin1String("clip"),
    QLatin1String("dominant-baseline"),
    QLatin1String("font"),
    QLatin1String("font-size-adjust"),
    QLatin1String("font-stretch"),
    QLatin1String("font-variant"),
    QLatin1String("glyph-orientation-vertical"),
    QLatin1String("inline-size"),
    QLatin1String("letter-spacing"),
    QLatin1String("mask-image"),
    QLatin1String("offset-path"),
    QLatin1String("rotate"),
    QLatin1String("scale"),
    QLatin1String("shape-inside"),
    QLatin1String("text-decoration"),
    QLatin1String("text-decoration-line"),
    QLatin1String("text-transform"),
    QLatin1String("transform-box"),
    QLatin1String("transform-origin"),
    QLatin1String("translate"),
    QLatin1String("word-spacing"),
    QLatin1String("writing-mode"),
    QLatin1String("zoom"),
};

/// Attributes of shapes that newer drawings may have in a style instead, where they are not obeyed.
const QLatin1String kGeometry[] = {
    QLatin1String("cx"), QLatin1String("cy"), QLatin1String("d"),     QLatin1String("height"), QLatin1String("r"),
    QLatin1String("rx"), QLatin1String("ry"), QLatin1String("width"), QLatin1String("x"),      QLatin1String("y"),
};

/// Values that leave all as it is.
const QLatin1String kPlainValues[] = {
    QLatin1String("0"),          QLatin1String("0px"),           QLatin1String("0em"),      QLatin1String("1"),
    QLatin1String("auto"),       QLatin1String("baseline"),      QLatin1String("initial"),  QLatin1String("inherit"),
    QLatin1String("lr"),         QLatin1String("lr-tb"),         QLatin1String("none"),     QLatin1String("normal"),
    QLatin1String("alphabetic"), QLatin1String("unset"),         QLatin1String("view-box"), QLatin1String("0 0"),
    QLatin1String("0px 0px"),    QLatin1String("horizontal-tb"),
};

/// Declarations of one style, and letters of a value, at most.
constexpr size_t kMostDeclarations = 200;
constexpr int kLongestValue = 4096;

} // namespace

std::optional<SvgProperty> svgProperty(const QStringRef& name) {
    for (const PropertyRule& rule : kProperties) {
        if (name == rule.name)
            return rule.property;
    }
    return std::nullopt;
}

void tellSvgProperty(const QStringRef& name, const QStringRef& value, const SvgTell& tell) {
    const auto isOneOf = [](const QStringRef& text, const auto& words) {
        return std::find(std::begin(words), std::end(words), text) != std::end(words);
    };
    if ((isOneOf(name, kTold) && !isOneOf(value, kPlainValues)) ||
        (isOneOf(name, kGeometry) && value != QLatin1String("auto")))
        tell(name.toString(), Note::StyleRule);
}

void tellSvgColor(SvgProperty property, const QString& value, const SvgTell& tell) {
    if (property != SvgProperty::Fill && property != SvgProperty::Stroke && property != SvgProperty::Color &&
        property != SvgProperty::StopColor)
        return;
    const bool word = is(value, "none") || is(value, "inherit") || is(value, "transparent") ||
                      value.compare(QLatin1String("currentColor"), Qt::CaseInsensitive) == 0;
    if (!word && !value.startsWith(QLatin1String("url(")) && !parseSvgColor(value))
        tell(QStringLiteral("color"), Note::StyleRule);
}

std::vector<SvgSetting> parseSvgStyle(const QStringRef& style, const SvgTell& tell) {
    std::vector<SvgSetting> settings;
    for (int at = 0; at < style.size();) {
        int end = style.indexOf(QLatin1Char(';'), at);
        end = end < 0 ? style.size() : end;
        const QStringRef part = style.mid(at, end - at);
        at = end + 1;
        const int colon = part.indexOf(QLatin1Char(':'));
        if (colon < 0)
            continue;
        const QStringRef name = part.left(colon).trimmed();
        QStringRef value = part.mid(colon + 1).trimmed();
        const auto property = svgProperty(name);
        if (!property) {
            tellSvgProperty(name, value, tell);
            continue;
        }
        if (settings.size() >= kMostDeclarations) {
            tell(QStringLiteral("style"), Note::StyleRule);
            break;
        }
        const int mark = value.indexOf(QLatin1Char('!'));
        const bool important = mark >= 0 && value.indexOf(QLatin1String("important"), mark) > 0;
        if (mark >= 0)
            value = value.left(mark).trimmed();
        if (value.size() > kLongestValue) {
            tell(name.toString(), Note::StyleRule);
            continue;
        }
        settings.push_back({*property, important, value.toString()});
        tellSvgColor(*property, settings.back().value, tell);
    }
    return settings;
}

std::optional<QColor> parseSvgColor(const QString& text) {
    const QString value = text.trimmed();
    if (value.startsWith(QLatin1String("rgb"), Qt::CaseInsensitive)) {
        const int open = value.indexOf(QLatin1Char('('));
        SvgNumbers in(value.midRef(open + 1));
        double v[4] = {0.0, 0.0, 0.0, 1.0};
        for (int i = 0; open > 0 && i < 4; ++i) {
            const auto number = in.number();
            if (!number && i < 3)
                return std::nullopt;
            v[i] = number.value_or(1.0);
            if (in.peek() == '%') {
                in.skip();
                v[i] = v[i] * (i < 3 ? 255.0 : 1.0) / 100.0;
            }
            if (in.peek() == '/')
                in.skip();
        }
        const auto part = [&](int i) { return int(std::lround(std::max(0.0, std::min(255.0, v[i])))); };
        return QColor(part(0), part(1), part(2), v[3] > 0.0 ? 255 : 0);
    }
    if (value.startsWith(QLatin1Char('#')) && (value.size() == 9 || value.size() == 5)) {
        // alpha stands behind
        const int digits = (value.size() - 1) / 4;
        const auto color = parseSvgColor(value.left(1 + 3 * digits));
        const bool clear = value.right(digits) == QString(digits, QLatin1Char('0'));
        return color ? std::optional<QColor>(QColor(color->red(), color->green(), color->blue(), clear ? 0 : 255))
                     : std::nullopt;
    }
    QColor color;
    if (value.isEmpty() || value.size() > 40)
        return std::nullopt;
    color.setNamedColor(value);
    return color.isValid() ? std::optional<QColor>(color) : std::nullopt;
}

SvgStyle styleFrom(const std::vector<const SvgSetting*>& settings, const SvgStyle& parent) {
    static const std::array<Apply, size_t(SvgProperty::Count)> applies = [] {
        std::array<Apply, size_t(SvgProperty::Count)> all{};
        for (const PropertyRule& rule : kProperties)
            all[size_t(rule.property)] = rule.apply;
        return all;
    }();
    const SvgStyle initial;
    SvgStyle style = parent;
    style.displayed = style.opaque = true;
    style.overflow = style.clipShape = style.masked = style.filtered = false;
    style.clip.clear();
    style.transform = QString();
    style.stopColor = initial.stopColor;
    // the colour that others refer to comes first; what is important comes last
    for (const bool important : {false, true}) {
        for (const bool color : {true, false}) {
            for (const SvgSetting* setting : settings) {
                if (setting->important == important && (setting->property == SvgProperty::Color) == color)
                    applies[size_t(setting->property)](style, parent, setting->value);
            }
        }
    }
    return style;
}

} // namespace sim
