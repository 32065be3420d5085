// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgtext.h"

#include "simengine/importers/svglength.h"
#include "simengine/importers/svgstyle.h"
#include "simengine/importers/svgxml.h"

#include <QRegularExpression>
#include <algorithm>
#include <optional>

namespace sim {

namespace {

const QString kText = QStringLiteral("text");

/// What places letters; the rest of a text's attributes is style.
bool isPlacing(const QString& attribute) {
    static const QStringList placing = {
        QStringLiteral("x"),          QStringLiteral("y"),      QStringLiteral("dx"),          QStringLiteral("dy"),
        QStringLiteral("textLength"), QStringLiteral("rotate"), QStringLiteral("lengthAdjust")};
    return placing.contains(attribute);
}

/// The size in pixels, nothing for one in parts of another or by a word.
std::optional<QString> pixels(const QString& size) {
    const QString trimmed = size.trimmed();
    static const QRegularExpression relative(QStringLiteral("(em|ex|%)$"), QRegularExpression::CaseInsensitiveOption);
    const auto length = parseSvgLength(trimmed);
    if (!length || length->percent || relative.match(trimmed).hasMatch())
        return std::nullopt;
    return QString::number(length->number, 'g', 17);
}

/// The first of a list of lengths in pixels.
std::optional<double> firstLength(const QXmlStreamAttributes& attributes, const char* name, double viewport) {
    const QStringRef list = attributes.value(QLatin1String(name)).trimmed();
    const auto parts = [](QChar c) { return c.isSpace() || c == QLatin1Char(','); };
    const auto length =
        parseSvgLength(QString(list.begin(), int(std::find_if(list.begin(), list.end(), parts) - list.begin())));
    if (!length)
        return std::nullopt;
    return length->pixels(viewport);
}

bool isList(const QXmlStreamAttributes& attributes, const char* name) {
    const QString list = attributes.value(QLatin1String(name)).toString().simplified();
    return list.contains(QLatin1Char(' ')) || list.contains(QLatin1Char(','));
}

bool isRelative(const QXmlStreamAttributes& attributes, const char* name) {
    const QString value = attributes.value(QLatin1String(name)).toString();
    return value.endsWith(QLatin1String("em")) || value.endsWith(QLatin1String("ex"));
}

} // namespace

QString withPixelFontSize(const QString& attribute, const QString& value, bool* relative) {
    if (attribute == QLatin1String("font-size")) {
        const auto size = pixels(value);
        *relative = !size;
        return size.value_or(QString());
    }
    if (attribute != QLatin1String("style"))
        return value;
    static const QRegularExpression declaration(QStringLiteral("(^|;)\\s*font-size\\s*:([^;]*)"));
    QString style = value;
    const QRegularExpressionMatch match = declaration.match(style);
    if (!match.hasMatch())
        return value;
    const auto size = pixels(match.captured(2));
    *relative = !size;
    const QString instead = size ? QStringLiteral("font-size:%1px").arg(*size) : QString();
    return style.replace(match.capturedStart(), match.capturedLength(), match.captured(1) + instead);
}

bool SvgTextCopy::run() {
    count(m_in.attributes());
    if (isTooLong()) {
        skipSvgElement(m_in, m_budget);
        return true;
    }
    m_place = QPointF();
    place(m_in.attributes());
    open(QStringLiteral("g"), Span::Text);
    while (!m_spans.empty() && !m_in.atEnd()) {
        switch (m_in.readNext()) {
        case QXmlStreamReader::StartElement:
            if (!start())
                return false;
            break;
        case QXmlStreamReader::EndElement:
            end();
            break;
        case QXmlStreamReader::Characters:
            characters();
            break;
        default:
            break;
        }
    }
    return true;
}

void SvgTextCopy::count(const QXmlStreamAttributes& attributes) {
    constexpr int kTag = 20;
    m_bytes += kTag;
    for (const QXmlStreamAttribute& attribute : attributes)
        m_bytes += attribute.qualifiedName().size() + attribute.value().size();
}

QString SvgTextCopy::localName() const {
    const QString name = m_in.qualifiedName().toString();
    return name.mid(name.indexOf(QLatin1Char(':')) + 1);
}

bool SvgTextCopy::start() {
    if (int(m_spans.size()) > ImportBudget::kMostDepth || !m_budget.elements())
        return false;
    count(m_in.attributes());
    if (isTooLong()) {
        skipSvgElement(m_in, m_budget);
        return true;
    }
    const QString name = localName();
    if (name == QLatin1String("tspan") || name == QLatin1String("a")) {
        startSpan();
        return true;
    }
    if (name != QLatin1String("title") && name != QLatin1String("desc"))
        m_tell(name, Note::NotInText);
    skipSvgElement(m_in, m_budget);
    return true;
}

void SvgTextCopy::startSpan() {
    const QXmlStreamAttributes attributes = m_in.attributes();
    const bool hasPlace = attributes.hasAttribute(QLatin1String("x")) || attributes.hasAttribute(QLatin1String("y"));
    if (hasPlace && m_spans.back() != Span::Inline) {
        closeLine();
        place(attributes);
        open(QStringLiteral("g"), Span::Placed);
        return;
    }
    if (hasPlace || attributes.hasAttribute(QLatin1String("dx")) || attributes.hasAttribute(QLatin1String("dy")))
        m_tell(kText, Note::LineShift);
    openLine();
    open(QStringLiteral("tspan"), Span::Inline);
}

/// Takes over the place that an element gives; a coordinate that it does not give stays.
void SvgTextCopy::place(const QXmlStreamAttributes& attributes) {
    for (const char* name : {"x", "y", "dx", "dy", "rotate"}) {
        if (isList(attributes, name))
            m_tell(kText, Note::LetterPlaces);
    }
    if (attributes.hasAttribute(QLatin1String("rotate")) || attributes.hasAttribute(QLatin1String("textLength")))
        m_tell(kText, Note::TurnedLetters);
    if (isRelative(attributes, "dx") || isRelative(attributes, "dy"))
        m_tell(kText, Note::EmShift);
    const double width = m_viewport.width();
    const double height = m_viewport.height();
    m_place.setX(firstLength(attributes, "x", width).value_or(m_place.x()) +
                 firstLength(attributes, "dx", width).value_or(0.0));
    m_place.setY(firstLength(attributes, "y", height).value_or(m_place.y()) +
                 firstLength(attributes, "dy", height).value_or(0.0));
    m_placeKnown = true;
}

void SvgTextCopy::open(const QString& element, Span span) {
    m_out.writeStartElement(element);
    bool relative = false;
    for (const QXmlStreamAttribute& attribute : m_in.attributes()) {
        const QString name = attribute.qualifiedName().toString();
        if (name.contains(QLatin1Char(':')) || name == QLatin1String("href") || isPlacing(name) ||
            (span == Span::Text && name == QLatin1String("transform")))
            continue;
        // those of the text itself are told by who reads it
        if (span != Span::Text && name == QLatin1String("style"))
            parseSvgStyle(attribute.value(), m_tell);
        else if (span != Span::Text && name.contains(QLatin1Char('-')))
            tellSvgProperty(QStringRef(&name), attribute.value(), m_tell);
        bool parts = false;
        const QString value = withPixelFontSize(name, attribute.value().toString(), &parts);
        relative = relative || parts;
        if (!value.isEmpty())
            m_out.writeAttribute(name, value);
    }
    if (relative)
        m_tell(kText, Note::RelativeFontSize);
    m_spans.push_back(span);
}

void SvgTextCopy::openLine() {
    if (m_lineOpen)
        return;
    m_out.writeStartElement(kText);
    m_out.writeAttribute(QStringLiteral("x"), QString::number(m_place.x(), 'g', 17));
    m_out.writeAttribute(QStringLiteral("y"), QString::number(m_place.y(), 'g', 17));
    m_lineOpen = true;
}

void SvgTextCopy::closeLine() {
    if (m_lineOpen)
        m_out.writeEndElement();
    m_lineOpen = false;
}

void SvgTextCopy::characters() {
    m_letters += m_in.text().size();
    if (isTooLong())
        return;
    const QString text = m_in.text().toString();
    const bool blank = text.trimmed().isEmpty();
    if (blank && !m_lineOpen)
        return;
    if (!m_placeKnown && !m_lineOpen) {
        m_tell(kText, Note::AfterPlacedLine);
        return;
    }
    openLine();
    m_out.writeCharacters(text);
}

void SvgTextCopy::end() {
    const Span span = m_spans.back();
    m_spans.pop_back();
    if (span != Span::Inline) {
        closeLine();
        m_placeKnown = false;
    }
    m_out.writeEndElement();
}

} // namespace sim
