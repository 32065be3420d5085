// SPDX-License-Identifier: MIT
#include "e2e/tesseraprogram.h"

#include <QFile>
#include <QtTest>

namespace {

// Outputs of the stack light as they are set in a new station.
constexpr unsigned int kRed = 1U << 8;
constexpr unsigned int kGreen = 1U << 9;
constexpr unsigned int kYellow = 1U << 10;
constexpr unsigned int kLamps = kRed | kGreen | kYellow;

unsigned int outputs(QJsonValue const& state) {
    return unsigned(state.toObject().value("outputs").toDouble());
}

} // namespace

/// One station over a whole shift: each function starts the program anew in a root of its own.
class TestRun : public QObject {
    Q_OBJECT

    std::unique_ptr<ProgramRoot> m_root;
    std::unique_ptr<TesseraProgram> m_program;

    bool start(QString const& speed) {
        m_root = std::make_unique<ProgramRoot>();
        m_program = std::make_unique<TesseraProgram>(*m_root);
        return m_program->startAutomated({"--sim-speed", speed, "--import", sampleFile("gear-plate.svg")});
    }
    bool openDialog() {
        m_program->waitProperty("actionMark", "enabled", true);
        m_program->call("ui.trigger", {{"action", "actionMark"}});
        return m_program->waitProperty("Form_Marking", "visible", true);
    }
    bool press(QString const& button) {
        return m_program->call("ui.click", {{"object", "Form_Marking/" + button}}) == QJsonValue(true);
    }
    bool waitActivity(QString const& activity) {
        QJsonValue const state = m_program->waitFor("card.state", {}, [&](QJsonValue const& now) {
            return now.toObject().value("activity") == QJsonValue(activity);
        });
        return state.toObject().value("activity") == QJsonValue(activity);
    }
    bool waitIdle() { return m_program->waitProperty("Form_Marking/pushButtonCancel", "enabled", true); }
    bool waitLamps(unsigned int lamps) {
        QJsonValue const state = m_program->waitFor(
            "card.state", {}, [lamps](QJsonValue const& now) { return (outputs(now) & kLamps) == lamps; });
        return (outputs(state) & kLamps) == lamps;
    }
    bool waitLabel(QString const& text) { return m_program->waitProperty("Form_Marking/labelStatus", "text", text); }

private slots:
    void cleanup() {
        m_program.reset();
        m_root.reset();
    }

    void press_of_start_marks_the_document_once() {
        QVERIFY(start("0"));
        QVERIFY(openDialog());
        QCOMPARE(m_program->get("Form_Marking/labelRunCnt", "text"), QJsonValue("0"));
        m_program->call("card.clearJournal");
        QVERIFY(press("pushButtonStart"));
        QVERIFY(m_program->waitProperty("Form_Marking/labelRunCnt", "text", "1"));
        QVERIFY(waitIdle());
        QVERIFY(waitLabel(QStringLiteral("完成或终止运行...")));
        QVERIFY(waitLamps(kYellow));
        QCOMPARE(m_root->counter(), 1);
        QCOMPARE(m_program->call("card.state").toObject().value("status"), QJsonValue("stop"));

        QStringList names;
        for (QJsonValue const& entry :
             m_program->journal({"SetMarkStaus", "SetMarkType", "DownLayerPara", "StartMark"})) {
            QJsonObject const call = entry.toObject();
            names.append(call.value("name").toString() + " " +
                         call.value("args").toArray().at(0).toVariant().toString());
        }
        // The card is set to run, gets kind and pens, runs the job, and is set to stop by the worker and the dialog.
        QCOMPARE(names, QStringList({"SetMarkStaus 0", "SetMarkType 0", "DownLayerPara 20", "StartMark 0",
                                     "SetMarkStaus 2", "SetMarkStaus 2"}));
        QString const file = m_root->beside("t.csv");
        QCOMPARE(m_program->call("card.trace", {{"file", file}}).toObject().value("file"), QJsonValue(file));
        QFile trace(file);
        QVERIFY(trace.open(QIODevice::ReadOnly));
        QVERIFY(trace.readAll().count('\n') > 1000);
    }

    void lamps_label_and_buttons_follow_start_pause_resume_and_stop() {
        QVERIFY(start("0.01"));
        QVERIFY(openDialog());
        QVERIFY(waitLamps(kYellow));
        QVERIFY(press("pushButtonStart"));
        QVERIFY(waitActivity("running"));
        QVERIFY(waitLabel(QStringLiteral("运行开始...")));
        QVERIFY(waitLamps(kGreen));
        QVERIFY(m_program->waitProperty("Form_Marking/pushButtonStart", "text", QStringLiteral("暂停(F6)")));
        QCOMPARE(m_program->get("Form_Marking/pushButtonCancel", "enabled"), QJsonValue(false));
        QCOMPARE(m_program->get("centralwidget", "enabled"), QJsonValue(false));

        QVERIFY(press("pushButtonStart"));
        QVERIFY(waitActivity("paused"));
        QVERIFY(waitLabel(QStringLiteral("用户暂停...")));
        QVERIFY(waitLamps(kGreen | kYellow));
        double const x = m_program->call("card.state").toObject().value("x").toDouble();
        QCOMPARE(m_program->call("card.state").toObject().value("laser"), QJsonValue(false));

        QVERIFY(press("pushButtonStart"));
        QVERIFY(waitActivity("running"));
        QVERIFY(waitLamps(kGreen));
        m_program->waitFor("card.state", {},
                           [x](QJsonValue const& state) { return state.toObject().value("x").toDouble() != x; });

        QVERIFY(press("pushButtonStop"));
        QVERIFY(waitActivity("idle"));
        QVERIFY(waitIdle());
        QVERIFY(waitLamps(kYellow));
        QVERIFY(m_program->waitProperty("centralwidget", "enabled", true));
        // A stopped pass counts.
        QVERIFY(m_program->waitProperty("Form_Marking/labelRunCnt", "text", "1"));
        QCOMPARE(m_root->counter(), 1);
    }

    void disabled_button_and_locked_window_are_refused_during_a_run() {
        QVERIFY(start("0.01"));
        QVERIFY(openDialog());
        QVERIFY(press("pushButtonStart"));
        QVERIFY(waitActivity("running"));
        QVERIFY(m_program->waitProperty("Form_Marking/pushButtonCancel", "enabled", false));
        QVERIFY(!press("pushButtonCancel"));
        QCOMPARE(m_program->lastError().value("code"), QJsonValue(-32003));
        QVERIFY(press("pushButtonStop"));
        QVERIFY(waitIdle());
    }

    void input_without_a_function_starts_nothing() {
        QVERIFY(start("0"));
        // No input function is set in a new station, so an edge is nothing yet.
        QVERIFY(openDialog());
        m_program->call("card.setInput", {{"bit", 3}, {"value", 1}});
        QCOMPARE(m_program->call("card.state").toObject().value("inputs"), QJsonValue(8));
        QCOMPARE(m_program->get("Form_Marking/labelRunCnt", "text"), QJsonValue("0"));
        m_program->call("card.setInputs", {{"word", 0}});
        QCOMPARE(m_program->call("card.state").toObject().value("inputs"), QJsonValue(0));
    }

    void function_key_starts_a_run() {
        QVERIFY(start("0"));
        QVERIFY(openDialog());
        m_program->call("ui.key", {{"key", "F6"}, {"object", "MainWindow"}});
        QVERIFY(m_program->waitProperty("Form_Marking/labelRunCnt", "text", "1"));
        QVERIFY(waitIdle());
    }

    void preview_counts_and_leaves_the_laser_off() {
        QVERIFY(start("0"));
        QVERIFY(openDialog());
        QVERIFY(press("radioButtonRedPre"));
        QVERIFY(press("pushButtonStart"));
        QVERIFY(m_program->waitProperty("Form_Marking/labelRunCnt", "text", "1"));
        QVERIFY(waitIdle());
        QCOMPARE(m_program->call("card.state").toObject().value("type"), QJsonValue("red"));
        QString const file = m_root->beside("t.csv");
        m_program->call("card.trace", {{"file", file}});
        QFile trace(file);
        QVERIFY(trace.open(QIODevice::ReadOnly));
        QByteArrayList const lines = trace.readAll().trimmed().split('\n');
        QVERIFY(lines.size() > 1000);
        for (int i = 1; i < lines.size(); ++i)
            QCOMPARE(lines.at(i).split(',').at(3), QByteArray("0"));
    }

    void loop_repeats_until_stopped() {
        QVERIFY(start("0"));
        QVERIFY(openDialog());
        QVERIFY(press("checkBoxLoopMark"));
        QVERIFY(m_program->call("ui.set", {{"object", "Form_Marking/spinBox"}, {"property", "value"}, {"value", 1}}) ==
                QJsonValue(true));
        QVERIFY(press("pushButtonStart"));
        QJsonValue const count =
            m_program->waitFor("ui.get", {{"object", "Form_Marking/labelRunCnt"}, {"property", "text"}},
                               [](QJsonValue const& text) { return text.toString().toInt() >= 5; });
        QVERIFY(count.toString().toInt() >= 5);
        QVERIFY(press("pushButtonStop"));
        QVERIFY(waitIdle());
        QCOMPARE(QString::number(m_root->counter()), m_program->get("Form_Marking/labelRunCnt", "text").toString());
    }

    void counter_is_cleared_only_when_confirmed() {
        QVERIFY(start("0"));
        QVERIFY(openDialog());
        QVERIFY(press("pushButtonStart"));
        QVERIFY(m_program->waitProperty("Form_Marking/labelRunCnt", "text", "1"));
        QVERIFY(waitIdle());
        for (bool confirm : {false, true}) {
            // Answered although the question that it opens is still on the screen.
            QCOMPARE(m_program->call("ui.doubleClick", {{"object", "Form_Marking/labelRunCnt"}}), QJsonValue(true));
            QVERIFY(m_program->waitProperty("QMessageBox", "text", QStringLiteral("是否清空运行个数计数?")));
            QCOMPARE(m_program->get("QMessageBox", "windowTitle"), QJsonValue(QStringLiteral("提示")));
            // Yes comes first in the box.
            QString const button = QStringLiteral("QMessageBox/QPushButton[%1]").arg(confirm ? 0 : 1);
            QCOMPARE(m_program->call("ui.click", {{"object", button}}), QJsonValue(true));
            QVERIFY(m_program->waitProperty("Form_Marking/labelRunCnt", "text", confirm ? "0" : "1"));
            m_program->waitFor("ui.get", {{"object", "QMessageBox"}, {"property", "text"}},
                               [](QJsonValue const& text) { return text.isUndefined(); });
            QCOMPARE(m_program->lastError().value("code"), QJsonValue(-32001));
            QCOMPARE(m_root->counter(), confirm ? 0 : 1);
        }
    }
};

QTEST_GUILESS_MAIN(TestRun)
#include "tst_run.moc"
