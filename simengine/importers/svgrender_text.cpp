// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/contour.h"
#include "simengine/document/glyphunion.h"
#include "simengine/document/painterpath.h"
#include "simengine/importers/pathrecorder.h"
#include "simengine/importers/svgrender.h"
#include "simengine/importers/svgtext.h"

#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamWriter>
#include <algorithm>

namespace sim {

namespace {

/// Bytes of a style sheet that goes along with each text.
constexpr int kMostSheet = 20000;

constexpr const char* kFontNames[] = {"font-family", "font-size", "font-weight", "font-style", "text-anchor"};

/// Contours that lie over each other, as far as their boxes tell: mostly those of one letter. The time to unite
/// contours goes with the square of their number, so that a line of text as a whole would take seconds.
std::vector<std::vector<Contour>> clusters(const PathShape& path) {
    struct Boxed {
        Contour contour;
        Box box;
    };
    std::vector<Boxed> all;
    for (Contour& contour : contoursOf(path)) {
        const Box box = shapeBounds(Shape(pathOf({contour})), QTransform());
        all.push_back({std::move(contour), box});
    }
    std::stable_sort(all.begin(), all.end(), [](const Boxed& a, const Boxed& b) { return a.box.minX < b.box.minX; });
    std::vector<std::vector<Contour>> groups;
    double reached = 0.0;
    for (Boxed& one : all) {
        if (groups.empty() || one.box.minX > reached) {
            groups.emplace_back();
            reached = one.box.maxX;
        }
        groups.back().push_back(std::move(one.contour));
        reached = std::max(reached, one.box.maxX);
    }
    return groups;
}

/// Letters are filled by winding, a hatch odd-even: parts that lie over each other must not become holes.
PathShape lettersPath(const PathShape& path, ImportBudget& budget) {
    /// How far united letters may be off, in parts of the text's height.
    constexpr double kTolerance = 2.0e-5;
    /// Points of letters that lie over each other; more would take too long.
    constexpr int kMostPoints = 3000;
    const double height = shapeBounds(Shape(path), QTransform()).height();
    if (path.verbs.isEmpty() || !(height > 0.0))
        return path;
    PathShape letters;
    for (const std::vector<Contour>& group : clusters(path)) {
        PathShape part = pathOf(group);
        if (!budget.points(part.points.size()))
            break;
        if (part.points.size() <= kMostPoints)
            part = unitedGlyphs({{std::make_shared<const PathShape>(part), QPointF()}}, kTolerance * height).front();
        letters.verbs += part.verbs;
        letters.points += part.points;
    }
    return letters;
}

QString paintText(const QColor& color) {
    return color.isValid() ? color.name() : QStringLiteral("none");
}

} // namespace

/// The text as a drawing by itself, with what it inherits around it.
QByteArray SvgRender::textDrawing(int node, const Context& context) {
    const SvgStyle& style = context.style;
    QString around = QStringLiteral("fill:%1;stroke:%2")
                         .arg(paintText(style.fillVisible ? colorOf(style.fill) : QColor()),
                              paintText(style.strokeVisible && style.lineWidth ? colorOf(style.stroke) : QColor()));
    for (size_t i = 0; i < style.font.size(); ++i) {
        QString value = style.font[i];
        bool relative = false;
        value = withPixelFontSize(QString::fromLatin1(kFontNames[i]), value, &relative);
        if (relative && !style.font[i].isEmpty())
            skip("text", Note::RelativeFontSize);
        if (!value.isEmpty() && !value.contains(QLatin1Char(';')))
            around += QStringLiteral(";%1:%2").arg(QString::fromLatin1(kFontNames[i]), value);
    }
    QByteArray xml;
    QXmlStreamWriter out(&xml);
    const QSizeF size = m_tree.viewBox.size();
    out.writeStartElement(QStringLiteral("svg"));
    out.writeAttribute(QStringLiteral("xmlns"), QStringLiteral("http://www.w3.org/2000/svg"));
    out.writeAttribute(QStringLiteral("viewBox"),
                       QStringLiteral("0 0 %1 %2").arg(size.width(), 0, 'g', 17).arg(size.height(), 0, 'g', 17));
    if (!m_tree.styleSheet.isEmpty() && m_tree.styleSheet.size() < kMostSheet) {
        out.writeStartElement(QStringLiteral("style"));
        out.writeAttribute(QStringLiteral("type"), QStringLiteral("text/css"));
        out.writeCharacters(m_tree.styleSheet);
        out.writeEndElement();
    }
    out.writeStartElement(QStringLiteral("g"));
    out.writeAttribute(QStringLiteral("style"), around);
    out.writeCharacters(QString());
    return xml + m_tree.nodes[size_t(node)].detail->text + "</g></svg>";
}

/// A text is drawn by the toolkit's own renderer.
void SvgRender::drawText(int node, const Context& context) {
    if (!context.style.visible || !context.opaque) {
        ++m_invisible;
        return;
    }
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        skip("text", Note::NoGlyph);
        return;
    }
    QSvgRenderer renderer;
    if (!renderer.load(textDrawing(node, context))) {
        skip("text", Note::Proxy);
        return;
    }
    const QSizeF size = m_tree.viewBox.size();
    PathRecorder recorder(size);
    QPainter painter(&recorder);
    renderer.render(&painter, QRectF(QPointF(), size));
    painter.end();
    m_invisible += recorder.invisibleCount();
    for (const RecordedShape& shape : recorder.shapes()) {
        Outline outline;
        outline.letters = true;
        outline.path = lettersPath(pathFromPainter(shape.path, shape.transform), m_budget);
        if (!m_budget.points(outline.path.points.size()) || outline.path.verbs.isEmpty())
            continue;
        paint("text", context, outline, shape.stroked ? shape.strokeColor : QColor(),
              shape.filled ? shape.fillColor : QColor());
    }
}

} // namespace sim
