// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/mkfcodec.h"

#include "engine/marktypes.h"
#include "simengine/document/contained.h"
#include "simengine/document/mkffields.h"
#include "simengine/document/mkfobjects.h"
#include "simengine/document/sha256.h"
#include "support/durablefile.h"

#include <QFile>
#include <future>

namespace sim {

namespace {

/// The line ends and the end-of-file character in it show a file that was sent as text.
constexpr char kMagic[8] = {char(0x89), 'M', 'K', 'F', '\r', '\n', char(0x1a), '\n'};
constexpr qint64 kHeaderBytes = 24;
constexpr qint64 kSectionCountPlace = 12;
constexpr qint64 kTableEntryBytes = 24;
constexpr qint64 kChecksumBytes = 32;

/// The sections of a file, in file order.
enum SectionIndex { PensSection, SettingsSection, ObjectsSection, SectionCount };

struct SectionKind {
    char name[5];
    quint32 version;
};
constexpr SectionKind kSections[SectionCount] = {{"PENS", 1}, {"SETT", 1}, {"OBJS", kPlainObjectsVersion}};

/// The object section has a higher version when it holds more than lines.
bool isKnownVersion(int section, quint32 version) {
    const quint32 newest = section == ObjectsSection ? kNewestObjectsVersion : kSections[section].version;
    return version >= kSections[section].version && version <= newest;
}

void writeSettings(const DocumentSettings& settings, ByteWriter& out) {
    out.integer(quint32(settings.currentPen));
    out.integer(quint32(settings.basePoint));
    out.real(settings.keyMoveDistance);
}

void writeObjects(const ObjectList& objects, ByteWriter& out) {
    out.integer(quint32(objects.size()));
    for (const ObjectPtr& object : objects) {
        if (!out.fits())
            return;
        writeObject(*object, out);
    }
}

void writePens(const LayerParamEx& pens, ByteWriter& out) {
    out.integer(quint32(kLayerCount));
    for (int i = 0; i < kLayerCount; ++i) {
        LayerData pen;
        pens.GetLayerData(i, pen);
        visitPen(pen, FieldWriter(out));
    }
    out.integer(quint32(kQcwWaveCount));
    for (int i = 0; i < kQcwWaveCount; ++i)
        visitWave(pens.GetQCWWaves()[i], FieldWriter(out));
}

/// About the bytes that the objects take; a file is written in one piece of memory.
qint64 expectedBytes(const ObjectList& objects, qint64 most) {
    qint64 bytes = 0;
    for (const ObjectPtr& object : objects) {
        if (bytes > most)
            return most;
        bytes += kLeastObjectBytes + 16 * object->pointCount();
    }
    return bytes;
}

bool decodePens(ByteReader& in, LayerParamEx& pens) {
    if (in.integer<quint32>() != quint32(kLayerCount))
        in.fail(QStringLiteral("the number of pens is wrong"));
    for (int i = 0; i < kLayerCount && in.ok(); ++i) {
        LayerData pen;
        visitPen(pen, FieldReader(in));
        pens.SetLayerData(i, pen);
    }
    if (in.integer<quint32>() != quint32(kQcwWaveCount))
        in.fail(QStringLiteral("the number of waveforms is wrong"));
    for (int i = 0; i < kQcwWaveCount && in.ok(); ++i)
        visitWave(pens.GetQCWWaves()[i], FieldReader(in));
    return in.ok();
}

bool decodeSettings(ByteReader& in, DocumentSettings& settings) {
    const auto pen = in.integer<quint32>();
    const auto base = in.integer<quint32>();
    settings.keyMoveDistance = in.real();
    if (pen >= quint32(kLayerCount) || base > quint32(BasePointBottomRight)) {
        in.fail(QStringLiteral("the document settings are out of range"));
        return false;
    }
    settings.currentPen = int(pen);
    settings.basePoint = BasePoint(base);
    if (in.ok() && !isSound(settings))
        in.fail(QStringLiteral("the document settings are out of range"));
    return in.ok();
}

bool decodeObjects(ByteReader& in, quint32 version, DocumentContent& content) {
    ObjectList objects;
    const qint64 count = in.count(kLeastObjectBytes);
    objects.reserve(size_t(count));
    for (qint64 i = 0; i < count && in.ok(); ++i)
        objects.push_back(readObject(in, version));
    if (in.ok() && objectsVersion(objects) != version)
        in.fail(QStringLiteral("the objects do not need the version of their section"));
    content.objects = std::make_shared<const ObjectList>(std::move(objects));
    return in.ok();
}

struct Extent {
    qint64 offset = 0;
    qint64 length = 0;
    quint32 version = 0;
};

constexpr qint64 kTableEnd = kHeaderBytes + SectionCount * kTableEntryBytes;

/// Why the head of the file is unsound, empty when it is sound.
QString headFault(const QByteArray& bytes) {
    if (bytes.size() < kHeaderBytes || std::memcmp(bytes.constData(), kMagic, sizeof kMagic) != 0)
        return QStringLiteral("this is not a mark document");
    if (bytes.size() > kMaxMkfBytes)
        return QStringLiteral("the file is too large");
    ByteReader header(bytes.constData() + sizeof kMagic, bytes.size() - qint64(sizeof kMagic));
    const auto version = header.integer<quint32>();
    header.integer<quint32>(); // the number of sections is looked at when the checksum is right
    const auto length = header.integer<quint64>();
    if (version > kMkfVersion)
        return QStringLiteral("the file was made by a newer program (format %1)").arg(version);
    if (version != kMkfVersion)
        return QStringLiteral("the format %1 is unknown").arg(version);
    if (length != quint64(bytes.size()) || bytes.size() < kTableEnd + kChecksumBytes)
        return QStringLiteral("the file is cut off or has been added to");
    return QString();
}

/// Why the table of a file of a sound head is unsound, empty when it is sound. `sections` gets their extents.
QString tableFault(const QByteArray& bytes, Extent (&sections)[SectionCount]) {
    const qint64 covered = bytes.size() - kChecksumBytes;
    ByteReader header(bytes.constData() + kSectionCountPlace, kHeaderBytes - kSectionCountPlace);
    if (header.integer<quint32>() != quint32(SectionCount))
        return QStringLiteral("the file has a wrong number of sections");
    qint64 next = kTableEnd;
    for (int i = 0; i < SectionCount; ++i) {
        const char* entry = bytes.constData() + kHeaderBytes + i * kTableEntryBytes;
        ByteReader in(entry + 4, kTableEntryBytes - 4);
        const auto ownVersion = in.integer<quint32>();
        const bool known = std::memcmp(entry, kSections[i].name, 4) == 0 && isKnownVersion(i, ownVersion);
        const auto offset = in.integer<quint64>();
        const auto size = in.integer<quint64>();
        if (!known)
            return QStringLiteral("the file has an unknown section");
        if (offset != quint64(next) || size > quint64(covered - next))
            return QStringLiteral("a section lies outside the file");
        sections[i] = {next, qint64(size), ownVersion};
        next += qint64(size);
    }
    return next == covered ? QString() : QStringLiteral("the sections do not fill the file");
}

/// What the sections of a file of a sound head hold; nothing and the reason in `fault`.
std::optional<DocumentContent> decodeSections(const QByteArray& bytes, QString& fault) {
    Extent sections[SectionCount];
    fault = tableFault(bytes, sections);
    if (!fault.isEmpty())
        return std::nullopt;
    DocumentContent content;
    const auto decode = [&](SectionIndex index, auto&& take) {
        ByteReader in(bytes.constData() + sections[index].offset, sections[index].length);
        if (take(in) && in.left() != 0)
            in.fail(QStringLiteral("a section is longer than its content"));
        fault = in.fault();
        return in.ok();
    };
    const bool taken = decode(PensSection, [&](ByteReader& in) { return decodePens(in, content.pens); }) &&
                       decode(SettingsSection, [&](ByteReader& in) { return decodeSettings(in, content.settings); }) &&
                       decode(ObjectsSection, [&](ByteReader& in) {
                           return decodeObjects(in, sections[ObjectsSection].version, content);
                       });
    if (!taken)
        return std::nullopt;
    return content;
}

bool refuse(QString* error, const QString& reason) {
    if (error)
        *error = reason;
    return false;
}

} // namespace

QByteArray encodePens(const LayerParamEx& pens) {
    ByteWriter out;
    writePens(pens, out);
    return out.take();
}

std::optional<QByteArray> encodeMkf(const DocumentContent& content, qint64 most) {
    constexpr qint64 kBeforeObjects = 32 * 1024;
    ByteWriter out(kBeforeObjects + expectedBytes(*content.objects, most), most);
    out.raw(kMagic, sizeof kMagic);
    out.integer(kMkfVersion);
    out.integer(quint32(SectionCount));
    const qint64 lengthPlace = out.size();
    out.integer(quint64(0));
    for (int i = 0; i < SectionCount; ++i) {
        out.raw(kSections[i].name, 4);
        out.integer(i == ObjectsSection ? objectsVersion(*content.objects) : kSections[i].version);
        out.integer(quint64(0)); // offset and length, when they are known
        out.integer(quint64(0));
    }
    const auto section = [&out](SectionIndex index, auto&& write) {
        const qint64 begin = out.size();
        write();
        const qint64 entry = kHeaderBytes + index * kTableEntryBytes;
        out.replace(entry + 8, quint64(begin));
        out.replace(entry + 16, quint64(out.size() - begin));
    };
    section(PensSection, [&] { writePens(content.pens, out); });
    section(SettingsSection, [&] { writeSettings(content.settings, out); });
    section(ObjectsSection, [&] { writeObjects(*content.objects, out); });
    if (!out.fits() || out.size() + kChecksumBytes > most)
        return std::nullopt;
    out.replace(lengthPlace, quint64(out.size() + kChecksumBytes));
    out.raw(sha256(out.data(), out.size()));
    return out.take();
}

std::optional<DocumentContent> decodeMkf(const QByteArray& bytes, QString* error) {
    QString fault = headFault(bytes);
    if (!fault.isEmpty()) {
        refuse(error, fault);
        return std::nullopt;
    }
    // The checksum of a large file takes as long as the reading of its objects, so both are done at once. Whatever is
    // read counts only when the checksum is right.
    constexpr qint64 kLarge = 1 << 20;
    const qint64 covered = bytes.size() - kChecksumBytes;
    const char* data = bytes.constData();
    // Without a thread to spare the checksum comes after the objects.
    const auto policy = covered > kLarge ? std::launch::async | std::launch::deferred : std::launch::deferred;
    std::future<QByteArray> hash = std::async(policy, [data, covered] { return sha256(data, covered); });
    const auto damaged = [&] {
        return std::memcmp(hash.get().constData(), data + covered, size_t(kChecksumBytes)) != 0;
    };
    std::optional<DocumentContent> content;
    if (covered > kLarge)
        content = decodeSections(bytes, fault);
    if (damaged()) {
        refuse(error, QStringLiteral("the checksum is wrong: the file is damaged"));
        return std::nullopt;
    }
    if (covered <= kLarge)
        content = decodeSections(bytes, fault);
    if (!content)
        refuse(error, fault);
    return content;
}

namespace {

bool save(Document& document, QString* error) {
    if (document.fileName().isEmpty())
        return refuse(error, QStringLiteral("the document has no file name"));
    const DocumentContent content = document.content();
    const std::optional<QByteArray> bytes = encodeMkf(content);
    if (!bytes)
        return refuse(error, QStringLiteral("the document is too large for a file"));
    const tessera::DurableResult result = tessera::writeFileDurably(document.fileName(), *bytes);
    if (!result)
        return refuse(error, result.message());
    document.markSaved(content);
    return true;
}

bool load(Document& document, QString* error) {
    QFile file(document.fileName());
    if (!file.open(QIODevice::ReadOnly))
        return refuse(error, QStringLiteral("%1: %2").arg(document.fileName(), file.errorString()));
    if (file.size() > kMaxMkfBytes)
        return refuse(error, QStringLiteral("%1: the file is too large").arg(document.fileName()));
    QString reason;
    const std::optional<DocumentContent> content = decodeMkf(file.readAll(), &reason);
    if (!content)
        return refuse(error, QStringLiteral("%1: %2").arg(document.fileName(), reason));
    document.setContent(*content);
    return true;
}

} // namespace

bool saveDocument(Document& document, QString* error) {
    QString fault;
    bool saved = false;
    if (contained(fault, [&] { saved = save(document, error); }))
        return saved;
    return refuse(error, fault);
}

bool loadDocument(Document& document, QString* error) {
    QString fault;
    bool loaded = false;
    if (contained(fault, [&] { loaded = load(document, error); }))
        return loaded;
    return refuse(error, QStringLiteral("%1: %2").arg(document.fileName(), fault));
}

} // namespace sim
