// SPDX-License-Identifier: MIT
#include "engine/profinifile.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>

class TestEngineIniFile : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;

private slots:
    void init() { m_root = std::make_unique<tests::TemporaryRoot>(); }
    void cleanup() { m_root.reset(); }

    void missing_file_gives_the_defaults_and_is_not_made() {
        ProfIniFile const file(m_root->path("ini/a.ini"));
        QCOMPARE(file.Read("s", "k", "d"), QStringLiteral("d"));
        QCOMPARE(file.ReadInt("s", "k", -7), -7);
        QCOMPARE(file.ReadDouble("s", "k", 1.5), 1.5);
        QVERIFY(!m_root->exists("ini/a.ini"));
    }

    void written_value_is_read_by_another_object_data() {
        QTest::addColumn<QString>("value");
        QTest::newRow("plain") << "value";
        QTest::newRow("Chinese") << QStringLiteral("激光");
        QTest::newRow("equals sign") << "a=b";
        QTest::newRow("inner blanks") << "a  b";
        QTest::newRow("number") << "12.5";
    }
    void written_value_is_read_by_another_object() {
        QFETCH(QString, value);
        ProfIniFile file(m_root->path("ini/a.ini"));
        QVERIFY(file.Write("section", "key", value));
        QCOMPARE(ProfIniFile(m_root->path("ini/a.ini")).Read("section", "key", "d"), value);
    }

    void numbers_come_back_exactly() {
        ProfIniFile file(m_root->path("ini/a.ini"));
        for (int value : {0, -1, 2147483647, -2147483647 - 1}) {
            QVERIFY(file.WriteInt("n", "int", value));
            QCOMPARE(ProfIniFile(file.GetPath()).ReadInt("n", "int", 5), value);
        }
        for (double value : {0.1, -12345.678901234, 1e-9, 1e15}) {
            QVERIFY(file.WriteDouble("n", "real", value));
            QCOMPARE(ProfIniFile(file.GetPath()).ReadDouble("n", "real", 5), value);
        }
    }

    void text_that_is_no_number_gives_the_default() {
        ProfIniFile file(m_root->path("ini/a.ini"));
        QVERIFY(file.Write("n", "k", "twelve"));
        QCOMPARE(file.ReadInt("n", "k", 3), 3);
        QCOMPARE(file.ReadDouble("n", "k", 2.5), 2.5);
    }

    void what_is_not_written_stays() {
        QByteArray const before = "; a comment\n[one]\nkey=1\nother = kept \n\n# another\n[two]\nkey=2\n";
        QVERIFY(m_root->write("/ini/a.ini", before));
        ProfIniFile file(m_root->path("ini/a.ini"));
        QVERIFY(file.WriteInt("one", "key", 5));
        QByteArray const after = m_root->read("/ini/a.ini");
        for (char const* line : {"; a comment\n", "other = kept \n", "# another\n", "[two]\nkey=2\n"})
            QVERIFY2(after.contains(line), after.constData());
        QCOMPARE(file.ReadInt("one", "key", 0), 5);
        QCOMPARE(file.ReadInt("two", "key", 0), 2);
    }

    void file_that_cannot_be_written_is_told() {
        QVERIFY(m_root->write("/blocked", "file"));
        ProfIniFile file(m_root->path("blocked/a.ini"));
        QVERIFY(!file.Write("s", "k", "v"));
    }

    void shared_objects_are_files_of_the_root() {
        QVERIFY(XProfIniFile_CardCfg::Instance()->GetPath().endsWith("/ini/VZMarkPara.cfg"));
        QVERIFY(XProfIniFile_VZBOXINI::Instance()->GetPath().endsWith("/ini/Demarcate.ini"));
        QVERIFY(XProfIniFile_GlassPara::Instance()->GetPath().endsWith("/ini/GlassSystemPara.ini"));
        QCOMPARE(XProfIniFile_CardCfg::Instance(), XProfIniFile_CardCfg::Instance());
    }
};

QTEST_GUILESS_MAIN(TestEngineIniFile)
#include "tst_engineinifile.moc"
