// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/mkfcodec.h"

#include "engine/marktypes.h"
#include "simengine/document/mkffields.h"
#include "simengine/document/mkfobjects.h"
#include "support/durablefile.h"

#include <QCryptographicHash>
#include <QFile>

namespace sim {

namespace {

/// The line ends and the end-of-file character in it show a file that was sent as text.
constexpr char kMagic[8] = {char(0x89), 'M', 'K', 'F', '\r', '\n', char(0x1a), '\n'};
constexpr qint64 kHeaderBytes = 24;
constexpr qint64 kTableEntryBytes = 24;
constexpr qint64 kChecksumBytes = 32;

/// The sections of a file, in file order.
enum SectionIndex { PensSection, SettingsSection, ObjectsSection, SectionCount };

struct SectionKind {
    char name[5];
    quint32 version;
};
constexpr SectionKind kSections[SectionCount] = {{"PENS", 1}, {"SETT", 1}, {"OBJS", kPlainObjectsVersion}};

/// The object section has a higher version when it holds texts.
bool isKnownVersion(int section, quint32 version) {
    return version == kSections[section].version || (section == ObjectsSection && version == kTextObjectsVersion);
}

QByteArray checksum(const char* data, qint64 size) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(data, int(size));
    return hash.result();
}

QByteArray encodeSettings(const DocumentSettings& settings) {
    ByteWriter out;
    out.integer(quint32(settings.currentPen));
    out.integer(quint32(settings.basePoint));
    out.real(settings.keyMoveDistance);
    return out.bytes();
}

std::optional<QByteArray> encodeObjects(const ObjectList& objects) {
    ByteWriter out;
    out.integer(quint32(objects.size()));
    qint64 points = 0;
    for (const ObjectPtr& object : objects) {
        // looked at before the object is written: the byte array itself ends at 2 GiB
        points += object->pointCount();
        if (out.bytes().size() > kMaxMkfBytes || points > kMaxMkfBytes / 16)
            return std::nullopt;
        writeObject(*object, out);
    }
    return out.bytes();
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

/// Why the frame around the sections is unsound, empty when it is sound. `sections` gets their extents.
QString frameFault(const QByteArray& bytes, Extent (&sections)[SectionCount]) {
    if (bytes.size() < kHeaderBytes || std::memcmp(bytes.constData(), kMagic, sizeof kMagic) != 0)
        return QStringLiteral("this is not a mark document");
    if (bytes.size() > kMaxMkfBytes)
        return QStringLiteral("the file is too large");
    ByteReader header(bytes.constData() + sizeof kMagic, bytes.size() - qint64(sizeof kMagic));
    const auto version = header.integer<quint32>();
    const auto count = header.integer<quint32>();
    const auto length = header.integer<quint64>();
    if (version > kMkfVersion)
        return QStringLiteral("the file was made by a newer program (format %1)").arg(version);
    if (version != kMkfVersion)
        return QStringLiteral("the format %1 is unknown").arg(version);
    const qint64 tableEnd = kHeaderBytes + SectionCount * kTableEntryBytes;
    if (length != quint64(bytes.size()) || bytes.size() < tableEnd + kChecksumBytes)
        return QStringLiteral("the file is cut off or has been added to");
    const qint64 covered = bytes.size() - kChecksumBytes;
    if (checksum(bytes.constData(), covered) != QByteArray::fromRawData(bytes.constData() + covered, kChecksumBytes))
        return QStringLiteral("the checksum is wrong: the file is damaged");
    if (count != SectionCount)
        return QStringLiteral("the file has a wrong number of sections");
    qint64 next = tableEnd;
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

bool refuse(QString* error, const QString& reason) {
    if (error)
        *error = reason;
    return false;
}

} // namespace

QByteArray encodePens(const LayerParamEx& pens) {
    ByteWriter out;
    out.integer(quint32(kLayerCount));
    for (int i = 0; i < kLayerCount; ++i) {
        LayerData pen;
        pens.GetLayerData(i, pen);
        visitPen(pen, FieldWriter(out));
    }
    out.integer(quint32(kQcwWaveCount));
    for (int i = 0; i < kQcwWaveCount; ++i)
        visitWave(pens.GetQCWWaves()[i], FieldWriter(out));
    return out.bytes();
}

std::optional<QByteArray> encodeMkf(const DocumentContent& content) {
    const std::optional<QByteArray> objects = encodeObjects(*content.objects);
    if (!objects)
        return std::nullopt;
    const QByteArray sections[SectionCount] = {encodePens(content.pens), encodeSettings(content.settings), *objects};
    qint64 total = kHeaderBytes + SectionCount * kTableEntryBytes + kChecksumBytes;
    for (const QByteArray& section : sections)
        total += section.size();
    if (total > kMaxMkfBytes)
        return std::nullopt;
    ByteWriter out;
    out.raw(QByteArray(kMagic, sizeof kMagic));
    out.integer(kMkfVersion);
    out.integer(quint32(SectionCount));
    out.integer(quint64(total));
    qint64 offset = kHeaderBytes + SectionCount * kTableEntryBytes;
    for (int i = 0; i < SectionCount; ++i) {
        out.raw(QByteArray(kSections[i].name, 4));
        out.integer(i == ObjectsSection ? objectsVersion(*content.objects) : kSections[i].version);
        out.integer(quint64(offset));
        out.integer(quint64(sections[i].size()));
        offset += sections[i].size();
    }
    for (const QByteArray& section : sections)
        out.raw(section);
    out.raw(checksum(out.bytes().constData(), out.bytes().size()));
    return out.bytes();
}

std::optional<DocumentContent> decodeMkf(const QByteArray& bytes, QString* error) {
    Extent sections[SectionCount];
    const QString fault = frameFault(bytes, sections);
    if (!fault.isEmpty()) {
        refuse(error, fault);
        return std::nullopt;
    }
    DocumentContent content;
    const auto decode = [&](SectionIndex index, auto&& take) {
        ByteReader in(bytes.constData() + sections[index].offset, sections[index].length);
        if (take(in) && in.left() != 0)
            in.fail(QStringLiteral("a section is longer than its content"));
        return in.ok() || refuse(error, in.fault());
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

bool saveDocument(Document& document, QString* error) {
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

bool loadDocument(Document& document, QString* error) {
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

} // namespace sim
