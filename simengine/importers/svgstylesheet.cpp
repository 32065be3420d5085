// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgstylesheet.h"

#include <QRegularExpression>
#include <algorithm>

namespace sim {

namespace {

/// Rules of a style sheet at most, one for each selector.
constexpr size_t kMostRules = 20000;

/// Letters of a selector and parts that it may have: elements, classes and ids.
constexpr int kLongestSelector = 4096;
constexpr int kMostParts = 50;

/// The sheet without its comments; one that is not closed reaches to the end.
QString withoutComments(const QString& text) {
    QString plain;
    plain.reserve(text.size());
    for (int at = 0; at < text.size();) {
        const int open = text.indexOf(QLatin1String("/*"), at);
        plain += text.midRef(at, open < 0 ? -1 : open - at);
        const int close = open < 0 ? -1 : text.indexOf(QLatin1String("*/"), open + 2);
        at = close < 0 ? text.size() : close + 2;
    }
    return plain.remove(QLatin1String("<!--")).remove(QLatin1String("-->"));
}

/// The place behind the block whose brace stands at `open`.
int behindBlock(const QString& sheet, int open) {
    int depth = 0;
    for (int at = open; at < sheet.size(); ++at) {
        depth += sheet[at] == QLatin1Char('{') ? 1 : sheet[at] == QLatin1Char('}') ? -1 : 0;
        if (depth == 0)
            return at + 1;
    }
    return sheet.size();
}

/// The place behind "@import x;" or "@media x {...{...}...}".
int behindAtRule(const QString& sheet, int at) {
    for (; at < sheet.size(); ++at) {
        if (sheet[at] == QLatin1Char(';'))
            return at + 1;
        if (sheet[at] == QLatin1Char('{'))
            return behindBlock(sheet, at);
    }
    return at;
}

} // namespace

SvgStyleSheet::SvgStyleSheet(const QString& text, ImportResult& result, ImportBudget& budget)
    : m_result(result)
    , m_budget(budget) {
    if (!text.isEmpty())
        read(withoutComments(text));
    if (m_unknown > 0)
        m_result.skip(QStringLiteral("style"), noteText(Note::StyleRule), m_unknown);
    std::stable_sort(m_rules.begin(), m_rules.end(), [](const Rule& a, const Rule& b) { return a.weight < b.weight; });
}

void SvgStyleSheet::read(const QString& sheet) {
    for (int at = 0; at < sheet.size();) {
        const int begin = at;
        if (sheet[at].isSpace()) {
            ++at;
            continue;
        }
        if (sheet[at] == QLatin1Char('@')) {
            ++m_unknown;
            at = behindAtRule(sheet, at);
        } else {
            const int open = sheet.indexOf(QLatin1Char('{'), at);
            if (open < 0)
                return;
            int close = sheet.indexOf(QLatin1Char('}'), open);
            close = close < 0 ? sheet.size() : close;
            addRule(sheet.midRef(at, open - at), sheet.midRef(open + 1, close - open - 1));
            at = close + 1;
        }
        if (!m_budget.step(at - begin))
            return;
    }
}

void SvgStyleSheet::addRule(const QStringRef& selectors, const QStringRef& body) {
    const SvgTell tell = [this](const QString& kind, Note note) { m_result.convert(kind, noteText(note)); };
    const auto settings = std::make_shared<const std::vector<SvgSetting>>(parseSvgStyle(body, tell));
    for (int at = 0; at <= selectors.size();) {
        int end = selectors.indexOf(QLatin1Char(','), at);
        end = end < 0 ? selectors.size() : end;
        if (!addSelector(selectors.mid(at, end - at), settings))
            ++m_unknown;
        if (!m_budget.step(end - at))
            return;
        at = end + 1;
    }
}

/// "g > rect.a#b .c": elements, classes and ids, with blanks and ">" between them.
bool SvgStyleSheet::addSelector(const QStringRef& selector, const SvgSettings& settings) {
    if (selector.size() > kLongestSelector || m_rules.size() >= kMostRules)
        return false;
    QString text = selector.toString().simplified();
    text.replace(QLatin1Char('>'), QLatin1String(" > "));
    Rule rule;
    bool child = false;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (word == QLatin1String(">")) {
            child = true;
            continue;
        }
        if (!rule.parts.empty())
            rule.parts.front().child = child;
        child = false;
        if (!readCompound(word, rule) || rule.parts.size() > kMostParts)
            return false;
    }
    if (rule.parts.empty())
        return false;
    rule.settings = settings;
    if (!settings->empty())
        m_rules.push_back(std::move(rule));
    return true;
}

/// "rect.a#b", which comes before what the rule has so far.
bool SvgStyleSheet::readCompound(const QString& word, Rule& rule) const {
    static const QRegularExpression form(QStringLiteral("^(\\*|[A-Za-z][\\w-]*)?((?:[.#][\\w\\x{80}-\\x{ffff}-]+)*)$"));
    const QRegularExpressionMatch match = form.match(word);
    if (!match.hasMatch())
        return false;
    Compound part;
    part.element = match.captured(1) == QLatin1String("*") ? QString() : match.captured(1);
    rule.weight += part.element.isEmpty() ? 0 : 1;
    static const QRegularExpression piece(QStringLiteral("([.#])([^.#]+)"));
    int pieces = 0;
    for (auto it = piece.globalMatch(match.captured(2)); it.hasNext();) {
        if (++pieces > kMostParts)
            return false;
        const QRegularExpressionMatch one = it.next();
        if (one.captured(1) == QLatin1String(".")) {
            part.classes << one.captured(2);
            rule.weight += 1000;
        } else {
            part.id = one.captured(2);
            rule.weight += 1000000;
        }
    }
    rule.parts.insert(rule.parts.begin(), part);
    return true;
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
    // the class names of each element on the way are gone through
    const auto fits = [&](int at, const Compound& part) {
        return m_budget.step(tree.nodes[size_t(at)].classes.size()) && matches(tree.nodes[size_t(at)], part);
    };
    int above = tree.nodes[size_t(node)].parent;
    for (size_t i = 1; i < rule.parts.size(); ++i) {
        const bool direct = rule.parts[i].child;
        while (above >= 0 && !direct && !fits(above, rule.parts[i]))
            above = tree.nodes[size_t(above)].parent;
        if (above < 0 || (direct && !fits(above, rule.parts[i])))
            return false;
        above = tree.nodes[size_t(above)].parent;
    }
    return true;
}

SvgStyle SvgStyleSheet::styleOf(const SvgTree& tree, int node, const SvgStyle& parent) const {
    const SvgNode& self = tree.nodes[size_t(node)];
    std::vector<const SvgSetting*> all;
    for (const SvgSetting& setting : self.settings)
        all.push_back(&setting);
    for (const Rule& rule : m_rules) {
        if (!m_budget.step(self.classes.size()))
            break;
        if (!matches(tree, node, rule))
            continue;
        m_budget.step(16 * qint64(rule.settings->size()));
        for (const SvgSetting& setting : *rule.settings)
            all.push_back(&setting);
    }
    if (self.style) {
        for (const SvgSetting& setting : *self.style)
            all.push_back(&setting);
    }
    return styleFrom(all, parent);
}

} // namespace sim
