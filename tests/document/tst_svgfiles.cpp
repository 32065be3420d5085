// SPDX-License-Identifier: MIT
#include "simengine/importers/importnotes.h"
#include "support/timeoutscale.h"
#include "svgfixture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using namespace sim;
using namespace svg;

/// SVG files as a whole: those that cannot be used, sloppy ones and the samples.
class SvgFilesTest : public QObject {
    Q_OBJECT

private slots:
    void unusable_files_give_an_error_and_nothing_else_data();
    void unusable_files_give_an_error_and_nothing_else();
    void missing_file();
    void doubling_references_are_refused();
    void sloppy_prefixes_are_read();
    void samples_come_whole_data();
    void samples_come_whole();
};

void SvgFilesTest::unusable_files_give_an_error_and_nothing_else_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no markup") << QByteArray("hello");
    QTest::newRow("binary") << QByteArray(1000, '\x9f');
    QTest::newRow("another format") << QByteArray("<html><rect width='1' height='1'/></html>");
    QTest::newRow("cut off") << QByteArray("<svg><rect width='10' height='10'/>");
    QTest::newRow("wrong nesting") << QByteArray("<svg><g><rect width='10' height='10'/></svg>");
    QTest::newRow("viewBox without area") << QByteArray("<svg viewBox='0 0 0 10'><rect width='10' height='10'/></svg>");
    QTest::newRow("viewBox that is none") << QByteArray("<svg viewBox='a b'><rect width='10' height='10'/></svg>");
    QTest::newRow("no width") << QByteArray("<svg width='0' height='10'><rect width='10' height='10'/></svg>");
    QTest::newRow("deep") << "<svg>" + QByteArray("<g>").repeated(100000);
    QTest::newRow("refers to itself") << QByteArray("<svg><g id='a'><use href='#a'/></g></svg>");
    QTest::newRow("refers in a circle") << QByteArray(
        "<svg><g id='a'><use href='#b'/></g><g id='b'><use href='#a'/></g></svg>");
}

void SvgFilesTest::unusable_files_give_an_error_and_nothing_else() {
    QFETCH(QByteArray, bytes);
    const ImportResult result = importSvgData(bytes);
    QVERIFY(!result.ok());
    QVERIFY(result.objects.empty());
}

void SvgFilesTest::missing_file() {
    QTemporaryDir dir;
    const ImportResult result = importSvg(dir.filePath("nothing.svg"));
    QVERIFY(result.error.contains("nothing.svg"));
    QVERIFY(result.objects.empty());
}

void SvgFilesTest::doubling_references_are_refused() {
    QByteArray body = "<svg><defs><rect id='r0' width='1' height='1'/>";
    for (int i = 1; i <= 40; ++i) {
        const QByteArray before = "#r" + QByteArray::number(i - 1);
        body += "<g id='r" + QByteArray::number(i) + "'><use href='" + before + "'/><use href='" + before + "'/></g>";
    }
    // the count ends it before the time does, also where a sanitizer slows the count down
    ImportOptions options;
    options.mostSeconds *= tests::timeoutScale();
    const ImportResult result = importSvgData(body + "</defs><use href='#r40'/></svg>", options);
    QCOMPARE(result.error, noteText(Note::TooManyElements));
}

void SvgFilesTest::sloppy_prefixes_are_read() {
    const ImportResult prefixed =
        importSvgData("<svg:svg xmlns:svg='http://www.w3.org/2000/svg' width='10' height='10'>"
                      "<svg:rect width='5' height='5'/><rect width='5' height='5'/></svg:svg>");
    QCOMPARE(prefixed.objects.size(), size_t(1));
    const ImportResult undeclared =
        importSvgData("<svg width='10' height='10'><defs><rect id='r' width='5' height='5'/></defs>"
                      "<tool:view tool:zoom='3'><rect width='5' height='5'/></tool:view>"
                      "<use xlink:href='#r'/></svg>");
    QVERIFY2(undeclared.ok(), qPrintable(undeclared.error));
    QCOMPARE(undeclared.objects.size(), size_t(1));
}

void SvgFilesTest::samples_come_whole_data() {
    QTest::addColumn<QString>("file");
    const QDir dir(qEnvironmentVariable("TESSERA_SOURCE_DIR") + "/samples");
    for (const QString& name : dir.entryList({"*.svg"}))
        QTest::newRow(qPrintable(name)) << dir.filePath(name);
}

void SvgFilesTest::samples_come_whole() {
    QFETCH(QString, file);
    QFile source(file);
    QVERIFY(source.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&source);
    int shapes = 0;
    int references = 0;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement) {
            static const QStringList drawn = {"path", "rect", "circle", "ellipse", "line", "polyline", "polygon"};
            shapes += drawn.contains(reader.name().toString());
            references += reader.name() == QLatin1String("use");
        }
    }
    QVERIFY(shapes > 0);
    const ImportResult result = importSvg(file);
    QVERIFY2(result.ok(), qPrintable(result.error));
    if (references == 0)
        QCOMPARE(int(result.objects.size()), shapes);
    else
        QVERIFY(int(result.objects.size()) >= shapes - references);
    QVERIFY(near(boundsOf(result).center(), {0, 0}));
    QCOMPARE(skippedCount(result, "path"), 0);
}

QTEST_MAIN(SvgFilesTest)
#include "tst_svgfiles.moc"
