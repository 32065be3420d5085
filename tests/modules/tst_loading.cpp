// SPDX-License-Identifier: MIT
#include "engine/externmodules.h"
#include "engine/igeneratedtool.h"
#include "engine/systemparam.h"
#include "simengine/document/generatedtool.h"
#include "simengine/document/guardedmodule.h"
#include "support/logtexts.h"
#include "support/temporaryroot.h"

#include <QDir>
#include <QtTest>

namespace {

QStringList offered() {
    QStringList classes;
    for (const IMarkToolModule* module : GetExternModules()) {
        for (const MarkToolBaseInfo* info : module->GetToolInfos())
            classes << info->GetToolClassName();
    }
    return classes;
}

} // namespace

/// Modules that come with the program and those of the application root; modules that cannot be loaded.
class LoadingTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<tests::TemporaryRoot> m_root;

    void install(const QString& name, const QString& as) {
        QVERIFY(QDir(m_root->path()).mkpath(QStringLiteral("MarkToolModules")));
        QVERIFY(QFile::copy(QStringLiteral(BAD_MODULES "/%1.so").arg(name),
                            m_root->path(QStringLiteral("MarkToolModules/%1.so").arg(as))));
    }
    QString logged() { return tests::logTexts("error").join('\n'); }

private slots:
    void init() { m_root = std::make_unique<tests::TemporaryRoot>(); }
    void cleanup() {
        FreeExternModules();
        QVERIFY(GetExternModules().isEmpty());
        m_root.reset();
    }

    void the_program_brings_its_modules_into_a_fresh_root() {
        LoadExternToolModules();
        for (const char* tool : {"MarkToolPath", "ToolPolygon", "ToolStar", "ToolSpiral"})
            QVERIFY2(offered().contains(tool), tool);
        for (const IMarkToolModule* module : GetExternModules()) {
            for (const MarkToolBaseInfo* info : module->GetToolInfos()) {
                QVERIFY(!info->GetIcon().isNull());
                QVERIFY(!info->GetToolName().isEmpty());
            }
        }
        QCOMPARE(logged(), QString());
    }

    void every_shipped_tool_answers_the_boundary() {
        LoadExternToolModules();
        int generated = 0;
        for (IMarkToolModule* module : GetExternModules()) {
            for (const MarkToolBaseInfo* info : module->GetToolInfos()) {
                const std::unique_ptr<IMarkToolBase> made(module->CreateTool(info->GetToolClassName()));
                const auto* tool = dynamic_cast<const IGeneratedTool*>(sim::unguarded(made.get()));
                if (!tool)
                    continue;
                ++generated;
                QVector<double> values;
                for (const ToolParameter& parameter : tool->GetParameters()) {
                    QVERIFY(parameter.least <= parameter.preset && parameter.preset <= parameter.most);
                    values.append(parameter.preset);
                }
                QVERIFY(!tool->MakeOutline(values).isEmpty());
                QVector<double> placed = values;
                tool->Place(QPointF(30.0, 40.0), placed);
                QCOMPARE(placed.size(), values.size());
                QVERIFY(placed != values);
                QVector<double> read;
                QVERIFY(tool->ReadParameters(tool->WriteParameters(placed), read));
                QCOMPARE(read, placed);
                QVERIFY(!tool->ReadParameters("not a tool's", read));
            }
        }
        QCOMPARE(generated, 3);
    }

    void those_of_the_root_come_behind() {
        LoadExternToolModules();
        const QStringList shipped = offered();
        FreeExternModules();
        install("modules_badtools", "a");
        LoadExternToolModules();
        QCOMPARE(offered().mid(0, shipped.size()), shipped);
        QVERIFY(offered().size() > shipped.size());
        QVERIFY(offered().contains("GoodSquare"));
    }

    void a_module_that_cannot_be_loaded_is_told_and_passed_over_data() {
        QTest::addColumn<QString>("module");
        QTest::addColumn<QString>("told");
        QTest::newRow("throws") << "modules_bad_throws"
                                << "MarkToolModules/m.so: no licence key";
        QTest::newRow("gives none") << "modules_bad_null"
                                    << "MarkToolModules/m.so: CreateMarkToolModule gave no module";
        QTest::newRow("other name") << "modules_bad_name"
                                    << "MarkToolModules/m.so: CreateMarkToolModule is not exported";
        QTest::newRow("open symbol") << "modules_bad_symbol"
                                     << "aFunctionThatIsNowhere";
        QTest::newRow("throws a number") << "modules_bad_infos"
                                         << "MarkToolModules/m.so: threw something unknown";
    }

    void a_module_that_cannot_be_loaded_is_told_and_passed_over() {
        QFETCH(QString, module);
        QFETCH(QString, told);
        install(module, "m");
        install("modules_badtools", "n");
        LoadExternToolModules();
        QVERIFY2(logged().contains(told), qPrintable(logged()));
        QVERIFY(offered().contains("GoodSquare"));
    }

    void a_class_that_was_there_before_is_not_offered_again() {
        install("modules_badtools", "a");
        install("modules_badtools", "b");
        LoadExternToolModules();
        QCOMPARE(offered().count("GoodSquare"), 1);
        QVERIFY(logged().contains("MarkToolModules/a.so: the tool GoodSquare was there before")); // twice in one
        QVERIFY(logged().contains("MarkToolModules/b.so: the tool GoodSquare was there before"));
        QVERIFY(logged().contains("MarkToolModules/a.so: a tool has no usable class name"));
        QVERIFY(logged().contains("MarkToolModules/a.so: icon"));
        QVERIFY(!offered().contains("ThrowsIcon"));
    }

    void a_factory_that_throws_makes_nothing() {
        install("modules_badtools", "a");
        LoadExternToolModules();
        QVERIFY(!sim::makeModuleTool("ThrowsCreate"));
        QVERIFY(logged().contains("MarkToolModules/a.so: create"));
        QVERIFY(!sim::makeModuleTool("NullCreate"));
        QVERIFY(!sim::makeModuleTool("NobodyHasIt"));
        QVERIFY(sim::makeModuleTool("GoodSquare"));
        QCOMPARE(sim::moduleToolName("ToolStar"), QStringLiteral("星形"));
        QCOMPARE(sim::moduleToolName("NobodyHasIt"), QString());
    }

    void codes_are_offered_where_the_station_has_them_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("there");
        QTest::newRow("marking") << 0 << false << true;
        QTest::newRow("welding") << 1 << true << false;
        QTest::newRow("custom without") << 2 << false << false;
        QTest::newRow("custom with") << 2 << true << true;
        QTest::newRow("station without") << 3 << false << false;
        QTest::newRow("station with") << 3 << true << true;
    }

    void codes_are_offered_where_the_station_has_them() {
        QFETCH(int, mode);
        QFETCH(bool, enabled);
        SystemParam::Instance()->SetWorkMode(mode);
        SystemParam::Instance()->SetEnableCodeTool(enabled);
        LoadExternToolModules();
        QTEST(offered().contains("MarkToolCode"), "there");
        const auto tool = sim::makeModuleTool("MarkToolCode");
        QCOMPARE(bool(tool), offered().contains("MarkToolCode"));
        SystemParam::Instance()->SetWorkMode(0);
        SystemParam::Instance()->SetEnableCodeTool(false);
    }

    void modules_can_be_freed_and_loaded_again() {
        for (int round = 0; round < 3; ++round) {
            LoadExternToolModules();
            LoadExternToolModules();
            QVERIFY(sim::GeneratedTool::ofClass("ToolPolygon"));
            FreeExternModules();
            QVERIFY(!sim::GeneratedTool::ofClass("ToolPolygon"));
        }
    }
};

QTEST_MAIN(LoadingTest)
#include "tst_loading.moc"
