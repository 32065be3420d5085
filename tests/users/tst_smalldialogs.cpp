// SPDX-License-Identifier: MIT
#include "engine/ccdposset.h"
#include "engine/dimitionset.h"
#include "engine/filecopybehavior.h"
#include "engine/languagemanager.h"
#include "engine/lanselect.h"
#include "engine/msgbox.h"
#include "engine/passwordctrl.h"
#include "engine/vzdialog.h"
#include "simengine/dialogs/ccdpositions.h"
#include "support/approot.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

namespace {

template<typename Widget>
Widget* child(QWidget* parent, char const* name) {
    return parent->findChild<Widget*>(QString::fromLatin1(name));
}

/// Presses a button of the next message box as soon as it is up.
void answerMessage(char const* button, int* answered) {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, button, answered] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box || box->objectName() != QLatin1String("msgBox"))
            return;
        timer->deleteLater();
        ++*answered;
        child<QPushButton>(box, button)->click();
    });
    timer->start(5);
}

} // namespace

class TestSmallDialogs : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_root;

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }

    void message_boxes_tell_the_answer_data() {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<int>("answer");
        QTest::newRow("ok alone") << 1 << QByteArray("pushButtonOK") << 1;
        QTest::newRow("ok of two") << 2 << QByteArray("pushButtonOK") << 1;
        QTest::newRow("cancel") << 2 << QByteArray("pushButtonCancel") << 0;
    }

    void message_boxes_tell_the_answer() {
        QFETCH(int, buttons);
        QFETCH(QByteArray, button);
        QFETCH(int, answer);
        int answered = 0;
        answerMessage(button.constData(), &answered);
        QCOMPARE(msgBox::show("title", "<b>text</b>", buttons), answer);
        QCOMPARE(answered, 1);
    }

    void the_keypad_tells_its_codes() {
        PassWordCtrl keypad(nullptr);
        QSignalSpy codes(&keypad, &PassWordCtrl::BtnClicked);
        for (int code = 0; code <= 11; ++code) {
            auto* button = keypad.findChild<QPushButton*>(QStringLiteral("pushButtonKey%1").arg(code));
            QVERIFY(button);
            QVERIFY(button->minimumHeight() >= 40);
            button->click();
            QCOMPARE(codes.takeFirst().at(0).toInt(), code);
        }
    }

    void vz_dialogs_do_not_block() {
        VZDialog dialog(nullptr);
        QVERIFY(!dialog.isModal());
        QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    }

    void overwrite_is_the_first_choice_and_keeps_the_name() {
        FileCopyBehavior dialog("exists: a", "a", {"a", "b"}, nullptr);
        QCOMPARE(child<QLabel>(&dialog, "labelText")->text(), QString("exists: a"));
        QCOMPARE(dialog.Operator(), 0);
        QVERIFY(!dialog.ApplyAll());
        child<QCheckBox>(&dialog, "checkBoxApplyAll")->setChecked(true);
        child<QPushButton>(&dialog, "pushButtonOK")->click();
        QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
        QCOMPARE(dialog.FileName(), QString("a"));
        QVERIFY(dialog.ApplyAll());
    }

    void rename_refuses_names_that_cannot_be_used_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << " ";
        QTest::newRow("taken") << "b";
        QTest::newRow("taken in capitals") << "B";
        QTest::newRow("folder") << "x/y";
        QTest::newRow("parent") << "..";
        QTest::newRow("this folder") << ".";
        QTest::newRow("tab") << "x\ty";
        QTest::newRow("bell") << "x\a";
        QTest::newRow("too long") << QString(201, 'x');
        QTest::newRow("too long in bytes") << QString(67, QChar(0x4e2d));
    }

    void rename_takes_the_longest_name() {
        FileCopyBehavior dialog("exists", "a", {"a"}, nullptr);
        child<QRadioButton>(&dialog, "radioButtonRename")->setChecked(true);
        child<QLineEdit>(&dialog, "lineEditName")->setText(QString(66, QChar(0x4e2d)) + "xx");
        child<QPushButton>(&dialog, "pushButtonOK")->click();
        QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
    }

    void rename_refuses_names_that_cannot_be_used() {
        QFETCH(QString, name);
        FileCopyBehavior dialog("exists", "a", {"a", "b"}, nullptr);
        dialog.show();
        child<QRadioButton>(&dialog, "radioButtonRename")->setChecked(true);
        QCOMPARE(dialog.Operator(), 1);
        child<QLineEdit>(&dialog, "lineEditName")->setText(name);
        child<QPushButton>(&dialog, "pushButtonOK")->click();
        QVERIFY(dialog.isVisible());
        QVERIFY(!child<QLabel>(&dialog, "labelFault")->text().isEmpty());
    }

    void rename_proposes_a_free_name_and_gives_the_typed_one() {
        FileCopyBehavior dialog("exists", "a", {"a", "a_1"}, nullptr);
        child<QRadioButton>(&dialog, "radioButtonRename")->setChecked(true);
        QCOMPARE(dialog.FileName(), QString("a_2"));
        child<QLineEdit>(&dialog, "lineEditName")->setText(" c ");
        child<QPushButton>(&dialog, "pushButtonOK")->click();
        QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
        QCOMPARE(dialog.FileName(), QString("c"));
    }

    void roughening_gives_pattern_and_lengths() {
        DimitionSet dialog(true, nullptr, true);
        QVERIFY(dialog.isModal());
        QCOMPARE(child<QComboBox>(&dialog, "comboBoxType")->count(), 3);
        child<QComboBox>(&dialog, "comboBoxType")->setCurrentIndex(2);
        child<QDoubleSpinBox>(&dialog, "doubleSpinBoxAmplitude")->setValue(0.25);
        child<QDoubleSpinBox>(&dialog, "doubleSpinBoxPitch")->setValue(0.0);
        DissimilationParam param;
        dialog.GetDimitionParam(param);
        QVERIFY(param.Type == 2 && param.Amplitude == 0.25 && param.Pitch == 0.001);
    }

    void roughening_without_lines_offers_the_sine_alone() {
        DimitionSet dialog(false, nullptr, false);
        QVERIFY(!dialog.isModal());
        QCOMPARE(child<QComboBox>(&dialog, "comboBoxType")->count(), 1);
        DissimilationParam param;
        dialog.GetDimitionParam(param);
        QCOMPARE(param.Type, 1);
    }

    void the_language_dialog_stores_the_choice() {
        LanSelect dialog(nullptr);
        QVERIFY(child<QRadioButton>(&dialog, "radioButtonChinese")->isChecked());
        child<QRadioButton>(&dialog, "radioButtonEnglish")->setChecked(true);
        int answered = 0;
        answerMessage("pushButtonOK", &answered);
        child<QPushButton>(&dialog, "pushButtonOK")->click();
        QCOMPARE(answered, 1);
        QCOMPARE(LanguageManager::GetCurrentLan(), QString("en"));
        LanSelect again(nullptr);
        QVERIFY(child<QRadioButton>(&again, "radioButtonEnglish")->isChecked());
        child<QRadioButton>(&again, "radioButtonChinese")->setChecked(true);
        child<QPushButton>(&again, "pushButtonCancel")->click();
        QCOMPARE(LanguageManager::GetCurrentLan(), QString("en"));
        QVERIFY(LanguageManager::SetCurrentLan("zh_CN"));
    }

    void photo_positions_are_edited_stored_and_shown_once() {
        QVERIFY(!CCDPosSet::IsVisible());
        QWidget owner;
        CCDPosSet::ShowCCDPosSet(&owner);
        CCDPosSet::ShowCCDPosSet(&owner);
        QVERIFY(CCDPosSet::IsVisible());
        QCOMPARE(owner.findChildren<QDialog*>("CCDPosSet").size(), 1);
        QDialog* window = owner.findChild<QDialog*>("CCDPosSet");
        auto* table = child<QTableWidget>(window, "tableWidgetPos");
        for (int i = 0; i < 3; ++i)
            child<QPushButton>(window, "pushButtonAdd")->click();
        table->setCurrentCell(1, 0);
        child<QPushButton>(window, "pushButtonDelete")->click();
        table->item(0, 0)->setText("左上");
        qobject_cast<QDoubleSpinBox*>(table->cellWidget(0, 1))->setValue(-12.345);
        int answered = 0;
        answerMessage("pushButtonOK", &answered);
        child<QPushButton>(window, "pushButtonSave")->click();
        QCOMPARE(answered, 1);
        QVector<sim::CcdPosition> const stored = sim::loadCcdPositions();
        QCOMPARE(stored.size(), 2);
        QVERIFY(stored[0].name == "左上" && stored[0].x == -12.345 && stored[0].y == 0.0);
        child<QPushButton>(window, "pushButtonClose")->click();
        QTRY_VERIFY(!CCDPosSet::IsVisible());
    }
};

QTEST_MAIN(TestSmallDialogs)
#include "tst_smalldialogs.moc"
