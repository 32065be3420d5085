// SPDX-License-Identifier: MIT
// Codes drawn and edited by the operator, and the dialogs of codes and variables.
#include "engine/imarktoolbase.h"
#include "engine/languagemanager.h"
#include "engine/marktool.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/document/variablestore.h"
#include "simengine/view/codedialog.h"
#include "simengine/view/textdialog.h"
#include "simengine/view/variablesdialog.h"
#include "support/waitfor.h"
#include "viewfixture.h"

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTimeEdit>

using namespace sim;
using tests::ViewFixture;

namespace {

/// What the module of the codes hands to the view.
class CodePlacer : public IMarkToolBase {
public:
    QString GetToolClassName() const override { return QStringLiteral("MarkToolCode"); }
    void SetAngleChanged(bool) override {}
    bool IsAngleChanged() const override { return false; }
    bool IsOpenCurve() const override { return false; }
};

template<class Widget>
Widget* child(QWidget* parent, const char* name) {
    auto* widget = parent->findChild<Widget*>(QLatin1String(name));
    if (!widget)
        qFatal("%s is missing", name);
    return widget;
}

template<class DialogType>
DialogType* openDialog(QWidget* parent) {
    for (DialogType* dialog : parent->findChildren<DialogType*>()) {
        if (dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

CodeDialog* placeCode(ViewFixture& f, double x, double y) {
    f.view.SetOperatorOnView(OperatorAddPluginTool);
    f.view.SetCurAddMarkTool(new MarkTool(new CodePlacer));
    f.click(x, y);
    return openDialog<CodeDialog>(&f.canvas());
}

bool confirm(QDialog* dialog) {
    auto* ok = child<QPushButton>(dialog, "pushButtonOK");
    if (!tests::waitFor([ok] { return ok->isEnabled(); }))
        return false;
    QTest::mouseClick(ok, Qt::LeftButton);
    return true;
}

const CodeShape& codeAt(ViewFixture& f, int index) {
    return std::get<CodeShape>(f.state()->at(index)->shape());
}

void defineSerial(qint64 value) {
    VariableSet set;
    SerialNumber serial;
    serial.name = QStringLiteral("A");
    serial.value = value;
    set.serials = {serial};
    if (!VariableStore::instance().save(set, VariableStore::instance().set()))
        qFatal("the serial number cannot be kept");
}

} // namespace

class tst_Codes : public QObject {
    Q_OBJECT

private slots:
    void a_code_is_drawn_to_the_snap_targets() {
        ViewFixture f;
        SnapSettings settings;
        settings.objects = true;
        settings.guides = settings.grid = false;
        f.canvas().snap().setSettings(settings);
        f.addRect(-20, -10, 20, 20);
        CodeDialog* dialog = placeCode(f, -19.4, -9.5);
        child<QPlainTextEdit>(dialog, "plainTextEditCode")->setPlainText(QStringLiteral("ABC"));
        QVERIFY(confirm(dialog));
        QCOMPARE(f.state()->count(), 2);
        QCOMPARE(f.state()->at(1)->transform().dx(), -20.0);
        QCOMPARE(f.state()->at(1)->transform().dy(), -10.0);
    }

    void a_press_asks_and_places_the_code_there() {
        ViewFixture f;
        CodeDialog* dialog = placeCode(f, -20, 10);
        QVERIFY(dialog && dialog->isModal());
        QVERIFY(!child<QPushButton>(dialog, "pushButtonOK")->isEnabled());
        child<QComboBox>(dialog, "comboBoxSymbology")->setCurrentIndex(int(Symbology::Qr));
        child<QDoubleSpinBox>(dialog, "doubleSpinBoxModule")->setValue(0.4);
        child<QPlainTextEdit>(dialog, "plainTextEditCode")->setPlainText(QStringLiteral("零件 1"));
        QVERIFY(confirm(dialog));
        QCOMPARE(f.state()->count(), 1);
        QCOMPARE(codeAt(f, 0).spec.text, QStringLiteral("零件 1"));
        QCOMPARE(int(codeAt(f, 0).spec.symbology), int(Symbology::Qr));
        QCOMPARE(codeAt(f, 0).spec.quietZone, 4);
        const Box box = f.bounds(0);
        QVERIFY(std::abs(box.minX + 20) < 0.2 && std::abs(box.minY - 10) < 0.2);
        QVERIFY(std::abs(box.width() - 21 * 0.4) < 1e-9);
        QVERIFY(f.state()->at(0)->isFilled());
        QCOMPARE(f.undoSteps(), 1);
    }

    void cancel_and_a_read_only_document_add_nothing() {
        ViewFixture f;
        CodeDialog* dialog = placeCode(f, 0, 0);
        child<QPlainTextEdit>(dialog, "plainTextEditCode")->setPlainText("1");
        QTest::mouseClick(child<QPushButton>(dialog, "pushButtonCancel"), Qt::LeftButton);
        QCOMPARE(f.state()->count(), 0);
        f.session().document().setReadOnly(true);
        QVERIFY(!placeCode(f, 0, 0));
    }

    void a_double_click_edits_the_code_in_its_place() {
        ViewFixture f;
        CodeSpec spec;
        spec.text = QStringLiteral("first");
        spec.module = 1.0;
        QVERIFY(f.session().addCode(spec, {0, 0}));
        const QTransform before = f.state()->at(0)->transform();
        f.session().document().select({});
        QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, f.pixel(5, 5));
        auto* dialog = openDialog<CodeDialog>(&f.canvas());
        QVERIFY(dialog);
        QCOMPARE(child<QPlainTextEdit>(dialog, "plainTextEditCode")->toPlainText(), QStringLiteral("first"));
        child<QPlainTextEdit>(dialog, "plainTextEditCode")->setPlainText("second");
        child<QComboBox>(dialog, "comboBoxMarking")->setCurrentIndex(int(CodeMarking::Dots));
        QVERIFY(confirm(dialog));
        QCOMPARE(codeAt(f, 0).spec.text, QStringLiteral("second"));
        QVERIFY(!codeAt(f, 0).dots.isEmpty());
        QVERIFY(!f.state()->at(0)->isFilled());
        QCOMPARE(f.state()->at(0)->transform(), before);
    }

    void an_edit_outlives_a_pass_that_moves_its_number() {
        ViewFixture f;
        defineSerial(5);
        CodeSpec spec;
        spec.text = QStringLiteral("{serial:A}");
        spec.variables = true;
        spec.module = 1.0;
        QVERIFY(f.session().addCode(spec, {0, 0}));
        QTest::mouseDClick(&f.canvas(), Qt::LeftButton, {}, f.pixel(5, 5));
        auto* dialog = openDialog<CodeDialog>(&f.canvas());
        QVERIFY(dialog);
        defineSerial(6);
        QTRY_COMPARE(codeAt(f, 0).shown, QStringLiteral("000006"));
        child<QPlainTextEdit>(dialog, "plainTextEditCode")->setPlainText("N{serial:A}");
        QVERIFY(confirm(dialog));
        QCOMPARE(codeAt(f, 0).shown, QStringLiteral("N000006"));
    }

    void what_cannot_be_a_code_is_told_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("variables");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty") << 0 << false << ""
                               << "条码内容为空";
        QTest::newRow("check digit") << 1 << false << "4006381333932"
                                     << "EAN校验位错误: 4006381333932 (1)";
        QTest::newRow("character") << 0 << false << "中"
                                   << "条码不能编码这些字符: 中";
        QTest::newRow("no such number") << 3 << true << "{serial:B}"
                                        << "没有该序列号: B";
        QTest::newRow("template") << 3 << true << "{serial"
                                  << "变量格式错误: {serial";
    }
    void what_cannot_be_a_code_is_told() {
        QFETCH(int, kind);
        QFETCH(bool, variables);
        QFETCH(QString, text);
        ViewFixture f;
        CodeDialog* dialog = placeCode(f, 0, 0);
        child<QComboBox>(dialog, "comboBoxSymbology")->setCurrentIndex(kind);
        child<QCheckBox>(dialog, "checkBoxVariables")->setChecked(variables);
        child<QPlainTextEdit>(dialog, "plainTextEditCode")->setPlainText(text);
        QFETCH(QString, message);
        QTRY_COMPARE(child<QLabel>(dialog, "labelMessage")->text(), message);
        QVERIFY(!child<QPushButton>(dialog, "pushButtonOK")->isEnabled());
    }

    void fields_follow_the_kind() {
        ViewFixture f;
        CodeDialog* dialog = placeCode(f, 0, 0);
        auto* kind = child<QComboBox>(dialog, "comboBoxSymbology");
        auto* quiet = child<QSpinBox>(dialog, "spinBoxQuietZone");
        auto* marking = child<QComboBox>(dialog, "comboBoxMarking");
        kind->setCurrentIndex(int(Symbology::Qr));
        marking->setCurrentIndex(int(CodeMarking::Dots));
        child<QSpinBox>(dialog, "spinBoxSize")->setValue(40);
        QVERIFY(child<QComboBox>(dialog, "comboBoxLevel")->isEnabled());
        QVERIFY(!child<QDoubleSpinBox>(dialog, "doubleSpinBoxBarHeight")->isEnabled());
        kind->setCurrentIndex(int(Symbology::Ean13));
        QCOMPARE(quiet->value(), 11);
        QCOMPARE(marking->currentIndex(), int(CodeMarking::Outline));
        QCOMPARE(child<QSpinBox>(dialog, "spinBoxSize")->value(), 0);
        QVERIFY(!child<QComboBox>(dialog, "comboBoxLevel")->isEnabled());
        QVERIFY(child<QDoubleSpinBox>(dialog, "doubleSpinBoxBarHeight")->isEnabled());
        child<QComboBox>(dialog, "comboBoxSizing")->setCurrentIndex(1);
        QVERIFY(!child<QDoubleSpinBox>(dialog, "doubleSpinBoxModule")->isEnabled());
        QVERIFY(child<QDoubleSpinBox>(dialog, "doubleSpinBoxWidth")->isEnabled());
    }

    void a_text_gets_its_variables_from_the_menu() {
        ViewFixture f;
        defineSerial(41);
        f.view.SetOperatorOnView(OperatorAddText);
        f.click(0, 0);
        auto* dialog = openDialog<TextDialog>(&f.canvas());
        QVERIFY(dialog);
        child<QPlainTextEdit>(dialog, "plainTextEditText")->setPlainText("SN ");
        child<QPlainTextEdit>(dialog, "plainTextEditText")->moveCursor(QTextCursor::End);
        auto* menu = child<QMenu>(dialog, "menuVariables");
        emit menu->aboutToShow();
        QVERIFY(menu->actions().size() >= 2);
        QCOMPARE(menu->actions().first()->text(), QStringLiteral("{serial:A}    000041"));
        menu->actions().first()->trigger();
        QVERIFY(child<QCheckBox>(dialog, "checkBoxVariables")->isChecked());
        QVERIFY(confirm(dialog));
        const auto& text = std::get<TextShape>(f.state()->at(0)->shape());
        QCOMPARE(text.spec.text, QStringLiteral("SN {serial:A}"));
        QVERIFY(text.spec.variables);
        QCOMPARE(text.shown, QStringLiteral("SN 000041"));
    }

    void the_definitions_are_entered_and_kept() {
        ViewFixture f;
        QVERIFY(f.root.write("/MarkFile/parts.csv", "part;batch\nP1;B1\n"));
        VariablesDialog* dialog = new VariablesDialog(&f.view);
        dialog->open();
        auto* serials = child<QWidget>(dialog, "serialPage");
        QTest::mouseClick(child<QPushButton>(serials, "pushButtonAdd"), Qt::LeftButton);
        auto* value = child<QLineEdit>(serials, "lineEditValue");
        value->selectAll();
        QTest::keyClicks(value, "77");
        child<QSpinBox>(serials, "spinBoxDigits")->setValue(8);
        child<QTabWidget>(dialog, "tabWidgetVariables")->setCurrentIndex(1);
        auto* sources = child<QWidget>(dialog, "csvPage");
        QTest::mouseClick(child<QPushButton>(sources, "pushButtonAdd"), Qt::LeftButton);
        child<QComboBox>(sources, "comboBoxSeparator")->setCurrentIndex(1);
        QCOMPARE(child<QLabel>(sources, "labelNote")->text(), QStringLiteral("[1]  P1  |  B1"));
        child<QTabWidget>(dialog, "tabWidgetVariables")->setCurrentIndex(2);
        auto* shifts = child<QWidget>(dialog, "shiftPage");
        for (int i = 0; i < 3; ++i)
            QTest::mouseClick(child<QPushButton>(shifts, "pushButtonAdd"), Qt::LeftButton);
        QVERIFY(confirm(dialog));
        const VariableSet set = VariableStore::instance().set();
        QCOMPARE(set.serials.size(), 1);
        QCOMPARE(set.serials[0].value, qint64(77));
        QCOMPARE(set.serials[0].digits, 8);
        QCOMPARE(set.sources.size(), 1);
        QCOMPARE(set.sources[0].file, QStringLiteral("parts.csv"));
        QCOMPARE(set.sources[0].separator, QChar(';'));
        QCOMPARE(set.shifts.size(), 3);
        QCOMPARE(set.shifts[2].begin, QTime(22, 0));
    }

    void unsound_definitions_cannot_be_confirmed() {
        ViewFixture f;
        defineSerial(5);
        VariablesDialog* dialog = new VariablesDialog(&f.view);
        dialog->open();
        auto* serials = child<QWidget>(dialog, "serialPage");
        auto* step = child<QLineEdit>(serials, "lineEditStep");
        step->selectAll();
        QTest::keyClicks(step, "0");
        QVERIFY(!child<QPushButton>(dialog, "pushButtonOK")->isEnabled());
        QCOMPARE(child<QLabel>(dialog, "labelMessage")->text(), QStringLiteral("序列号范围错误"));
        QTest::mouseClick(child<QPushButton>(serials, "pushButtonRemove"), Qt::LeftButton);
        QVERIFY(confirm(dialog));
        QVERIFY(VariableStore::instance().set() == VariableSet());
    }

    void a_damaged_file_waits_for_the_operator() {
        ViewFixture f;
        const QByteArray damaged = "[Serials]\nCount=1\n";
        QVERIFY(f.root.write("/ini/Variables.ini", damaged));
        VariablesDialog* dialog = new VariablesDialog(&f.view);
        dialog->open();
        const auto* ok = child<QPushButton>(dialog, "pushButtonOK");
        const auto* message = child<QLabel>(dialog, "labelMessage");
        auto* replace = child<QCheckBox>(dialog, "checkBoxReplace");
        QVERIFY(replace->isVisible() && !replace->isChecked() && !ok->isEnabled());
        QVERIFY(message->text().startsWith(QStringLiteral("变量定义文件损坏")));
        QTest::mouseClick(child<QPushButton>(child<QWidget>(dialog, "serialPage"), "pushButtonAdd"), Qt::LeftButton);
        QVERIFY(!ok->isEnabled());
        QVERIFY(message->text().startsWith(QStringLiteral("变量定义文件损坏")));
        QTest::keyClick(dialog, Qt::Key_Return);
        QCOMPARE(f.root.read("/ini/Variables.ini"), damaged);
        replace->click();
        QVERIFY(confirm(dialog));
        QCOMPARE(VariableStore::instance().set().serials.size(), 1);
        QCOMPARE(QDir(f.root.path("/ini")).entryList({"Variables.ini.damaged-*"}).size(), 1);
    }

    void damage_that_is_found_at_the_end_is_told() {
        ViewFixture f;
        defineSerial(5);
        VariablesDialog* dialog = new VariablesDialog(&f.view);
        dialog->open();
        QVERIFY(!child<QCheckBox>(dialog, "checkBoxReplace")->isVisible());
        QVERIFY(f.root.write("/ini/Variables.ini", "[Serials]\nCount=1\n"));
        QVERIFY(confirm(dialog));
        QVERIFY(dialog->isVisible());
        QVERIFY(!child<QPushButton>(dialog, "pushButtonOK")->isEnabled());
        child<QCheckBox>(dialog, "checkBoxReplace")->click();
        QVERIFY(confirm(dialog));
        QCOMPARE(VariableStore::instance().set().serials[0].value, qint64(5));
    }

    void a_number_that_is_counted_meanwhile_is_not_set_back() {
        ViewFixture f;
        defineSerial(5);
        VariablesDialog* dialog = new VariablesDialog(&f.view);
        dialog->open();
        defineSerial(6); // by a pass
        child<QSpinBox>(child<QWidget>(dialog, "serialPage"), "spinBoxDigits")->setValue(9);
        QVERIFY(confirm(dialog));
        QCOMPARE(VariableStore::instance().set().serials[0].value, qint64(6));
        QCOMPARE(VariableStore::instance().set().serials[0].digits, 9);
    }

    void the_dialogs_are_for_fingers_and_fit_the_small_screen() {
        ViewFixture f;
        defineSerial(5);
        CodeDialog* code = placeCode(f, 0, 0);
        VariablesDialog* variables = new VariablesDialog(&f.view);
        variables->open();
        for (QDialog* dialog : {static_cast<QDialog*>(code), static_cast<QDialog*>(variables)}) {
            const QSize least = dialog->minimumSizeHint();
            QVERIFY2(least.width() <= 1000 && least.height() <= 570,
                     qPrintable(QStringLiteral("%1 x %2").arg(least.width()).arg(least.height())));
            for (QWidget* field : dialog->findChildren<QWidget*>()) {
                const bool entered = qobject_cast<QComboBox*>(field) || qobject_cast<QPushButton*>(field) ||
                                     (qobject_cast<QAbstractSpinBox*>(field));
                if (entered && field->isVisible())
                    QVERIFY2(field->height() >= kTouchHeight, qPrintable(field->objectName()));
            }
        }
    }
};

QTEST_MAIN(tst_Codes)
#include "tst_codes.moc"
