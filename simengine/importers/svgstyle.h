// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"
#include "simengine/importers/importresult.h"
#include "simengine/importers/svgdom.h"

namespace sim {

/// The property of an attribute or a declaration; nothing for one that changes nothing here.
std::optional<SvgProperty> svgProperty(const QString& name);

/// The declarations of a style, "fill:none; stroke:red !important".
std::vector<SvgSetting> parseSvgStyle(const QString& style);

/// How an area or a line is painted.
struct SvgPaint {
    enum Kind { None, Color, Server };
    Kind kind = None;
    QColor color; ///< of Color, and the one to fall back on of Server; may be invalid
    QString server;
};

/// All that counts for one element, after inheritance.
struct SvgStyle {
    SvgPaint fill{SvgPaint::Color, QColor(Qt::black), QString()};
    SvgPaint stroke;
    QColor color = QColor(Qt::black);
    bool fillVisible = true; ///< opacities above 0
    bool strokeVisible = true;
    bool lineWidth = true; ///< above 0
    bool visible = true;
    bool evenOdd = false;
    bool clipEvenOdd = false;
    bool dashed = false;
    bool markers = false;
    std::array<QString, 5> font; ///< from SvgProperty::FontFamily on

    // not inherited
    bool displayed = true;
    bool overflow = false; ///< an inner drawing is not cut at its edge
    QString clip;
    QString mask;
    QString filter;
    bool opaque = true; ///< opacity above 0
    QColor stopColor = QColor(Qt::black);
};

/// The rules of a drawing's style sheet.
class SvgStyleSheet {
public:
    /// What is not understood is told in the result.
    SvgStyleSheet(const QString& text, ImportResult& result, ImportBudget& budget);

    /// The style of a node whose parent has the given one.
    SvgStyle styleOf(const SvgTree& tree, int node, const SvgStyle& parent) const;

private:
    struct Compound {
        QString element; ///< empty for any
        QString id;
        QStringList classes;
        bool child = false; ///< must be the parent, not just above
    };
    struct Rule {
        std::vector<Compound> parts; ///< from the element upwards
        int weight = 0;
        std::vector<SvgSetting> settings;
    };

    void parseRule(const QString& selectors, const QString& body, ImportResult& result);
    bool parseSelector(QString selector, Rule& rule) const;
    bool matches(const SvgTree& tree, int node, const Rule& rule) const;
    static bool matches(const SvgNode& node, const Compound& part);

    ImportBudget& m_budget;
    std::vector<Rule> m_rules; ///< the weightiest last
};

/// "#abc", "rgb(1,2,3)", names; nothing for anything else.
std::optional<QColor> parseSvgColor(const QString& text);

} // namespace sim
