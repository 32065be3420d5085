// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "maintenance/backupname.h"
#include "tests/support/dialoganswerer.h"
#include "tests/support/temporaryroot.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

using namespace tests;

namespace {

const QSet<QString> kNames = {"old", "Monday 2", "a"};

template<typename Widget>
Widget* child(BackUpName& dialog, char const* name) {
    Widget* found = dialog.findChild<Widget*>(QString::fromLatin1(name));
    if (!found)
        qFatal("no %s in the dialog", name);
    return found;
}

} // namespace

/// The dialog that asks for the name of a backup.
class BackUpNameTest : public QObject {
    Q_OBJECT

private slots:
    void title_and_check_box_follow_the_direction_data();
    void title_and_check_box_follow_the_direction();
    void names_are_listed_in_order();
    void double_click_copies_the_name();
    void names_are_taken_or_refused_data();
    void names_are_taken_or_refused();
    void check_box_tells_whether_lists_come_too();
    void cancel_rejects();

private:
    TemporaryRoot m_Root;
};

void BackUpNameTest::title_and_check_box_follow_the_direction_data() {
    QTest::addColumn<bool>("import");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("title");
    QTest::newRow("backup") << false << "zh_CN"
                            << "备份文件";
    QTest::newRow("import") << true << "zh_CN"
                            << "导入备份文件";
    QTest::newRow("backup in English") << false << "en"
                                       << "Backup file";
    QTest::newRow("import in English") << true << "en"
                                       << "Import backup file";
}

void BackUpNameTest::title_and_check_box_follow_the_direction() {
    QFETCH(bool, import);
    QFETCH(QString, language);
    QFETCH(QString, title);
    QVERIFY(LanguageManager::SetCurrentLan(language));
    BackUpName dialog(kNames, nullptr, import);
    QVERIFY(LanguageManager::SetCurrentLan("zh_CN"));
    dialog.show();
    QCOMPARE(dialog.windowTitle(), title);
    QCOMPARE(child<QCheckBox>(dialog, "checkBoxImportConfig")->isVisible(), import);
    QVERIFY(!child<QCheckBox>(dialog, "checkBoxImportConfig")->isChecked());
}

void BackUpNameTest::names_are_listed_in_order() {
    BackUpName dialog(kNames, nullptr, true);
    auto* list = child<QListWidget>(dialog, "listWidget");
    QStringList names;
    for (int row = 0; row < list->count(); ++row)
        names.append(list->item(row)->text());
    QCOMPARE(names, QStringList({"Monday 2", "a", "old"}));
}

void BackUpNameTest::double_click_copies_the_name() {
    BackUpName dialog(kNames, nullptr, true);
    dialog.show();
    auto* list = child<QListWidget>(dialog, "listWidget");
    const QPoint middle = list->visualItemRect(list->item(2)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, middle);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, middle);
    QCOMPARE(child<QLineEdit>(dialog, "lineEditFileName")->text(), "old");
    QVERIFY(dialog.isVisible());
}

void BackUpNameTest::names_are_taken_or_refused_data() {
    QTest::addColumn<bool>("import");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name"); // empty: refused
    QTest::addColumn<QString>("notice");
    const QString none;
    const QString empty = "请输入备份文件名";
    const QString taken = "文件名已存在,请重新输入";
    const QString unknown = "请输入正确的文件名";
    const QString bad = "文件名不能以点开头,也不能包含/等特殊字符";
    auto row = [](char const* tag, bool import, QString const& typed, QString const& name, QString const& notice) {
        QTest::newRow(tag) << import << typed << name << notice;
    };
    row("new name", false, "new", "new", none);
    row("leading blanks and a blank within", false, "  new one ", "new one", none);
    row("same name in another case is a new name", false, "OLD", "OLD", none);
    row("Chinese", false, "备份", "备份", none);
    row("longest", false, QString(243, QLatin1Char('b')), QString(243, QLatin1Char('b')), none);
    row("backup without a name", false, "", none, empty);
    row("backup of blanks", false, "   ", none, empty);
    row("taken", false, "old", none, taken);
    row("taken, with blanks", false, " old ", none, taken);
    row("another folder", false, "../x", none, bad);
    row("absolute", false, "/x", none, bad);
    row("hidden", false, ".x", none, bad);
    row("up", false, "..", none, bad);
    row("not for a stick", false, "12:30", none, bad);
    row("too long", false, QString(244, QLatin1Char('b')), none, "文件名太长");
    row("import", true, "old", "old", none);
    row("import, with blanks", true, " Monday 2 ", "Monday 2", none);
    row("import without a name", true, " ", none, empty);
    row("import of another name", true, "new", none, unknown);
    row("import in another case", true, "OLD", none, unknown);
    row("import from another folder", true, "../old", none, unknown);
}

void BackUpNameTest::names_are_taken_or_refused() {
    QFETCH(bool, import);
    QFETCH(QString, typed);
    QFETCH(QString, name);
    QFETCH(QString, notice);
    BackUpName dialog(kNames, nullptr, import);
    dialog.show();
    child<QLineEdit>(dialog, "lineEditFileName")->setText(typed);
    DialogAnswerer answerer;
    if (!notice.isEmpty())
        answerer.press(QMessageBox::Ok);
    child<QPushButton>(dialog, "pushButtonOK")->click();
    QCOMPARE(answerer.texts(), notice.isEmpty() ? QStringList() : QStringList(notice));
    QCOMPARE(answerer.titles(), notice.isEmpty() ? QStringList() : QStringList("错误"));
    QCOMPARE(dialog.isVisible(), !notice.isEmpty());
    QCOMPARE(dialog.FileName(), name);
}

void BackUpNameTest::check_box_tells_whether_lists_come_too() {
    for (bool on : {true, false}) {
        BackUpName dialog(kNames, nullptr, true);
        child<QLineEdit>(dialog, "lineEditFileName")->setText("old");
        child<QCheckBox>(dialog, "checkBoxImportConfig")->setChecked(on);
        child<QPushButton>(dialog, "pushButtonOK")->click();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.ImportConfigFile(), on);
    }
    BackUpName dialog(kNames, nullptr, false);
    child<QLineEdit>(dialog, "lineEditFileName")->setText("new");
    child<QPushButton>(dialog, "pushButtonOK")->click();
    QVERIFY(!dialog.ImportConfigFile());
}

void BackUpNameTest::cancel_rejects() {
    BackUpName dialog(kNames, nullptr, false);
    dialog.show();
    child<QLineEdit>(dialog, "lineEditFileName")->setText("new");
    child<QPushButton>(dialog, "pushButtonCancel")->click();
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.FileName(), QString());
}

QTEST_MAIN(BackUpNameTest)
#include "tst_backupname.moc"
