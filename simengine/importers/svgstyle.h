// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/svgdom.h"

#include <QColor>

namespace sim {

/// The property of an attribute or a declaration; nothing for one that is not obeyed.
std::optional<SvgProperty> svgProperty(const QStringRef& name);

/// Tells a property that changes what is drawn, but is not obeyed, unless the value leaves all as it is.
void tellSvgProperty(const QStringRef& name, const QStringRef& value, const SvgTell& tell);

/// Tells a colour that is not known: what is around the element counts then.
void tellSvgColor(SvgProperty property, const QString& value, const SvgTell& tell);

/// The declarations of a style, "fill:none; stroke:red !important". What is not obeyed of it is told.
std::vector<SvgSetting> parseSvgStyle(const QStringRef& style, const SvgTell& tell);

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
    bool clipEvenOdd = false;
    bool dashed = false;
    bool markers = false;
    std::array<QString, 5> font; ///< from SvgProperty::FontFamily on

    // not inherited
    bool displayed = true;
    bool overflow = false;  ///< an inner drawing is not cut at its edge
    QString clip;           ///< id of the clip
    bool clipShape = false; ///< the clip is none of the drawing's
    bool masked = false;
    bool filtered = false;
    bool opaque = true; ///< opacity above 0
    QString transform;  ///< null for that of the attribute
    QColor stopColor = QColor(Qt::black);
};

/// The style that settings make within another one, the weightiest last.
SvgStyle styleFrom(const std::vector<const SvgSetting*>& settings, const SvgStyle& parent);

/// "#abc", "rgb(1,2,3)", names; nothing for anything else.
std::optional<QColor> parseSvgColor(const QString& text);

} // namespace sim
