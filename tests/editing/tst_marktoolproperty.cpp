// SPDX-License-Identifier: MIT
#include "editing/centertype.h"
#include "editing/marktoolproperty.h"
#include "engine/equalpos.h"
#include "engine/languagemanager.h"
#include "engine/marktool.h"
#include "tests/editing/editingfixture.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>

using namespace tests;

namespace {

constexpr char const* kBoxes[] = {"doubleSpinBoxPosX", "doubleSpinBoxPosY", "doubleSpinBoxWidth", "doubleSpinBoxHeight",
                                  "doubleSpinBoxAngle"};

struct Place {
    double x, y, width, height, angle;
};

} // namespace

/// The panel that moves, scales and turns the selection by numbers.
class MarkToolPropertyTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void widgets_have_their_texts_data();
    void widgets_have_their_texts();
    void boxes_have_their_limits_data();
    void boxes_have_their_limits();
    void combo_boxes_have_their_entries();
    void nothing_selected_clears_and_disables();
    void a_selection_is_shown();
    void objects_of_different_angles_clear_the_angle_alone();
    void an_outside_change_writes_only_the_boxes_that_differ();
    void a_value_is_shown_again_after_its_box_was_cleared();
    void every_edit_changes_the_object_and_is_logged_data();
    void every_edit_changes_the_object_and_is_logged();
    void an_edit_to_the_same_value_does_nothing();
    void typing_a_width_of_0_changes_nothing_data();
    void typing_a_width_of_0_changes_nothing();
    void same_scale_takes_the_other_size_along();
    void the_log_names_all_selected_objects();
    void width_without_a_value_takes_the_angle_mark_back();
    void apply_scales_both_sizes_in_one_step();
    void apply_with_a_size_of_0_changes_nothing();
    void apply_leaves_an_axis_without_extent();
    void centre_moves_to_the_middle_of_the_field();
    void a_move_distance_sets_the_steps_data();
    void a_move_distance_sets_the_steps();
    void another_document_brings_its_own_move_distance();
    void the_base_point_follows_its_buttons();
    void the_working_state_is_set();
    void a_mixed_working_state_shows_none_and_changes_nothing();
    void fill_is_off_for_groups_and_without_a_selection();
    void another_document_takes_over();
    void a_closed_document_leaves_the_panel_empty();

private:
    Place shown() { return {box(0)->value(), box(1)->value(), box(2)->value(), box(3)->value(), box(4)->value()}; }
    Place real() {
        Place p{};
        document->view.GetSelectObjPos(p.x, p.y, p.width, p.height, p.angle);
        return p;
    }
    QDoubleSpinBox* box(int index) { return part<QDoubleSpinBox>(*panel, kBoxes[index]); }
    bool undo() {
        bool redo = false, undo = false;
        document->view.RedoUndoStatus(redo, undo);
        return undo;
    }
    int undoSteps() {
        int steps = 0;
        for (; undo(); ++steps)
            document->view.Undo();
        return steps;
    }

    std::unique_ptr<DocumentFixture> document;
    std::unique_ptr<MarkToolProperty> panel;
};

void MarkToolPropertyTest::init() {
    document = std::make_unique<DocumentFixture>();
    document->addRects({{10, 10, 20, 10}, {60, 60, 30, 20}});
    document->select({0});
    panel = std::make_unique<MarkToolProperty>();
    panel->SetRulerView(&document->view);
}

void MarkToolPropertyTest::cleanup() {
    panel.reset();
    document.reset();
    LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
}

void MarkToolPropertyTest::widgets_have_their_texts_data() {
    QTest::addColumn<QString>("text");
    for (auto const& [name, text] :
         std::initializer_list<std::pair<char const*, char const*>>{{"labelPosX", "位置X"},
                                                                    {"labelPosY", "位置Y"},
                                                                    {"labelWidth", "宽度"},
                                                                    {"labelHeight", "高度"},
                                                                    {"labelAngle", "角度"},
                                                                    {"checkBoxSameScale", "等比缩放"},
                                                                    {"labelMoveDist", "对象移动当量"},
                                                                    {"pushButtonCenter", "居中"},
                                                                    {"pushButtonApply", "应用<<"},
                                                                    {"pushButtonFill", "填充设置"},
                                                                    {"labelBasePoint", "基准点"}})
        QTest::newRow(name) << QString::fromUtf8(text);
}

void MarkToolPropertyTest::widgets_have_their_texts() {
    QFETCH(QString, text);
    QCOMPARE(part<QWidget>(*panel, QTest::currentDataTag())->property("text").toString(), text);
}

void MarkToolPropertyTest::boxes_have_their_limits_data() {
    QTest::addColumn<int>("decimals");
    QTest::addColumn<double>("limit");
    for (int i = 0; i < 4; ++i)
        QTest::newRow(kBoxes[i]) << 3 << 1000000.0;
    QTest::newRow(kBoxes[4]) << 2 << 180.0;
}

void MarkToolPropertyTest::boxes_have_their_limits() {
    QFETCH(int, decimals);
    QFETCH(double, limit);
    const auto* tested = part<QDoubleSpinBox>(*panel, QTest::currentDataTag());
    QCOMPARE(tested->decimals(), decimals);
    QCOMPARE(tested->maximum(), limit);
    QCOMPARE(tested->minimum(), -limit);
}

void MarkToolPropertyTest::combo_boxes_have_their_entries() {
    const auto* steps = part<QComboBox>(*panel, "comboBoxMoveDist");
    QVERIFY(steps->isEditable());
    QStringList texts;
    for (int i = 0; i < steps->count(); ++i)
        texts.append(steps->itemText(i));
    QCOMPARE(texts, QStringList({"10", "1", "0.1", "0.01", "0.001"}));
    QCOMPARE(steps->currentText(), QStringLiteral("0.01"));
    const auto* work = part<QComboBox>(*panel, "comboBoxWorkType");
    QCOMPARE(work->count(), 2);
    QCOMPARE(work->itemText(0), QStringLiteral("不工作"));
    QCOMPARE(work->itemText(1), QStringLiteral("工作"));
}

void MarkToolPropertyTest::nothing_selected_clears_and_disables() {
    QVERIFY(box(0)->isEnabled());
    document->select({});
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(box(i)->text(), QString());
        QVERIFY(!box(i)->isEnabled());
    }
    QVERIFY(!part<QPushButton>(*panel, "pushButtonCenter")->isEnabled());
    QVERIFY2(panel->isEnabled(), "the rights alone decide on the page");
}

void MarkToolPropertyTest::a_selection_is_shown() {
    const Place place = real();
    QCOMPARE(place.width, 20.0);
    QVERIFY(EqualDouble(shown().x, place.x));
    QVERIFY(EqualDouble(shown().y, place.y));
    QCOMPARE(shown().width, 20.0);
    QCOMPARE(shown().height, 10.0);
    QCOMPARE(shown().angle, 0.0);
    QCOMPARE(part<QComboBox>(*panel, "comboBoxWorkType")->currentIndex(), 1);
}

void MarkToolPropertyTest::objects_of_different_angles_clear_the_angle_alone() {
    box(4)->setValue(30.0);
    document->select({0, 1});
    QVERIFY(real().angle < -180.0);
    QCOMPARE(box(4)->text(), QString());
    QVERIFY(box(4)->isEnabled());
    QVERIFY(!box(0)->text().isEmpty());
}

void MarkToolPropertyTest::an_outside_change_writes_only_the_boxes_that_differ() {
    QSignalSpy x(box(0), QOverload<double>::of(&QDoubleSpinBox::valueChanged));
    QSignalSpy y(box(1), QOverload<double>::of(&QDoubleSpinBox::valueChanged));
    QSignalSpy width(box(2), QOverload<double>::of(&QDoubleSpinBox::valueChanged));
    const double before = shown().x;
    document->view.MoveSelectObjRelative(1.0, 0.0004);
    QCOMPARE(shown().x, before + 1.0);
    QCOMPARE(x.count(), 1);
    QCOMPARE(y.count(), 0);
    QCOMPARE(width.count(), 0);
    QVERIFY2(logTexts("param").isEmpty(), "showing is no edit");
}

void MarkToolPropertyTest::a_value_is_shown_again_after_its_box_was_cleared() {
    const QString text = box(2)->text();
    document->select({});
    document->select({0});
    QCOMPARE(box(2)->text(), text);
}

void MarkToolPropertyTest::every_edit_changes_the_object_and_is_logged_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("log");
    QTest::newRow(kBoxes[0]) << 12.5 << QStringLiteral("工具0修改X坐标为12.500");
    QTest::newRow(kBoxes[1]) << -7.125 << QStringLiteral("工具0修改Y坐标为-7.125");
    QTest::newRow(kBoxes[2]) << 40.0 << QStringLiteral("工具0修改宽度为40.000");
    QTest::newRow(kBoxes[3]) << 5.0 << QStringLiteral("工具0修改高度为5.000");
    QTest::newRow(kBoxes[4]) << 45.0 << QStringLiteral("工具0修改角度为45.000");
}

void MarkToolPropertyTest::every_edit_changes_the_object_and_is_logged() {
    QFETCH(double, value);
    QFETCH(QString, log);
    const Place before = real();
    part<QDoubleSpinBox>(*panel, QTest::currentDataTag())->setValue(value);
    Place expected = before;
    double* const fields[] = {&expected.x, &expected.y, &expected.width, &expected.height, &expected.angle};
    for (int i = 0; i < 5; ++i) {
        if (QByteArray(kBoxes[i]) == QTest::currentDataTag())
            *fields[i] = value;
    }
    const Place now = real();
    QVERIFY(EqualPos(now.x, expected.x) && EqualPos(now.y, expected.y));
    // The size is the bounding rectangle's, which grows when the object is turned.
    if (expected.angle == before.angle)
        QVERIFY(qAbs(now.width - expected.width) < 1e-9 && qAbs(now.height - expected.height) < 1e-9);
    QVERIFY(qAbs(now.angle - expected.angle) < 1e-9);
    QCOMPARE(logTexts("param"), QStringList(log));
    QVERIFY(undo());
}

void MarkToolPropertyTest::an_edit_to_the_same_value_does_nothing() {
    const Place place = real();
    const int steps = undoSteps();
    QVERIFY(steps > 0);
    for (int i = 0; i < steps; ++i)
        document->view.Redo();
    document->select({0});
    panel->ChangePosX(place.x + 0.00005);
    panel->ChangePosY(place.y - 0.00005);
    panel->ChangeWidth(place.width);
    panel->ChangeHeight(place.height);
    panel->ChangeAngle(place.angle);
    QCOMPARE(undoSteps(), steps);
    QVERIFY(logTexts("param").isEmpty());
}

void MarkToolPropertyTest::typing_a_width_of_0_changes_nothing_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::newRow("width 0") << 2 << QStringLiteral("0");
    QTest::newRow("width below 0") << 2 << QStringLiteral("-3");
    QTest::newRow("height 0") << 3 << QStringLiteral("0");
}

void MarkToolPropertyTest::typing_a_width_of_0_changes_nothing() {
    QFETCH(int, index);
    QFETCH(QString, text);
    panel->show();
    box(index)->selectAll();
    QTest::keyClicks(box(index), text);
    QTest::keyClick(box(index), Qt::Key_Return);
    QCOMPARE(box(index)->value(), text.toDouble());
    QCOMPARE(real().width, 20.0);
    QCOMPARE(real().height, 10.0);
    QVERIFY(logTexts("param").isEmpty());
}

void MarkToolPropertyTest::same_scale_takes_the_other_size_along() {
    part<QCheckBox>(*panel, "checkBoxSameScale")->setChecked(true);
    box(2)->setValue(30.0);
    QCOMPARE(real().height, 15.0);
    QCOMPARE(shown().height, 15.0);
    box(3)->setValue(30.0);
    QCOMPARE(real().width, 60.0);
    QCOMPARE(shown().width, 60.0);
    QCOMPARE(logTexts("param").size(), 2);
}

void MarkToolPropertyTest::the_log_names_all_selected_objects() {
    document->select({1, 0});
    box(0)->setValue(3.0);
    QCOMPARE(logTexts("param"), QStringList(QStringLiteral("工具0,1修改X坐标为3.000")));
}

void MarkToolPropertyTest::width_without_a_value_takes_the_angle_mark_back() {
    IMarkToolBase* tool = (*document->view.GetMarkTools())[0]->GetTool();
    tool->SetAngleChanged(true);
    panel->ChangeWidth();
    QVERIFY2(tool->IsAngleChanged(), "the width shown is the object's");
    part<QCheckBox>(*panel, "checkBoxSameScale")->setChecked(true);
    {
        const QSignalBlocker block(box(2));
        box(2)->setValue(40.0);
    }
    panel->ChangeWidth();
    QCOMPARE(real().width, 40.0);
    QCOMPARE(real().height, 20.0);
    QVERIFY(!tool->IsAngleChanged());
    QCOMPARE(logTexts("param"), QStringList(QStringLiteral("工具0修改宽度为40.000")));
}

void MarkToolPropertyTest::apply_scales_both_sizes_in_one_step() {
    const int before = undoSteps();
    for (int i = 0; i < before; ++i)
        document->view.Redo();
    document->select({0});
    {
        const QSignalBlocker width(box(2)), height(box(3));
        box(2)->setValue(50.0);
        box(3)->setValue(60.0);
    }
    part<QPushButton>(*panel, "pushButtonApply")->click();
    QCOMPARE(real().width, 50.0);
    QCOMPARE(real().height, 60.0);
    QCOMPARE(undoSteps(), before + 1);
}

void MarkToolPropertyTest::apply_with_a_size_of_0_changes_nothing() {
    for (int index : {2, 3}) {
        {
            const QSignalBlocker block(box(index));
            box(index)->setValue(0.0);
        }
        part<QPushButton>(*panel, "pushButtonApply")->click();
        QCOMPARE(real().width, 20.0);
        QCOMPARE(real().height, 10.0);
        panel->SelectObjChange();
    }
}

void MarkToolPropertyTest::apply_leaves_an_axis_without_extent() {
    QVERIFY(document->root.write(QStringLiteral("/line.svg"),
                                 "<svg xmlns='http://www.w3.org/2000/svg' width='100mm' height='100mm' "
                                 "viewBox='0 0 100 100'><line x1='10' y1='20' x2='40' y2='20' stroke='black'/></svg>"));
    QString error;
    QVERIFY2(document->view.ImportVectorFile(document->root.path(QStringLiteral("/line.svg")), error),
             qPrintable(error));
    const Place before = real();
    QCOMPARE(before.width, 30.0);
    QCOMPARE(before.height, 0.0);
    {
        const QSignalBlocker block(box(2));
        box(2)->setValue(60.0);
    }
    part<QPushButton>(*panel, "pushButtonApply")->click();
    QCOMPARE(real().width, 60.0);
    QCOMPARE(real().height, 0.0);
    QVERIFY(EqualPos(real().x, before.x) && EqualPos(real().y, before.y));
}

void MarkToolPropertyTest::centre_moves_to_the_middle_of_the_field() {
    QVERIFY(!EqualPos(real().x, 0.0));
    part<QPushButton>(*panel, "pushButtonCenter")->click();
    QVERIFY(EqualPos(real().x, 0.0));
    QVERIFY(EqualPos(real().y, 0.0));
    QCOMPARE(logTexts("param"), QStringList(QStringLiteral("工具0居中")));
}

void MarkToolPropertyTest::a_move_distance_sets_the_steps_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("step");
    QTest::newRow("from the list") << QStringLiteral("10") << 10.0;
    QTest::newRow("typed") << QStringLiteral("0.25") << 0.25;
    QTest::newRow("no number") << QStringLiteral("abc") << 0.01;
    QTest::newRow("not finite") << QStringLiteral("inf") << 0.01;
    QTest::newRow("empty") << QString() << 0.01;
}

void MarkToolPropertyTest::a_move_distance_sets_the_steps() {
    QFETCH(QString, text);
    QFETCH(double, step);
    part<QComboBox>(*panel, "comboBoxMoveDist")->setCurrentText(text);
    QCOMPARE(document->view.GetKeyMoveDist(), step);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(box(i)->singleStep(), step);
    QCOMPARE(box(4)->singleStep(), 1.0);
}

void MarkToolPropertyTest::another_document_brings_its_own_move_distance() {
    QRulerView other(nullptr);
    other.SetKeyMoveDist(5.0);
    panel->SetRulerView(&other);
    QCOMPARE(part<QComboBox>(*panel, "comboBoxMoveDist")->currentText(), QStringLiteral("5"));
    QCOMPARE(box(0)->singleStep(), 5.0);
    QCOMPARE(document->view.GetKeyMoveDist(), 0.01);
    panel->SetRulerView(nullptr);
}

void MarkToolPropertyTest::the_base_point_follows_its_buttons() {
    auto* points = panel->findChild<CenterType*>();
    QVERIFY(part<QRadioButton>(*points, "radioButton4")->isChecked());
    const Place center = real();
    part<QRadioButton>(*points, "radioButton6")->click();
    QCOMPARE(document->view.GetBasePoint(), BasePointBottomLeft);
    QVERIFY(!part<QRadioButton>(*points, "radioButton4")->isChecked());
    QCOMPARE(shown().x, center.x - 10.0);
    QCOMPARE(shown().y, center.y - 5.0);
    QVERIFY(logTexts("param").isEmpty());
    part<QRadioButton>(*points, "radioButton6")->click();
    QVERIFY2(part<QRadioButton>(*points, "radioButton6")->isChecked(), "one is always on");
}

void MarkToolPropertyTest::the_working_state_is_set() {
    auto* work = part<QComboBox>(*panel, "comboBoxWorkType");
    work->setCurrentIndex(0);
    QCOMPARE(document->view.GetSelectObjWorkType(), 0);
    work->setCurrentIndex(1);
    QCOMPARE(document->view.GetSelectObjWorkType(), 1);
}

void MarkToolPropertyTest::a_mixed_working_state_shows_none_and_changes_nothing() {
    document->view.SetSelectObjWorkType(0);
    document->select({0, 1});
    QCOMPARE(part<QComboBox>(*panel, "comboBoxWorkType")->currentIndex(), -1);
    document->select({0});
    QCOMPARE(document->view.GetSelectObjWorkType(), 0);
    document->select({1});
    QCOMPARE(document->view.GetSelectObjWorkType(), 1);
}

void MarkToolPropertyTest::fill_is_off_for_groups_and_without_a_selection() {
    auto* fill = part<QPushButton>(*panel, "pushButtonFill");
    QVERIFY(fill->isEnabled());
    document->select({0, 1});
    QVERIFY(fill->isEnabled());
    document->view.Combine();
    QVERIFY(!fill->isEnabled());
    document->view.UnCombine();
    QVERIFY(fill->isEnabled());
    document->select({});
    QVERIFY(!fill->isEnabled());
    panel->on_pushButtonFill_clicked();
}

void MarkToolPropertyTest::another_document_takes_over() {
    QRulerView other(nullptr);
    panel->SetRulerView(&other);
    QCOMPARE(box(0)->text(), QString());
    QSignalSpy x(box(0), QOverload<double>::of(&QDoubleSpinBox::valueChanged));
    document->view.MoveSelectObjRelative(1.0, 0.0);
    QCOMPARE(x.count(), 0);
    panel->SetRulerView(&document->view);
    QVERIFY(EqualDouble(shown().x, real().x));
}

void MarkToolPropertyTest::a_closed_document_leaves_the_panel_empty() {
    auto other = std::make_unique<QRulerView>(nullptr);
    panel->SetRulerView(other.get());
    other.reset();
    panel->ChangePosX(5.0);
    panel->Move2Center();
    panel->on_pushButtonFill_clicked();
    panel->BasePointChanged(BasePointTop);
    panel->SelectObjChange();
    QVERIFY(!box(0)->isEnabled());
    QVERIFY(logTexts("param").isEmpty());
}

QTEST_MAIN(MarkToolPropertyTest)
#include "tst_marktoolproperty.moc"
