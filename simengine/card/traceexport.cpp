// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/traceexport.h"

#include "engine/layerparamex.h"
#include "simengine/card/markedrows.h"
#include "simengine/card/timemodel.h"
#include "simengine/card/traceshade.h"
#include "support/durablefile.h"

#include <QBuffer>
#include <QColor>
#include <QFileInfo>
#include <QPainter>
#include <QPainterPath>
#include <QRectF>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace sim {

namespace {

constexpr double kMargin = 1.0; ///< mm round the drawing
/// Longer lines are drawn in parts: strokers and viewers need more than their share of time for very long ones.
constexpr std::size_t kLinePoints = 1000;
const QColor kJumpColor(0xb0, 0xb0, 0xb0);
const QColor kPilotColor(0xd0, 0x20, 0x20);

/// A piece of the drawing in one look, in trace coordinates.
struct Line {
    enum class Look { Jump, Laser, Pilot };
    Look look;
    int pen;
    int percent; ///< of the laser's power, 0 without laser
    std::vector<Point> points;

    bool isDot() const {
        return std::all_of(points.begin(), points.end(), [this](const Point& point) { return point == points[0]; });
    }
    bool isVisible() const { return !points.empty() && !(look == Look::Jump && isDot()); }
};

Line::Look lookOf(const TraceRow& row) {
    if (!row.drawn)
        return Line::Look::Jump;
    return row.laser ? Line::Look::Laser : Line::Look::Pilot;
}

/// Puts ways of one look that follow one another together to lines; each begins where the one before ended.
template<typename Take>
class LineJoiner {
public:
    explicit LineJoiner(Take take)
        : m_take(take) {}

    void add(const TraceRow& row, const Point& from, const Point& to, int percent) {
        const Line::Look look = lookOf(row);
        const bool still = from == to;
        // A mark point is one dot, whatever its power does.
        const bool sameShade = percent == m_line.percent || (still && m_line.isDot());
        const bool goesOn = !m_line.points.empty() && look == m_line.look && row.pen == m_line.pen && sameShade &&
                            m_line.points.size() < kLinePoints;
        if (!goesOn) {
            finish();
            m_line = {look, row.pen, percent, {from}};
        }
        m_line.percent = std::max(m_line.percent, percent);
        m_line.points.push_back(to);
    }
    void finish() {
        if (m_line.isVisible())
            m_take(m_line);
        m_line.points.clear();
    }

private:
    Take m_take;
    Line m_line{Line::Look::Jump, 0, 0, {}};
};

/// A place within a line where the power is set anew, not a mark point.
bool isPowerStep(const TraceRow& last, const TraceRow& row) {
    return row.laser && last.laser && row.at == last.at && row.ms == last.ms;
}

template<typename Take>
void addWay(LineJoiner<Take>& joiner, const TraceRow& last, const TraceRow& row) {
    if (!row.laser) {
        joiner.add(row, last.at, row.at, 0);
    } else if (row.at == last.at) {
        if (!isPowerStep(last, row))
            joiner.add(row, last.at, row.at, static_cast<int>(std::lround(row.power)));
    } else {
        Point from = last.at;
        forEachShade(last.power, row.power, [&](double share, int percent) {
            const Point to = between(last.at, row.at, share);
            joiner.add(row, from, to, percent);
            from = to;
        });
    }
}

template<typename Take>
void forEachLine(const TraceSnapshot& rows, Take take) {
    LineJoiner<Take> joiner(take);
    TraceRow last;
    bool hasLast = false;
    forEachMarked(rows, 0, rows.size(), [&](const TraceRow& row, const Point&, bool) {
        if (hasLast)
            addWay(joiner, last, row);
        last = row;
        hasLast = true;
    });
    joiner.finish();
}

QRectF boundsOf(const TraceSnapshot& rows) {
    if (rows.size() == 0)
        return {-kMargin, -kMargin, 2 * kMargin, 2 * kMargin};
    constexpr double kFar = std::numeric_limits<double>::infinity();
    Point low{kFar, kFar};
    Point high{-kFar, -kFar};
    forEachMarked(rows, 0, rows.size(), [&](const TraceRow& row, const Point&, bool) {
        low = {std::min(low.x, row.at.x), std::min(low.y, row.at.y)};
        high = {std::max(high.x, row.at.x), std::max(high.y, row.at.y)};
    });
    return QRectF(QPointF(low.x, low.y), QPointF(high.x, high.y)).adjusted(-kMargin, -kMargin, kMargin, kMargin);
}

QColor colorOf(const Line& line) {
    switch (line.look) {
    case Line::Look::Jump:
        return kJumpColor;
    case Line::Look::Pilot:
        return kPilotColor;
    case Line::Look::Laser:
        break;
    }
    // A white pen would be lost on white.
    const QColor color = LayerParamEx::GetDefultColor(line.pen);
    return color.isValid() && color.lightness() < 230 ? color : QColor(Qt::black);
}

QString number(double value) {
    return QString::number(value, 'f', 4);
}

void writeLine(QXmlStreamWriter& xml, const Line& line, double width) {
    const QString color = colorOf(line).name();
    const QString opacity = QString::number(powerOpacity(line.percent), 'f', 3);
    if (line.isDot()) {
        xml.writeEmptyElement(QStringLiteral("circle"));
        xml.writeAttribute(QStringLiteral("cx"), number(line.points[0].x));
        xml.writeAttribute(QStringLiteral("cy"), number(-line.points[0].y));
        xml.writeAttribute(QStringLiteral("r"), number(width * 2));
        xml.writeAttribute(QStringLiteral("fill"), color);
        if (line.look == Line::Look::Laser) {
            xml.writeAttribute(QStringLiteral("fill-opacity"), opacity);
            xml.writeAttribute(QStringLiteral("data-power"), QString::number(line.percent));
        }
        return;
    }
    QString points;
    for (const Point& point : line.points)
        points += number(point.x) + ',' + number(-point.y) + ' ';
    points.chop(1);
    xml.writeEmptyElement(QStringLiteral("polyline"));
    xml.writeAttribute(QStringLiteral("points"), points);
    xml.writeAttribute(QStringLiteral("stroke"), color);
    xml.writeAttribute(QStringLiteral("stroke-width"), number(line.look == Line::Look::Jump ? width / 2 : width));
    if (line.look == Line::Look::Pilot)
        xml.writeAttribute(QStringLiteral("stroke-dasharray"), number(width * 4) + ' ' + number(width * 2));
    if (line.look != Line::Look::Jump)
        xml.writeAttribute(QStringLiteral("data-pen"), QString::number(line.pen));
    if (line.look == Line::Look::Laser) {
        xml.writeAttribute(QStringLiteral("stroke-opacity"), opacity);
        xml.writeAttribute(QStringLiteral("data-power"), QString::number(line.percent));
    }
}

/// Lines stay visible in a large field and do not run together in a small one.
double lineWidth(const QRectF& bounds) {
    return std::max(0.01, std::max(bounds.width(), bounds.height()) / 1000.0);
}

} // namespace

QByteArray traceSvg(const TraceSnapshot& rows) {
    const QRectF bounds = boundsOf(rows);
    const double width = lineWidth(bounds);
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("svg"));
    xml.writeDefaultNamespace(QStringLiteral("http://www.w3.org/2000/svg"));
    xml.writeAttribute(QStringLiteral("width"), number(bounds.width()) + QStringLiteral("mm"));
    xml.writeAttribute(QStringLiteral("height"), number(bounds.height()) + QStringLiteral("mm"));
    xml.writeAttribute(QStringLiteral("viewBox"), number(bounds.left()) + ' ' + number(-bounds.bottom()) + ' ' +
                                                      number(bounds.width()) + ' ' + number(bounds.height()));
    xml.writeStartElement(QStringLiteral("g"));
    xml.writeAttribute(QStringLiteral("fill"), QStringLiteral("none"));
    xml.writeAttribute(QStringLiteral("stroke-linejoin"), QStringLiteral("round"));
    forEachLine(rows, [&xml, width](const Line& line) { writeLine(xml, line, width); });
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();
    return text;
}

QImage tracePicture(const TraceSnapshot& rows, int longerSide) {
    const QRectF bounds = boundsOf(rows);
    const double scale = std::max(1, longerSide) / std::max(bounds.width(), bounds.height());
    const int width = std::max(1, static_cast<int>(std::lround(bounds.width() * scale)));
    const int height = std::max(1, static_cast<int>(std::lround(bounds.height() * scale)));
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, -scale);
    painter.translate(-bounds.left(), -bounds.bottom());
    const double lines = lineWidth(bounds);
    forEachLine(rows, [&painter, lines](const Line& line) {
        const bool jump = line.look == Line::Look::Jump;
        QColor color = colorOf(line);
        if (line.look == Line::Look::Laser)
            color.setAlphaF(powerOpacity(line.percent));
        if (line.isDot()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(color);
            painter.drawEllipse(QPointF(line.points[0].x, line.points[0].y), lines * 2, lines * 2);
            return;
        }
        // Round ends would lie over one another where a ramp goes from shade to shade.
        const Qt::PenCapStyle cap = color.alpha() < 255 ? Qt::FlatCap : Qt::RoundCap;
        const Qt::PenStyle style = line.look == Line::Look::Pilot ? Qt::DashLine : Qt::SolidLine;
        painter.setPen(QPen(color, jump ? lines / 2 : lines, style, cap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        QPainterPath path(QPointF(line.points[0].x, line.points[0].y));
        for (const Point& point : line.points)
            path.lineTo(point.x, point.y);
        painter.drawPath(path);
    });
    return image;
}

std::size_t drawnPoints(const TraceSnapshot& rows) {
    std::size_t count = rows.size();
    if (!rows.head())
        return count;
    for (std::size_t i = 1; i < rows.size() && count <= kMostDrawnPoints; ++i) {
        const Point from = rows.fly().commanded(rows[i - 1].at, rows[i - 1].ms);
        count += static_cast<std::size_t>(rows.head()->parts(from, rows.fly().commanded(rows[i].at, rows[i].ms)) - 1);
    }
    return count;
}

namespace {

SimOutcome writeBytes(const QString& path, const QByteArray& bytes, QString& error) {
    const tessera::DurableResult result = tessera::writeFileDurably(QFileInfo(path).absoluteFilePath(), bytes);
    if (!result.ok())
        error = result.message();
    return result.ok() ? SimOutcome::Done : SimOutcome::FileError;
}

SimOutcome writeDrawing(const TraceSnapshot& rows, const QString& path, bool svg, QString& error) {
    if (drawnPoints(rows) > kMostDrawnPoints) {
        error = path + QStringLiteral(": the drawing would have more than %1 points; a .csv has a row for each vertex")
                           .arg(kMostDrawnPoints);
        return SimOutcome::TooLarge;
    }
    if (svg)
        return writeBytes(path, traceSvg(rows), error);
    QBuffer buffer;
    if (buffer.open(QIODevice::WriteOnly) && tracePicture(rows).save(&buffer, "PNG"))
        return writeBytes(path, buffer.data(), error);
    error = path + QStringLiteral(": the picture could not be made");
    return SimOutcome::FileError;
}

} // namespace

SimOutcome writeTrace(const TraceSnapshot& rows, const QString& path, QString& error) {
    const QString form = QFileInfo(path).suffix().toLower();
    if (form == QLatin1String("csv")) {
        const std::string text = traceCsv(rows);
        return writeBytes(path, QByteArray::fromRawData(text.data(), static_cast<int>(text.size())), error);
    }
    if (form == QLatin1String("svg") || form == QLatin1String("png"))
        return writeDrawing(rows, path, form == QLatin1String("svg"), error);
    error = path + QStringLiteral(": a trace is written as .csv, .svg or .png");
    return SimOutcome::BadValue;
}

} // namespace sim
