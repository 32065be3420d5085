// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"
#include "simengine/importers/importnotes.h"
#include "simengine/importers/svglength.h"

#include <QHash>
#include <QString>
#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace sim {

/// Is called with what is not obeyed: its kind as the file has it, and why.
using SvgTell = std::function<void(const QString& kind, Note note)>;

/// Elements that are drawn, or needed by what is drawn.
enum class SvgElement : quint8 {
    Group,
    Svg,
    Symbol,
    Defs,
    Use,
    Switch,
    Path, ///< also polylines, polygons, lines
    Rect,
    Ellipse, ///< also circles
    Text,
    ClipPath,
    Gradient,
    Stop,
    Pattern,
    Left ///< drawn nowhere, but there for a switch to choose from
};

/// What a style or an attribute sets.
enum class SvgProperty : quint8 {
    Fill,
    Stroke,
    Color,
    FillOpacity,
    StrokeOpacity,
    StrokeWidth,
    StrokeDash,
    FillRule,
    ClipRule,
    Visibility,
    Display,
    Opacity,
    ClipPath,
    Mask,
    Filter,
    MarkerStart,
    MarkerMid,
    MarkerEnd,
    Overflow,
    StopColor,
    FontFamily,
    FontSize,
    FontWeight,
    FontStyle,
    TextAnchor,
    Transform,
    Count
};

struct SvgSetting {
    SvgProperty property;
    bool important = false;
    QString value;
};

/// Declarations that many elements may share; null for none.
using SvgSettings = std::shared_ptr<const std::vector<SvgSetting>>;

/// Places that lengths of an element have in SvgNode::lengths.
enum SvgLengthPlace { SvgX, SvgY, SvgWidth, SvgHeight, SvgRx, SvgRy, SvgLengthCount };

/// What few elements have.
struct SvgDetail {
    std::array<std::optional<SvgLength>, SvgLengthCount> lengths;
    std::optional<QRectF> viewBox;
    bool badViewBox = false;
    QString preserve;
    QString reference;     ///< id of the element that is shown here or whose stops count
    QByteArray text;       ///< a text as XML of its own
    bool ownUnits = false; ///< of a clip: parts of the clipped element's box
    bool refused = false;  ///< for another language or for programs that know more
    bool lineCap = false;
};

struct SvgNode {
    SvgElement element = SvgElement::Group;
    bool badTransform = false;
    bool active = false;   ///< being drawn
    const char* name = ""; ///< as the report calls it
    int parent = -1;
    int firstChild = -1;
    int lastChild = -1;
    int next = -1;
    QString id;
    QString classes;
    std::vector<SvgSetting> settings; ///< attributes of the element
    SvgSettings style;                ///< its own style
    std::unique_ptr<QTransform> transform;
    std::unique_ptr<PathShape> path;
    std::unique_ptr<SvgDetail> detail;
};

/// A drawing as a tree. Node 0 is the root.
struct SvgTree {
    std::deque<SvgNode> nodes; ///< grows without being moved
    QHash<QString, int> ids;
    QString styleSheet;
    QSizeF pageSize;   ///< mm
    QRectF viewBox;    ///< of the root
    QTransform toPage; ///< user units to mm on the page, y downwards
};

/// How user units come to lie in a viewport of the given size: the rules of viewBox and preserveAspectRatio.
/// `preserve` empty stands for the default "xMidYMid meet".
QTransform viewBoxTransform(const QRectF& viewBox, const QSizeF& viewport, const QString& preserve);

} // namespace sim
