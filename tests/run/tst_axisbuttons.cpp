// SPDX-License-Identifier: MIT
#include "engine/class_cardpara.h"
#include "engine/movecardmanager.h"
#include "run/jogbuttons.h"
#include "tests/run/formfixture.h"

#include <QDir>
#include <QDoubleSpinBox>
#include <QThreadPool>

using namespace tests;

/// The axis buttons of the run dialog.
class AxisButtonsTest : public QObject, private RunDialogFixture {
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { begin(); }
    void cleanup() { end(); }

    void axis_buttons_jog_below_a_hundredth_data();
    void axis_buttons_jog_below_a_hundredth();
    void a_jog_goes_on_until_the_button_is_released_data();
    void a_jog_goes_on_until_the_button_is_released();
    void a_step_moves_from_where_the_axis_is_data();
    void a_step_moves_from_where_the_axis_is();
    void an_axis_that_is_not_fitted_is_left_alone_data();
    void an_axis_that_is_not_fitted_is_left_alone();
    void the_stop_button_stops_all_axes();
    void presses_are_logged();

private:
    /// Two axes fitted, the buttons moving axis `number`.
    void useAxis(int number) {
        Class_CardPara* para = Class_CardPara::Instance();
        para->EnableMotion = true;
        para->AxisCount = 2;
        for (AxisPara& axis : para->Axis) {
            axis.JogLowSpeed = 7.5;
            axis.JogLowAcc = 60.0;
        }
        SystemParam::Instance()->SetZAxisnum(number);
        SystemParam::Instance()->SetMarkDebugMode(true);
        dialog().ChangeFormSize();
        machine().clearJournal();
    }
};

void AxisButtonsTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void AxisButtonsTest::axis_buttons_jog_below_a_hundredth_data() {
    QTest::addColumn<bool>("up");
    QTest::addColumn<double>("step");
    QTest::addColumn<bool>("jog");
    QTest::addColumn<double>("speed");
    QTest::addColumn<double>("delta");
    QTest::newRow("jog up") << true << 0.0 << true << 10.0 << 0.0;
    QTest::newRow("jog down") << false << 0.0 << true << -10.0 << 0.0;
    QTest::newRow("just below") << true << 0.00999 << true << 10.0 << 0.0;
    QTest::newRow("below zero") << true << -5.0 << true << 10.0 << 0.0;
    QTest::newRow("step up") << true << 0.01 << false << -10.0 << 0.01;
    QTest::newRow("step down") << false << 2.5 << false << -10.0 << -2.5;
}

void AxisButtonsTest::axis_buttons_jog_below_a_hundredth() {
    QFETCH(bool, up);
    QFETCH(double, step);
    const tessera::AxisButtonMove move = tessera::MoveOfAxisButton(up, step, -10.0, -100.0);
    QTEST(move.jog, "jog");
    QTEST(move.speed, "speed");
    QTEST(move.delta, "delta");
    QCOMPARE(move.acc, move.jog ? 100.0 : -100.0);
}

void AxisButtonsTest::a_jog_goes_on_until_the_button_is_released_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<double>("step");
    QTest::addColumn<double>("speed");
    QTest::newRow("up") << QStringLiteral("pushButtonMoveUp") << 0.0 << 7.5;
    QTest::newRow("down") << QStringLiteral("pushButtonMoveDown") << 0.0 << -7.5;
    QTest::newRow("step below zero") << QStringLiteral("pushButtonMoveDown") << -3.0 << -7.5;
}

void AxisButtonsTest::a_jog_goes_on_until_the_button_is_released() {
    QFETCH(QString, button);
    QFETCH(double, step);
    QFETCH(double, speed);
    useAxis(2);
    part<QDoubleSpinBox>("doubleSpinBoxStep")->setValue(step);
    auto* key = part<QPushButton>(qPrintable(button));
    QTest::mousePress(key, Qt::LeftButton);
    COMPARE_JOURNAL(machineJournal(), {call("AxisMove2Jog", 1, speed, 60.0)});
    QTest::mouseRelease(key, Qt::LeftButton);
    COMPARE_JOURNAL(machineJournal(), {call("AxisMove2Jog", 1, speed, 60.0), call("StopAll")});
}

void AxisButtonsTest::a_step_moves_from_where_the_axis_is_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<double>("target");
    QTest::newRow("up") << QStringLiteral("pushButtonMoveUp") << 12.5;
    QTest::newRow("down") << QStringLiteral("pushButtonMoveDown") << 7.5;
}

/// A release leaves a step alone.
void AxisButtonsTest::a_step_moves_from_where_the_axis_is() {
    QFETCH(QString, button);
    QFETCH(double, target);
    useAxis(2);
    MoveCardManager* motion = MoveCardManager::Instance();
    QVERIFY(motion->SetCurPos(1, 10.0));
    machine().setSpeed(0.0);
    machine().clearJournal();
    part<QDoubleSpinBox>("doubleSpinBoxStep")->setValue(2.5);
    QTest::mouseClick(part<QPushButton>(qPrintable(button)), Qt::LeftButton);
    QTRY_COMPARE(machineJournal().size(), 1);
    COMPARE_JOURNAL(machineJournal(), {call("AxisMove2", 1, target, 7.5, 60.0)});
    const auto position = [motion] {
        double at = 0.0;
        return motion->AxisGetAltPos(1, at) ? at : -1.0;
    };
    QTRY_COMPARE(position(), target);
}

void AxisButtonsTest::an_axis_that_is_not_fitted_is_left_alone_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("open");
    QTest::newRow("above the count") << 3 << true;
    QTest::newRow("none") << 0 << true;
    QTest::newRow("motion card closed") << 2 << false;
}

void AxisButtonsTest::an_axis_that_is_not_fitted_is_left_alone() {
    QFETCH(int, number);
    QFETCH(bool, open);
    useAxis(number);
    if (!open)
        MoveCardManager::Instance()->CloseMoveCard();
    machine().clearJournal();
    for (double step : {0.0, 5.0}) {
        part<QDoubleSpinBox>("doubleSpinBoxStep")->setValue(step);
        QTest::mouseClick(part<QPushButton>("pushButtonMoveUp"), Qt::LeftButton);
    }
    QThreadPool::globalInstance()->waitForDone();
    // The release in the jog ends whatever moves.
    COMPARE_JOURNAL(machineJournal(), {call("StopAll")});
}

void AxisButtonsTest::the_stop_button_stops_all_axes() {
    useAxis(1);
    press("pushButtonStopAxis");
    COMPARE_JOURNAL(machineJournal(), {call("StopAll")});
}

void AxisButtonsTest::presses_are_logged() {
    useAxis(1);
    QTest::mouseClick(part<QPushButton>("pushButtonMoveUp"), Qt::LeftButton);
    QTest::mouseClick(part<QPushButton>("pushButtonMoveDown"), Qt::LeftButton);
    QByteArray log;
    const QDir folder(m_Root.path(QStringLiteral("/日志文件")));
    for (QString const& name : folder.entryList(QDir::Files))
        log += m_Root.read(QStringLiteral("/日志文件/") + name);
    const int up = log.indexOf("运行框轴上移按钮");
    QVERIFY(up >= 0);
    QVERIFY(log.indexOf("运行框轴下移按钮") > up);
}

QTEST_MAIN(AxisButtonsTest)
#include "tst_axisbuttons.moc"
