// SPDX-License-Identifier: MIT
#include "engine/equalpos.h"
#include "engine/externmodules.h"
#include "engine/layerparamex.h"
#include "engine/marktool.h"
#include "support/approot.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <limits>

class BoundaryTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void equal_double();
    void equal_pos();
    void new_pens_have_sensible_values_and_different_colours();
    void pen_outside_the_table();
    void copies_of_pens_share_nothing();
    void default_pen_outlives_the_program();
    void damaged_default_pen_gives_the_built_in_one();
    void modules_are_loaded_once_and_freed();
    void root_without_modules_has_those_of_the_engine_alone();
    void files_that_are_no_modules_are_passed_over();
    void tool_outside_a_document_has_default_fills();

private:
    std::unique_ptr<QTemporaryDir> m_root;
};

void BoundaryTest::init() {
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    tessera::setApplicationRoot(m_root->path());
    LayerData::InitLayerData();
}

void BoundaryTest::equal_double() {
    QVERIFY(EqualDouble(1.0, 1.0004));
    QVERIFY(!EqualDouble(1.0, 1.0006));
    QVERIFY(!EqualDouble(0.0, 0.0005)); // below the tolerance, not at it
    QVERIFY(EqualDouble(-1.0, -1.0004));
    const double infinity = std::numeric_limits<double>::infinity();
    QVERIFY(EqualDouble(infinity, infinity));
    QVERIFY(!EqualDouble(infinity, 1.0));
    QVERIFY(!EqualDouble(std::numeric_limits<double>::quiet_NaN(), 1.0));
}

void BoundaryTest::equal_pos() {
    QVERIFY(EqualPos(5.0, 5.00009));
    QVERIFY(EqualPos(5.00009, 5.0));
    QVERIFY(!EqualPos(5.0, 5.00011));
    QVERIFY(!EqualPos(5.00011, 5.0));
    QVERIFY(EqualPos(-0.00004, 0.00005));
    QVERIFY(!EqualPos(0.0, 0.0001)); // below the tolerance, not at it
    const double infinity = std::numeric_limits<double>::infinity();
    QVERIFY(EqualPos(-infinity, -infinity));
    QVERIFY(!EqualPos(infinity, -infinity));
    QVERIFY(!EqualPos(std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()));
}

void BoundaryTest::new_pens_have_sensible_values_and_different_colours() {
    LayerParamEx pens;
    QCOMPARE(pens.GetLayerData().size(), 20);
    QList<QRgb> colors;
    for (int i = 0; i < 20; ++i) {
        const QColor color = LayerParamEx::GetDefultColor(i);
        QVERIFY(color.isValid() && !colors.contains(color.rgb()));
        colors.append(color.rgb());
        LayerData pen;
        pens.GetLayerData(i, pen);
        QCOMPARE(QColor(pen.ColorR, pen.ColorG, pen.ColorB), color);
        QVERIFY(pen.MarkCnt == 1 && pen.MarkSpeed > 0 && pen.JumpSpeed > 0 && pen.RedSpeed > 0);
        QVERIFY(pen.Power > 0 && pen.Power <= 100 && pen.Fre > 0 && !pen.UseDefault);
    }
    QVERIFY(!LayerParamEx::GetDefultColor(20).isValid());
    QVERIFY(!LayerParamEx::GetDefultColor(-1).isValid());
}

void BoundaryTest::pen_outside_the_table() {
    LayerParamEx pens;
    LayerData odd;
    odd.MarkSpeed = 77;
    pens.SetLayerData(20, odd);
    pens.SetLayerData(-1, odd);
    for (int i : {-1, 20, 1000000}) {
        LayerData pen = odd;
        pens.GetLayerData(i, pen);
        QCOMPARE(pen.MarkSpeed, LayerData::GetDefaultLayerData().MarkSpeed);
        LayerData* address = &odd;
        pens.GetLayerData(i, address);
        QVERIFY(!address);
    }
}

void BoundaryTest::copies_of_pens_share_nothing() {
    LayerParamEx pens;
    LayerData* address = nullptr;
    pens.GetLayerData(3, address);
    const LayerParamEx copy = pens;
    address->Power = 12.5;
    LayerData pen;
    copy.GetLayerData(3, pen);
    QVERIFY(pen.Power != 12.5);
    pens.GetLayerData(3, pen);
    QCOMPARE(pen.Power, 12.5);
    // what is assigned is seen through the address
    pens = copy;
    LayerData* after = nullptr;
    pens.GetLayerData(3, after);
    QCOMPARE(after, address);
    copy.GetLayerData(3, pen);
    QCOMPARE(address->Power, pen.Power);
}

void BoundaryTest::default_pen_outlives_the_program() {
    LayerData pen = LayerData::GetDefaultLayerData();
    pen.MarkSpeed = 321.5;
    pen.PointWave[7] = {1, 2};
    LayerData::SetDefaultLatyerData(pen);
    LayerData::SetDefaultLatyerData(pen);
    LayerData::InitLayerData();
    QCOMPARE(LayerData::GetDefaultLayerData().MarkSpeed, 321.5);
    QCOMPARE(LayerData::GetDefaultLayerData().PointWave[7], QPointF(1, 2));
    LayerData fresh;
    LayerParamEx().GetLayerData(0, fresh);
    QCOMPARE(fresh.MarkSpeed, 321.5);
}

void BoundaryTest::damaged_default_pen_gives_the_built_in_one() {
    LayerData pen;
    pen.MarkSpeed = 321.5;
    LayerData::SetDefaultLatyerData(pen);
    QFile file(m_root->filePath("ini/DefaultPen.dat"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.seek(30);
    file.write("x");
    file.close();
    LayerData::InitLayerData();
    QCOMPARE(LayerData::GetDefaultLayerData().MarkSpeed, LayerData().MarkSpeed);
}

void BoundaryTest::modules_are_loaded_once_and_freed() {
    QVERIFY(QDir(m_root->path()).mkpath("MarkToolModules"));
    QVERIFY(QFile::copy(SAMPLE_MODULE, m_root->filePath("MarkToolModules/star.so")));
    LoadExternToolModules();
    const int loaded = GetExternModules().size();
    LoadExternToolModules();
    QCOMPARE(GetExternModules().size(), loaded);
    IMarkToolModule* module = GetExternModules().last();
    QCOMPARE(module->GetToolInfos().first()->GetToolName(), QStringLiteral("星形"));
    QVERIFY(!module->CreateTool("MarkToolCircle"));
    {
        MarkTool tool(module->CreateTool("SampleStar"));
        QCOMPARE(tool.GetTool()->GetToolClassName(), QStringLiteral("SampleStar"));
        tool.GetTool()->SetAngleChanged(true);
        QVERIFY(tool.GetTool()->IsAngleChanged());
    }
    FreeExternModules();
    QVERIFY(GetExternModules().isEmpty());
    FreeExternModules();
}

void BoundaryTest::root_without_modules_has_those_of_the_engine_alone() {
    LoadExternToolModules();
    for (IMarkToolModule* module : GetExternModules())
        QVERIFY(!module->CreateTool("SampleStar"));
    FreeExternModules();
    QVERIFY(GetExternModules().isEmpty());
}

void BoundaryTest::files_that_are_no_modules_are_passed_over() {
    QVERIFY(QDir(m_root->path()).mkpath("MarkToolModules"));
    QFile text(m_root->filePath("MarkToolModules/a.so"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("no library");
    text.close();
    QVERIFY(QFile::copy(SAMPLE_MODULE, m_root->filePath("MarkToolModules/b.so")));
    LoadExternToolModules();
    QCOMPARE(GetExternModules().last()->GetToolInfos().first()->GetToolClassName(), QStringLiteral("SampleStar"));
    FreeExternModules();
    QDir logs(m_root->filePath("日志文件"));
    QByteArray logged;
    for (const QString& name : logs.entryList(QDir::Files)) {
        QFile log(logs.filePath(name));
        QVERIFY(log.open(QIODevice::ReadOnly));
        logged += log.readAll();
    }
    QVERIFY(logged.contains("MarkToolModules/a.so: "));
    QVERIFY(!logged.contains("MarkToolModules/b.so: "));
}

void BoundaryTest::tool_outside_a_document_has_default_fills() {
    const MarkTool tool(nullptr);
    QVERIFY(!tool.GetTool());
    bool edge = false;
    bool first = true;
    bool simple = true;
    const QVector<FillParam> fills = tool.GetFillParam(edge, first, simple);
    QCOMPARE(fills.size(), 3);
    QVERIFY(edge && !first && !simple && !fills[0].Enable);
    QCOMPARE(fills[2].FillDist, 0.1);
}

QTEST_MAIN(BoundaryTest)
#include "tst_boundary.moc"
