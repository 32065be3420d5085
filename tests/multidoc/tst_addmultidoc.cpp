// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "multidoc/addmultidoc.h"
#include "multidoc/trigerdoc.h"
#include "tests/support/dialoganswerer.h"
#include "tests/support/temporaryroot.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

using namespace tests;

/// The dialog of one entry.
class AddMultiDocTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void the_titles_tell_what_is_done();
    void the_first_ten_inputs_can_be_chosen();
    void a_value_can_be_set_where_its_mask_is_set();
    void the_documents_are_offered_in_order();
    void an_ending_in_capitals_is_left_out();
    void a_missing_folder_is_made();
    void without_a_document_it_is_refused();
    void with_an_empty_mask_it_is_refused_and_the_record_stays();
    void a_value_whose_mask_is_taken_back_still_counts();
    void the_record_is_shown_and_written_back_data();
    void the_record_is_shown_and_written_back();
    void an_edited_entry_keeps_its_document();
    void an_entry_whose_document_is_gone_cannot_be_accepted();
    void cancelling_leaves_the_record();
    void texts_are_in_the_operators_language();

private:
    static QCheckBox* box(QDialog& dialog, char kind, int input) {
        return dialog.findChild<QCheckBox*>(QStringLiteral("checkBox%1%2").arg(QLatin1Char(kind)).arg(input));
    }
    static QComboBox* combo(QDialog& dialog) { return dialog.findChild<QComboBox*>(QStringLiteral("comboBox")); }
    static void press(QDialog& dialog, char const* name) {
        dialog.findChild<QPushButton*>(QLatin1String(name))->click();
    }
    static QStringList offered(QDialog& dialog) {
        QStringList names;
        for (int i = 0; i < combo(dialog)->count(); ++i)
            names.append(combo(dialog)->itemText(i));
        return names;
    }
    static QString shown(TrigerDoc const& doc) {
        return QStringLiteral("%1|%2|%3").arg(doc.m_FileName).arg(doc.m_nValue).arg(doc.m_nMask);
    }

    TemporaryRoot m_Root;
};

void AddMultiDocTest::init() {
    QVERIFY(m_Root.isValid());
    QDir(m_Root.path(QStringLiteral("/MarkFile"))).removeRecursively();
    for (char const* name : {"PlateB", "PlateA", "plate a", "前盖"})
        QVERIFY(m_Root.write(QStringLiteral("/MarkFile/%1.mkf").arg(QString::fromUtf8(name)), "x"));
}

void AddMultiDocTest::the_titles_tell_what_is_done() {
    TrigerDoc doc;
    QCOMPARE(AddMultiDoc(&doc, false, nullptr).windowTitle(), QStringLiteral("添加文档"));
    QCOMPARE(AddMultiDoc(&doc, true, nullptr).windowTitle(), QStringLiteral("编辑文档"));
}

void AddMultiDocTest::the_first_ten_inputs_can_be_chosen() {
    TrigerDoc doc;
    AddMultiDoc dialog(&doc, false, nullptr);
    for (int i = 0; i < 32; ++i) {
        QCOMPARE(box(dialog, 'M', i)->isEnabled(), i < 10);
        QVERIFY(!box(dialog, 'V', i)->isEnabled());
        auto* head = dialog.findChild<QLabel*>(QStringLiteral("label%1").arg(i, 2, 10, QLatin1Char('0')));
        QCOMPARE(head->text(), QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0')));
    }
}

void AddMultiDocTest::a_value_can_be_set_where_its_mask_is_set() {
    TrigerDoc doc;
    AddMultiDoc dialog(&doc, false, nullptr);
    for (int i = 0; i < 10; ++i) {
        box(dialog, 'M', i)->setChecked(true);
        for (int j = 0; j < 32; ++j)
            QCOMPARE(box(dialog, 'V', j)->isEnabled(), j == i);
        box(dialog, 'M', i)->setChecked(false);
        QVERIFY(!box(dialog, 'V', i)->isEnabled());
    }
}

void AddMultiDocTest::the_documents_are_offered_in_order() {
    for (char const* name : {"PlateC.MKF", "PlateD.mkf.old", "PlateE.txt", "RecentFile.of", "two\nlines.mkf"})
        QVERIFY(m_Root.write(QStringLiteral("/MarkFile/") + QLatin1String(name), "x"));
    QVERIFY(m_Root.write("/MarkFile/folder.mkf/inner.mkf", "x"));
    TrigerDoc doc;
    AddMultiDoc dialog(&doc, false, nullptr);
    QCOMPARE(offered(dialog), (QStringList{"PlateA", "PlateB", "plate a", "前盖"}));
    QCOMPARE(combo(dialog)->currentIndex(), -1);
}

void AddMultiDocTest::an_ending_in_capitals_is_left_out() {
    for (char const* name : {"A.MKF", "B.Mkf", "C.mkf", "D.MKF.mkf", ".mkf"})
        QVERIFY(m_Root.write(QStringLiteral("/MarkFile/") + QLatin1String(name), "x"));
    TrigerDoc doc;
    AddMultiDoc dialog(&doc, false, nullptr);
    QCOMPARE(offered(dialog), (QStringList{"C", "D.MKF", "PlateA", "PlateB", "plate a", "前盖"}));
}

void AddMultiDocTest::a_missing_folder_is_made() {
    QDir(m_Root.path(QStringLiteral("/MarkFile"))).removeRecursively();
    TrigerDoc doc;
    AddMultiDoc dialog(&doc, false, nullptr);
    QCOMPARE(offered(dialog), QStringList());
    QVERIFY(QDir(m_Root.path(QStringLiteral("/MarkFile"))).exists());
}

void AddMultiDocTest::without_a_document_it_is_refused() {
    TrigerDoc doc;
    AddMultiDoc dialog(&doc, false, nullptr);
    box(dialog, 'M', 1)->setChecked(true);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    press(dialog, "pushButtonOK");
    QCOMPARE(answerer.titles(), QStringList{"错误"});
    QCOMPARE(answerer.texts(), QStringList{"请选择文件"});
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(shown(doc), QStringLiteral("|0|0"));
}

void AddMultiDocTest::with_an_empty_mask_it_is_refused_and_the_record_stays() {
    TrigerDoc doc{4, 12, QStringLiteral("PlateA")};
    AddMultiDoc dialog(&doc, false, nullptr);
    combo(dialog)->setCurrentIndex(1);
    for (int i : {2, 3})
        box(dialog, 'M', i)->setChecked(false);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    press(dialog, "pushButtonOK");
    QCOMPARE(answerer.titles(), QStringList{"错误"});
    QCOMPARE(answerer.texts(), QStringList{"请设置触发输入"});
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(shown(doc), QStringLiteral("PlateA|4|12"));
}

void AddMultiDocTest::a_value_whose_mask_is_taken_back_still_counts() {
    TrigerDoc doc;
    AddMultiDoc dialog(&doc, false, nullptr);
    combo(dialog)->setCurrentIndex(0);
    box(dialog, 'M', 0)->setChecked(true);
    box(dialog, 'M', 5)->setChecked(true);
    box(dialog, 'V', 5)->setChecked(true);
    box(dialog, 'M', 5)->setChecked(false);
    QVERIFY(box(dialog, 'V', 5)->isChecked());
    press(dialog, "pushButtonOK");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(shown(doc), QStringLiteral("PlateA|32|1"));
}

void AddMultiDocTest::the_record_is_shown_and_written_back_data() {
    QTest::addColumn<unsigned int>("value");
    QTest::addColumn<unsigned int>("mask");
    for (unsigned int bit = 0; bit < 32; ++bit)
        QTest::addRow("input %u", bit) << (1U << bit) << (1U << bit);
    QTest::newRow("none is set") << 0U << 1023U;
    QTest::newRow("all") << ~0U << ~0U;
    QTest::newRow("values outside the mask") << ~0U << 2U;
}

void AddMultiDocTest::the_record_is_shown_and_written_back() {
    QFETCH(unsigned int, value);
    QFETCH(unsigned int, mask);
    TrigerDoc doc{value, mask, QStringLiteral("前盖")};
    AddMultiDoc dialog(&doc, false, nullptr);
    for (unsigned int i = 0; i < 32; ++i) {
        QCOMPARE(box(dialog, 'M', int(i))->isChecked(), (mask >> i & 1U) == 1U);
        QCOMPARE(box(dialog, 'V', int(i))->isChecked(), (value >> i & 1U) == 1U);
        QCOMPARE(box(dialog, 'V', int(i))->isEnabled(), (mask >> i & 1U) == 1U);
    }
    QCOMPARE(combo(dialog)->currentText(), QStringLiteral("前盖"));
    doc = TrigerDoc();
    press(dialog, "pushButtonOK");
    QCOMPARE(shown(doc), QStringLiteral("前盖|%1|%2").arg(value).arg(mask));
}

void AddMultiDocTest::an_edited_entry_keeps_its_document() {
    TrigerDoc doc{1, 1, QStringLiteral("PlateB")};
    AddMultiDoc edit(&doc, true, nullptr);
    QVERIFY(!combo(edit)->isEnabled());
    QCOMPARE(combo(edit)->currentText(), QStringLiteral("PlateB"));
    AddMultiDoc add(&doc, false, nullptr);
    QVERIFY(combo(add)->isEnabled());
}

void AddMultiDocTest::an_entry_whose_document_is_gone_cannot_be_accepted() {
    TrigerDoc doc{1, 1, QStringLiteral("platea")};
    AddMultiDoc dialog(&doc, true, nullptr);
    QCOMPARE(combo(dialog)->currentIndex(), -1);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    press(dialog, "pushButtonOK");
    QCOMPARE(answerer.texts(), QStringList{"请选择文件"});
    QCOMPARE(shown(doc), QStringLiteral("platea|1|1"));
}

void AddMultiDocTest::cancelling_leaves_the_record() {
    TrigerDoc doc{1, 1, QStringLiteral("PlateB")};
    AddMultiDoc dialog(&doc, false, nullptr);
    combo(dialog)->setCurrentIndex(0);
    box(dialog, 'M', 4)->setChecked(true);
    press(dialog, "pushButtonCancel");
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(shown(doc), QStringLiteral("PlateB|1|1"));
}

void AddMultiDocTest::texts_are_in_the_operators_language() {
    QVERIFY(LanguageManager::SetCurrentLan(QStringLiteral("en")));
    TrigerDoc doc;
    AddMultiDoc dialog(&doc, false, nullptr);
    QStringList texts{dialog.windowTitle()};
    for (char const* name : {"labelFile", "labelMask0", "labelValue0", "labelMask1", "labelValue1"})
        texts.append(dialog.findChild<QLabel*>(QLatin1String(name))->text());
    for (char const* name : {"pushButtonOK", "pushButtonCancel"})
        texts.append(dialog.findChild<QPushButton*>(QLatin1String(name))->text());
    QVERIFY(LanguageManager::SetCurrentLan(QStringLiteral("zh_CN")));
    for (QString const& text : qAsConst(texts)) {
        QVERIFY(!text.isEmpty());
        for (QChar letter : text)
            QVERIFY2(letter.unicode() < 128, qPrintable(text));
    }
}

QTEST_MAIN(AddMultiDocTest)
#include "tst_addmultidoc.moc"
