// SPDX-License-Identifier: MIT
#include "samples.h"
#include "simengine/document/bytestream.h"
#include "simengine/document/defaultpen.h"
#include "simengine/document/limits.h"
#include "simengine/document/mkfcodec.h"
#include "simengine/document/mkfobjects.h"

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QTest>
#include <limits>

using namespace sim;

namespace {

QByteArray small() {
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(ObjectList{samples::line({{1, 2}, {3, 4}})});
    return *encodeMkf(content);
}

/// The bytes with a checksum that fits them again.
QByteArray resealed(QByteArray bytes) {
    bytes.chop(32);
    return bytes + QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

/// Puts a number, lowest byte first.
template<class Integer>
void put(QByteArray& bytes, int place, Integer value) {
    for (int i = 0; i < int(sizeof value); ++i)
        bytes[place + i] = char(value >> (8 * i));
}

/// Where the object section begins.
int objectsOffset(const QByteArray& bytes) {
    return int(qFromLittleEndian<quint64>(bytes.constData() + 24 + 2 * 24 + 8));
}

/// Where the table has the version of the object section.
constexpr int kObjectsVersionPlace = 24 + 2 * 24 + 4;

quint32 objectsVersionIn(const QByteArray& bytes) {
    return qFromLittleEndian<quint32>(bytes.constData() + kObjectsVersionPlace);
}

/// A document of the text "A".
QByteArray withText() {
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(ObjectList{samples::text(QStringLiteral("A"))});
    return *encodeMkf(content);
}

/// A document of what a tool module may have made.
QByteArray withGenerated() {
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(ObjectList{samples::generated()});
    return *encodeMkf(content);
}

QString faultOf(const QByteArray& bytes) {
    QString error;
    return decodeMkf(bytes, &error) ? QStringLiteral("taken") : error;
}

enum class Reading { Refused, AsItSays, Otherwise };

/// What is taken of a file has to be a whole document, and the one that the bytes say.
Reading readingOf(const QByteArray& bytes) {
    const auto decoded = decodeMkf(bytes, nullptr);
    if (!decoded)
        return Reading::Refused;
    return *encodeMkf(*decoded) == bytes ? Reading::AsItSays : Reading::Otherwise;
}

/// The object section cut off within its one object, with sizes and a checksum that fit.
void everyTruncationIsRefused(const QByteArray& bytes) {
    const int objects = objectsOffset(bytes);
    for (int length = objects + 4; length < bytes.size() - 32; ++length) {
        QByteArray cut = bytes.left(length) + QByteArray(32, '\0');
        put(cut, 16, quint64(cut.size()));
        put(cut, 24 + 2 * 24 + 16, quint64(length - objects));
        QVERIFY2(!decodeMkf(resealed(cut), nullptr), qPrintable(QString::number(length)));
    }
}

/// Every byte of the object section changed, with a checksum that fits; more than `fewest` of these files are refused.
void everyChangedByteIsRefusedOrTakenAsItSays(const QByteArray& bytes, int fewest) {
    int refused = 0;
    for (int place = objectsOffset(bytes); place < bytes.size() - 32; ++place) {
        for (const int change : {1, 0x80, 0xff}) {
            QByteArray damaged = bytes;
            damaged[place] = char(damaged[place] ^ change);
            const Reading reading = readingOf(resealed(damaged));
            QVERIFY(reading != Reading::Otherwise);
            refused += reading == Reading::Refused ? 1 : 0;
        }
    }
    QVERIFY(refused > fewest);
}

/// Bytes in place of others behind the name of the one object.
QString faultOfReplaced(QByteArray file, int place, const QByteArray& bytes) {
    file.replace(objectsOffset(file) + 4 + 175 + place, bytes.size(), bytes);
    return faultOf(resealed(file));
}

} // namespace

/// The bytes of a document's file: every field, damage of every kind, other versions.
class MkfTest : public QObject {
    Q_OBJECT

private slots:
    void every_field_comes_back_bit_for_bit();
    void known_bytes();
    void special_numbers_come_back();
    void every_flipped_byte_is_refused();
    void every_flipped_bit_of_a_full_document_is_refused();
    void every_truncation_is_refused();
    void added_bytes_are_refused();
    void newer_format_is_refused_by_name();
    void unknown_object_kind_is_refused_by_name();
    void only_documents_with_texts_have_the_higher_version();
    void texts_of_the_lower_version_are_unknown();
    void every_truncation_of_a_text_is_refused();
    void every_changed_byte_of_a_text_is_refused_or_taken_as_it_says();
    void unsound_texts_are_refused_data();
    void unsound_texts_are_refused();
    void only_documents_with_tool_shapes_have_their_version();
    void every_truncation_of_a_tool_shape_is_refused();
    void every_changed_byte_of_a_tool_shape_is_refused_or_taken_as_it_says();
    void unsound_tool_shapes_are_refused_data();
    void unsound_tool_shapes_are_refused();
    void hostile_counts_are_refused_without_reserving();
    void resealed_damage_never_loads_half();
    void deep_groups_are_refused();
    void more_than_a_file_may_hold_is_refused();
    void bytes_beyond_the_limit_are_not_written();
    void default_pen_file();
};

void MkfTest::every_field_comes_back_bit_for_bit() {
    const DocumentContent content = samples::fullContent();
    const QByteArray bytes = *encodeMkf(content);
    QString error;
    const auto decoded = decodeMkf(bytes, &error);
    QVERIFY2(decoded, qPrintable(error));
    QCOMPARE(*encodeMkf(*decoded), bytes);

    // not by the codec's own word alone
    QCOMPARE(decoded->settings.currentPen, 7);
    QCOMPARE(decoded->settings.basePoint, BasePointBottomLeft);
    QCOMPARE(decoded->settings.keyMoveDistance, 0.125);
    QCOMPARE(decoded->objects->size(), size_t(10));
    for (size_t i = 0; i < 10; ++i) {
        const ObjectData& a = (*content.objects)[i]->data();
        const ObjectData& b = (*decoded->objects)[i]->data();
        QCOMPARE(b.shape.index(), a.shape.index());
        QCOMPARE(b.transform, a.transform);
        QCOMPARE(b.pen, a.pen);
        QCOMPARE(int(b.work), int(a.work));
        QCOMPARE(b.angle, a.angle);
        QCOMPARE(b.angleChanged, a.angleChanged);
        QCOMPARE(b.hatch.enableEdge, a.hatch.enableEdge);
        QCOMPARE(b.hatch.markFillFirst, a.hatch.markFillFirst);
        QCOMPARE(b.hatch.showSimple, a.hatch.showSimple);
        QCOMPARE(b.name, a.name);
        const FillParam& fill = b.hatch.fills[int(i % 3)];
        QVERIFY(fill.Enable);
        QCOMPARE(fill.FillDist, 0.05);
        QCOMPARE(fill.FillAngle, -45.5);
        QCOMPARE(fill.FillLayer, 7);
        QCOMPARE(fill.FillOffset, 0.25);
        QCOMPARE(fill.EdgeCnt, 3);
        QCOMPARE(fill.FillType, 4);
        QVERIFY(!b.hatch.fills[int((i + 1) % 3)].Enable);
    }
    QCOMPARE(std::get<PointShape>((*decoded->objects)[0]->shape()).dwellUs, 750.0);
    QVERIFY(std::get<PolylineShape>((*decoded->objects)[1]->shape()).closed);
    QVERIFY(std::get<CircleShape>((*decoded->objects)[3]->shape()).clockwise);
    QCOMPARE(std::get<ArcShape>((*decoded->objects)[4]->shape()).sweepAngle, -200.0);
    QCOMPARE(std::get<PathShape>((*decoded->objects)[5]->shape()).points,
             std::get<PathShape>((*content.objects)[5]->shape()).points);
    QCOMPARE((*decoded->objects)[6]->groupDepth(), 2);
    const auto& text = std::get<TextShape>((*decoded->objects)[7]->shape());
    const auto& written = std::get<TextShape>((*content.objects)[7]->shape());
    QCOMPARE(text.spec.text, QStringLiteral("A1\nbB"));
    QCOMPARE(text.spec.family, QStringLiteral("futural"));
    QVERIFY(text.spec.singleLine && text.spec.italic && !text.spec.bold);
    QCOMPARE(int(text.spec.align), int(TextAlign::Right));
    QCOMPARE(text.spec.height, 2.5);
    QCOMPARE(text.spec.letterSpacing, 0.125);
    QCOMPARE(text.spec.lineSpacing, 2.25);
    QCOMPARE(text.characterContours, written.characterContours);
    QCOMPARE(text.outline.points, written.outline.points);
    QVERIFY(text.outline.verbs == written.outline.verbs);
    const auto& generated = std::get<GeneratedShape>((*decoded->objects)[9]->shape());
    QCOMPARE(generated.toolClass, QStringLiteral("SampleTriangle"));
    QCOMPARE(generated.parameters, QByteArray("\0\xff parameters", 13));
    QVERIFY(generated.outline.points == std::get<GeneratedShape>((*content.objects)[9]->shape()).outline.points);
    const auto& code = std::get<CodeShape>((*decoded->objects)[8]->shape());
    const auto& writtenCode = std::get<CodeShape>((*content.objects)[8]->shape());
    QVERIFY(code.spec == writtenCode.spec);
    QCOMPARE(code.shown, QStringLiteral("N0042"));
    QCOMPARE(code.outline.points, writtenCode.outline.points);
    QVERIFY(code.outline.verbs == writtenCode.outline.verbs);
    for (int i = 0; i < kLayerCount; ++i) {
        LayerData a;
        LayerData b;
        const_cast<LayerParamEx&>(content.pens).GetLayerData(i, a);
        decoded->pens.GetLayerData(i, b);
        QCOMPARE(b.ColorG, a.ColorG);
        QCOMPARE(b.MarkSpeed, a.MarkSpeed);
        QCOMPARE(b.PWM, a.PWM);
        QCOMPARE(b.OpenLaserDelay, -(i + 1));
        QCOMPARE(b.MinJumpDelayDist, a.MinJumpDelayDist);
        QVERIFY(b.PointWave == a.PointWave && b.LineWave == a.LineWave);
        QCOMPARE(b.WobbleEnable, a.WobbleEnable);
        QCOMPARE(b.UseDefault, a.UseDefault);
    }
    QCOMPARE(decoded->pens.GetQCWWaves()[15].eyeDelay, 24.0);
}

void MkfTest::known_bytes() {
    const QByteArray bytes = small();
    QCOMPARE(bytes.left(16).toHex(), QByteArray("894d4b460d0a1a0a0100000003000000"));
    QCOMPARE(qFromLittleEndian<quint64>(bytes.constData() + 16), quint64(bytes.size()));
    QCOMPARE(bytes.mid(24, 4), QByteArray("PENS"));
    QCOMPARE(qFromLittleEndian<quint64>(bytes.constData() + 32), quint64(96));
    QCOMPARE(qFromLittleEndian<quint64>(bytes.constData() + 40), quint64(4 + 20 * 786 + 4 + 16 * 76));
    QCOMPARE(bytes.mid(48, 4), QByteArray("SETT"));
    QCOMPARE(qFromLittleEndian<quint64>(bytes.constData() + 64), quint64(16));
    QCOMPARE(bytes.mid(72, 4), QByteArray("OBJS"));
    const QByteArray objects = bytes.mid(objectsOffset(bytes), bytes.size() - 32 - objectsOffset(bytes));
    ByteWriter expected;
    expected.integer(quint32(1));  // objects
    for (int value : {2, 1, 2, 0}) // polyline, works, outline marked, pen 0
        expected.integer(quint8(value));
    for (double value : {0.0, 1.0, 0.0, 0.0, 1.0, 0.0, 0.0}) // angle, transform
        expected.real(value);
    for (int i = 0; i < 3; ++i) {
        expected.flag(false);
        expected.real(0.1);
        expected.real(0.0);
        expected.integer(qint32(0));
        expected.real(0.0);
        expected.integer(qint32(0));
        expected.integer(qint32(0));
    }
    expected.integer(quint32(0)); // name
    expected.flag(false);         // open
    expected.integer(quint32(2));
    for (double value : {1.0, 2.0, 3.0, 4.0})
        expected.real(value);
    QCOMPARE(objects.toHex(), expected.bytes().toHex());
    QCOMPARE(bytes.right(32), QCryptographicHash::hash(bytes.left(bytes.size() - 32), QCryptographicHash::Sha256));
}

void MkfTest::special_numbers_come_back() {
    DocumentContent content = samples::fullContent();
    LayerData* pen = nullptr;
    content.pens.GetLayerData(3, pen);
    pen->Power = std::numeric_limits<double>::quiet_NaN();
    pen->Fre = -0.0;
    pen->PWM = std::numeric_limits<double>::denorm_min();
    pen->MarkSpeed = std::numeric_limits<double>::infinity();
    pen->MarkCnt = std::numeric_limits<int>::min();
    const QByteArray bytes = *encodeMkf(content);
    const auto decoded = decodeMkf(bytes, nullptr);
    QVERIFY(decoded);
    QCOMPARE(*encodeMkf(*decoded), bytes);
}

void MkfTest::every_flipped_byte_is_refused() {
    const QByteArray bytes = small();
    for (int i = 0; i < bytes.size(); ++i) {
        QByteArray damaged = bytes;
        damaged[i] = char(~damaged[i]);
        QString error;
        QVERIFY2(!decodeMkf(damaged, &error), qPrintable(QString::number(i)));
        QVERIFY(!error.isEmpty());
    }
}

void MkfTest::every_flipped_bit_of_a_full_document_is_refused() {
    const QByteArray bytes = *encodeMkf(samples::fullContent());
    QRandomGenerator random(3);
    for (int round = 0; round < 3000; ++round) {
        QByteArray damaged = bytes;
        const int place = int(random.bounded(bytes.size()));
        damaged[place] = char(damaged[place] ^ (1 << random.bounded(8)));
        QVERIFY(!decodeMkf(damaged, nullptr));
    }
}

void MkfTest::every_truncation_is_refused() {
    const QByteArray bytes = small();
    for (int length = 0; length < bytes.size(); ++length) {
        QString error;
        QVERIFY(!decodeMkf(bytes.left(length), &error));
        QVERIFY(!error.isEmpty());
        if (length > objectsOffset(bytes) || (length > 88 && length % 100 == 0))
            QVERIFY(!decodeMkf(resealed(bytes.left(length)), &error));
    }
}

void MkfTest::added_bytes_are_refused() {
    QCOMPARE(faultOf(small() + '\0'), QStringLiteral("the file is cut off or has been added to"));
}

void MkfTest::newer_format_is_refused_by_name() {
    QByteArray bytes = small();
    bytes[8] = 2;
    QCOMPARE(faultOf(resealed(bytes)), QStringLiteral("the file was made by a newer program (format 2)"));
    bytes[8] = 0;
    QCOMPARE(faultOf(resealed(bytes)), QStringLiteral("the format 0 is unknown"));
}

void MkfTest::unknown_object_kind_is_refused_by_name() {
    QByteArray bytes = small();
    bytes[objectsOffset(bytes) + 4] = char(200);
    QCOMPARE(faultOf(resealed(bytes)), QStringLiteral("objects of the kind 200 are unknown to this program"));
}

void MkfTest::hostile_counts_are_refused_without_reserving() {
    QByteArray bytes = small();
    const int objects = objectsOffset(bytes);
    for (int place : {objects, objects + 4 + 176}) { // number of objects, number of points
        QByteArray hostile = bytes;
        for (int i = 0; i < 4; ++i)
            hostile[place + i] = char(0xff);
        QCOMPARE(faultOf(resealed(hostile)), QStringLiteral("a count is larger than the file"));
    }
    QByteArray named = bytes;
    put(named, objects + 4 + 175 - 4, quint32(1001));
    QVERIFY(!decodeMkf(resealed(named), nullptr));
}

void MkfTest::only_documents_with_texts_have_the_higher_version() {
    QCOMPARE(int(objectsVersionIn(small())), 1);
    QCOMPARE(int(objectsVersionIn(withText())), 2);
    DocumentContent content;
    const ObjectPtr inner = samples::group({samples::point(0, 0), samples::text(QStringLiteral("A"))});
    content.objects = std::make_shared<const ObjectList>(ObjectList{samples::group({inner})});
    QCOMPARE(int(objectsVersionIn(*encodeMkf(content))), 2);
    QByteArray bytes = small();
    bytes[kObjectsVersionPlace] = 2;
    QCOMPARE(faultOf(resealed(bytes)), QStringLiteral("the objects do not need the version of their section"));
    bytes[kObjectsVersionPlace] = char(kNewestObjectsVersion + 1);
    QCOMPARE(faultOf(resealed(bytes)), QStringLiteral("the file has an unknown section"));
}

void MkfTest::texts_of_the_lower_version_are_unknown() {
    QByteArray bytes = withText();
    bytes[kObjectsVersionPlace] = 1;
    QCOMPARE(faultOf(resealed(bytes)), QStringLiteral("objects of the kind 8 are unknown to this program"));
}

void MkfTest::every_truncation_of_a_text_is_refused() {
    everyTruncationIsRefused(withText());
}

void MkfTest::every_changed_byte_of_a_text_is_refused_or_taken_as_it_says() {
    everyChangedByteIsRefusedOrTakenAsItSays(withText(), 100);
}

void MkfTest::unsound_texts_are_refused_data() {
    QTest::addColumn<int>("place"); // from the end of the object's name
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("fault");
    // "A" and "rowmans" are before the switches
    const int text = 4;
    const int style = text + 2 + 4 + 14;
    QTest::newRow("control character") << text << QByteArray(1, '\t') << "a text holds a control character";
    QTest::newRow("half a surrogate") << text + 1 << QByteArray(1, char(0xd8)) << "a text holds a control character";
    QTest::newRow("more characters than the file has")
        << 0 << QByteArray("\x21\x4e\x00\x00", 4) << "a count is larger than the file";
    QTest::newRow("unknown switch") << style << QByteArray(1, 8) << "a text has an unknown switch";
    QTest::newRow("bold strokes") << style << QByteArray(1, 3) << "the font of a text is not usable";
    QTest::newRow("alignment") << style + 1 << QByteArray(1, 3) << "the font of a text is not usable";
    QTest::newRow("height 0") << style + 2 << QByteArray(8, 0) << "the size of a text is out of range";
    QTest::newRow("line spacing 0") << style + 18 << QByteArray(8, 0) << "the size of a text is out of range";
    QTest::newRow("letter without contours") << style + 30 << QByteArray(4, 0) << "a letter of a text has no contours";
    QTest::newRow("too many contours") << style + 30 << QByteArray(4, char(0xff))
                                       << "a letter of a text has too many contours";
    QTest::newRow("contours that are not there")
        << style + 30 << QByteArray(1, 9) << "the letters of a text do not fit its outline";
    QTest::newRow("path begins with a line") << style + 38 << QByteArray(1, 1) << "a path segment has no start";
}

void MkfTest::unsound_texts_are_refused() {
    QFETCH(int, place);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, fault);
    QCOMPARE(faultOfReplaced(withText(), place, bytes), fault);
}

void MkfTest::only_documents_with_tool_shapes_have_their_version() {
    QCOMPARE(int(objectsVersionIn(withGenerated())), 4);
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(
        ObjectList{samples::text(QStringLiteral("A")), samples::group({samples::generated()})});
    QCOMPARE(int(objectsVersionIn(*encodeMkf(content))), 4);
    for (const char* lower : {"\1", "\2"}) {
        QByteArray bytes = withGenerated();
        bytes[kObjectsVersionPlace] = *lower;
        QCOMPARE(faultOf(resealed(bytes)), QStringLiteral("objects of the kind 10 are unknown to this program"));
    }
    for (QByteArray bytes : {small(), withText()}) {
        bytes[kObjectsVersionPlace] = 4;
        QCOMPARE(faultOf(resealed(bytes)), QStringLiteral("the objects do not need the version of their section"));
    }
}

void MkfTest::every_truncation_of_a_tool_shape_is_refused() {
    everyTruncationIsRefused(withGenerated());
}

void MkfTest::every_changed_byte_of_a_tool_shape_is_refused_or_taken_as_it_says() {
    everyChangedByteIsRefusedOrTakenAsItSays(withGenerated(), 50);
}

void MkfTest::unsound_tool_shapes_are_refused_data() {
    QTest::addColumn<int>("place"); // from the end of the object's name
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("fault");
    const int parameters = 4 + 2 * 14; // behind "SampleTriangle"
    const int outline = parameters + 4 + 3;
    QTest::newRow("class longer than any") << 0 << QByteArray("\xff\xff\0\0", 4) << "a count is larger than the file";
    QTest::newRow("parameters longer than the file")
        << parameters << QByteArray(4, char(0xff)) << "a count is larger than the file";
    QTest::newRow("path begins with a line") << outline + 4 << QByteArray(1, 1) << "a path segment has no start";
    QTest::newRow("coordinate that is no number")
        << outline + 4 + 4 + 4 << QByteArray("\0\0\0\0\0\0\xf8\x7f", 8) << "a coordinate is out of range";
}

void MkfTest::unsound_tool_shapes_are_refused() {
    QFETCH(int, place);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, fault);
    QCOMPARE(faultOfReplaced(withGenerated(), place, bytes), fault);
}

void MkfTest::resealed_damage_never_loads_half() {
    const QByteArray bytes = *encodeMkf(samples::fullContent());
    QRandomGenerator random(4);
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray damaged = bytes;
        const int from = round % 2 ? objectsOffset(bytes) : 8;
        for (int i = 0; i < 3; ++i)
            damaged[from + int(random.bounded(bytes.size() - 32 - from))] = char(random.bounded(256));
        const Reading reading = readingOf(resealed(damaged));
        QVERIFY(reading != Reading::Otherwise);
        refused += reading == Reading::Refused ? 1 : 0;
    }
    QVERIFY(refused > 100);
}

void MkfTest::deep_groups_are_refused() {
    ObjectPtr nested = samples::point(0, 0);
    for (int i = 0; i < kMaxGroupDepth; ++i)
        nested = samples::group({nested});
    QVERIFY(nested);
    QVERIFY(!samples::group({nested}));
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(ObjectList{nested});
    const QByteArray bytes = *encodeMkf(content);
    QVERIFY(decodeMkf(bytes, nullptr));

    // a record of one group around another, repeated deeper than any document can be
    const int objects = objectsOffset(bytes);
    const QByteArray groupHead = bytes.mid(objects + 4, 179);
    QByteArray section = bytes.mid(objects, 4);
    for (int i = 0; i < 100000; ++i)
        section += groupHead;
    QByteArray hostile = bytes.left(objects) + section + QByteArray(32, '\0');
    put(hostile, 16, quint64(quint64(hostile.size())));
    put(hostile, 24 + 2 * 24 + 16, quint64(quint64(section.size())));
    QCOMPARE(faultOf(resealed(hostile)), QStringLiteral("groups are nested too deeply"));
}

/// A group of many objects of many bytes each, of which only the group itself stands in the list.
void MkfTest::more_than_a_file_may_hold_is_refused() {
    GroupShape group;
    for (int i = 0; i < 40; ++i) {
        ObjectData data;
        data.shape = std::get<GeneratedShape>(samples::generated()->shape());
        std::get<GeneratedShape>(data.shape).parameters = QByteArray(kMaxToolParameterBytes, 'p');
        group.children.push_back(MarkObject::make(std::move(data)));
        QVERIFY(group.children.back());
    }
    ObjectData data;
    data.shape = group;
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(ObjectList{MarkObject::make(std::move(data))});
    const std::optional<QByteArray> bytes = encodeMkf(content);
    QVERIFY(bytes && bytes->size() > 40 * kMaxToolParameterBytes);
    QCOMPARE(*encodeMkf(content, bytes->size()), *bytes);
    for (qint64 most : {bytes->size() - 1, bytes->size() - 32, bytes->size() - 33, bytes->size() / 2, 20'000, 30, 0})
        QVERIFY2(!encodeMkf(content, most), qPrintable(QString::number(most)));
}

void MkfTest::bytes_beyond_the_limit_are_not_written() {
    ByteWriter out(0, 10);
    out.integer(quint64(1));
    QVERIFY(out.fits());
    out.integer(quint32(2)); // two bytes are left
    QVERIFY(!out.fits());
    QCOMPARE(out.size(), qint64(8));
    out.flag(true); // would fit, but what is before it is missing
    QCOMPARE(out.size(), qint64(8));
    const QPointF* none = nullptr;
    ByteWriter huge(0);
    huge.points(none, kMostArrayBytes / 16 + 1); // never looked at
    QVERIFY(!huge.fits());
    QCOMPARE(huge.size(), qint64(0));
    ByteWriter early(0);
    early.replace(0, quint32(1));
    QVERIFY(!early.fits());
}

void MkfTest::default_pen_file() {
    LayerData pen;
    pen.MarkSpeed = 1234.5;
    pen.UseDefault = true;
    pen.LineWave[19] = {3, 4};
    const QByteArray bytes = encodeDefaultPen(pen);
    QCOMPARE(bytes.size(), 8 + 4 + 786 + 32);
    QVERIFY(bytes.size() < kMaxDefaultPenBytes);
    const auto decoded = decodeDefaultPen(bytes);
    QVERIFY(decoded);
    QCOMPARE(encodeDefaultPen(*decoded), bytes);
    QCOMPARE(decoded->MarkSpeed, 1234.5);
    for (int i = 0; i < bytes.size(); ++i) {
        QByteArray damaged = bytes;
        damaged[i] = char(~damaged[i]);
        QVERIFY(!decodeDefaultPen(damaged));
        QVERIFY(!decodeDefaultPen(bytes.left(i)));
    }
}

QTEST_GUILESS_MAIN(MkfTest)
#include "tst_mkf.moc"
