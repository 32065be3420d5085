// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "run/redlooppreview.h"
#include "tests/run/formfixture.h"

#include <QAction>
#include <QCheckBox>
#include <QRadioButton>
#include <QScreen>
#include <QSignalSpy>
#include <QSpinBox>

using namespace tests;

namespace {

/// A press of this arrow with the key step of 2 mm, and where the selection goes by it.
struct ArrowRow {
    char const* button;
    bool invertY;
    QPointF by;
};

constexpr ArrowRow kArrows[] = {
    {"pushButtonUp", false, {0, -2}},    {"pushButtonDown", false, {0, 2}}, {"pushButtonLeft", false, {2, 0}},
    {"pushButtonRight", false, {-2, 0}}, {"pushButtonUp", true, {0, 2}},    {"pushButtonDown", true, {0, -2}},
    {"pushButtonLeft", true, {-2, 0}},   {"pushButtonRight", true, {2, 0}},
};

} // namespace

/// The arrows dialog over a looping preview on the simulated machine.
class RedLoopPreviewTest : public QObject, private RunDialogFixture {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void made_it_is_hidden_on_top_and_titled();
    void it_comes_up_at_the_bottom_of_the_screen_in_the_middle();
    void showing_loops_the_red_light_over_the_selection();
    void closing_stops_the_preview();
    void escape_stops_the_preview();
    void a_button_of_its_own_ends_the_loop();
    void a_stop_input_ends_the_loop_only_with_the_run_dialog_up();
    void arrows_move_the_selection_data();
    void arrows_move_the_selection();
    void arrows_without_a_document_do_nothing();
    void an_arrow_is_on_the_beam_at_once();
    void nothing_selected_ends_the_preview_at_once_and_leaves_the_dialog();
    void every_use_makes_a_new_dialog_and_keeps_the_old_one_hidden();
    void all_dialogs_go_with_the_window();

private:
    QAction* action() { return m_Window->child<QAction>("actionRedLoopPreview"); }
    QList<RedLoopPreview*> dialogs() { return (*m_Window)->findChildren<RedLoopPreview*>(); }
    RedLoopPreview* open() {
        action()->trigger();
        return dialogs().isEmpty() ? nullptr : dialogs().last();
    }
    static void pressArrow(RedLoopPreview* arrows, char const* button) {
        auto* found = arrows->findChild<QPushButton*>(QString::fromLatin1(button));
        QVERIFY(found);
        found->click();
    }
    QRulerView* view() { return (*m_Window)->GetActiveView(); }
    QPointF place() {
        double x = 0.0, y = 0.0, width = 0.0, height = 0.0, angle = 0.0;
        view()->GetSelectObjPos(x, y, width, height, angle);
        return {x, y};
    }
    bool looping() {
        const sim::SimCardState state = machine().state();
        return state.type == 1 && state.activity == sim::SimActivity::Running;
    }
};

void RedLoopPreviewTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void RedLoopPreviewTest::init() {
    begin();
    SystemParam::Instance()->SetInvertX(false);
    SystemParam::Instance()->SetInvertY(false);
    QCOMPARE(view()->GetSelectedToolCnt(), 1);
    QVERIFY(action()->isEnabled());
}

void RedLoopPreviewTest::cleanup() {
    end();
}

void RedLoopPreviewTest::made_it_is_hidden_on_top_and_titled() {
    RedLoopPreview arrows(&**m_Window);
    QVERIFY(arrows.isHidden());
    QVERIFY(arrows.windowFlags() & Qt::WindowStaysOnTopHint);
    QCOMPARE(arrows.windowTitle(), LanguageManager::GetLanText("红光循环预览"));
    for (char const* name : {"pushButtonUp", "pushButtonDown", "pushButtonLeft", "pushButtonRight"}) {
        auto const* button = arrows.findChild<QPushButton*>(QString::fromLatin1(name));
        QVERIFY2(button, name);
        QVERIFY2(!button->icon().isNull(), name);
        QVERIFY2(!button->icon().pixmap(24, 24).isNull(), name);
    }
}

void RedLoopPreviewTest::it_comes_up_at_the_bottom_of_the_screen_in_the_middle() {
    RedLoopPreview* arrows = open();
    QVERIFY(arrows && arrows->isVisible());
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    QCOMPARE(arrows->y() + arrows->height(), screen.y() + screen.height());
    QCOMPARE(arrows->x(), screen.x() + (screen.width() - arrows->width()) / 2);
    arrows->close();
    QTRY_VERIFY(idle());
}

void RedLoopPreviewTest::showing_loops_the_red_light_over_the_selection() {
    machine().setSpeed(kSlow);
    RedLoopPreview* arrows = open();
    QTRY_VERIFY(looping());
    QVERIFY(part<QRadioButton>("radioButtonRedPre")->isChecked());
    QVERIFY(part<QCheckBox>("checkBoxSelectMarking")->isChecked());
    QVERIFY(part<QCheckBox>("checkBoxLoopMark")->isChecked());
    QCOMPARE(part<QSpinBox>("spinBox")->value(), 10);
    COMPARE_JOURNAL(only(machineJournal(), {"SetMarkType", "StartMark"}),
                    {call("SetMarkType", 1), call("StartMark", 1, 1)});
    machine().setSpeed(0.0);
    QTRY_VERIFY(count() >= 3);
    QVERIFY(arrows->isVisible());
    arrows->close();
    QTRY_VERIFY(idle());
}

void RedLoopPreviewTest::closing_stops_the_preview() {
    machine().setSpeed(kSlow);
    RedLoopPreview* arrows = open();
    QTRY_VERIFY(looping());
    machine().clearJournal();
    QVERIFY(arrows->close());
    QTRY_VERIFY(idle());
    COMPARE_JOURNAL(only(machineJournal(), {"StopMark"}), {call("StopMark"), call("StopMark")});
    QVERIFY(!(*m_Window)->IsRedView());
}

void RedLoopPreviewTest::escape_stops_the_preview() {
    machine().setSpeed(kSlow);
    RedLoopPreview* arrows = open();
    QTRY_VERIFY(looping());
    QTest::keyClick(arrows, Qt::Key_Escape);
    QVERIFY(arrows->isHidden());
    QTRY_VERIFY(idle());
}

/// The bars of the main window are locked while the beam loops.
void RedLoopPreviewTest::a_button_of_its_own_ends_the_loop() {
    machine().setSpeed(kSlow);
    dialog().close();
    RedLoopPreview* arrows = open();
    QTRY_VERIFY(looping());
    QTRY_VERIFY(!(*m_Window)->centralWidget()->isEnabled());
    auto* button = arrows->findChild<QPushButton*>(QStringLiteral("pushButtonClose"));
    QVERIFY(button);
    QTRY_VERIFY(button->width() >= 40 && button->height() >= 40);
    QCOMPARE(button->text(), LanguageManager::GetLanText("关闭"));
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(arrows->isHidden());
    QTRY_VERIFY(idle());
    QVERIFY((*m_Window)->centralWidget()->isEnabled());
}

void RedLoopPreviewTest::a_stop_input_ends_the_loop_only_with_the_run_dialog_up() {
    machine().setSpeed(kSlow);
    dialog().close();
    RedLoopPreview* arrows = open();
    QTRY_VERIFY(looping());
    machine().clearJournal();
    (*m_Window)->IOStopRun();
    QCOMPARE(machineCalls("StopMark"), 0);
    QVERIFY(looping());
    (*m_Window)->ShowNormalMarkWindow();
    (*m_Window)->IOStopRun();
    QTRY_VERIFY(idle());
    QVERIFY(arrows->isVisible());
    arrows->close();
}

void RedLoopPreviewTest::arrows_move_the_selection_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("invertY");
    QTest::addColumn<QPointF>("by");
    for (ArrowRow const& row : kArrows)
        QTest::addRow("%s%s", row.button, row.invertY ? " inverted" : "")
            << QString::fromLatin1(row.button) << row.invertY << row.by;
}

/// The inversion of the X axis has no say in it.
void RedLoopPreviewTest::arrows_move_the_selection() {
    QFETCH(QString, button);
    QFETCH(bool, invertY);
    QFETCH(QPointF, by);
    view()->SetKeyMoveDist(2.0);
    SystemParam::Instance()->SetInvertY(invertY);
    RedLoopPreview arrows(&**m_Window);
    for (bool invertX : {false, true}) {
        SystemParam::Instance()->SetInvertX(invertX);
        const QPointF before = place();
        pressArrow(&arrows, qPrintable(button));
        QCOMPARE(place() - before, by);
    }
}

void RedLoopPreviewTest::arrows_without_a_document_do_nothing() {
    RedLoopPreview arrows(&**m_Window);
    (*m_Window)->CloseAllFile();
    QVERIFY(!view());
    for (ArrowRow const& row : kArrows)
        pressArrow(&arrows, row.button);
    QVERIFY(machineJournal().isEmpty());
}

/// A round that takes for ever is not waited for: the beam begins anew where the objects are now, and the dialog of the
/// run hears nothing of it.
void RedLoopPreviewTest::an_arrow_is_on_the_beam_at_once() {
    view()->SetKeyMoveDist(2.0);
    machine().setSpeed(kSlow);
    RedLoopPreview* arrows = open();
    QTRY_VERIFY(looping());
    QTRY_VERIFY((*m_Window)->IsRedView());
    machine().clearJournal();
    QSignalSpy passes(&dialog(), &Form_Marking::SendRunData);
    pressArrow(arrows, "pushButtonDown");
    QTRY_COMPARE(machineCalls("StartMark"), 1);
    QTRY_VERIFY(looping());
    machine().setSpeed(0.0);
    QTRY_COMPARE(machine().state().y, 2.0);
    machine().setSpeed(kSlow);
    QVERIFY(dialog().IsRunning());
    QCOMPARE(look(), QStringLiteral("background:green"));
    arrows->close();
    QTRY_VERIFY(idle());
    QVERIFY(machineCalls("StartMark") >= 1);
}

void RedLoopPreviewTest::nothing_selected_ends_the_preview_at_once_and_leaves_the_dialog() {
    QTest::keyClick(view()->focusProxy() ? view()->focusProxy() : view(), Qt::Key_Delete);
    QCOMPARE(view()->GetSelectedToolCnt(), 0);
    QVERIFY(!action()->isEnabled());
    RedLoopPreview arrows(&**m_Window);
    arrows.show();
    QTRY_COMPARE(count(), 1);
    QTRY_VERIFY(idle());
    QVERIFY(arrows.isVisible());
    QCOMPARE(machineCalls("StartMark"), 0);
    QVERIFY(part<QRadioButton>("radioButtonRedPre")->isChecked());
    arrows.close();
}

void RedLoopPreviewTest::every_use_makes_a_new_dialog_and_keeps_the_old_one_hidden() {
    QCOMPARE(dialogs().size(), 0);
    for (int use = 1; use <= 3; ++use) {
        RedLoopPreview* arrows = open();
        QVERIFY(arrows);
        QCOMPARE(dialogs().size(), use);
        QTRY_VERIFY(dialog().IsRunning());
        if (use != 2) { // a dialog that is still up makes way
            arrows->close();
            QTRY_VERIFY(idle());
        }
        for (RedLoopPreview* each : dialogs()) {
            QCOMPARE(each->parentWidget(), &**m_Window);
            QCOMPARE(each->isVisible(), each == arrows && use == 2);
        }
    }
}

void RedLoopPreviewTest::all_dialogs_go_with_the_window() {
    QPointer<RedLoopPreview> first = open();
    first->close();
    QPointer<RedLoopPreview> second = open();
    QTRY_VERIFY(dialog().IsRunning());
    m_Window->close();
    QVERIFY(!first);
    QVERIFY(!second);
}

QTEST_MAIN(RedLoopPreviewTest)
#include "tst_redlooppreview.moc"
