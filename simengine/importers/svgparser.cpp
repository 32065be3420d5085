// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgparser.h"

#include "engine/languagemanager.h"
#include "simengine/importers/svgnumbers.h"
#include "simengine/importers/svgpath.h"
#include "simengine/importers/svgstyle.h"
#include "simengine/importers/svgtext.h"
#include "simengine/importers/svgxml.h"

#include <cmath>

namespace sim {

namespace {

/// Page of a drawing that names no size at all: what browsers give an image.
constexpr QSizeF kDefaultViewport(300.0, 150.0);

/// Strings that are kept once; a hostile file must not fill them without end.
constexpr int kMostStrings = 20000;

/// Letters of a value that is looked at again wherever its element is drawn, and of a style sheet.
constexpr int kLongestValue = 4096;
constexpr int kLongestSheet = 16 << 20;

struct ElementRule {
    const char* name;
    SvgElement element;
};

constexpr ElementRule kElements[] = {
    {"g", SvgElement::Group},
    {"path", SvgElement::Path},
    {"rect", SvgElement::Rect},
    {"circle", SvgElement::Ellipse},
    {"ellipse", SvgElement::Ellipse},
    {"line", SvgElement::Path},
    {"polyline", SvgElement::Path},
    {"polygon", SvgElement::Path},
    {"use", SvgElement::Use},
    {"defs", SvgElement::Defs},
    {"switch", SvgElement::Switch},
    {"a", SvgElement::Group},
    {"svg", SvgElement::Svg},
    {"symbol", SvgElement::Symbol},
    {"text", SvgElement::Text},
    {"clipPath", SvgElement::ClipPath},
    {"linearGradient", SvgElement::Gradient},
    {"radialGradient", SvgElement::Gradient},
    {"stop", SvgElement::Stop},
    {"pattern", SvgElement::Pattern},
};

struct SkipRule {
    const char* name;
    Note note;
    bool told;
};

/// What is passed over with all that is in it. Masks, effects and line ends are told where they are used.
constexpr SkipRule kSkipped[] = {
    {"title", Note::Nothing, false},
    {"desc", Note::Nothing, false},
    {"metadata", Note::Nothing, false},
    {"script", Note::Nothing, false},
    {"view", Note::Nothing, false},
    {"cursor", Note::Nothing, false},
    {"mask", Note::Masks, false},
    {"filter", Note::Effects, false},
    {"marker", Note::LineEnds, false},
    {"image", Note::Pictures, true},
    {"animate", Note::Animations, true},
    {"animateColor", Note::Animations, true},
    {"animateMotion", Note::Animations, true},
    {"animateTransform", Note::Animations, true},
    {"set", Note::Animations, true},
    {"foreignObject", Note::ForeignContent, true},
};

struct LengthName {
    const char* element;
    const char* attribute;
    SvgLengthPlace place;
};

constexpr LengthName kLengths[] = {
    {"", "x", SvgX},        {"", "y", SvgY},          {"", "width", SvgWidth},   {"", "height", SvgHeight},
    {"", "rx", SvgRx},      {"", "ry", SvgRy},        {"circle", "cx", SvgX},    {"circle", "cy", SvgY},
    {"circle", "r", SvgRx}, {"ellipse", "cx", SvgX},  {"ellipse", "cy", SvgY},   {"line", "x1", SvgX},
    {"line", "y1", SvgY},   {"line", "x2", SvgWidth}, {"line", "y2", SvgHeight},
};

bool usable(const QRectF& box) {
    return std::abs(box.x()) < 1e12 && std::abs(box.y()) < 1e12 && box.width() < 1e12 && box.height() < 1e12;
}

std::optional<QRectF> parseViewBox(const QStringRef& text) {
    SvgNumbers in(text);
    double v[4];
    for (double& value : v) {
        const auto number = in.number();
        if (!number)
            return std::nullopt;
        value = *number;
    }
    const QRectF box(v[0], v[1], v[2], v[3]);
    return in.atEnd() && usable(box) ? std::optional<QRectF>(box) : std::nullopt;
}

/// "en-GB, de": one of the languages is the operator's.
bool isOperatorsLanguage(const QStringRef& languages) {
    const QString own = LanguageManager::GetCurrentLan().left(2);
    for (int at = 0; at < languages.size();) {
        int end = languages.indexOf(QLatin1Char(','), at);
        end = end < 0 ? languages.size() : end;
        const QStringRef one = languages.mid(at, end - at).trimmed();
        if (one.startsWith(own, Qt::CaseInsensitive) && (one.size() == 2 || one[2] == QLatin1Char('-')))
            return true;
        at = end + 1;
    }
    return false;
}

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

SvgParser::SvgParser(const QByteArray& bytes, SvgTree& tree, ImportResult& result, ImportBudget& budget)
    : m_tree(tree)
    , m_result(result)
    , m_budget(budget)
    , m_in(bytes) {
    // prefixes are told apart by hand: drawings with undeclared ones are common
    m_in.setNamespaceProcessing(false);
}

bool SvgParser::run(QString& error) {
    while (!m_in.atEnd() && m_error.isEmpty() && m_budget.ok()) {
        switch (m_in.readNext()) {
        case QXmlStreamReader::StartElement:
            startElement();
            break;
        case QXmlStreamReader::EndElement:
            if (m_inStyle)
                m_inStyle = false;
            else if (!m_open.empty())
                m_open.pop_back();
            break;
        case QXmlStreamReader::Characters:
            if (m_inStyle)
                readSheet();
            break;
        case QXmlStreamReader::ProcessingInstruction:
            if (m_in.processingInstructionTarget() == QLatin1String("xml-stylesheet"))
                skip(QStringLiteral("xml-stylesheet"), Note::StyleRule);
            break;
        default:
            break;
        }
    }
    error = m_error;
    if (error.isEmpty() && m_in.hasError()) {
        const Note note = m_in.error() == QXmlStreamReader::PrematureEndOfDocumentError && !m_tree.nodes.empty()
                              ? Note::CutOff
                          : m_tree.nodes.empty() ? Note::NotSvg
                                                 : Note::XmlFault;
        error = QStringLiteral("%1 (%2: %3)").arg(noteText(note)).arg(m_in.lineNumber()).arg(m_in.errorString());
    }
    return error.isEmpty() && m_budget.ok();
}

void SvgParser::skip(const QString& kind, Note note) {
    m_result.skip(kind, noteText(note));
}

/// Without namespaces the reader gives the whole name where there is a prefix.
QString SvgParser::localName() const {
    const QStringRef name = m_in.qualifiedName();
    return name.mid(name.indexOf(QLatin1Char(':')) + 1).toString();
}

QString SvgParser::interned(const QStringRef& text) {
    const QString plain = text.toString();
    const auto known = m_strings.constFind(plain);
    if (known != m_strings.constEnd())
        return *known;
    m_bytes += 60 + 2 * plain.size();
    if (m_strings.size() < kMostStrings)
        m_strings.insert(plain, plain);
    return plain;
}

/// Styles are read once, however often the element is drawn.
SvgSettings SvgParser::styleOf(const QStringRef& text) {
    const QString plain = text.size() <= kLongestValue ? text.toString() : QString();
    const auto known = m_styles.constFind(plain);
    if (!plain.isEmpty() && known != m_styles.constEnd())
        return *known;
    const SvgTell tell = [this](const QString& kind, Note note) { m_result.convert(kind, noteText(note)); };
    const auto settings = std::make_shared<const std::vector<SvgSetting>>(parseSvgStyle(text, tell));
    m_bytes += 100 + 2 * plain.size();
    for (const SvgSetting& setting : *settings)
        m_bytes += qint64(sizeof(SvgSetting)) + 30 + 2 * setting.value.size();
    if (!plain.isEmpty() && m_styles.size() < kMostStrings)
        m_styles.insert(plain, settings);
    return settings;
}

void SvgParser::readSheet() {
    if (m_tree.styleSheet.size() + m_in.text().size() <= kLongestSheet)
        m_tree.styleSheet += m_in.text();
    else
        skip(QStringLiteral("style"), Note::StyleRule);
}

SvgDetail& SvgParser::detail(SvgNode& node) {
    if (!node.detail) {
        node.detail = std::make_unique<SvgDetail>();
        m_bytes += sizeof(SvgDetail);
    }
    return *node.detail;
}

int SvgParser::append(SvgElement element, const char* name) {
    const int index = int(m_tree.nodes.size());
    m_tree.nodes.emplace_back();
    m_bytes += sizeof(SvgNode) + 16;
    SvgNode& node = m_tree.nodes.back();
    node.element = element;
    node.name = name;
    if (!m_open.empty()) {
        node.parent = m_open.back();
        SvgNode& parent = m_tree.nodes[size_t(node.parent)];
        if (parent.lastChild >= 0)
            m_tree.nodes[size_t(parent.lastChild)].next = index;
        else
            parent.firstChild = index;
        parent.lastChild = index;
    }
    return index;
}

void SvgParser::startElement() {
    if (!m_budget.elements())
        return;
    if (m_open.empty() && m_tree.nodes.empty()) {
        const QString qualified = m_in.qualifiedName().toString();
        m_prefix = qualified.left(std::max(0, qualified.indexOf(QLatin1Char(':'))));
        if (localName() != QLatin1String("svg")) {
            m_error = noteText(Note::NotSvg);
            return;
        }
        m_open.push_back(append(SvgElement::Svg, "svg"));
        readAttributes(m_tree.nodes[0]);
        readRoot();
        return;
    }
    if (int(m_open.size()) > ImportBudget::kMostDepth) {
        m_budget.fail(Note::TooDeep);
        return;
    }
    const QStringRef qualified = m_in.qualifiedName();
    const int colon = qualified.indexOf(QLatin1Char(':'));
    if (qualified.left(std::max(0, colon)) != m_prefix || m_inStyle) {
        // the private data of drawing programs
        skipSvgElement(m_in, m_budget);
        return;
    }
    startChild(localName());
    if (m_bytes > kMostBytes)
        m_budget.fail(Note::TooManyElements);
}

/// Size and viewBox of the root. A missing size follows from the viewBox, a missing viewBox from the size.
bool SvgParser::readRoot() {
    const QXmlStreamAttributes attributes = m_in.attributes();
    const auto box = parseViewBox(attributes.value(QLatin1String("viewBox")));
    if (attributes.hasAttribute(QLatin1String("viewBox")) && (!box || box->width() <= 0 || box->height() <= 0)) {
        m_error = noteText(Note::BadViewBox);
        return false;
    }
    const QSizeF natural = box ? box->size() : kDefaultViewport;
    const auto width = parseSvgLength(attributes.value(QLatin1String("width")).toString());
    const auto height = parseSvgLength(attributes.value(QLatin1String("height")).toString());
    QSizeF page(width ? width->pixels(natural.width()) : 0.0, height ? height->pixels(natural.height()) : 0.0);
    if (!width && !height)
        page = natural;
    else if (!width)
        page.setWidth(page.height() * natural.width() / natural.height());
    else if (!height)
        page.setHeight(page.width() * natural.height() / natural.width());
    if (!(page.width() > 0.0) || !(page.height() > 0.0) || !usable(QRectF(QPointF(), page))) {
        m_error = noteText(Note::NoSize);
        return false;
    }
    m_tree.viewBox = box.value_or(QRectF(QPointF(0, 0), page));
    m_tree.pageSize = page * kMmPerSvgPixel;
    m_tree.toPage = viewBoxTransform(m_tree.viewBox, m_tree.pageSize,
                                     attributes.value(QLatin1String("preserveAspectRatio")).toString());
    return true;
}

void SvgParser::startChild(const QString& name) {
    if (name == QLatin1String("style")) {
        const QStringRef media = m_in.attributes().value(QLatin1String("media"));
        m_inStyle = true;
        if (!media.isEmpty() && media != QLatin1String("all") && media != QLatin1String("screen"))
            skip(name, Note::StyleRule);
        return;
    }
    for (const ElementRule& rule : kElements) {
        if (name != QLatin1String(rule.name))
            continue;
        const int index = append(rule.element, rule.name);
        SvgNode& node = m_tree.nodes[size_t(index)];
        readAttributes(node);
        if (rule.element == SvgElement::Text) {
            readText(node);
            return;
        }
        readShape(node, name);
        m_open.push_back(index);
        return;
    }
    Note note = Note::UnknownElement;
    bool told = true;
    for (const SkipRule& rule : kSkipped) {
        if (name == QLatin1String(rule.name)) {
            note = rule.note;
            told = rule.told;
        }
    }
    // within a switch it is a choice that is not taken
    const bool choice = m_tree.nodes[size_t(m_open.back())].element == SvgElement::Switch;
    if (told && !choice)
        skip(name, note);
    skipSvgElement(m_in, m_budget);
}

void SvgParser::readAttributes(SvgNode& node) {
    const QXmlStreamAttributes attributes = m_in.attributes();
    // the reader compared each with all before it
    m_budget.step(qint64(attributes.size()) * attributes.size() / 50);
    for (const QXmlStreamAttribute& attribute : attributes) {
        const QStringRef full = attribute.qualifiedName();
        const int colon = full.indexOf(QLatin1Char(':'));
        const QStringRef name = full.mid(colon + 1);
        if (colon >= 0 && name != QLatin1String("href"))
            continue;
        const QStringRef value = attribute.value();
        if (name == QLatin1String("id")) {
            node.id = value.toString();
            m_bytes += 100 + 4 * node.id.size();
            const int index = int(m_tree.nodes.size()) - 1;
            if (!m_tree.ids.contains(node.id))
                m_tree.ids.insert(node.id, index);
        } else if (name == QLatin1String("class")) {
            node.classes = interned(value);
        } else if (name == QLatin1String("style")) {
            node.style = styleOf(value);
        } else if (name == QLatin1String("transform") || name == QLatin1String("gradientTransform")) {
            const auto transform = parseSvgTransform(value);
            node.badTransform = !transform;
            if (transform && !transform->isIdentity()) {
                node.transform = std::make_unique<QTransform>(*transform);
                m_bytes += sizeof(QTransform) + 16;
            }
        } else if (!readDetail(node, name, value)) {
            readStyle(node, name, value);
        }
    }
}

/// What few elements have; false for any other attribute.
bool SvgParser::readDetail(SvgNode& node, const QStringRef& name, const QStringRef& value) {
    if (name == QLatin1String("href")) {
        if (value.startsWith(QLatin1Char('#')))
            detail(node).reference = value.mid(1, kLongestValue).toString();
    } else if (name == QLatin1String("viewBox") && node.element != SvgElement::Path) {
        detail(node).viewBox = parseViewBox(value);
        detail(node).badViewBox =
            !node.detail->viewBox || node.detail->viewBox->width() <= 0 || node.detail->viewBox->height() <= 0;
    } else if (name == QLatin1String("preserveAspectRatio")) {
        detail(node).preserve = value.left(kLongestValue).toString();
    } else if (name == QLatin1String("clipPathUnits")) {
        detail(node).ownUnits = value == QLatin1String("objectBoundingBox");
    } else if (name == QLatin1String("requiredExtensions")) {
        detail(node).refused |= !value.trimmed().isEmpty();
    } else if (name == QLatin1String("systemLanguage")) {
        detail(node).refused |= !isOperatorsLanguage(value);
    } else {
        return false;
    }
    return true;
}

/// An attribute that could stand in a style as well.
void SvgParser::readStyle(SvgNode& node, const QStringRef& name, const QStringRef& value) {
    const SvgTell tell = [this](const QString& kind, Note note) { m_result.convert(kind, noteText(note)); };
    const auto property = svgProperty(name);
    if (property && value.size() <= kLongestValue) {
        node.settings.push_back({*property, false, interned(value.trimmed())});
        m_bytes += sizeof(SvgSetting) + 8;
        tellSvgColor(*property, node.settings.back().value, tell);
    } else if (property) {
        tell(name.toString(), Note::StyleRule);
    } else if (name.contains(QLatin1Char('-'))) {
        // without a dash it is the element's own: a width is no style here
        tellSvgProperty(name, value, tell);
    }
}

void SvgParser::readShape(SvgNode& node, const QString& name) {
    readLengths(node, name);
    if (node.element != SvgElement::Path || name == QLatin1String("line"))
        return;
    node.path = std::make_unique<PathShape>();
    const QXmlStreamAttributes attributes = m_in.attributes();
    const bool good = name == QLatin1String("path")
                          ? parseSvgPath(attributes.value(QLatin1String("d")), *node.path, m_budget)
                          : parseSvgPoints(attributes.value(QLatin1String("points")), name == QLatin1String("polygon"),
                                           *node.path, m_budget);
    m_bytes += 64 + 17 * qint64(node.path->points.size());
    if (!good && m_budget.ok() && attributes.value(QLatin1String("d")) != QLatin1String("none"))
        skip(name, Note::BadPath);
}

void SvgParser::readLengths(SvgNode& node, const QString& name) {
    const bool placed = node.element == SvgElement::Rect || node.element == SvgElement::Ellipse ||
                        node.element == SvgElement::Svg || node.element == SvgElement::Symbol ||
                        node.element == SvgElement::Use || name == QLatin1String("line");
    if (!placed)
        return;
    for (const QXmlStreamAttribute& attribute : m_in.attributes()) {
        const QStringRef own = attribute.qualifiedName();
        for (const LengthName& entry : kLengths) {
            if (own == QLatin1String(entry.attribute) && (!*entry.element || name == QLatin1String(entry.element)))
                detail(node).lengths[entry.place] = parseSvgLength(attribute.value().toString());
        }
    }
    if (name == QLatin1String("line"))
        detail(node);
}

void SvgParser::readText(SvgNode& node) {
    QByteArray xml;
    QXmlStreamWriter out(&xml);
    const auto tell = [this](const QString& kind, Note note) { skip(kind, note); };
    SvgTextCopy copy(m_in, out, m_tree.viewBox.size(), m_budget, tell);
    if (!copy.run())
        m_budget.fail(Note::TooDeep);
    if (copy.isTooLong()) {
        skip(QStringLiteral("text"), Note::TextTooLong);
        xml.clear();
    }
    m_bytes += xml.size();
    detail(node).text = xml;
}

} // namespace sim
