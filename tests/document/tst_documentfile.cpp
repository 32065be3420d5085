// SPDX-License-Identifier: MIT
#include "samples.h"
#include "simengine/document/edits.h"
#include "simengine/document/mkfcodec.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace sim;

namespace {

/// A document's file but for its last byte.
QByteArray cutOff() {
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(ObjectList{samples::line({{1, 2}, {3, 4}})});
    return encodeMkf(content)->chopped(1);
}

} // namespace

/// Saving and loading a document through its file, and what counts as a change since.
class DocumentFileTest : public QObject {
    Q_OBJECT

private slots:
    void failed_load_leaves_the_document();
    void save_and_load_through_a_file();
    void save_without_a_name_fails();
    void save_into_a_file_as_folder_fails();
    void modified_follows_saving_and_undo();
    void modified_follows_the_pens();
};

void DocumentFileTest::failed_load_leaves_the_document() {
    QTemporaryDir dir;
    Document document;
    document.setContent(samples::fullContent());
    const QByteArray before = samples::bytesOf(document);
    document.setFileName(dir.filePath("missing.mkf"));
    QString error;
    QVERIFY(!loadDocument(document, &error));
    QVERIFY(error.contains("missing.mkf"));

    QFile file(dir.filePath("damaged.mkf"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(cutOff());
    file.close();
    document.setFileName(file.fileName());
    QVERIFY(!loadDocument(document, &error));
    QVERIFY2(error.contains("damaged.mkf") && error.contains("cut off"), qPrintable(error));
    QCOMPARE(samples::bytesOf(document), before);
}

void DocumentFileTest::save_and_load_through_a_file() {
    QTemporaryDir dir;
    Document document;
    document.setContent(samples::fullContent());
    document.setFileName(dir.filePath("图形.mkf"));
    QString error;
    QVERIFY2(saveDocument(document, &error), qPrintable(error));
    Document other;
    other.setFileName(document.fileName());
    other.edit([](const DocumentState& s) { return edits::add(s, {samples::point(0, 0)}); });
    QVERIFY2(loadDocument(other, &error), qPrintable(error));
    QCOMPARE(samples::bytesOf(other), samples::bytesOf(document));
    QVERIFY(!other.canUndo());
    QVERIFY(other.state()->selection.isEmpty());
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"图形.mkf"});
}

void DocumentFileTest::save_without_a_name_fails() {
    Document document;
    QString error;
    QVERIFY(!saveDocument(document, &error));
    QCOMPARE(error, QStringLiteral("the document has no file name"));
}

void DocumentFileTest::save_into_a_file_as_folder_fails() {
    QTemporaryDir dir;
    QFile file(dir.filePath("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    Document document;
    document.edit([](const DocumentState& s) { return edits::add(s, {samples::point(0, 0)}); });
    document.setFileName(dir.filePath("file/a.mkf"));
    QString error;
    QVERIFY(!saveDocument(document, &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(document.isModified());
}

void DocumentFileTest::modified_follows_saving_and_undo() {
    QTemporaryDir dir;
    Document document;
    QVERIFY(!document.isModified());
    document.edit([](const DocumentState& s) { return edits::add(s, {samples::point(0, 0)}); });
    QVERIFY(document.isModified());
    document.setFileName(dir.filePath("a.mkf"));
    QVERIFY(saveDocument(document, nullptr));
    QVERIFY(!document.isModified());
    document.undo();
    QVERIFY(document.isModified());
    document.redo();
    QVERIFY(!document.isModified());
    document.select({});
    QVERIFY(!document.isModified());
}

void DocumentFileTest::modified_follows_the_pens() {
    Document document;
    LayerData* pen = nullptr;
    document.pens()->GetLayerData(19, pen);
    pen->Power += 1.0;
    QVERIFY(document.isModified());
    pen->Power -= 1.0;
    QVERIFY(!document.isModified());
    document.pens()->GetQCWWaves()[15].peak = 7.0;
    QVERIFY(document.isModified());
    // what is written through an address is not in a copy taken before
    const DocumentContent copy = document.content();
    pen->Power = 12.0;
    LayerData copied;
    copy.pens.GetLayerData(19, copied);
    QVERIFY(copied.Power != 12.0);
}

QTEST_GUILESS_MAIN(DocumentFileTest)
#include "tst_documentfile.moc"
