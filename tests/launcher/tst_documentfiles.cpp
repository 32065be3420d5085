// SPDX-License-Identifier: MIT
#include "documentfiles.h"
#include "support/approot.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using tessera::DocumentFiles;

class TestDocumentFiles : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_root;

    QString put(QString const& name, QByteArray const& content) const {
        QString const path = m_root->filePath("MarkFile/" + name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }
    QString path(QString const& name) const { return m_root->filePath("MarkFile/" + name); }

private slots:
    void init() {
        m_root = std::make_unique<QTemporaryDir>();
        tessera::setApplicationRoot(m_root->path());
        QVERIFY(QDir(m_root->path()).mkdir("MarkFile"));
    }

    void document_is_found_by_path_or_name() {
        QString const plate = put("Plate.mkf", "p");
        QCOMPARE(DocumentFiles::existing(plate), plate);
        QCOMPARE(DocumentFiles::existing("Plate"), plate);
        QCOMPARE(DocumentFiles::existing("Plate.mkf"), plate);
        QCOMPARE(DocumentFiles::existing("Other"), QString());
        QCOMPARE(DocumentFiles::existing("/no/such.mkf"), QString());
        QCOMPARE(DocumentFiles::existing(m_root->path()), QString());
    }

    void import_is_named_after_the_drawing_data() {
        QTest::addColumn<QString>("drawing");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << "/a/gear.svg"
                               << "gear.mkf";
        QTest::newRow("two dots") << "/a/gear.v2.svg"
                                  << "gear.v2.mkf";
        QTest::newRow("capitals") << "/a/Gear.SVG"
                                  << "gear.mkf";
        QTest::newRow("Chinese") << QStringLiteral("/a/齿轮.dxf") << QStringLiteral("齿轮.mkf");
        QTest::newRow("ending alone") << "/a/.svg"
                                      << "import.mkf";
        QTest::newRow("no ending") << "/a/gear"
                                   << "gear.mkf";
    }
    void import_is_named_after_the_drawing() {
        QFETCH(QString, drawing);
        QFETCH(QString, name);
        QCOMPARE(DocumentFiles::importTarget(drawing, "x"), path(name));
    }

    void document_of_the_folder_is_opened_by_its_bare_name_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("name");
        // an empty name: the path stays
        QTest::newRow("small letters") << "gear.v2.mkf"
                                       << "gear.v2";
        QTest::newRow("capitals") << "Gear.mkf"
                                  << "";
        QTest::newRow("other ending") << "gear.bak"
                                      << "";
        QTest::newRow("no name") << ".mkf"
                                 << "";
        QTest::newRow("folder below") << "sub/gear.mkf"
                                      << "";
        QTest::newRow("elsewhere") << "../gear.mkf"
                                   << "";
    }
    void document_of_the_folder_is_opened_by_its_bare_name() {
        QFETCH(QString, file);
        QFETCH(QString, name);
        QString const given = QDir::cleanPath(path(file));
        QCOMPARE(DocumentFiles::openName(given), name.isEmpty() ? given : name);
    }

    void existing_document_of_other_content_is_not_named() {
        put("gear.mkf", "old");
        put("gear_2.mkf", "older");
        QCOMPARE(DocumentFiles::importTarget("/a/gear.svg", "new"), path("gear_3.mkf"));
    }

    void existing_document_of_the_same_content_is_named_again() {
        put("gear.mkf", "old");
        put("gear_2.mkf", "same");
        QCOMPARE(DocumentFiles::importTarget("/a/gear.svg", "same"), path("gear_2.mkf"));
    }

    void unknown_content_fits_no_document() {
        put("gear.mkf", "");
        QCOMPARE(DocumentFiles::importTarget("/a/gear.svg", ""), path("gear_2.mkf"));
    }

    void folder_and_dangling_link_are_taken_names() {
        QVERIFY(QDir(path("")).mkdir("gear.mkf"));
        QVERIFY(QFile::link("nowhere", path("gear_2.mkf")));
        QCOMPARE(DocumentFiles::importTarget("/a/gear.svg", "x"), path("gear_3.mkf"));
    }
};

QTEST_GUILESS_MAIN(TestDocumentFiles)
#include "tst_documentfiles.moc"
