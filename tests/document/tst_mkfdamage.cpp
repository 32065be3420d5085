// SPDX-License-Identifier: MIT
// Documents of every kind of object come back equal from their files, and damaged files come to nothing.
//
// TESSERA_MKF_ROUNDS sets how many times what is done at random is done: 1 in a usual run.
#include "randomobjects.h"
#include "samples.h"
#include "simengine/document/edits.h"
#include "simengine/document/mkfcodec.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <set>

using namespace sim;

namespace {

int rounds() {
    return std::max(1, qEnvironmentVariableIntValue("TESSERA_MKF_ROUNDS"));
}

bool writeTo(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

/// An open document whose file is damaged under it.
class OpenDocument {
public:
    OpenDocument()
        : m_path(m_dir.filePath(QStringLiteral("plate.mkf"))) {
        QRandomGenerator random(11);
        DocumentContent content = samples::fullContent();
        ObjectList objects = *content.objects;
        for (const ObjectPtr& object : randomobjects::several(20, random))
            objects.push_back(object);
        content.objects = std::make_shared<const ObjectList>(objects);
        m_document.setContent(content);
        m_document.setFileName(m_path);
        m_saved = saveDocument(m_document, nullptr);
        QFile file(m_path);
        m_saved = m_saved && file.open(QIODevice::ReadOnly);
        m_bytes = file.readAll();
        // what is open differs from the file, as while somebody works on it
        m_document.edit([](const DocumentState& s) { return edits::add(s, {samples::point(1, 2)}); });
        m_before = samples::bytesOf(m_document);
        m_state = m_document.state();
    }

    bool saved() const { return m_saved; }
    const QString& path() const { return m_path; }
    const QByteArray& bytes() const { return m_bytes; }
    /// Opening is refused with a message that names the file, and the document is what it was.
    bool refusesAndStays() {
        QString error;
        return !loadDocument(m_document, &error) && error.contains(QStringLiteral("plate.mkf: ")) &&
               error.size() > m_path.size() + 5 && m_document.state() == m_state && m_document.canUndo();
    }
    bool isUnharmed() const { return samples::bytesOf(m_document) == m_before; }

private:
    QTemporaryDir m_dir;
    QString m_path;
    Document m_document;
    StatePtr m_state;
    QByteArray m_bytes;
    QByteArray m_before;
    bool m_saved = false;
};

} // namespace

class MkfDamageTest : public QObject {
    Q_OBJECT

private slots:
    void the_table_has_every_kind();
    void random_objects_come_back_equal_data();
    void random_objects_come_back_equal();
    void documents_of_mixed_objects_come_back_equal();
    void the_comparison_sees_a_difference();
    void a_file_cut_at_any_length_is_refused();
    void flipped_bits_are_refused();
    void a_large_damaged_file_is_refused();
};

void MkfDamageTest::the_table_has_every_kind() {
    std::set<int> found;
    QRandomGenerator random(1);
    for (size_t i = 0; i < randomobjects::kinds().size(); ++i) {
        const randomobjects::Kind& kind = randomobjects::kinds()[i];
        const Shape shape = kind.make(random);
        QCOMPARE(shape.index(), i);
        QCOMPARE(int(kindOf(shape)), int(kind.kind));
        found.insert(int(kind.kind));
    }
    // files number the kinds from 1 on
    QCOMPARE(found.size(), randomobjects::kinds().size());
    QCOMPARE(*found.begin(), 1);
    QCOMPARE(*found.rbegin(), int(found.size()));
}

void MkfDamageTest::random_objects_come_back_equal_data() {
    QTest::addColumn<int>("row");
    for (size_t i = 0; i < randomobjects::kinds().size(); ++i)
        QTest::newRow(randomobjects::kinds()[i].name) << int(i);
}

void MkfDamageTest::random_objects_come_back_equal() {
    QFETCH(int, row);
    QTemporaryDir dir;
    QRandomGenerator random(quint32(100 + row));
    for (int round = 0; round < 3 * rounds(); ++round) {
        ObjectList objects;
        for (int i = 0; i < 40; ++i)
            objects.push_back(randomobjects::make(randomobjects::kinds()[size_t(row)], random));
        DocumentContent content;
        content.objects = std::make_shared<const ObjectList>(objects);
        Document document;
        document.setContent(content);
        document.setFileName(dir.filePath(QStringLiteral("a.mkf")));
        QString error;
        QVERIFY2(saveDocument(document, &error), qPrintable(error));
        Document opened;
        opened.setFileName(document.fileName());
        QVERIFY2(loadDocument(opened, &error), qPrintable(error));
        QVERIFY(randomobjects::equal(*opened.state()->objects, objects));
    }
}

void MkfDamageTest::documents_of_mixed_objects_come_back_equal() {
    QRandomGenerator random(7);
    for (int round = 0; round < 10 * rounds(); ++round) {
        DocumentContent content;
        content.objects = std::make_shared<const ObjectList>(randomobjects::several(random.bounded(60), random));
        QString error;
        const auto decoded = decodeMkf(*encodeMkf(content), &error);
        QVERIFY2(decoded, qPrintable(error));
        QVERIFY(randomobjects::equal(*decoded->objects, *content.objects));
    }
}

void MkfDamageTest::the_comparison_sees_a_difference() {
    for (const randomobjects::Kind& kind : randomobjects::kinds()) {
        QRandomGenerator one(5);
        QRandomGenerator two(6);
        const ObjectPtr a = randomobjects::make(kind, one);
        const ObjectPtr b = randomobjects::make(kind, two);
        QVERIFY(randomobjects::equal(*a, *a));
        // the shape alone is different
        ObjectData data = a->data();
        data.shape = b->shape();
        const ObjectPtr changed = MarkObject::make(data);
        QVERIFY2(changed && !randomobjects::equal(*a, *changed), kind.name);
    }
}

void MkfDamageTest::a_file_cut_at_any_length_is_refused() {
    OpenDocument open;
    QVERIFY(open.saved());
    QString error;
    for (int length = 0; length < open.bytes().size(); ++length) {
        QVERIFY2(!decodeMkf(open.bytes().left(length), &error) && !error.isEmpty(),
                 qPrintable(QString::number(length)));
    }
    // from the file itself: some lengths, or all of them in a long run
    QFile file(open.path());
    QVERIFY(file.open(QIODevice::ReadWrite));
    const int step = rounds() > 1 ? 1 : 97;
    for (int length = open.bytes().size() - 1; length >= 0; length -= step) {
        QVERIFY(file.resize(length));
        QVERIFY2(open.refusesAndStays(), qPrintable(QString::number(length)));
    }
    QVERIFY(open.isUnharmed());
}

void MkfDamageTest::flipped_bits_are_refused() {
    OpenDocument open;
    QVERIFY(open.saved());
    constexpr int kFlips = 10000;
    constexpr int kFromTheFile = 300;
    QRandomGenerator random(13);
    for (int round = 0; round < rounds(); ++round) {
        for (int i = 0; i < kFlips; ++i) {
            QByteArray damaged = open.bytes();
            const int place = random.bounded(damaged.size());
            damaged[place] = char(damaged[place] ^ (1 << random.bounded(8)));
            QString error;
            QVERIFY2(!decodeMkf(damaged, &error) && !error.isEmpty(), qPrintable(QString::number(place)));
            if (i < kFromTheFile || rounds() > 1) {
                QVERIFY(writeTo(open.path(), damaged));
                QVERIFY2(open.refusesAndStays(), qPrintable(QString::number(place)));
            }
        }
    }
    QVERIFY(open.isUnharmed());
}

// Of a file above a megabyte the objects are read while the checksum is still being made.
void MkfDamageTest::a_large_damaged_file_is_refused() {
    QVector<QPointF> points;
    for (int i = 0; i < 100000; ++i)
        points << QPointF(i * 0.001, i % 7);
    DocumentContent content;
    ObjectList objects = {samples::line(points)};
    for (int i = 0; i < 200; ++i)
        objects.push_back(samples::rect(i, 0, 1, 1));
    content.objects = std::make_shared<const ObjectList>(objects);
    const QByteArray bytes = *encodeMkf(content);
    QVERIFY(bytes.size() > (1 << 20));
    QVERIFY(decodeMkf(bytes, nullptr));
    QRandomGenerator random(17);
    for (int i = 0; i < 60 * rounds(); ++i) {
        QByteArray damaged = bytes;
        // the tail has the records, where damage could lead astray
        const int from = i % 2 ? 0 : bytes.size() - 40000;
        const int place = from + random.bounded(bytes.size() - from);
        damaged[place] = char(damaged[place] ^ (1 << random.bounded(8)));
        QString error;
        QVERIFY2(!decodeMkf(damaged, &error), qPrintable(QString::number(place)));
        QVERIFY(!error.isEmpty());
        if (place >= 96)
            QCOMPARE(error, QStringLiteral("the checksum is wrong: the file is damaged"));
    }
}

QTEST_GUILESS_MAIN(MkfDamageTest)
#include "tst_mkfdamage.moc"
