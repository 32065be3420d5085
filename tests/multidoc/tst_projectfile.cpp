// SPDX-License-Identifier: MIT
#include "multidoc/projectfile.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>

using namespace tessera;

/// The text of a project and of the file that tells the last one.
class ProjectFileTest : public QObject {
    Q_OBJECT

private slots:
    void a_project_is_written_a_value_a_line();
    void a_project_is_read_back_data();
    void a_project_is_read_back();
    void odd_texts_are_read_data();
    void odd_texts_are_read();
    void a_text_that_ends_early_is_filled_up_to_a_believable_count();
    void the_last_project_is_the_first_line_data();
    void the_last_project_is_the_first_line();
    void the_files_lie_below_the_root();
};

namespace {

TrigerDoc entry(QString const& name, unsigned int value, unsigned int mask) {
    TrigerDoc doc;
    doc.m_nValue = value;
    doc.m_nMask = mask;
    doc.m_FileName = name;
    return doc;
}

QByteArray written(QVector<TrigerDoc> docs) {
    QVector<TrigerDoc*> pointers;
    for (TrigerDoc& doc : docs)
        pointers.append(&doc);
    return WriteProject(pointers);
}

QStringList shown(QVector<TrigerDoc> const& docs) {
    QStringList lines;
    for (TrigerDoc const& doc : docs)
        lines.append(QStringLiteral("%1|%2|%3").arg(doc.m_FileName).arg(doc.m_nValue).arg(doc.m_nMask));
    return lines;
}

} // namespace

void ProjectFileTest::a_project_is_written_a_value_a_line() {
    QCOMPARE(written({}), QByteArray("0\n"));
    QCOMPARE(written({entry("PlateA", 4, 12)}), QByteArray("1\nPlateA\n4\n12\n"));
    QCOMPARE(written({entry("Plate A", 0, 1), entry("前盖", 0xffffffffU, 0x80000000U)}),
             QByteArray("2\nPlate A\n0\n1\n前盖\n4294967295\n2147483648\n"));
}

void ProjectFileTest::a_project_is_read_back_data() {
    QTest::addColumn<int>("count");
    for (int const count : {0, 1, 2, 50, kMaxFilledDocs, kMaxFilledDocs + 1, 3 * kMaxFilledDocs})
        QTest::addRow("%d", count) << count;
}

void ProjectFileTest::a_project_is_read_back() {
    QFETCH(int, count);
    QVector<TrigerDoc> docs;
    for (int i = 0; i < count; ++i)
        docs.append(entry(QStringLiteral("前 Plate %1 ").arg(i), 0x9e3779b9U * unsigned(i), ~0U - unsigned(i)));
    QCOMPARE(shown(ReadProject(written(docs))), shown(docs));
}

void ProjectFileTest::odd_texts_are_read_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("docs");
    const auto row = [](char const* name, QByteArray const& text, QStringList const& docs) {
        QTest::newRow(name) << text << docs;
    };
    row("empty", "", {});
    row("no number", "two\nA\n1\n1\n", {});
    row("negative", "-1\nA\n1\n1\n", {});
    row("beyond an integer", "99999999999\nA\n1\n1\n", {});
    row("more than can be meant", "10001\nA\n1\n1\n", {"A|1|1"});
    row("more than can be meant and a part of an entry", "2000000000\nA\n1\n1\nB\n", {"A|1|1", "B|0|0"});
    row("a tail behind the last entry", "1\nA\n1\n3\nB\n2\n2\n", {"A|1|3"});
    row("the middle of a longer number behind it", "1\nA\n1\n3\n294967295\n", {"A|1|3"});
    row("names without numbers", "2\nA\n", {"A|0|0", "|0|0"});
    row("no end of the last line", "1\nA\n1\n3", {"A|1|3"});
    row("another system's line ends", "1\r\nA\r\n1\r\n3\r\n", {"A|1|3"});
    row("numbers that are none", "1\nA\nx\n-3\n", {"A|0|0"});
    row("a number above 32 bits", "1\nA\n4294967296\n1\n", {"A|0|1"});
    row("a name of blanks", "1\n  \n1\n1\n", {"  |1|1"});
}

void ProjectFileTest::odd_texts_are_read() {
    QFETCH(QByteArray, text);
    QFETCH(QStringList, docs);
    QCOMPARE(shown(ReadProject(text)), docs);
}

void ProjectFileTest::a_text_that_ends_early_is_filled_up_to_a_believable_count() {
    const QVector<TrigerDoc> docs = ReadProject("10000\nA\n1\n1\n");
    QCOMPARE(docs.size(), kMaxFilledDocs);
    QCOMPARE(shown(docs.mid(0, 2)), (QStringList{"A|1|1", "|0|0"}));
    QCOMPARE(shown(docs.mid(kMaxFilledDocs - 1)), QStringList{"|0|0"});
}

void ProjectFileTest::the_last_project_is_the_first_line_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("name");
    QTest::newRow("a line") << QByteArray("plates\n") << "plates";
    QTest::newRow("no line end") << QByteArray("plates") << "plates";
    QTest::newRow("a tail of a longer name") << QByteArray("a\nates\n") << "a";
    QTest::newRow("blanks and Chinese") << QByteArray("前盖 1\n") << "前盖 1";
    QTest::newRow("empty") << QByteArray() << "";
}

void ProjectFileTest::the_last_project_is_the_first_line() {
    QFETCH(QByteArray, text);
    QFETCH(QString, name);
    QCOMPARE(ReadRecentProject(text), name);
    QCOMPARE(WriteRecentProject(name), name.toUtf8() + '\n');
    QCOMPARE(ReadRecentProject(WriteRecentProject(name)), name);
}

void ProjectFileTest::the_files_lie_below_the_root() {
    const tests::TemporaryRoot root;
    QVERIFY(root.isValid());
    QCOMPARE(ProjectPath("Set 1"), root.path("/MarkFile/MultiDocMarkFile/Set 1.mdf"));
    QCOMPARE(RecentProjectPath(), root.path("/MarkFile/MultiDocMarkFile/recent"));
    QCOMPARE(ProjectFolder(), root.path("/MarkFile/MultiDocMarkFile") + "/");
}

QTEST_GUILESS_MAIN(ProjectFileTest)
#include "tst_projectfile.moc"
