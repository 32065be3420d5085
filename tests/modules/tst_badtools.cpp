// SPDX-License-Identifier: MIT
#include "engine/externmodules.h"
#include "simengine/document/generatedtool.h"
#include "simengine/document/limits.h"
#include "support/logtexts.h"
#include "support/temporaryroot.h"

#include <QtTest>
#include <limits>

using namespace sim;

/// Tools that throw, and tools that give what no document may hold.
class BadToolsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<tests::TemporaryRoot> m_root;

    static QStringList errors() { return tests::logTexts("error"); }
    static int told(const QString& text) { return errors().filter(text).size(); }

private slots:
    void init() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        QVERIFY(QDir(m_root->path()).mkpath("MarkToolModules"));
        QVERIFY(QFile::copy(BAD_MODULES "/modules_badtools.so", m_root->path("MarkToolModules/bad.so")));
        LoadExternToolModules();
    }
    void cleanup() {
        FreeExternModules();
        m_root.reset();
    }

    void the_good_one_works() {
        const auto tool = GeneratedTool::ofClass("GoodSquare");
        QVERIFY(tool);
        QCOMPARE(tool->presets(), QVector<double>({10.0}));
        const auto shape = tool->make({20.0});
        QVERIFY(shape);
        QCOMPARE(shape->toolClass, QString("GoodSquare"));
        QCOMPARE(shape->outline.points.size(), 4);
        QCOMPARE(*tool->read(shape->parameters), QVector<double>({20.0}));
        QCOMPARE(tool->placed({1.0}, {33.0, 0.0}), QVector<double>({33.0}));
    }

    void literals_of_a_module_outlive_it() {
        QString className;
        QString name;
        for (const MarkToolBaseInfo* info : GetExternModules().at(GetExternModules().size() - 1)->GetToolInfos()) {
            if (info->GetToolClassName() == QLatin1String("LiteralSquare")) {
                className = info->GetToolClassName();
                name = info->GetToolName();
            }
        }
        auto tool = GeneratedTool::ofClass(className);
        QVERIFY(tool);
        auto shape = tool->make({20.0});
        QVERIFY(shape);
        const ToolParameter parameter = tool->parameters().at(0);
        tool.reset();
        FreeExternModules();
        QVERIFY(GetExternModules().isEmpty());
        QCOMPARE(className, QString("LiteralSquare"));
        QCOMPARE(name, QString("Square of literals"));
        QCOMPARE(parameter.name, QString("Side"));
        QCOMPARE(parameter.unit, QString("mm"));
        QCOMPARE(shape->toolClass, QString("LiteralSquare"));
        QCOMPARE(shape->parameters, QByteArray("20"));
        LoadExternToolModules();
        QVERIFY(GeneratedTool::ofClass(QStringLiteral("LiteralSquare")));
    }

    void values_are_brought_into_their_range_data() {
        QTest::addColumn<QVector<double>>("given");
        QTest::addColumn<double>("used");
        QTest::newRow("too small") << QVector<double>{-5.0} << 1.0;
        QTest::newRow("too large") << QVector<double>{1.0e9} << 100.0;
        QTest::newRow("no number") << QVector<double>{std::numeric_limits<double>::quiet_NaN()} << 10.0;
        QTest::newRow("infinite") << QVector<double>{std::numeric_limits<double>::infinity()} << 10.0;
        QTest::newRow("missing") << QVector<double>{} << 10.0;
        QTest::newRow("one more") << QVector<double>{7.0, 8.0} << 7.0;
    }

    void values_are_brought_into_their_range() {
        QFETCH(QVector<double>, given);
        QFETCH(double, used);
        QCOMPARE(GeneratedTool::ofClass("GoodSquare")->sound(given), QVector<double>({used}));
    }

    void tools_without_a_sound_table_are_none_data() {
        QTest::addColumn<QString>("fault");
        QTest::newRow("ThrowsTable") << "table";
        QTest::newRow("NoTable") << "the table of parameters is not usable";
        QTest::newRow("LongTable") << "the table of parameters is not usable";
        QTest::newRow("NanTable") << "the table of parameters is not usable";
        QTest::newRow("SwappedTable") << "the table of parameters is not usable";
        QTest::newRow("EmptyChoice") << "the table of parameters is not usable";
        QTest::newRow("OtherClass") << "makes objects of the class SomethingElse";
        QTest::newRow("ThrowsClass") << "makes objects of the class ";
        QTest::newRow("MarkToolCombine") << "makes objects of the class MarkToolCombine";
    }

    void tools_without_a_sound_table_are_none() {
        QFETCH(QString, fault);
        const QString name = QTest::currentDataTag();
        QVERIFY(!GeneratedTool::ofClass(name));
        QCOMPARE(errors().last(), QStringLiteral("MarkToolModules/%1: %2").arg(name, fault));
    }

    void tools_without_numbers_are_none_and_no_fault() {
        const int before = errors().size();
        QVERIFY(!GeneratedTool::ofClass("NoGeometry"));
        QVERIFY(!GeneratedTool::ofClass("NullCreate"));
        QVERIFY(!GeneratedTool::ofClass("Nobody"));
        QVERIFY(!GeneratedTool::ofClass(QString()));
        QCOMPARE(errors().size(), before);
    }

    void unsound_outlines_make_no_object_data() {
        QTest::addColumn<QString>("fault");
        QTest::newRow("ThrowsOutline") << "outline";
        QTest::newRow("ThrowsNumber") << "threw something unknown";
        QTest::newRow("SilentOutline") << "threw something unknown";
        QTest::newRow("SilentWrite") << "threw something unknown";
        QTest::newRow("NanOutline") << "a coordinate is out of range";
        QTest::newRow("FarOutline") << "a coordinate is out of range";
        QTest::newRow("ManyPoints") << "the outline of an object has too many points";
        QTest::newRow("ManyStrokes") << "the outline of an object has too many points";
        QTest::newRow("ThrowsWrite") << "write";
        QTest::newRow("LongWrite") << "the parameters of an object are too long";
    }

    void unsound_outlines_make_no_object() {
        QFETCH(QString, fault);
        const QString name = QTest::currentDataTag();
        const auto tool = GeneratedTool::ofClass(name);
        QVERIFY(tool);
        for (int i = 0; i < 20; ++i) { // as a drag would ask, once in the log
            QString reason;
            QVERIFY(!tool->make({5.0}, &reason));
            QCOMPARE(reason, fault);
        }
        QCOMPARE(told(QStringLiteral("MarkToolModules/%1: %2").arg(name, fault)), 1);
    }

    void an_empty_outline_is_an_answer_and_no_fault() {
        const auto tool = GeneratedTool::ofClass("NoOutline");
        const int before = errors().size();
        QString reason = "x";
        QVERIFY(!tool->make({5.0}, &reason));
        QCOMPARE(reason, QString());
        QCOMPARE(errors().size(), before);
    }

    void parameters_that_cannot_be_read_leave_the_object_as_it_is() {
        for (const char* name : {"ThrowsRead", "WrongRead", "ShortRead"})
            QVERIFY2(!GeneratedTool::ofClass(name)->read("5"), name);
        QCOMPARE(*GeneratedTool::ofClass("NanRead")->read("5"), QVector<double>({10.0}));
        QVERIFY(told("ThrowsRead: read") == 1);
    }

    void a_place_that_fails_keeps_the_values() {
        for (const char* name : {"ThrowsPlace", "ShortPlace"})
            QCOMPARE(GeneratedTool::ofClass(name)->placed({7.0}, {3, 4}), QVector<double>({7.0}));
        QCOMPARE(GeneratedTool::ofClass("NanPlace")->placed({7.0}, {3, 4}), QVector<double>({10.0}));
    }
};

QTEST_MAIN(BadToolsTest)
#include "tst_badtools.moc"
