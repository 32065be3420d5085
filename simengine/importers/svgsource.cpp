// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgsource.h"

#include "simengine/importers/svglength.h"
#include "simengine/importers/svgtext.h"
#include "simengine/importers/svgweight.h"

#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <cmath>

namespace sim {

namespace {

/// Page of a drawing that names no size at all: what browsers give an image.
constexpr QSizeF kDefaultViewport(300.0, 150.0);

/// What becomes of an element.
enum class Handling {
    Keep,   ///< drawn, or needed by what is drawn
    Group,  ///< goes on as a plain group
    Inner,  ///< a drawing within the drawing
    Text,   ///< lines of letters, each brought to its place
    Symbol, ///< drawn only where it is referred to
    Silent, ///< left out, it shows nothing
    Skip    ///< left out and told
};

struct ElementRule {
    const char* name;
    Handling handling;
    const char* reason;
};

constexpr ElementRule kElements[] = {
    {"g", Handling::Keep, ""},
    {"path", Handling::Keep, ""},
    {"rect", Handling::Keep, ""},
    {"circle", Handling::Keep, ""},
    {"ellipse", Handling::Keep, ""},
    {"line", Handling::Keep, ""},
    {"polyline", Handling::Keep, ""},
    {"polygon", Handling::Keep, ""},
    {"use", Handling::Keep, ""},
    {"defs", Handling::Keep, ""},
    {"style", Handling::Keep, ""},
    {"switch", Handling::Keep, ""},
    {"linearGradient", Handling::Keep, ""},
    {"radialGradient", Handling::Keep, ""},
    {"stop", Handling::Keep, ""},
    {"a", Handling::Group, ""},
    {"svg", Handling::Inner, ""},
    {"symbol", Handling::Symbol, ""},
    {"title", Handling::Silent, ""},
    {"desc", Handling::Silent, ""},
    {"metadata", Handling::Silent, ""},
    {"script", Handling::Silent, ""},
    {"view", Handling::Silent, ""},
    {"cursor", Handling::Silent, ""},
    {"text", Handling::Text, ""},
    {"image", Handling::Skip, "pictures are not imported"},
    {"clipPath", Handling::Skip, "clipping is not applied"},
    {"mask", Handling::Skip, "masks are not applied"},
    {"filter", Handling::Skip, "effects are not applied"},
    {"marker", Handling::Skip, "line ends are not drawn"},
    {"pattern", Handling::Skip, "patterns are not drawn"},
    {"animate", Handling::Skip, "animations are not played"},
    {"animateColor", Handling::Skip, "animations are not played"},
    {"animateMotion", Handling::Skip, "animations are not played"},
    {"animateTransform", Handling::Skip, "animations are not played"},
    {"set", Handling::Skip, "animations are not played"},
    {"foreignObject", Handling::Skip, "foreign content is not imported"},
};

/// Extent of the viewport that a percentage of an attribute refers to.
enum class Axis { Horizontal, Vertical, Diagonal };

struct LengthRule {
    const char* element;
    const char* attribute;
    Axis axis;
};

constexpr LengthRule kLengths[] = {
    {"rect", "x", Axis::Horizontal},     {"rect", "y", Axis::Vertical},     {"rect", "width", Axis::Horizontal},
    {"rect", "height", Axis::Vertical},  {"rect", "rx", Axis::Horizontal},  {"rect", "ry", Axis::Vertical},
    {"circle", "cx", Axis::Horizontal},  {"circle", "cy", Axis::Vertical},  {"circle", "r", Axis::Diagonal},
    {"ellipse", "cx", Axis::Horizontal}, {"ellipse", "cy", Axis::Vertical}, {"ellipse", "rx", Axis::Horizontal},
    {"ellipse", "ry", Axis::Vertical},   {"line", "x1", Axis::Horizontal},  {"line", "y1", Axis::Vertical},
    {"line", "x2", Axis::Horizontal},    {"line", "y2", Axis::Vertical},    {"use", "x", Axis::Horizontal},
    {"use", "y", Axis::Vertical},
};

const LengthRule* lengthRule(const QString& element, const QString& attribute) {
    for (const LengthRule& rule : kLengths) {
        if (element == QLatin1String(rule.element) && attribute == QLatin1String(rule.attribute))
            return &rule;
    }
    return nullptr;
}

double axisExtent(const QSizeF& viewport, Axis axis) {
    switch (axis) {
    case Axis::Horizontal:
        return viewport.width();
    case Axis::Vertical:
        return viewport.height();
    case Axis::Diagonal:
        return std::hypot(viewport.width(), viewport.height()) / std::sqrt(2.0);
    }
    return 0.0;
}

QString plain(double value) {
    return QString::number(value, 'g', 17);
}

std::optional<QRectF> parseViewBox(const QString& text) {
    static const QRegularExpression separator(QStringLiteral("[\\s,]+"));
    const QStringList parts = text.trimmed().split(separator, Qt::SkipEmptyParts);
    if (parts.size() != 4)
        return std::nullopt;
    double v[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        v[i] = parts[i].toDouble(&ok);
        if (!ok || !std::isfinite(v[i]))
            return std::nullopt;
    }
    return QRectF(v[0], v[1], v[2], v[3]);
}

QString matrixText(const QTransform& t) {
    return QStringLiteral("matrix(%1,%2,%3,%4,%5,%6)")
        .arg(plain(t.m11()), plain(t.m12()), plain(t.m21()), plain(t.m22()), plain(t.dx()), plain(t.dy()));
}

class SourceReader {
public:
    SourceReader(const QByteArray& bytes, SvgTexts texts)
        : m_texts(texts)
        , m_in(bytes)
        , m_out(&m_source.xml) {
        // prefixes are told apart by hand: drawings with undeclared ones are common
        m_in.setNamespaceProcessing(false);
    }

    SvgSource run() {
        while (!m_in.atEnd() && m_source.error.isEmpty()) {
            switch (m_in.readNext()) {
            case QXmlStreamReader::StartElement:
                startElement();
                break;
            case QXmlStreamReader::EndElement:
                endElement();
                break;
            case QXmlStreamReader::Characters:
                if (m_inStyle)
                    m_out.writeCharacters(m_in.text().toString());
                break;
            default:
                break;
            }
        }
        if (m_in.hasError())
            fail(QStringLiteral("line %1: %2").arg(m_in.lineNumber()).arg(m_in.errorString()));
        if (m_source.error.isEmpty())
            m_source.error = m_weight.fault();
        return m_source;
    }

private:
    struct Level {
        QSizeF viewport; ///< in user units, for percentages
        int written = 1; ///< elements to be closed with it
        bool weighed = true;
    };

    void fail(const QString& reason) {
        if (m_source.error.isEmpty())
            m_source.error = reason;
    }

    void skip(const QString& kind, const QString& reason) {
        for (ImportSkip& known : m_source.skipped) {
            if (known.kind == kind && known.reason == reason) {
                ++known.count;
                return;
            }
        }
        m_source.skipped.append({kind, reason, 1});
    }

    void startElement() {
        const QString prefix = m_in.prefix().toString();
        const QString name = localName();
        if (m_levels.empty()) {
            startRoot(prefix, name);
            return;
        }
        if (int(m_levels.size()) > kMaxSvgDepth) {
            fail(QStringLiteral("elements are nested too deeply"));
            return;
        }
        if (prefix != m_prefix) {
            // the private data of drawing programs
            m_in.skipCurrentElement();
            return;
        }
        startChild(name);
    }

    /// Without namespaces the reader gives the whole name where there is a prefix.
    QString localName() const {
        const QString name = m_in.qualifiedName().toString();
        return name.mid(name.indexOf(QLatin1Char(':')) + 1);
    }

    void startRoot(const QString&, const QString& name) {
        const QString qualified = m_in.qualifiedName().toString();
        m_prefix = qualified.left(std::max(0, qualified.indexOf(QLatin1Char(':'))));
        if (name != QLatin1String("svg")) {
            fail(QStringLiteral("this is not an SVG drawing"));
            return;
        }
        const QXmlStreamAttributes attributes = m_in.attributes();
        if (!readPage(attributes))
            return;
        m_out.writeStartElement(QStringLiteral("svg"));
        m_out.writeAttribute(QStringLiteral("xmlns"), QStringLiteral("http://www.w3.org/2000/svg"));
        m_out.writeAttribute(QStringLiteral("xmlns:xlink"), QStringLiteral("http://www.w3.org/1999/xlink"));
        const QRectF& box = m_source.viewBox;
        m_out.writeAttribute(
            QStringLiteral("viewBox"),
            QStringList{plain(box.x()), plain(box.y()), plain(box.width()), plain(box.height())}.join(' '));
        m_out.writeAttribute(QStringLiteral("width"), plain(box.width()));
        m_out.writeAttribute(QStringLiteral("height"), plain(box.height()));
        for (const QXmlStreamAttribute& attribute : attributes) {
            const QString own = attribute.qualifiedName().toString();
            static const QStringList replaced = {"width",  "height", "viewBox", "x", "y", "preserveAspectRatio",
                                                 "version"};
            if (!replaced.contains(own) && !own.contains(QLatin1Char(':')) && own != QLatin1String("xmlns"))
                m_out.writeAttribute(own, attribute.value().toString());
        }
        m_weight.begin(attributes.value(QStringLiteral("id")).toString(), QString());
        m_levels.push_back({box.size(), 1, true});
    }

    /// Size and viewBox of the root. A missing size follows from the viewBox, a missing viewBox from the size.
    bool readPage(const QXmlStreamAttributes& attributes) {
        const auto box = parseViewBox(attributes.value(QStringLiteral("viewBox")).toString());
        if (attributes.hasAttribute(QStringLiteral("viewBox")) && (!box || box->width() <= 0 || box->height() <= 0)) {
            fail(QStringLiteral("the viewBox is not usable"));
            return false;
        }
        const QSizeF natural = box ? box->size() : kDefaultViewport;
        const auto width = parseSvgLength(attributes.value(QStringLiteral("width")).toString());
        const auto height = parseSvgLength(attributes.value(QStringLiteral("height")).toString());
        QSizeF page(width ? width->pixels(natural.width()) : 0.0, height ? height->pixels(natural.height()) : 0.0);
        if (!width && !height)
            page = natural;
        else if (!width)
            page.setWidth(page.height() * natural.width() / natural.height());
        else if (!height)
            page.setHeight(page.width() * natural.height() / natural.width());
        if (!(page.width() > 0.0) || !(page.height() > 0.0)) {
            fail(QStringLiteral("the drawing has no size"));
            return false;
        }
        m_source.viewBox = box.value_or(QRectF(QPointF(0, 0), page));
        m_source.pageSize = page * kMmPerSvgPixel;
        m_source.toPage = viewBoxTransform(m_source.viewBox, m_source.pageSize,
                                           attributes.value(QStringLiteral("preserveAspectRatio")).toString());
        return true;
    }

    void startChild(const QString& name) {
        const QXmlStreamAttributes attributes = m_in.attributes();
        const ElementRule* rule = ruleOf(name);
        const Handling handling = rule ? rule->handling : Handling::Skip;
        switch (handling) {
        case Handling::Keep:
            if (name == QLatin1String("rect") && hasRoundCorners(attributes))
                startRoundedRect(attributes);
            else
                writeElement(name, attributes, 1);
            break;
        case Handling::Group:
            writeElement(QStringLiteral("g"), attributes, 1);
            break;
        case Handling::Inner:
            startInner(attributes);
            break;
        case Handling::Symbol:
            startSymbol(attributes);
            break;
        case Handling::Text:
            copyText();
            break;
        case Handling::Silent:
            m_in.skipCurrentElement();
            break;
        case Handling::Skip:
            skip(name, rule ? QString::fromLatin1(rule->reason) : QStringLiteral("the element is unknown"));
            m_in.skipCurrentElement();
            break;
        }
    }

    static const ElementRule* ruleOf(const QString& name) {
        for (const ElementRule& rule : kElements) {
            if (name == QLatin1String(rule.name))
                return &rule;
        }
        return nullptr;
    }

    /// Writes the element with its lengths in pixels; it counts as open on top of `written` - 1 others.
    void writeElement(const QString& name, const QXmlStreamAttributes& attributes, int written,
                      const QStringList& without = {}) {
        const QSizeF viewport = m_levels.back().viewport;
        QString reference;
        m_out.writeStartElement(name);
        for (const QXmlStreamAttribute& attribute : attributes) {
            const QString own = attribute.qualifiedName().toString();
            QString value = attribute.value().toString();
            if (without.contains(own))
                continue;
            if (own == QLatin1String("href") || own.endsWith(QLatin1String(":href"))) {
                if (name == QLatin1String("use"))
                    reference = value.startsWith(QLatin1Char('#')) ? value.mid(1) : QString();
                if (name != QLatin1String("g"))
                    m_out.writeAttribute(QStringLiteral("xlink:href"), value);
                continue;
            }
            if (own.contains(QLatin1Char(':')) || own == QLatin1String("xmlns"))
                continue;
            if (const LengthRule* rule = lengthRule(name, own)) {
                if (const auto length = parseSvgLength(value))
                    value = plain(length->pixels(axisExtent(viewport, rule->axis)));
            }
            if (name == QLatin1String("style") && own == QLatin1String("type"))
                continue;
            bool relative = false;
            value = withPixelFontSize(own, value, &relative);
            if (relative)
                skip(QStringLiteral("text"), QStringLiteral("a font size in parts of another one is not applied"));
            if (relative && value.isEmpty())
                continue;
            m_out.writeAttribute(own, value);
        }
        if (name == QLatin1String("style")) {
            m_out.writeAttribute(QStringLiteral("type"), QStringLiteral("text/css"));
            m_inStyle = true;
        }
        m_weight.begin(attributes.value(QStringLiteral("id")).toString(), reference);
        m_levels.push_back({viewport, written, true});
    }

    /// A drawing within the drawing becomes a group that carries its place and scale.
    void startInner(const QXmlStreamAttributes& attributes) {
        const QSizeF outer = m_levels.back().viewport;
        const auto length = [&](const char* name, double extent, double missing) {
            const auto value = parseSvgLength(attributes.value(QLatin1String(name)).toString());
            return value ? value->pixels(extent) : missing;
        };
        const QSizeF size(length("width", outer.width(), outer.width()),
                          length("height", outer.height(), outer.height()));
        const auto box = parseViewBox(attributes.value(QStringLiteral("viewBox")).toString());
        if (size.isEmpty() || (box && box->isEmpty())) {
            m_in.skipCurrentElement();
            return;
        }
        QTransform t = QTransform::fromTranslate(length("x", outer.width(), 0.0), length("y", outer.height(), 0.0));
        if (box)
            t = viewBoxTransform(*box, size, attributes.value(QStringLiteral("preserveAspectRatio")).toString()) * t;
        m_out.writeStartElement(QStringLiteral("g"));
        m_out.writeAttribute(QStringLiteral("transform"), matrixText(t));
        writeElement(QStringLiteral("g"), attributes, 2,
                     {"x", "y", "width", "height", "viewBox", "preserveAspectRatio", "version"});
        m_levels.back().viewport = box ? box->size() : size;
    }

    /// A length of an element in pixels, nothing when it is missing or no length.
    std::optional<double> lengthOf(const QXmlStreamAttributes& attributes, const char* name, Axis axis) const {
        const auto length = parseSvgLength(attributes.value(QLatin1String(name)).toString());
        if (!length)
            return std::nullopt;
        return length->pixels(axisExtent(m_levels.back().viewport, axis));
    }

    bool hasRoundCorners(const QXmlStreamAttributes& attributes) const {
        return lengthOf(attributes, "rx", Axis::Horizontal).value_or(0.0) > 0.0 ||
               lengthOf(attributes, "ry", Axis::Vertical).value_or(0.0) > 0.0;
    }

    /// A rectangle with round corners becomes a path: the renderer would round its radii to whole percents of its size.
    void startRoundedRect(const QXmlStreamAttributes& attributes) {
        const double width = lengthOf(attributes, "width", Axis::Horizontal).value_or(0.0);
        const double height = lengthOf(attributes, "height", Axis::Vertical).value_or(0.0);
        if (!(width > 0.0) || !(height > 0.0)) {
            m_in.skipCurrentElement();
            return;
        }
        // A radius that is missing or wrong is taken from the other.
        const double givenX = lengthOf(attributes, "rx", Axis::Horizontal).value_or(-1.0);
        const double givenY = lengthOf(attributes, "ry", Axis::Vertical).value_or(-1.0);
        const double rx = std::min(givenX >= 0.0 ? givenX : givenY, width / 2);
        const double ry = std::min(givenY >= 0.0 ? givenY : givenX, height / 2);
        const double x = lengthOf(attributes, "x", Axis::Horizontal).value_or(0.0);
        const double y = lengthOf(attributes, "y", Axis::Vertical).value_or(0.0);
        writeElement(QStringLiteral("path"), attributes, 1, {"x", "y", "width", "height", "rx", "ry", "d"});
        const auto corner = [&](double toX, double toY) {
            return QStringLiteral(" A %1 %2 0 0 1 %3 %4").arg(plain(rx), plain(ry), plain(toX), plain(toY));
        };
        m_out.writeAttribute(QStringLiteral("d"),
                             QStringLiteral("M %1 %2 H %3").arg(plain(x + rx), plain(y), plain(x + width - rx)) +
                                 corner(x + width, y + ry) + QStringLiteral(" V ") + plain(y + height - ry) +
                                 corner(x + width - rx, y + height) + QStringLiteral(" H ") + plain(x + rx) +
                                 corner(x, y + height - ry) + QStringLiteral(" V ") + plain(y + ry) +
                                 corner(x + rx, y) + QStringLiteral(" Z"));
    }

    void startSymbol(const QXmlStreamAttributes& attributes) {
        if (attributes.hasAttribute(QStringLiteral("viewBox"))) {
            skip(QStringLiteral("symbol"), QStringLiteral("symbols with a scale of their own are not drawn"));
            m_in.skipCurrentElement();
            return;
        }
        m_out.writeStartElement(QStringLiteral("defs"));
        writeElement(QStringLiteral("g"), attributes, 2);
    }

    void endElement() {
        if (m_levels.empty())
            return;
        const Level level = m_levels.back();
        m_levels.pop_back();
        for (int i = 0; i < level.written; ++i)
            m_out.writeEndElement();
        m_weight.end();
        m_inStyle = false;
    }

    void copyText() {
        ++m_source.texts;
        if (m_texts == SvgTexts::LeaveOut) {
            m_in.skipCurrentElement();
            return;
        }
        const auto tell = [this](const QString& kind, const QString& reason) { skip(kind, reason); };
        if (!SvgTextCopy(m_in, m_out, m_weight, m_levels.back().viewport, tell).run())
            fail(QStringLiteral("elements are nested too deeply"));
    }

    SvgTexts m_texts;
    SvgSource m_source;
    QXmlStreamReader m_in;
    QXmlStreamWriter m_out;
    SvgWeight m_weight;
    QString m_prefix;
    std::vector<Level> m_levels;
    bool m_inStyle = false;
};

} // namespace

QTransform viewBoxTransform(const QRectF& viewBox, const QSizeF& viewport, const QString& preserve) {
    const double sx = viewport.width() / viewBox.width();
    const double sy = viewport.height() / viewBox.height();
    if (preserve.contains(QLatin1String("none")))
        return QTransform(sx, 0, 0, sy, -viewBox.x() * sx, -viewBox.y() * sy);
    const double s = preserve.contains(QLatin1String("slice")) ? std::max(sx, sy) : std::min(sx, sy);
    const auto part = [&](const char* low, const char* high) {
        return preserve.contains(QLatin1String(low)) ? 0.0 : preserve.contains(QLatin1String(high)) ? 1.0 : 0.5;
    };
    const double restX = viewport.width() - viewBox.width() * s;
    const double restY = viewport.height() - viewBox.height() * s;
    return QTransform(s, 0, 0, s, restX * part("xMin", "xMax") - viewBox.x() * s,
                      restY * part("YMin", "YMax") - viewBox.y() * s);
}

SvgSource readSvgSource(const QByteArray& bytes, SvgTexts texts) {
    if (bytes.size() > kMaxSvgBytes) {
        SvgSource source;
        source.error = QStringLiteral("the file is too large");
        return source;
    }
    return SourceReader(bytes, texts).run();
}

} // namespace sim
