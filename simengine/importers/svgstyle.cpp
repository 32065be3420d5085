// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgstyle.h"

#include "simengine/importers/svgnumbers.h"

#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// Rules of a style sheet at most.
constexpr size_t kMostRules = 20000;

struct PropertyName {
    const char* name;
    SvgProperty property;
};

constexpr PropertyName kNames[] = {
    {"fill", SvgProperty::Fill},
    {"stroke", SvgProperty::Stroke},
    {"color", SvgProperty::Color},
    {"fill-opacity", SvgProperty::FillOpacity},
    {"stroke-opacity", SvgProperty::StrokeOpacity},
    {"stroke-width", SvgProperty::StrokeWidth},
    {"stroke-dasharray", SvgProperty::StrokeDash},
    {"fill-rule", SvgProperty::FillRule},
    {"clip-rule", SvgProperty::ClipRule},
    {"visibility", SvgProperty::Visibility},
    {"display", SvgProperty::Display},
    {"opacity", SvgProperty::Opacity},
    {"clip-path", SvgProperty::ClipPath},
    {"mask", SvgProperty::Mask},
    {"filter", SvgProperty::Filter},
    {"marker-start", SvgProperty::MarkerStart},
    {"marker-mid", SvgProperty::MarkerMid},
    {"marker-end", SvgProperty::MarkerEnd},
    {"marker", SvgProperty::MarkerEnd},
    {"overflow", SvgProperty::Overflow},
    {"stop-color", SvgProperty::StopColor},
    {"font-family", SvgProperty::FontFamily},
    {"font-size", SvgProperty::FontSize},
    {"font-weight", SvgProperty::FontWeight},
    {"font-style", SvgProperty::FontStyle},
    {"text-anchor", SvgProperty::TextAnchor},
};

/// The id in "url(#id)".
QString idOf(const QString& value) {
    static const QRegularExpression form(QStringLiteral("^url\\(\\s*['\"]?#([^'\")]*)['\"]?\\s*\\)"));
    return form.match(value).captured(1);
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

void apply(SvgStyle& style, const SvgStyle& parent, const SvgSetting& setting) {
    const QString& value = setting.value;
    const auto is = [&](const char* word) { return value == QLatin1String(word); };
    switch (setting.property) {
    case SvgProperty::Color:
        style.color = is("inherit") ? parent.color : parseSvgColor(value).value_or(style.color);
        break;
    case SvgProperty::Fill:
        style.fill = paintOf(value, style, parent.fill);
        break;
    case SvgProperty::Stroke:
        style.stroke = paintOf(value, style, parent.stroke);
        break;
    case SvgProperty::FillOpacity:
        style.fillVisible = opacityOf(value) > 0.0;
        break;
    case SvgProperty::StrokeOpacity:
        style.strokeVisible = opacityOf(value) > 0.0;
        break;
    case SvgProperty::StrokeWidth: {
        const auto width = parseSvgLength(value);
        style.lineWidth = !width || width->number > 0.0;
        break;
    }
    case SvgProperty::StrokeDash:
        style.dashed = !is("none") && !is("inherit") && value.contains(QRegularExpression(QStringLiteral("[1-9]")));
        break;
    case SvgProperty::FillRule:
        style.evenOdd = is("evenodd");
        break;
    case SvgProperty::ClipRule:
        style.clipEvenOdd = is("evenodd");
        break;
    case SvgProperty::Visibility:
        style.visible = is("inherit") ? parent.visible : !is("hidden") && !is("collapse");
        break;
    case SvgProperty::Display:
        style.displayed = !is("none");
        break;
    case SvgProperty::Opacity:
        style.opaque = opacityOf(value) > 0.0;
        break;
    case SvgProperty::ClipPath:
        style.clip = idOf(value);
        break;
    case SvgProperty::Mask:
        style.mask = idOf(value);
        break;
    case SvgProperty::Filter:
        style.filter = idOf(value);
        break;
    case SvgProperty::MarkerStart:
    case SvgProperty::MarkerMid:
    case SvgProperty::MarkerEnd:
        style.markers = value.startsWith(QLatin1String("url(")) || (style.markers && !is("none"));
        break;
    case SvgProperty::Overflow:
        style.overflow = is("visible") || is("auto");
        break;
    case SvgProperty::StopColor:
        style.stopColor = is("currentColor") ? style.color : parseSvgColor(value).value_or(style.stopColor);
        break;
    default:
        if (setting.property >= SvgProperty::FontFamily && setting.property < SvgProperty::Count && !is("inherit"))
            style.font[size_t(setting.property) - size_t(SvgProperty::FontFamily)] = value;
        break;
    }
}

} // namespace

std::optional<SvgProperty> svgProperty(const QString& name) {
    static const QHash<QString, SvgProperty> known = [] {
        QHash<QString, SvgProperty> all;
        for (const PropertyName& entry : kNames)
            all.insert(QString::fromLatin1(entry.name), entry.property);
        return all;
    }();
    const auto found = known.constFind(name);
    return found == known.constEnd() ? std::nullopt : std::optional<SvgProperty>(*found);
}

std::vector<SvgSetting> parseSvgStyle(const QString& style) {
    std::vector<SvgSetting> settings;
    for (const QStringRef& part : style.splitRef(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const int colon = part.indexOf(QLatin1Char(':'));
        if (colon < 0)
            continue;
        const auto property = svgProperty(part.left(colon).trimmed().toString());
        if (!property)
            continue;
        QString value = part.mid(colon + 1).trimmed().toString();
        const int mark = value.indexOf(QLatin1Char('!'));
        const bool important = mark >= 0 && value.indexOf(QLatin1String("important"), mark) > 0;
        if (mark >= 0)
            value = value.left(mark).trimmed();
        settings.push_back({*property, important, value});
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

SvgStyleSheet::SvgStyleSheet(const QString& text, ImportResult& result, ImportBudget& budget)
    : m_budget(budget) {
    QString plain = text;
    plain.remove(QRegularExpression(QStringLiteral("/\\*.*?\\*/"), QRegularExpression::DotMatchesEverythingOption));
    plain.remove(QLatin1String("<!--")).remove(QLatin1String("-->"));
    for (int at = 0; at < plain.size() && m_budget.step();) {
        const int open = plain.indexOf(QLatin1Char('{'), at);
        if (open < 0)
            break;
        const QString selectors = plain.mid(at, open - at).trimmed();
        if (selectors.contains(QLatin1Char('@'))) {
            // "@media {...{...}...}", "@import x;" before a rule
            result.skip(QStringLiteral("style"), noteText(Note::StyleRule));
            const int semicolon = plain.indexOf(QLatin1Char(';'), at);
            if (semicolon >= 0 && semicolon < open) {
                at = semicolon + 1;
                continue;
            }
            int depth = 0;
            for (at = open; at < plain.size(); ++at) {
                depth += plain[at] == QLatin1Char('{') ? 1 : plain[at] == QLatin1Char('}') ? -1 : 0;
                if (depth == 0)
                    break;
            }
            ++at;
            continue;
        }
        int close = plain.indexOf(QLatin1Char('}'), open);
        if (close < 0)
            close = plain.size();
        parseRule(selectors, plain.mid(open + 1, close - open - 1), result);
        at = close + 1;
    }
    std::stable_sort(m_rules.begin(), m_rules.end(), [](const Rule& a, const Rule& b) { return a.weight < b.weight; });
}

void SvgStyleSheet::parseRule(const QString& selectors, const QString& body, ImportResult& result) {
    const std::vector<SvgSetting> settings = parseSvgStyle(body);
    for (const QString& selector : selectors.split(QLatin1Char(','))) {
        Rule rule;
        if (!parseSelector(selector.simplified(), rule) || m_rules.size() >= kMostRules) {
            result.skip(QStringLiteral("style"), noteText(Note::StyleRule));
            continue;
        }
        rule.settings = settings;
        if (!settings.empty())
            m_rules.push_back(std::move(rule));
    }
}

/// "g > rect.a#b .c": elements, classes and ids, with blanks and ">" between them.
bool SvgStyleSheet::parseSelector(QString selector, Rule& rule) const {
    selector.replace(QLatin1Char('>'), QLatin1String(" > "));
    bool child = false;
    for (const QString& word : selector.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (word == QLatin1String(">")) {
            child = true;
            continue;
        }
        static const QRegularExpression form(
            QStringLiteral("^(\\*|[A-Za-z][\\w-]*)?((?:[.#][\\w\\x{80}-\\x{ffff}-]+)*)$"));
        const QRegularExpressionMatch match = form.match(word);
        if (!match.hasMatch())
            return false;
        Compound part;
        part.element = match.captured(1) == QLatin1String("*") ? QString() : match.captured(1);
        rule.weight += part.element.isEmpty() ? 0 : 1;
        static const QRegularExpression piece(QStringLiteral("([.#])([^.#]+)"));
        for (auto it = piece.globalMatch(match.captured(2)); it.hasNext();) {
            const QRegularExpressionMatch one = it.next();
            if (one.captured(1) == QLatin1String(".")) {
                part.classes << one.captured(2);
                rule.weight += 1000;
            } else {
                part.id = one.captured(2);
                rule.weight += 1000000;
            }
        }
        if (!rule.parts.empty())
            rule.parts.front().child = child;
        child = false;
        rule.parts.insert(rule.parts.begin(), part);
        if (rule.parts.size() > 50)
            return false;
    }
    return !rule.parts.empty();
}

bool SvgStyleSheet::matches(const SvgNode& node, const Compound& part) {
    if (!part.element.isEmpty() && part.element != QLatin1String(node.name))
        return false;
    if (!part.id.isEmpty() && part.id != node.id)
        return false;
    for (const QString& name : part.classes) {
        int at = node.classes.indexOf(name);
        const auto whole = [&] {
            const int end = at + name.size();
            return (at == 0 || node.classes[at - 1].isSpace()) &&
                   (end == node.classes.size() || node.classes[end].isSpace());
        };
        while (at >= 0 && !whole())
            at = node.classes.indexOf(name, at + 1);
        if (at < 0)
            return false;
    }
    return true;
}

bool SvgStyleSheet::matches(const SvgTree& tree, int node, const Rule& rule) const {
    if (!matches(tree.nodes[size_t(node)], rule.parts.front()))
        return false;
    int above = tree.nodes[size_t(node)].parent;
    for (size_t i = 1; i < rule.parts.size(); ++i) {
        const bool direct = rule.parts[i].child;
        while (above >= 0 && !matches(tree.nodes[size_t(above)], rule.parts[i]) && !direct)
            above = tree.nodes[size_t(above)].parent;
        if (above < 0 || !matches(tree.nodes[size_t(above)], rule.parts[i]))
            return false;
        above = tree.nodes[size_t(above)].parent;
    }
    return true;
}

SvgStyle SvgStyleSheet::styleOf(const SvgTree& tree, int node, const SvgStyle& parent) const {
    const SvgNode& self = tree.nodes[size_t(node)];
    const SvgStyle initial;
    SvgStyle style = parent;
    style.displayed = style.opaque = true;
    style.overflow = false;
    style.clip.clear();
    style.mask.clear();
    style.filter.clear();
    style.stopColor = initial.stopColor;
    std::vector<const SvgSetting*> all;
    for (const SvgSetting& setting : self.settings)
        all.push_back(&setting);
    for (const Rule& rule : m_rules) {
        if (!m_budget.step())
            break;
        if (matches(tree, node, rule)) {
            for (const SvgSetting& setting : rule.settings)
                all.push_back(&setting);
        }
    }
    const std::vector<SvgSetting> own = self.style.isEmpty() ? std::vector<SvgSetting>() : parseSvgStyle(self.style);
    for (const SvgSetting& setting : own)
        all.push_back(&setting);
    // the colour that others refer to comes first; what is important comes last
    for (const bool important : {false, true}) {
        for (const bool color : {true, false}) {
            for (const SvgSetting* setting : all) {
                if (setting->important == important && (setting->property == SvgProperty::Color) == color)
                    apply(style, parent, *setting);
            }
        }
    }
    return style;
}

} // namespace sim
