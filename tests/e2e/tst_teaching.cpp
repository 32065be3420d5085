// SPDX-License-Identifier: MIT
#include "e2e/tesseraprogram.h"

#include <QtTest>

/// Circles and arcs taught in the real program: steered by the teaching window's arrows, confirmed by F6.
class TestTeaching : public QObject {
    Q_OBJECT

    std::unique_ptr<ProgramRoot> m_root;
    std::unique_ptr<TesseraProgram> m_program;

    bool start() {
        m_root = std::make_unique<ProgramRoot>();
        m_program = std::make_unique<TesseraProgram>(*m_root);
        return m_program->startAutomated(
                   {"--language", "en", "--sim-speed", "0", "--import", sampleFile("gear-plate.svg")}) &&
               m_program->waitProperty("actionTeaching", "enabled", true);
    }
    bool trigger(char const* action) { return m_program->call("ui.trigger", {{"action", action}}) == QJsonValue(true); }
    bool click(QString const& button) {
        return m_program->call("ui.click", {{"object", "FormTeaching/" + button}}) == QJsonValue(true);
    }
    bool pressF6(QString const& object) {
        QJsonObject key{{"key", "F6"}};
        if (!object.isEmpty())
            key["object"] = object;
        return m_program->call("ui.key", key) == QJsonValue(true);
    }

private slots:
    void cleanup() {
        m_program.reset();
        m_root.reset();
    }

    void three_steered_places_make_a_shape_data() {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("object");
        for (char const* action : {"actionTeachCircle", "actionTeachArc"}) {
            for (char const* object : {"", "MainWindow", "FormTeaching", "canvas"})
                QTest::addRow("%s, F6 to %s", action, *object ? object : "the focus")
                    << QString(action) << QString(object);
        }
    }

    void three_steered_places_make_a_shape() {
        QFETCH(QString, action);
        QFETCH(QString, object);
        QVERIFY(start());
        QVERIFY(trigger("actionTeaching"));
        QVERIFY(m_program->waitProperty("FormTeaching", "visible", true));
        QVERIFY(trigger(qPrintable(action)));
        QVERIFY(click("radioButtonX4"));
        for (char const* way : {"pushButtonRight", "pushButtonUp", "pushButtonLeft"}) {
            QCOMPARE(m_program->get("labelSelectCnt", "text"), QJsonValue("Selected objects:0"));
            QVERIFY(click(way));
            QVERIFY(pressF6(object));
        }
        QVERIFY(m_program->waitProperty("labelSelectCnt", "text", "Selected objects:1"));
        QCOMPARE(m_program->get("Form_Marking", "visible"), QJsonValue(false));
        QCOMPARE(m_program->get("actionTeaching", "enabled"), QJsonValue(false));
        QVERIFY(click("pushButtonClose"));
        QVERIFY(m_program->waitProperty("actionTeaching", "enabled", true));
    }
};

QTEST_GUILESS_MAIN(TestTeaching)
#include "tst_teaching.moc"
