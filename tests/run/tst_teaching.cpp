// SPDX-License-Identifier: MIT
#include "engine/imarkcardbase.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "run/formteaching.h"
#include "tests/run/formfixture.h"

#include <QAction>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRadioButton>
#include <QScreen>
#include <QSignalSpy>

using namespace tests;

/// Teaching points with the pilot beam, from the main window's action on.
class TeachingTest : public QObject, private RunDialogFixture {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void without_a_document_nothing_opens();
    void start_takes_the_tool_and_opens_the_window_at_the_bottom();
    void fields_begin_at_zero_and_cannot_be_typed_into();
    void closing_goes_back_to_select();
    void escape_closes_too();
    void closing_after_the_document_only_enables_the_action();
    void taking_the_tool_back_selects();
    void steps_data();
    void steps();
    void steps_there_and_back_show_no_minus_zero();
    void arrows_move_the_mirrors();
    void the_centre_leaves_the_stored_place();
    void a_press_in_the_view_steers_the_beam();
    void recording_makes_a_mark_point();
    void recording_without_a_document_does_nothing();
    void f6_confirms_the_place_pressed();
    void a_held_f6_confirms_once();
    void f6_and_the_record_button_give_the_same_point_data();
    void f6_and_the_record_button_give_the_same_point();
    void after_the_way_to_the_centre_f6_confirms_the_centre();
    void f6_makes_circles_and_arcs_of_three_places_data();
    void f6_makes_circles_and_arcs_of_three_places();
    void f6_for_a_circle_is_heard_wherever_the_focus_is();
    void f6_for_a_circle_is_the_run_input_of_a_locked_window();
    void the_action_stays_disabled_until_the_window_is_closed_data();
    void the_action_stays_disabled_until_the_window_is_closed();
    void a_document_that_was_left_does_not_go_on_teaching();
    void a_document_that_is_taught_shows_it_when_it_is_back();
    void closing_ends_a_circle_too();
    void a_hidden_window_of_circles_does_not_disable_the_action();
    void a_button_of_its_own_closes_it();
    void each_start_makes_a_new_window_and_one_steers();
    void circle_and_arc_open_no_window_and_steer_the_beam_data();
    void circle_and_arc_open_no_window_and_steer_the_beam();
    void a_taught_point_is_marked_where_the_beam_stood_data();
    void a_taught_point_is_marked_where_the_beam_stood();
    void a_right_press_does_not_end_it();
    void a_closed_card_is_not_moved();

private:
    QAction* action(char const* name = "actionTeaching") { return m_Window->child<QAction>(name); }
    QRulerView* view() { return (*m_Window)->GetActiveView(); }
    QList<FormTeaching*> windows() { return (*m_Window)->findChildren<FormTeaching*>(); }
    FormTeaching* teach() {
        action()->trigger();
        machine().clearJournal();
        return windows().isEmpty() ? nullptr : windows().last();
    }
    static void click(FormTeaching* form, char const* button) {
        auto* found = form->findChild<QAbstractButton*>(QString::fromLatin1(button));
        QVERIFY2(found, button);
        found->click();
    }
    static QString field(FormTeaching* form, char const* name) {
        return form->findChild<QLineEdit*>(QString::fromLatin1(name))->text();
    }
    static QStringList fields(FormTeaching* form) {
        return {field(form, "lineEditMirrX"), field(form, "lineEditMirrY")};
    }
    QVector<JournalEntry> moves() { return only(machineJournal(), {"MoveMirrorPos"}); }
    int objects() {
        int objects = 0;
        int vertices = 0;
        view()->GetDocStatistics(objects, vertices);
        return objects;
    }
    QWidget* canvas() {
        QWidget* found = view()->focusProxy();
        return found ? found : view();
    }
    QPointF selected() {
        double x = 0.0, y = 0.0, width = 0.0, height = 0.0, angle = 0.0;
        view()->GetSelectObjPos(x, y, width, height, angle);
        return {x, y};
    }
};

void TeachingTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void TeachingTest::init() {
    begin();
    machine().setSpeed(0.0);
}

void TeachingTest::cleanup() {
    if (!MarkCardInstance::Instance()->IsCardOpend())
        MarkCardInstance::Instance()->OpenCard();
    end();
}

void TeachingTest::without_a_document_nothing_opens() {
    (*m_Window)->CloseAllFile();
    QVERIFY(!action()->isEnabled());
    action()->setEnabled(true);
    action()->trigger();
    QVERIFY(windows().isEmpty());
    QVERIFY(action()->isEnabled());
}

void TeachingTest::start_takes_the_tool_and_opens_the_window_at_the_bottom() {
    QVERIFY(action()->isEnabled());
    FormTeaching* form = teach();
    QVERIFY(form && form->isVisible());
    QVERIFY(form->windowFlags() & Qt::WindowStaysOnTopHint);
    QCOMPARE(form->windowTitle(), LanguageManager::GetLanText("示教"));
    QVERIFY(!action()->isEnabled());
    QVERIFY(action()->isChecked());
    QVERIFY(!action("Select")->isChecked());
    QCOMPARE(view()->GetOperatorOnView(), OperatorTeach);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    QCOMPARE(form->y() + form->height(), screen.y() + screen.height());
    QCOMPARE(form->x(), screen.x() + (screen.width() - form->width()) / 2);
    QVERIFY(!form->styleSheet().isEmpty());
}

void TeachingTest::fields_begin_at_zero_and_cannot_be_typed_into() {
    FormTeaching* form = teach();
    QCOMPARE(fields(form), QStringList({"0.000", "0.000"}));
    for (QLineEdit const* edit : form->findChildren<QLineEdit*>())
        QVERIFY(!edit->isEnabled());
    QVERIFY(form->findChild<QRadioButton*>(QStringLiteral("radioButtonX3"))->isChecked());
    QVERIFY(moves().isEmpty());
}

void TeachingTest::closing_goes_back_to_select() {
    FormTeaching* form = teach();
    QSignalSpy closed(form, &FormTeaching::FormClosed);
    QVERIFY(form->close());
    QCOMPARE(closed.count(), 1);
    QVERIFY(action()->isEnabled());
    QVERIFY(!action()->isChecked());
    QCOMPARE(view()->GetOperatorOnView(), OperatorSelect);
}

void TeachingTest::escape_closes_too() {
    FormTeaching* form = teach();
    QTest::keyClick(form, Qt::Key_Escape);
    QVERIFY(form->isHidden());
    QVERIFY(action()->isEnabled());
    QCOMPARE(view()->GetOperatorOnView(), OperatorSelect);
}

void TeachingTest::closing_after_the_document_only_enables_the_action() {
    FormTeaching* form = teach();
    (*m_Window)->CloseAllFile();
    QVERIFY(!view());
    action()->setChecked(true);
    form->close();
    QVERIFY(action()->isEnabled());
    QVERIFY(action()->isChecked());
}

void TeachingTest::taking_the_tool_back_selects() {
    view()->SetOperatorOnView(OperatorTeach);
    action()->setChecked(true);
    action()->trigger();
    QVERIFY(windows().isEmpty());
    QVERIFY(action("Select")->isChecked());
    QCOMPARE(view()->GetOperatorOnView(), OperatorSelect);
}

void TeachingTest::steps_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("mm");
    QTest::newRow("0.01") << "radioButtonX1"
                          << "X0.01" << 0.01;
    QTest::newRow("0.1") << "radioButtonX2"
                         << "X0.1" << 0.1;
    QTest::newRow("1") << "radioButtonX3"
                       << "X1" << 1.0;
    QTest::newRow("10") << "radioButtonX4"
                        << "X10" << 10.0;
    QTest::newRow("100") << "radioButtonX5"
                         << "X100" << 100.0;
}

void TeachingTest::steps() {
    QFETCH(QString, button);
    QFETCH(QString, text);
    QFETCH(double, mm);
    FormTeaching* form = teach();
    QCOMPARE(form->findChild<QRadioButton*>(button)->text(), text);
    click(form, qPrintable(button));
    click(form, "pushButtonRight");
    COMPARE_JOURNAL(moves(), {call("MoveMirrorPos", mm, 0, 1000, 0)});
    QCOMPARE(fields(form), QStringList({QString::number(mm, 'f', 3), "0.000"}));
}

void TeachingTest::steps_there_and_back_show_no_minus_zero() {
    FormTeaching* form = teach();
    click(form, "radioButtonX2");
    for (char const* button : {"pushButtonLeft", "pushButtonLeft", "pushButtonLeft", "pushButtonRight",
                               "pushButtonRight", "pushButtonRight"})
        click(form, button);
    QCOMPARE(fields(form), QStringList({"0.000", "0.000"}));
}

void TeachingTest::arrows_move_the_mirrors() {
    FormTeaching* form = teach();
    for (char const* button : {"pushButtonUp", "pushButtonUp", "pushButtonLeft", "pushButtonDown", "pushButtonRight"})
        click(form, button);
    COMPARE_JOURNAL(moves(), {call("MoveMirrorPos", 0, 1, 1000, 0), call("MoveMirrorPos", 0, 2, 1000, 0),
                              call("MoveMirrorPos", -1, 2, 1000, 0), call("MoveMirrorPos", -1, 1, 1000, 0),
                              call("MoveMirrorPos", 0, 1, 1000, 0)});
    QCOMPARE(fields(form), QStringList({"0.000", "1.000"}));
    QTRY_COMPARE(machine().state().y, 1.0);
    QVERIFY(!machine().state().laser);
}

void TeachingTest::the_centre_leaves_the_stored_place() {
    FormTeaching* form = teach();
    click(form, "pushButtonUp");
    click(form, "pushButtonRight");
    machine().clearJournal();
    click(form, "pushButtonMoveCenter");
    QCOMPARE(fields(form), QStringList({"0.000", "0.000"}));
    click(form, "pushButtonUp");
    QCOMPARE(fields(form), QStringList({"0.000", "2.000"}));
    COMPARE_JOURNAL(moves(), {call("MoveMirrorPos", 0, 0, 1000, 0), call("MoveMirrorPos", 1, 2, 1000, 0)});
}

void TeachingTest::a_press_in_the_view_steers_the_beam() {
    FormTeaching* form = teach();
    QSignalSpy told(&**m_Window, &MainWindow::SetCurMirrorPos);
    QTest::mouseClick(canvas(), Qt::LeftButton, Qt::NoModifier, canvas()->rect().center() + QPoint(40, -30));
    QCOMPARE(told.count(), 1);
    const QPointF place = told.first().first().toPointF();
    QVERIFY(place.x() > 0.0 && place.y() > 0.0);
    QCOMPARE(moves().size(), 1);
    QCOMPARE(machine().state().x, place.x());
    QCOMPARE(machine().state().y, place.y());
    QCOMPARE(fields(form), QStringList({QString::number(place.x(), 'f', 3), QString::number(place.y(), 'f', 3)}));
    click(form, "pushButtonUp");
    QCOMPARE(machine().state().y, place.y() + 1.0);
}

void TeachingTest::recording_makes_a_mark_point() {
    FormTeaching* form = teach();
    click(form, "radioButtonX4");
    click(form, "pushButtonLeft");
    click(form, "pushButtonUp");
    const int before = objects();
    click(form, "pushButtonRecordPoint");
    QCOMPARE(objects(), before + 1);
    QCOMPARE(view()->GetSelectedToolCnt(), 1);
    QCOMPARE(selected(), QPointF(-10.0, 10.0));
    QCOMPARE(view()->GetOperatorOnView(), OperatorTeach);
}

void TeachingTest::recording_without_a_document_does_nothing() {
    FormTeaching* form = teach();
    (*m_Window)->CloseAllFile();
    click(form, "pushButtonRecordPoint");
    click(form, "pushButtonUp");
    QCOMPARE(moves().size(), 1);
}

void TeachingTest::f6_confirms_the_place_pressed() {
    teach();
    const int before = objects();
    QSignalSpy told(&**m_Window, &MainWindow::SetCurMirrorPos);
    QTest::mouseClick(canvas(), Qt::LeftButton, Qt::NoModifier, canvas()->rect().center() + QPoint(15, 25));
    QTest::keyClick(&**m_Window, Qt::Key_F6);
    QCOMPARE(objects(), before + 1);
    QCOMPARE(selected(), told.first().first().toPointF());
    QVERIFY(!dialog().IsRunning());
}

/// In the main window, and in the teaching window that passes it on.
void TeachingTest::a_held_f6_confirms_once() {
    FormTeaching* form = teach();
    QVERIFY(form);
    for (QWidget* widget : {static_cast<QWidget*>(&**m_Window), static_cast<QWidget*>(form)}) {
        const int before = objects();
        for (bool repeat : {false, true, true}) {
            QKeyEvent held(QEvent::KeyPress, Qt::Key_F6, Qt::NoModifier, QString(), repeat);
            QCoreApplication::sendEvent(widget, &held);
        }
        QCOMPARE(objects(), before + 1);
    }
}

void TeachingTest::f6_and_the_record_button_give_the_same_point_data() {
    QTest::addColumn<bool>("press");
    QTest::addColumn<bool>("invert");
    QTest::newRow("arrows") << false << false;
    QTest::newRow("a press and arrows") << true << false;
    QTest::newRow("inverted axes") << true << true;
}

void TeachingTest::f6_and_the_record_button_give_the_same_point() {
    QFETCH(bool, press);
    QFETCH(bool, invert);
    SystemParam::Instance()->SetInvertX(invert);
    SystemParam::Instance()->SetInvertY(invert);
    FormTeaching* form = teach();
    if (press)
        QTest::mouseClick(canvas(), Qt::LeftButton, Qt::NoModifier, canvas()->rect().center() + QPoint(15, 25));
    for (char const* button : {"radioButtonX4", "pushButtonRight", "pushButtonUp", "radioButtonX2", "pushButtonUp"})
        click(form, button);
    const int before = objects();
    click(form, "pushButtonRecordPoint");
    const QPointF recorded = selected();
    QTest::keyClick(&**m_Window, Qt::Key_F6);
    QCOMPARE(objects(), before + 2);
    QCOMPARE(selected(), recorded);
    QCOMPARE(QString::number(recorded.x(), 'f', 3), field(form, "lineEditMirrX"));
    QCOMPARE(QString::number(recorded.y(), 'f', 3), field(form, "lineEditMirrY"));
    SystemParam::Instance()->SetInvertX(false);
    SystemParam::Instance()->SetInvertY(false);
}

/// Kept: the button's own place stays where it was, and the spot stands in the centre.
void TeachingTest::after_the_way_to_the_centre_f6_confirms_the_centre() {
    FormTeaching* form = teach();
    click(form, "radioButtonX4");
    click(form, "pushButtonRight");
    click(form, "pushButtonMoveCenter");
    QTest::keyClick(&**m_Window, Qt::Key_F6);
    QCOMPARE(selected(), QPointF(0, 0));
    click(form, "pushButtonRecordPoint");
    QCOMPARE(selected(), QPointF(10, 0));
}

void TeachingTest::f6_makes_circles_and_arcs_of_three_places_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("steered");
    for (bool steered : {false, true}) {
        for (char const* name : {"actionTeachCircle", "actionTeachArc"})
            QTest::addRow("%s %s", name, steered ? "by arrows" : "by presses") << QString::fromLatin1(name) << steered;
    }
}

/// Through the main window; a teaching window that is up steers circles and arcs too.
void TeachingTest::f6_makes_circles_and_arcs_of_three_places() {
    QFETCH(QString, name);
    QFETCH(bool, steered);
    FormTeaching* form = steered ? teach() : nullptr;
    action(qPrintable(name))->trigger();
    dialog().close();
    QCOMPARE((*m_Window)->MarkWindowIsVisible(), 0);
    const int before = objects();
    const struct {
        char const* arrow;
        QPoint place;
    } ways[] = {{"pushButtonRight", {60, 0}}, {"pushButtonUp", {60, -60}}, {"pushButtonLeft", {0, -60}}};
    if (steered)
        click(form, "radioButtonX4");
    for (auto const& way : ways) {
        QCOMPARE(objects(), before);
        if (steered)
            click(form, way.arrow);
        else
            QTest::mouseClick(canvas(), Qt::LeftButton, Qt::NoModifier, canvas()->rect().center() + way.place);
        QTest::keyClick(&**m_Window, Qt::Key_F6);
    }
    QCOMPARE(objects(), before + 1);
    QCOMPARE(view()->GetSelectedToolCnt(), 1);
    QCOMPARE((*m_Window)->MarkWindowIsVisible(), 0);
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0, angle = 0.0;
    view()->GetSelectObjPos(x, y, width, height, angle);
    if (name == QLatin1String("actionTeachCircle"))
        QVERIFY(qAbs(width - height) < 0.01);
    if (steered) // from the right over the top to the left of a circle through three corners of a square
        QVERIFY(width < 10 * M_SQRT2 + 0.01 && width > 10.0);
}

void TeachingTest::f6_for_a_circle_is_heard_wherever_the_focus_is() {
    action("actionTeachCircle")->trigger();
    SystemParam::Instance()->m_nResponseShortcut = 0;
    const int before = objects();
    QList<QWidget*> heard;
    for (QWidget* widget : (*m_Window)->findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == &**m_Window && widget->focusPolicy() & Qt::TabFocus)
            heard.append(widget);
    }
    QVERIFY(heard.size() > 3);
    const QPointF corners[] = {{0, 0}, {10, 0}, {0, 10}};
    int places = 0;
    for (QWidget* widget : heard) {
        widget->setFocus();
        MainWindow::GetCurMirrorPt(corners[places % 3]);
        QTest::keyClick(widget, Qt::Key_F6);
        QCOMPARE(objects(), before + ++places / 3);
    }
}

/// While a job runs the view is locked and F6 has its meaning for the run.
void TeachingTest::f6_for_a_circle_is_the_run_input_of_a_locked_window() {
    action("actionTeachCircle")->trigger();
    MainWindow::GetCurMirrorPt(QPointF(1, 2));
    SystemParam::Instance()->SetEnableTriggerWhenRedLoop(true);
    dialog().StartMarkPreview(false, true, 0, MarkTypeRedPreview);
    QTRY_VERIFY(dialog().IsRedLoopRun() && !view()->isEnabled() && count() == 1);
    machine().clearJournal();
    QTest::keyClick(&**m_Window, Qt::Key_F6);
    QTRY_COMPARE(only(machineJournal(), {"SetMarkType"}).size(), 2);
    dialog().StopMark();
    QTRY_VERIFY(idle());
}

void TeachingTest::the_action_stays_disabled_until_the_window_is_closed_data() {
    QTest::addColumn<QString>("event");
    for (char const* event : {"another user", "automatic logout", "a new document", "back to the document",
                              "another tool", "a second start", "documents closed"})
        QTest::newRow(event) << QString::fromLatin1(event);
}

void TeachingTest::the_action_stays_disabled_until_the_window_is_closed() {
    QFETCH(QString, event);
    QPointer<FormTeaching> form = teach();
    if (event == QLatin1String("another user"))
        emit(*m_Window)->UserChanged();
    else if (event == QLatin1String("automatic logout"))
        (*m_Window)->AutoLoginOut();
    else if (event.contains(QLatin1String("document")))
        m_Window->newDocument(1, QStringLiteral("other"));
    if (event == QLatin1String("back to the document"))
        (*m_Window)->OpenFile(QStringLiteral("test"));
    else if (event == QLatin1String("documents closed"))
        (*m_Window)->CloseAllFile();
    else if (event == QLatin1String("another tool"))
        action("actionAddPoint")->trigger();
    else if (event == QLatin1String("a second start"))
        action()->trigger();
    QVERIFY(!action()->isEnabled());
    QVERIFY(form && form->isVisible());
    QCOMPARE(windows().size(), 1);
    form->close();
    QVERIFY(action()->isEnabled());
    emit(*m_Window)->UserChanged();
    QCOMPARE(action()->isEnabled(), view() != nullptr);
}

void TeachingTest::a_document_that_was_left_does_not_go_on_teaching() {
    QRulerView const* first = view();
    FormTeaching* form = teach();
    m_Window->newDocument(1, QStringLiteral("other"));
    QCOMPARE(first->GetOperatorOnView(), OperatorTeach);
    QCOMPARE(view()->GetOperatorOnView(), OperatorSelect);
    form->close();
    QCOMPARE(first->GetOperatorOnView(), OperatorSelect);
}

void TeachingTest::a_document_that_is_taught_shows_it_when_it_is_back() {
    teach();
    m_Window->newDocument(1, QStringLiteral("other"));
    QVERIFY(!action()->isChecked() && action("Select")->isChecked());
    (*m_Window)->OpenFile(QStringLiteral("test"));
    QCOMPARE(view()->GetOperatorOnView(), OperatorTeach);
    QVERIFY(action()->isChecked() && !action("Select")->isChecked());
}

void TeachingTest::closing_ends_a_circle_too() {
    FormTeaching* form = teach();
    action("actionTeachCircle")->trigger();
    form->close();
    QCOMPARE(view()->GetOperatorOnView(), OperatorSelect);
    QVERIFY(!action("actionTeachCircle")->isChecked());
    QVERIFY(action("Select")->isChecked());
}

void TeachingTest::a_hidden_window_of_circles_does_not_disable_the_action() {
    action("actionTeachCircle")->trigger();
    QCOMPARE(windows().size(), 1);
    emit(*m_Window)->UserChanged();
    QVERIFY(action()->isEnabled());
}

void TeachingTest::a_button_of_its_own_closes_it() {
    FormTeaching* form = teach();
    auto const* button = form->findChild<QAbstractButton*>(QStringLiteral("pushButtonClose"));
    QVERIFY(button);
    QTRY_VERIFY(button->width() >= 40 && button->height() >= 40);
    QCOMPARE(button->text(), LanguageManager::GetLanText("关闭"));
    QVERIFY(form->width() <= 1024);
    click(form, "pushButtonClose");
    QVERIFY(form->isHidden());
    QVERIFY(action()->isEnabled());
    QCOMPARE(view()->GetOperatorOnView(), OperatorSelect);
}

/// However often teaching was started, a place pressed moves the mirrors once.
void TeachingTest::each_start_makes_a_new_window_and_one_steers() {
    QPointer<FormTeaching> first = teach();
    click(first, "pushButtonUp");
    first->close();
    QPointer<FormTeaching> second = teach();
    QVERIFY(second && second != first);
    QCOMPARE(fields(second), QStringList({"0.000", "0.000"}));
    QCOMPARE(windows().size(), 1);
    MainWindow::GetCurMirrorPt(QPointF(3, 4));
    COMPARE_JOURNAL(moves(), {call("MoveMirrorPos", 3, 4, 1000, 0)});
}

void TeachingTest::circle_and_arc_open_no_window_and_steer_the_beam_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("op");
    QTest::newRow("circle") << "actionTeachCircle" << int(OperatorTeachCircle);
    QTest::newRow("arc") << "actionTeachArc" << int(OperatorTeachArc);
}

void TeachingTest::circle_and_arc_open_no_window_and_steer_the_beam() {
    QFETCH(QString, name);
    QFETCH(int, op);
    action(qPrintable(name))->trigger();
    QCOMPARE(int(view()->GetOperatorOnView()), op);
    for (FormTeaching* form : windows())
        QVERIFY(form->isHidden());
    machine().clearJournal();
    QSignalSpy told(&**m_Window, &MainWindow::SetCurMirrorPos);
    QTest::mouseClick(canvas(), Qt::LeftButton, Qt::NoModifier, canvas()->rect().center() + QPoint(20, 20));
    QCOMPARE(told.count(), 1);
    QCOMPARE(moves().size(), 1);
    QCOMPARE(QPointF(machine().state().x, machine().state().y), told.first().first().toPointF());
}

void TeachingTest::a_taught_point_is_marked_where_the_beam_stood_data() {
    QTest::addColumn<bool>("invertX");
    QTest::addColumn<bool>("invertY");
    QTest::newRow("plain") << false << false;
    QTest::newRow("inverted X") << true << false;
    QTest::newRow("inverted Y") << false << true;
    QTest::newRow("both inverted") << true << true;
}

void TeachingTest::a_taught_point_is_marked_where_the_beam_stood() {
    QFETCH(bool, invertX);
    QFETCH(bool, invertY);
    SystemParam::Instance()->SetInvertX(invertX);
    SystemParam::Instance()->SetInvertY(invertY);
    FormTeaching* form = teach();
    click(form, "radioButtonX4");
    click(form, "pushButtonRight");
    click(form, "pushButtonUp");
    click(form, "pushButtonUp");
    const QPointF beam(machine().state().x, machine().state().y);
    QCOMPARE(beam, QPointF(invertX ? -10 : 10, invertY ? -20 : 20));
    click(form, "pushButtonRecordPoint");
    form->close();
    part<QCheckBox>("checkBoxSelectMarking")->setChecked(true);
    press("pushButtonStart");
    QTRY_COMPARE(count(), 1);
    QTRY_VERIFY(idle());
    QCOMPARE(QPointF(machine().state().x, machine().state().y), beam);
    SystemParam::Instance()->SetInvertX(false);
    SystemParam::Instance()->SetInvertY(false);
}

void TeachingTest::a_right_press_does_not_end_it() {
    FormTeaching* form = teach();
    QTest::mouseClick(canvas(), Qt::RightButton, Qt::NoModifier, canvas()->rect().center());
    QTest::keyClick(canvas(), Qt::Key_Escape);
    QCOMPARE(view()->GetOperatorOnView(), OperatorTeach);
    QVERIFY(form->isVisible());
    QVERIFY(!action()->isEnabled());
    form->close();
    QCOMPARE(view()->GetOperatorOnView(), OperatorSelect);
}

void TeachingTest::a_closed_card_is_not_moved() {
    FormTeaching* form = teach();
    const QPointF before(machine().state().x, machine().state().y);
    MarkCardInstance::Instance()->CloseCard();
    for (char const* button : {"pushButtonUp", "pushButtonMoveCenter", "pushButtonRight"})
        click(form, button);
    MainWindow::GetCurMirrorPt(QPointF(3, 4));
    QCOMPARE(fields(form), QStringList({"3.000", "4.000"}));
    MarkCardInstance::Instance()->OpenCard();
    QCOMPARE(QPointF(machine().state().x, machine().state().y), before);
}

QTEST_MAIN(TeachingTest)
#include "tst_teaching.moc"
