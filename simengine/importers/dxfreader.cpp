// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfreader.h"

#include "simengine/importers/dxfcolors.h"

#include <QTextCodec>
#include <algorithm>
#include <charconv>
#include <cmath>

namespace sim {

namespace {

struct Unit {
    const char* name;
    double mm;
};

/// By the number in $INSUNITS; 0 is none.
constexpr Unit kUnits[] = {
    {"", 0.0},
    {"in", 25.4},
    {"ft", 304.8},
    {"mile", 1609344.0},
    {"mm", 1.0},
    {"cm", 10.0},
    {"m", 1000.0},
    {"km", 1.0e6},
    {"µin", 2.54e-5},
    {"mil", 0.0254},
    {"yd", 914.4},
    {"Å", 1.0e-7},
    {"nm", 1.0e-6},
    {"µm", 1.0e-3},
    {"dm", 100.0},
    {"dam", 1.0e4},
    {"hm", 1.0e5},
    {"Gm", 1.0e12},
    {"au", 1.49597870700e14},
    {"ly", 9.4607304725808e18},
    {"pc", 3.0856775814913673e19},
    {"ft", 304.800609601},
};

struct Kind {
    const char* name;
    Note note;
};

/// Entities that are known, but not imported.
constexpr Kind kLeftOut[] = {
    {"DIMENSION", Note::Dimension},
    {"LEADER", Note::Dimension},
    {"MULTILEADER", Note::Dimension},
    {"TOLERANCE", Note::Dimension},
    {"ARC_DIMENSION", Note::Dimension},
    {"LARGE_RADIAL_DIMENSION", Note::Dimension},
    {"XLINE", Note::Infinite},
    {"RAY", Note::Infinite},
    {"IMAGE", Note::Pictures},
    {"OLE2FRAME", Note::Pictures},
    {"OLEFRAME", Note::Pictures},
    {"WIPEOUT", Note::Pictures},
    {"PDFUNDERLAY", Note::Pictures},
    {"3DSOLID", Note::Solid3d},
    {"BODY", Note::Solid3d},
    {"REGION", Note::Solid3d},
    {"SURFACE", Note::Solid3d},
    {"EXTRUDEDSURFACE", Note::Solid3d},
    {"MESH", Note::MeshOutline},
    {"ATTDEF", Note::Attribute},
};

/// Bytes of a number of a spline while its table grows.
constexpr qint64 kSplineBytes = 24;

/// Less is the rounding of programs that count in space.
bool isHigh(double z) {
    return std::abs(z) > 1e-9;
}

/// A number of the file, whatever the system's language is; what is too large for one is beyond every bound.
double numberOf(const char* value, int size) {
    char plain[64];
    const int length = std::min(size, int(sizeof plain));
    std::replace_copy(value, value + length, plain, ',', '.');
    const char* begin = length > 0 && *plain == '+' ? plain + 1 : plain;
    double number = 0.0;
    const auto read = std::from_chars(begin, plain + length, number);
    if (read.ec == std::errc::result_out_of_range)
        return *begin == '-' ? -1e300 : 1e300;
    return read.ec == std::errc() ? number : 0.0;
}

/// What structures a file and draws nothing.
constexpr const char* kSilent[] = {"SECTION", "ENDSEC", "EOF", "BLOCK", "ENDBLK", "SEQEND", "VIEWPORT", "VERTEX", ""};

} // namespace

DxfReader::DxfReader(DxfScene& scene, ImportResult& result, ImportBudget& budget)
    : m_scene(scene)
    , m_result(result)
    , m_budget(budget)
    , m_currentHatch(budget) {
    m_scene.setNames([this](const std::string& name) { return decoded(name); });
}

QString DxfReader::unitText() const {
    if (m_unitCode > 0 && m_unitCode < int(std::size(kUnits)))
        return QString::fromUtf8(kUnits[m_unitCode].name);
    return m_measurement == 0 ? QStringLiteral("in ($MEASUREMENT)") : QStringLiteral("mm");
}

void DxfReader::applyUnit() {
    if (m_unitApplied)
        return;
    m_unitApplied = true;
    const bool known = m_unitCode > 0 && m_unitCode < int(std::size(kUnits));
    if (known)
        m_scene.setUnit(kUnits[m_unitCode].mm);
    else if (m_measurement == 0)
        m_scene.setUnit(25.4);
    if (!known && m_measurement < 0)
        m_result.convert(QStringLiteral("$INSUNITS"), noteText(Note::NoUnit));
}

bool DxfReader::notePair(int code, const char* value, int size) {
    if (code == 0) {
        nextEntity(std::string(value, size_t(size)));
        return false;
    }
    if (m_numbers != Numbers::Library && takeNumber(code, value, size))
        return true;
    if (code >= 30 && code <= 39)
        m_currentHigh = m_currentHigh || isHigh(numberOf(value, size));
    if (code == 2 && m_current == "SECTION")
        m_inEntities = std::string(value, size_t(size)) == "ENTITIES" || std::string(value, size_t(size)) == "BLOCKS";
    else if (code == 70)
        m_currentFlags = int(std::max(-1e9, std::min(1e9, numberOf(value, size))));
    else if (code == 60)
        m_currentInvisible = size == 1 && *value == '1';
    return false;
}

void DxfReader::nextEntity(const std::string& name) {
    settle();
    m_before.swap(m_current);
    m_current = name;
    m_flags = m_currentFlags;
    m_invisible = m_currentInvisible;
    m_currentFlags = 0;
    m_currentInvisible = false;
    m_handled = false;
    m_beforeInEntities = m_inEntities;
    m_high = m_currentHigh;
    m_wide = m_currentWide;
    m_currentHigh = m_currentWide = false;
    nextNumbers(name);
    if (name == "SECTION")
        ++m_sections;
    if (name == "ENDSEC")
        m_inEntities = false;
}

/// What was read of an entity is handed over, and the next one begins.
void DxfReader::nextNumbers(const std::string& name) {
    m_budget.memory(-m_held);
    m_held = m_currentHeld;
    m_currentHeld = 0;
    switch (m_numbers) {
    case Numbers::Line:
        m_line = m_currentLine;
        m_currentLine = {};
        break;
    case Numbers::LightPolyline:
        m_lightVertices.swap(m_currentVertices);
        m_currentVertices.clear();
        break;
    case Numbers::Spline:
        m_spline = std::move(m_currentSpline);
        m_currentSpline = Spline();
        break;
    case Numbers::Hatch:
        m_hatch = m_currentHatch.finish();
        m_hatchFaults = m_currentHatch.badEdges();
        break;
    default:
        break;
    }
    constexpr std::pair<const char*, Numbers> kReaders[] = {
        {"LINE", Numbers::Line},         {"LWPOLYLINE", Numbers::LightPolyline},
        {"POLYLINE", Numbers::Polyline}, {"VERTEX", Numbers::Polyline},
        {"SPLINE", Numbers::Spline},     {"HATCH", Numbers::Hatch},
        {"LEADER", Numbers::Leader},
    };
    m_numbers = Numbers::Library;
    for (const auto& reader : kReaders) {
        if (name == reader.first) {
            m_numbers = reader.second;
            break;
        }
    }
    if (m_numbers == Numbers::Hatch)
        m_currentHatch.begin();
}

bool DxfReader::takeNumber(int code, const char* value, int size) {
    if (code < 10 || code > 99 || (code >= 60 && code <= 69))
        return false;
    switch (m_numbers) {
    case Numbers::Line:
        return takeLineNumber(code, code < 40 ? numberOf(value, size) : 0.0);
    case Numbers::LightPolyline:
        return takePolylineNumber(code, code < 50 ? numberOf(value, size) : 0.0);
    case Numbers::Spline:
        return takeSplineNumber(code, code < 50 ? numberOf(value, size) : 0.0);
    case Numbers::Hatch:
        return takeHatchNumber(code, numberOf(value, size));
    case Numbers::Polyline:
        m_currentWide = m_currentWide || ((code == 40 || code == 41) && numberOf(value, size) > 0.0);
        return false;
    case Numbers::Leader: // never drawn, and the library would make room for all the points that it tells
        return code == 76;
    default:
        return false;
    }
}

bool DxfReader::takeLineNumber(int code, double value) {
    const int row = code / 10;
    const int column = code % 10;
    if (row > 3 || column > 1)
        return false;
    m_currentLine[size_t(row - 1 + 3 * column)] = value;
    m_currentHigh = m_currentHigh || (row == 3 && isHigh(value));
    return true;
}

/// Takes memory until the entity has been handed over.
bool DxfReader::hold(qint64 bytes) {
    if (!m_budget.memory(bytes))
        return false;
    m_currentHeld += bytes;
    return true;
}

bool DxfReader::takePolylineNumber(int code, double value) {
    switch (code) {
    case 10:
        if (hold(kVertexBytes))
            m_currentVertices.push_back({{value, 0.0}, 0.0});
        return true;
    case 20:
        if (!m_currentVertices.empty())
            m_currentVertices.back().place.setY(value);
        return true;
    case 42:
        if (!m_currentVertices.empty())
            m_currentVertices.back().bulge = value;
        return true;
    case 40: // widths at the beginning and the end of a piece, and of all of them
    case 41:
    case 43:
        m_currentWide = m_currentWide || value > 0.0;
        return true;
    case 90: // the number of vertices, and their names
    case 91:
        return true;
    default:
        return false;
    }
}

bool DxfReader::takeSplineNumber(int code, double value) {
    Nurbs& nurbs = m_currentSpline.nurbs;
    std::vector<QPointF>& fit = m_currentSpline.fitPoints;
    const bool grows = code == 10 || code == 11 || code == 40 || code == 41;
    if (grows && !hold(kSplineBytes))
        return true;
    switch (code) {
    case 10:
        nurbs.points.emplace_back(value, 0.0);
        return true;
    case 20:
        if (!nurbs.points.empty())
            nurbs.points.back().setY(value);
        return true;
    case 11:
        fit.emplace_back(value, 0.0);
        return true;
    case 21:
        if (!fit.empty())
            fit.back().setY(value);
        return true;
    case 40:
        nurbs.knots.push_back(value);
        return true;
    case 41:
        nurbs.weights.push_back(value);
        return true;
    case 30:
    case 31:
        m_currentHigh = m_currentHigh || isHigh(value);
        return true;
    case 72: // the numbers of knots, control points and fit points
    case 73:
    case 74:
        return true;
    default:
        return false;
    }
}

bool DxfReader::takeHatchNumber(int code, double value) {
    if (code == 30)
        m_currentHigh = m_currentHigh || isHigh(value);
    m_currentHatch.take(code, value);
    return true;
}

/// Tells an entity that the library passed over.
void DxfReader::settle() {
    if (m_handled || !m_beforeInEntities)
        return;
    for (const char* silent : kSilent) {
        if (m_before == silent)
            return;
    }
    for (const Kind& kind : kLeftOut) {
        if (m_before == kind.name) {
            skip(kind.name, kind.note);
            return;
        }
    }
    m_result.skip(decoded(m_before), noteText(Note::Proxy));
}

void DxfReader::finish() {
    flush();
    settle();
    applyUnit();
    if (m_badText)
        m_result.convert(QStringLiteral("TEXT"), noteText(Note::Encoding));
}

void DxfReader::setVariableInt(const std::string& key, int value, int) {
    if (key == "$INSUNITS")
        m_unitCode = value;
    else if (key == "$MEASUREMENT")
        m_measurement = value;
}

void DxfReader::setVariableString(const std::string& key, const std::string& value, int) {
    if (key == "$ACADVER") {
        m_modern = value >= "AC1021";
    } else if (key == "$DWGCODEPAGE") {
        // "ANSI_936", "ansi_1252", "GB2312", ...
        const QByteArray page = QByteArray::fromStdString(value).toUpper();
        if (page == "GB2312")
            m_codec = dxfCodec(936);
        else if (page.startsWith("ANSI_"))
            m_codec = dxfCodec(page.mid(5).toInt());
    }
}

QString DxfReader::decoded(const std::string& text) {
    const QByteArray bytes = QByteArray::fromStdString(text);
    QTextCodec* utf8 = QTextCodec::codecForName("UTF-8");
    for (QTextCodec* codec : {m_modern || !m_codec ? utf8 : m_codec, m_codec, utf8, QTextCodec::codecForName("GBK")}) {
        if (!codec)
            continue;
        QTextCodec::ConverterState state;
        const QString read = codec->toUnicode(bytes.constData(), bytes.size(), &state);
        if (state.invalidChars == 0 && state.remainingChars == 0) {
            // some codecs put a sign for what they do not know without counting it
            m_badText = m_badText || read.contains(QChar(QChar::ReplacementCharacter));
            return read;
        }
    }
    m_badText = true;
    return QString::fromLatin1(bytes);
}

void DxfReader::skip(const char* kind, Note note) {
    m_result.skip(QString::fromLatin1(kind), noteText(note));
}

void DxfReader::convert(const char* kind, Note note) {
    m_result.convert(QString::fromLatin1(kind), noteText(note));
}

void DxfReader::addLayer(const DL_LayerData& data) {
    const std::string type = attributes.getLinetype();
    const bool dashed = !type.empty() && type != "CONTINUOUS" && type != "Continuous" && type != "BYLAYER";
    const bool frozen = (data.flags & 1) != 0;
    m_scene.setLayer(data.name, attributes.getColor(), attributes.getColor24(),
                     data.off || frozen || attributes.getColor() < 0, dashed);
}

void DxfReader::addBlock(const DL_BlockData& data) {
    flush();
    applyUnit();
    m_scene.beginBlock(data.name, {data.bpx, data.bpy});
}

void DxfReader::endBlock() {
    flush();
    m_scene.endBlock();
}

/// The axes of an entity follow from the direction that it was drawn from: seen from below a drawing is mirrored.
DxfReader::Plane DxfReader::plane(double height) const {
    double n[3];
    extrusion->getDirection(n);
    const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    Plane plane;
    if (!(length > 1e-12) || (n[0] == 0.0 && n[1] == 0.0 && n[2] > 0.0))
        return plane;
    for (double& v : n)
        v /= length;
    // the first axis lies across the drawing's Y, near the pole, or its Z
    const bool pole = std::abs(n[0]) < 1.0 / 64 && std::abs(n[1]) < 1.0 / 64;
    double ax[3] = {pole ? n[2] : -n[1], pole ? 0.0 : n[0], pole ? -n[0] : 0.0};
    const double a = std::sqrt(ax[0] * ax[0] + ax[1] * ax[1] + ax[2] * ax[2]);
    for (double& v : ax)
        v /= a;
    const double ay[2] = {n[1] * ax[2] - n[2] * ax[1], n[2] * ax[0] - n[0] * ax[2]};
    plane.toDrawing = QTransform(ax[0], ax[1], ay[0], ay[1], n[0] * height, n[1] * height);
    plane.tilted = std::abs(n[0]) > 1e-9 || std::abs(n[1]) > 1e-9;
    return plane;
}

/// The attributes of an entity; false for one that is not drawn.
bool DxfReader::take(const char* kind, DxfItem& item) {
    m_handled = true;
    applyUnit();
    if (attributes.isInPaperSpace()) {
        skip(kind, Note::PaperSpace);
        return false;
    }
    if (m_invisible) {
        skip(kind, Note::Hidden);
        return false;
    }
    item.kind = kind;
    item.layer = m_scene.layer(attributes.getLayer());
    item.color = attributes.getColor();
    item.rgb = attributes.getColor24();
    item.high = m_high;
    item.wide = m_wide;
    const std::string type = attributes.getLinetype();
    item.dashed = type != "BYLAYER" && type != "BYBLOCK" && type != "CONTINUOUS" && type != "Continuous" &&
                  type != "ByLayer" && type != "ByBlock";
    return m_budget.ok();
}

void DxfReader::put(DxfItem&& item) {
    if (item.high)
        convert(item.kind, Note::Flattened);
    if (item.wide)
        convert(item.kind, Note::LineWidth);
    m_scene.add(std::move(item));
}

/// Ends what comes in parts and whose end a damaged file left out.
void DxfReader::flush() {
    finishPolyline();
}

void DxfReader::endEntity() {
    if (m_before != "POLYLINE" && m_before != "VERTEX")
        finishPolyline();
}

void DxfReader::endSequence() {
    finishPolyline();
}

} // namespace sim
