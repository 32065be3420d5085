// SPDX-License-Identifier: MIT
#include "editing/marklayerparamform.h"
#include "editing/marktoolproperty.h"
#include "engine/languagemanager.h"
#include "simengine/card/cardlink.h"
#include "tests/editing/editingfixture.h"
#include "tests/editing/penboxes.h"
#include "tests/run/formfixture.h"

#include <QPushButton>
#include <QTableWidget>

using namespace tests;

/// The pen panel together with a document of the main window and with the card.
class PenDocumentTest : public QObject {
    Q_OBJECT

private slots:
    void every_field_reaches_the_card_at_the_next_run_and_only_then_data();
    void every_field_reaches_the_card_at_the_next_run_and_only_then();
    void selecting_an_object_selects_its_pen_and_tells_nothing_back();
    void choosing_a_pen_puts_the_selection_on_it();
    void activating_a_document_leaves_its_selection_alone();
    void the_pages_follow_the_active_document();
    void another_language_reaches_the_pages();

private:
    TemporaryRoot root;
};

void PenDocumentTest::every_field_reaches_the_card_at_the_next_run_and_only_then_data() {
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(kPenBoxes)); ++i)
        QTest::newRow(kPenBoxes[i].name) << i;
}

/// The card's own pens, behind the journal that tells when they came.
void PenDocumentTest::every_field_reaches_the_card_at_the_next_run_and_only_then() {
    QFETCH(int, index);
    BoxRow const& row = kPenBoxes[index];
    const QMap<QByteArray, std::function<double(sim::PenParams const&)>> fields{
        {"doubleSpinBoxMarkCnt", [](sim::PenParams const& pen) { return pen.markCount; }},
        {"doubleSpinBoxMarkSpeed", [](sim::PenParams const& pen) { return pen.markSpeed; }},
        {"doubleSpinBoxRedSpeed", [](sim::PenParams const& pen) { return pen.redSpeed; }},
        {"doubleSpinBoxJunpSpeed", [](sim::PenParams const& pen) { return pen.jumpSpeed; }},
        {"doubleSpinBoxPower", [](sim::PenParams const& pen) { return pen.power; }},
        {"doubleSpinBoxWaveNumber", [](sim::PenParams const& pen) { return pen.waveNumber; }},
        {"doubleSpinBoxFre", [](sim::PenParams const& pen) { return pen.frequency; }},
        {"doubleSpinBoxPWM", [](sim::PenParams const& pen) { return pen.pwm; }},
        {"doubleSpinBoxOpenLaserDelay", [](sim::PenParams const& pen) { return pen.openLaserDelay; }},
        {"doubleSpinBoxCloseLaserDelay", [](sim::PenParams const& pen) { return pen.closeLaserDelay; }},
        {"doubleSpinBoxEndDelay", [](sim::PenParams const& pen) { return pen.endDelay; }},
        {"doubleSpinBoxTurnDelay", [](sim::PenParams const& pen) { return pen.turnDelay; }}};
    const auto onCard = [&] { return fields.value(row.name)(sim::simulatedCard().pens()[0]); };

    resetMachine();
    machine().setSpeed(0.0);
    RunningWindow window(false);
    QRulerView* view = window.newDocument();
    MarkLayerParamForm panel;
    panel.DocChange(view);
    panel.SetLayerIndex(0);
    panel.ResetLayerData();
    const auto run = [&] {
        window->ShowNormalMarkWindow();
        Form_Marking::Instance()->StartMark(false);
        return QTest::qWaitFor([] { return !Form_Marking::Instance()->IsRunning(); });
    };
    QVERIFY(run());
    const double before = onCard();
    QVERIFY(before != otherValue(row));
    machine().clearJournal();
    part<QDoubleSpinBox>(panel, row.name)->setValue(otherValue(row));
    part<QPushButton>(panel, "pushButtonApply")->click();
    QCOMPARE(machineCalls("DownLayerPara"), 0);
    QCOMPARE(onCard(), before);
    QVERIFY(run());
    QCOMPARE(machineCalls("DownLayerPara"), 1);
    QCOMPARE(onCard(), otherValue(row));
    window->CloseAllFile();
}

void PenDocumentTest::selecting_an_object_selects_its_pen_and_tells_nothing_back() {
    resetMachine();
    RunningWindow window(false);
    QRulerView* view = window.newDocument(2);
    MarkLayerParamForm panel;
    panel.DocChange(view);
    QListView* list = view->GetObjListView();
    const auto select = [&](int row) {
        list->clearSelection();
        list->selectionModel()->select(list->model()->index(row, 0), QItemSelectionModel::Select);
    };
    select(0);
    view->SetCurrentLayer(7);
    select(1);
    view->SetCurrentLayer(3);
    list->selectAll();
    panel.SetLayerIndex(12);
    QCOMPARE(view->GetToolLayer(0), 12);
    select(0);
    view->SetCurrentLayer(7);
    select(1);
    view->SetCurrentLayer(3);
    list->selectAll();
    QCOMPARE(view->GetFirstSelectedToolIndex(), 0);
    panel.SelectObjChanged();
    QCOMPARE(part<QComboBox>(panel, "comboBoxLayerIndex")->currentIndex(), 7);
    QCOMPARE(part<QTableWidget>(panel, "tableWidgetLayer")->selectedItems().value(0)->row(), 7);
    QCOMPARE(view->GetCurrentLayer(), 7);
    QCOMPARE(view->GetToolLayer(0), 7);
    QCOMPARE(view->GetToolLayer(1), 3);
    list->clearSelection();
    panel.SelectObjChanged();
    QCOMPARE(part<QComboBox>(panel, "comboBoxLayerIndex")->currentIndex(), 7);
    window->CloseAllFile();
}

void PenDocumentTest::choosing_a_pen_puts_the_selection_on_it() {
    resetMachine();
    RunningWindow window(false);
    QRulerView* view = window.newDocument(2);
    MarkLayerParamForm panel;
    panel.DocChange(view);
    view->GetObjListView()->selectAll();
    part<QTableWidget>(panel, "tableWidgetLayer")->selectRow(11);
    QCOMPARE(view->GetCurrentLayer(), 11);
    QCOMPARE(view->GetToolLayer(0), 11);
    QCOMPARE(view->GetToolLayer(1), 11);
    window->CloseAllFile();
}

void PenDocumentTest::activating_a_document_leaves_its_selection_alone() {
    resetMachine();
    RunningWindow window(false);
    QRulerView* view = window.newDocument(2);
    MarkLayerParamForm panel;
    QListView* list = view->GetObjListView();
    list->clearSelection();
    list->selectionModel()->select(list->model()->index(1, 0), QItemSelectionModel::Select);
    view->SetCurrentLayer(4);
    list->selectAll();
    panel.SetLayerIndex(view->GetCurrentLayer());
    panel.DocChange(view);
    panel.ResetLayerData();
    QCOMPARE(part<QComboBox>(panel, "comboBoxLayerIndex")->currentIndex(), view->GetCurrentLayer());
    QCOMPARE(view->GetToolLayer(0), 0);
    QCOMPARE(view->GetToolLayer(1), 4);
    window->CloseAllFile();
}

void PenDocumentTest::the_pages_follow_the_active_document() {
    resetMachine();
    RunningWindow window;
    auto* form = window.child<MarkLayerParamForm>("MarkLayerParamForm");
    auto* tool = window.child<MarkToolProperty>("MarkToolProperty");
    const auto speed = [&] { return part<QDoubleSpinBox>(*form, "doubleSpinBoxMarkSpeed")->value(); };
    const auto pen = [&] { return part<QComboBox>(*form, "comboBoxLayerIndex")->currentIndex(); };
    const auto x = [&] { return part<QDoubleSpinBox>(*tool, "doubleSpinBoxPosX")->text(); };
    const auto setSpeed = [](QRulerView* view, int index, double value) {
        LayerData* data = nullptr;
        view->GetLayerParams()->GetLayerData(index, data);
        data->MarkSpeed = value;
    };
    QVERIFY(!form->isEnabled() && !tool->isEnabled());
    QRulerView* first = window.newDocument(1, QStringLiteral("first"));
    first->SetCurrentLayer(5);
    setSpeed(first, 5, 111.0);
    QRulerView* second = window.newDocument(3, QStringLiteral("second"));
    setSpeed(second, 0, 222.0);
    QVERIFY(window->SetCurDoc(first->GetFileName()));
    QCOMPARE(pen(), 5);
    QCOMPARE(speed(), 111.0);
    QCOMPARE(x(), QStringLiteral("0.000"));
    QVERIFY(window->SetCurDoc(1));
    QCOMPARE(pen(), 0);
    QCOMPARE(speed(), 222.0);
    QCOMPARE(x(), QStringLiteral("2.000"));
    QVERIFY(form->isEnabled() && tool->isEnabled());
    // Another route changed the pen; activating the document again shows it.
    setSpeed(second, 0, 333.0);
    QVERIFY(window->SetCurDoc(1));
    QCOMPARE(speed(), 333.0);
    // Opened once more, it keeps what is typed and not applied.
    part<QDoubleSpinBox>(*form, "doubleSpinBoxMarkSpeed")->setValue(444.0);
    window->OpenFile(second->GetFileName());
    QCOMPARE(speed(), 444.0);
    second->GetObjListView()->clearSelection();
    second->GetObjListView()->selectionModel()->select(second->GetObjListView()->model()->index(0, 0),
                                                       QItemSelectionModel::Select);
    part<QComboBox>(*form, "comboBoxLayerIndex")->setCurrentIndex(9);
    QCOMPARE(second->GetToolLayer(0), 9);
    QCOMPARE(second->GetToolLayer(1), 0);
    window->CloseAllFile();
    QVERIFY(!form->isEnabled() && !tool->isEnabled());
    QCOMPARE(x(), QString());
}

void PenDocumentTest::another_language_reaches_the_pages() {
    resetMachine();
    RunningWindow window(false);
    auto* form = window.child<MarkLayerParamForm>("MarkLayerParamForm");
    auto* tool = window.child<MarkToolProperty>("MarkToolProperty");
    LanguageManager::SetCurrentLan(QStringLiteral("en"));
    window->SetUIText();
    QCOMPARE(part<QPushButton>(*form, "pushButtonApply")->text(), QStringLiteral("Apply"));
    QCOMPARE(part<QPushButton>(*tool, "pushButtonFill")->text(), QStringLiteral("Hatch settings"));
    LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
    window->SetUIText();
    QCOMPARE(part<QPushButton>(*form, "pushButtonApply")->text(), QStringLiteral("应用"));
}

QTEST_MAIN(PenDocumentTest)
#include "tst_pendocument.moc"
