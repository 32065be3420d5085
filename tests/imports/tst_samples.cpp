// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "importfixture.h"
#include "simengine/importers/importers.h"
#include "simengine/view/importreport.h"

#include <QDir>
#include <QTest>

using namespace sim;
using namespace imports;

/// The drawings that come with the program.
class SamplesTest : public QObject {
    Q_OBJECT

private slots:
    void sample_comes_whole_data();
    void sample_comes_whole();
    void report_tells_each_change_with_its_number();
    void long_report_is_cut_for_the_dialog();
};

void SamplesTest::sample_comes_whole_data() {
    QTest::addColumn<int>("objects");
    QTest::addColumn<QString>("size");
    QTest::addColumn<int>("pens");
    QTest::newRow("rating-label.plt") << 11 << "60 x 30" << 4;
    QTest::newRow("cover-plate.dxf") << 14 << "80 x 50" << 3;
}

void SamplesTest::sample_comes_whole() {
    const QString file = qEnvironmentVariable("TESSERA_SOURCE_DIR") + "/samples/" + QTest::currentDataTag();
    const ImportResult result = importDrawing(file);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QVERIFY(result.skipped.isEmpty());
    const Box box = boundsOf(result);
    QTEST(QString("%1 x %2").arg(std::round(box.width() * 1000) / 1000).arg(std::round(box.height() * 1000) / 1000),
          "size");
    QVERIFY(near(box.center(), {0, 0}));
    QSet<int> pens;
    for (const ObjectPtr& object : result.objects)
        pens.insert(object->pen());
    QTEST(int(pens.size()), "pens");
    QTEST(int(result.objects.size()), "objects");
}

void SamplesTest::report_tells_each_change_with_its_number() {
    const ImportResult result = importDrawing(qEnvironmentVariable("TESSERA_SOURCE_DIR") + "/samples/cover-plate.dxf");
    const QStringList lines = importReport(result).split('\n');
    const auto lan = [](const char* key) { return LanguageManager::GetLanText(key); };
    QVERIFY(lines.contains(lan("文件单位") + ": mm"));
    QVERIFY(lines.contains(lan("图层") + " HOLES: " + lan("笔号") + " 02"));
    QVERIFY(lines.contains(lan("已转换") + ": 3 × LINE (" + noteText(Note::Joined) + ")"));
    QVERIFY(lines.contains(lan("已转换") + ": 1 × MTEXT (" + noteText(Note::FontReplaced) + ")"));
    ImportResult dropped;
    dropped.skip("SPARKLE", noteText(Note::Proxy), 7);
    QVERIFY(importReport(dropped).contains(lan("未导入") + ": 7 × SPARKLE (" + noteText(Note::Proxy) + ")"));
}

void SamplesTest::long_report_is_cut_for_the_dialog() {
    QStringList lines;
    for (int i = 0; i < 16; ++i)
        lines << QString::number(i);
    QCOMPARE(shownReport(lines.join('\n')), lines.join('\n'));
    lines << "one more"
          << "another";
    const QStringList shown = shownReport(lines.join('\n')).split('\n');
    QCOMPARE(shown.size(), 16);
    QCOMPARE(shown.mid(0, 15), lines.mid(0, 15));
    QVERIFY(shown.last().contains("+3"));
}

QTEST_MAIN(SamplesTest)
#include "tst_samples.moc"
