// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/mkfobjects.h"

#include "simengine/document/mkffields.h"

#include <algorithm>
#include <limits>

namespace sim {

namespace {

/// Bits of the switches of an object.
enum ObjectFlag : quint8 { FlagAngleChanged = 1, FlagEdge = 2, FlagFillFirst = 4, FlagSimple = 8, AllFlags = 15 };

quint8 flagsOf(const ObjectData& data) {
    return quint8((data.angleChanged ? FlagAngleChanged : 0) | (data.hatch.enableEdge ? FlagEdge : 0) |
                  (data.hatch.markFillFirst ? FlagFillFirst : 0) | (data.hatch.showSimple ? FlagSimple : 0));
}

/// Bits of the style of a text.
enum TextFlag : quint8 { FlagSingleLine = 1, FlagBold = 2, FlagItalic = 4, FlagTextVariables = 8 };
constexpr quint8 kPlainTextFlags = FlagSingleLine | FlagBold | FlagItalic;

/// Bits of the style of a code.
enum CodeFlag : quint8 { FlagCodeVariables = 1, FlagFitted = 2, FlagInvert = 4, AllCodeFlags = 7 };

class GeometryWriter {
public:
    explicit GeometryWriter(ByteWriter& out)
        : m_out(out) {}

    void operator()(const PointShape& s) {
        point(s.pos);
        m_out.real(s.dwellUs);
    }
    void operator()(const PolylineShape& s) {
        m_out.flag(s.closed);
        points(s.points);
    }
    void operator()(const RectShape& s) {
        point(s.rect.topLeft());
        m_out.real(s.rect.width());
        m_out.real(s.rect.height());
    }
    void operator()(const CircleShape& s) {
        point(s.center);
        m_out.real(s.radius);
        m_out.real(s.startAngle);
        m_out.flag(s.clockwise);
    }
    void operator()(const ArcShape& s) {
        point(s.center);
        m_out.real(s.radius);
        m_out.real(s.startAngle);
        m_out.real(s.sweepAngle);
    }
    void operator()(const PathShape& s) {
        m_out.integer(quint32(s.verbs.size()));
        for (PathVerb verb : s.verbs)
            m_out.integer(quint8(verb));
        points(s.points);
    }
    void operator()(const GroupShape& s) {
        m_out.integer(quint32(s.children.size()));
        for (const ObjectPtr& child : s.children) {
            if (!m_out.fits())
                return;
            writeObject(*child, m_out);
        }
    }
    void operator()(const TextShape& s) {
        const TextSpec& spec = s.spec;
        m_out.text(spec.text);
        m_out.text(spec.family);
        m_out.integer(quint8((spec.singleLine ? FlagSingleLine : 0) | (spec.bold ? FlagBold : 0) |
                             (spec.italic ? FlagItalic : 0) | (spec.variables ? FlagTextVariables : 0)));
        m_out.integer(quint8(spec.align));
        m_out.real(spec.height);
        m_out.real(spec.letterSpacing);
        m_out.real(spec.lineSpacing);
        if (spec.variables)
            m_out.text(s.shown);
        m_out.integer(quint32(s.characterContours.size()));
        for (int contours : s.characterContours)
            m_out.integer(quint32(contours));
        (*this)(s.outline);
    }
    void operator()(const GeneratedShape& s) {
        m_out.text(s.toolClass);
        m_out.integer(quint32(s.parameters.size()));
        m_out.raw(s.parameters);
        (*this)(s.outline);
    }
    void operator()(const CodeShape& s) {
        const CodeSpec& spec = s.spec;
        m_out.text(spec.text);
        m_out.integer(quint8(spec.symbology));
        m_out.integer(quint8((spec.variables ? FlagCodeVariables : 0) | (spec.fitted ? FlagFitted : 0) |
                             (spec.invert ? FlagInvert : 0)));
        for (int value : {spec.errorLevel, spec.size, spec.quietZone, int(spec.marking), spec.linesPerModule})
            m_out.integer(quint8(value));
        for (double value : {spec.module, spec.width, spec.barHeight})
            m_out.real(value);
        if (spec.variables)
            m_out.text(s.shown);
        if (spec.marking != CodeMarking::Dots) {
            (*this)(s.outline);
            return;
        }
        points(s.dots);
    }

private:
    void point(const QPointF& p) {
        m_out.real(p.x());
        m_out.real(p.y());
    }
    void points(const QVector<QPointF>& list) {
        m_out.integer(quint32(list.size()));
        m_out.points(list.constData(), list.size());
    }

    ByteWriter& m_out;
};

constexpr qint64 kPointBytes = 16;

/// The lowest version that knows the object.
quint32 versionOf(const MarkObject& object) {
    switch (object.kind()) {
    case ObjectKind::Group:
        return objectsVersion(std::get<GroupShape>(object.shape()).children);
    case ObjectKind::Text:
        return std::get<TextShape>(object.shape()).spec.variables ? kCodeObjectsVersion : kTextObjectsVersion;
    case ObjectKind::Code:
        return kCodeObjectsVersion;
    case ObjectKind::Generated:
        return kGeneratedObjectsVersion;
    default:
        return kPlainObjectsVersion;
    }
}

/// The record of fills as they are when none was ever set. Most objects have these.
const QByteArray& unsetFills() {
    static const QByteArray bytes = [] {
        ByteWriter out;
        for (const FillParam& fill : HatchSettings().fills)
            visitFill(fill, FieldWriter(out));
        return out.bytes();
    }();
    return bytes;
}

class GeometryReader {
public:
    GeometryReader(ByteReader& in, quint32 version, int depth)
        : m_in(in)
        , m_version(version)
        , m_depth(depth) {}

    Shape read(quint8 kind) {
        switch (ObjectKind(kind)) {
        case ObjectKind::Point:
            return readPoint();
        case ObjectKind::Polyline:
            return readPolyline();
        case ObjectKind::Rect:
            return readRect();
        case ObjectKind::Circle:
            return readCircle();
        case ObjectKind::Arc:
            return readArc();
        case ObjectKind::Path:
            return readPath();
        case ObjectKind::Group:
            return readGroup();
        case ObjectKind::Text:
            if (m_version >= kTextObjectsVersion)
                return readText();
            break;
        case ObjectKind::Generated:
            if (m_version >= kGeneratedObjectsVersion)
                return readGenerated();
            break;
        case ObjectKind::Code:
            if (m_version >= kCodeObjectsVersion)
                return readCode();
            break;
        }
        m_in.fail(QStringLiteral("objects of the kind %1 are unknown to this program").arg(kind));
        return PointShape();
    }

private:
    QPointF point() {
        const double x = m_in.real();
        const double y = m_in.real();
        return {x, y};
    }
    template<class Points>
    void points(Points& list) {
        const qint64 count = m_in.count(kPointBytes);
        list.resize(int(count));
        m_in.points(list.data(), count);
    }

    Shape readPoint() {
        PointShape s;
        s.pos = point();
        s.dwellUs = m_in.real();
        return s;
    }
    Shape readPolyline() {
        PolylineShape s;
        s.closed = m_in.flag();
        points(s.points);
        return s;
    }
    Shape readRect() {
        RectShape s;
        const QPointF corner = point();
        const double width = m_in.real();
        const double height = m_in.real();
        s.rect = QRectF(corner.x(), corner.y(), width, height);
        return s;
    }
    Shape readCircle() {
        CircleShape s;
        s.center = point();
        s.radius = m_in.real();
        s.startAngle = m_in.real();
        s.clockwise = m_in.flag();
        return s;
    }
    Shape readArc() {
        ArcShape s;
        s.center = point();
        s.radius = m_in.real();
        s.startAngle = m_in.real();
        s.sweepAngle = m_in.real();
        return s;
    }
    Shape readPath() {
        PathShape s;
        const qint64 count = m_in.count(1);
        s.verbs.reserve(int(count));
        for (qint64 i = 0; i < count && m_in.ok(); ++i)
            s.verbs.append(PathVerb(m_in.integer<quint8>()));
        points(s.points);
        return s;
    }
    Shape readGroup() {
        GroupShape s;
        if (m_depth >= kMaxGroupDepth) {
            m_in.fail(QStringLiteral("groups are nested too deeply"));
            return s;
        }
        const qint64 count = m_in.count(kLeastObjectBytes);
        for (qint64 i = 0; i < count && m_in.ok(); ++i)
            s.children.push_back(readObject(m_in, m_version, m_depth + 1));
        return s;
    }
    int contourCount() {
        const auto count = m_in.integer<quint32>();
        if (count > quint32(std::numeric_limits<int>::max()))
            m_in.fail(QStringLiteral("a letter of a text has too many contours"));
        return int(count);
    }
    Shape readText() {
        TextShape s;
        TextSpec& spec = s.spec;
        spec.text = m_in.text(2 * kMostTextCharacters);
        spec.family = m_in.text(kMaxFamilyLength);
        const auto flags = m_in.integer<quint8>();
        const int known = m_version >= kCodeObjectsVersion ? kPlainTextFlags | FlagTextVariables : kPlainTextFlags;
        if (flags & ~known)
            m_in.fail(QStringLiteral("a text has an unknown switch"));
        spec.singleLine = flags & FlagSingleLine;
        spec.bold = flags & FlagBold;
        spec.italic = flags & FlagItalic;
        spec.align = TextAlign(m_in.integer<quint8>());
        spec.height = m_in.real();
        spec.letterSpacing = m_in.real();
        spec.lineSpacing = m_in.real();
        spec.variables = flags & FlagTextVariables;
        if (spec.variables)
            s.shown = m_in.text(2 * kMostTextCharacters);
        const qint64 letters = m_in.count(4);
        s.characterContours.reserve(int(letters));
        for (qint64 i = 0; i < letters && m_in.ok(); ++i)
            s.characterContours.append(contourCount());
        s.outline = std::get<PathShape>(readPath());
        return s;
    }
    Shape readGenerated() {
        GeneratedShape s;
        s.toolClass = m_in.text(kMaxToolClassLength);
        s.parameters = m_in.raw(kMaxToolParameterBytes);
        s.outline = std::get<PathShape>(readPath());
        return s;
    }
    Shape readCode() {
        CodeShape s;
        CodeSpec& spec = s.spec;
        spec.text = m_in.text(kMostCodeCharacters);
        spec.symbology = Symbology(m_in.integer<quint8>());
        const auto flags = m_in.integer<quint8>();
        if (flags & ~AllCodeFlags)
            m_in.fail(QStringLiteral("a code has an unknown switch"));
        spec.variables = flags & FlagCodeVariables;
        spec.fitted = flags & FlagFitted;
        spec.invert = flags & FlagInvert;
        spec.errorLevel = m_in.integer<quint8>();
        spec.size = m_in.integer<quint8>();
        spec.quietZone = m_in.integer<quint8>();
        spec.marking = CodeMarking(m_in.integer<quint8>());
        spec.linesPerModule = m_in.integer<quint8>();
        for (double* value : {&spec.module, &spec.width, &spec.barHeight})
            *value = m_in.real();
        if (spec.variables)
            s.shown = m_in.text(kMostCodeCharacters);
        if (spec.marking == CodeMarking::Dots)
            points(s.dots);
        else
            s.outline = std::get<PathShape>(readPath());
        return s;
    }

    ByteReader& m_in;
    quint32 m_version;
    int m_depth;
};

} // namespace

void writeObject(const MarkObject& object, ByteWriter& out) {
    const ObjectData& data = object.data();
    out.integer(quint8(object.kind()));
    out.integer(quint8(data.work));
    out.integer(flagsOf(data));
    out.integer(quint8(data.pen));
    out.real(data.angle);
    const QTransform& t = data.transform;
    for (double v : {t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()})
        out.real(v);
    for (const FillParam& fill : data.hatch.fills)
        visitFill(fill, FieldWriter(out));
    out.text(data.name);
    std::visit(GeometryWriter(out), data.shape);
}

quint32 objectsVersion(const ObjectList& objects) {
    quint32 version = kPlainObjectsVersion;
    for (const ObjectPtr& object : objects)
        version = std::max(version, versionOf(*object));
    return version;
}

ObjectPtr readObject(ByteReader& in, quint32 version, int depth) {
    ObjectData data;
    const auto kind = in.integer<quint8>();
    data.work = WorkType(in.integer<quint8>());
    const auto flags = in.integer<quint8>();
    if (flags & ~AllFlags)
        in.fail(QStringLiteral("an object has an unknown switch"));
    data.angleChanged = flags & FlagAngleChanged;
    data.hatch.enableEdge = flags & FlagEdge;
    data.hatch.markFillFirst = flags & FlagFillFirst;
    data.hatch.showSimple = flags & FlagSimple;
    data.pen = in.integer<quint8>();
    data.angle = in.real();
    double m[6];
    for (double& v : m)
        v = in.real();
    data.transform = QTransform(m[0], m[1], m[2], m[3], m[4], m[5]);
    // Unset fills stay those that all objects share.
    if (!in.skip(unsetFills())) {
        for (FillParam& fill : data.hatch.fills)
            visitFill(fill, FieldReader(in));
    }
    data.name = in.text(kMaxNameLength);
    data.shape = GeometryReader(in, version, depth).read(kind);
    if (!in.ok())
        return nullptr;
    QString fault;
    ObjectPtr object = MarkObject::make(std::move(data), &fault);
    if (!object)
        in.fail(fault);
    return object;
}

} // namespace sim
