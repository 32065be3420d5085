// SPDX-License-Identifier: MIT
#include "tests/shell/documentsfixture.h"
#include "tests/support/dialoganswerer.h"

#include <QLineEdit>
#include <QPushButton>

using namespace tests;

/// What an operator makes, opens, stores and closes by dialogs.
class DocumentDialogsTest : public QObject, protected DocumentsFixture {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void save_shows_a_box();
    void save_all_shows_one_box_even_without_a_document();
    void a_new_document_takes_the_typed_name_data();
    void a_new_document_takes_the_typed_name();
    void a_new_document_of_an_open_name_is_not_refused();
    void a_new_document_that_cannot_be_stored_is_told_and_stays_open();
    void a_cancelled_dialog_changes_nothing_data();
    void a_cancelled_dialog_changes_nothing();
    void without_the_right_no_dialog_comes_up_data();
    void without_the_right_no_dialog_comes_up();
    void a_stored_document_is_opened_by_its_row_data();
    void a_stored_document_is_opened_by_its_row();
    void an_unreadable_document_is_passed_over_without_a_word();
    void save_as_takes_the_document_to_its_new_name();
    void save_as_that_fails_is_told_and_loses_nothing();
    void save_as_without_a_document_asks_nothing();
    void the_menu_saves_the_active_document();
    void save_all_stores_every_document_and_tells_a_failure();
    void the_delete_button_of_a_row_data();
    void the_delete_button_of_a_row();
    void a_document_that_cannot_be_stored_is_not_closed();
    void a_document_that_goes_while_a_dialog_asks_about_it_is_not_edited_data();
    void a_document_that_goes_while_a_dialog_asks_about_it_is_not_edited();

private:
    using Fill = std::function<void(QWidget&)>;

    static Fill typeName(QString const& name) {
        return [name](QWidget& dialog) {
            dialog.findChild<QLineEdit*>(QStringLiteral("lineEditAddFileName"))->setText(name);
        };
    }
    static Fill chooseName(QString const& name) {
        return [name](QWidget& dialog) {
            auto* list = dialog.findChild<QListWidget*>(QStringLiteral("listWidget"));
            const QList<QListWidgetItem*> found = list->findItems(name, Qt::MatchExactly);
            QCOMPARE(found.size(), 1);
            list->setCurrentItem(found.first());
        };
    }
    void deleteRow(int row) {
        QWidget* button = rows()->itemWidget(rows()->item(row));
        QTest::mouseClick(button->findChild<QPushButton*>(), Qt::LeftButton);
    }
};

void DocumentDialogsTest::save_shows_a_box() {
    window().NewFile(file("a"));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    action("actionSaveFile")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().at(0).title, QStringLiteral("保存"));
    QCOMPARE(answerer.seen().at(0).text, QStringLiteral("保存成功"));
    // A directory in the file's place cannot be replaced.
    QVERIFY(QFile::remove(file("a")));
    QVERIFY(QDir().mkpath(file("a")));
    answerer.press(QMessageBox::Ok);
    action("actionSaveFile")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().at(1).text, QStringLiteral("保存失败"));
}

void DocumentDialogsTest::save_all_shows_one_box_even_without_a_document() {
    for (int documents : {0, 2}) {
        for (int i = 0; i < documents; ++i)
            window().NewFile(file(i ? "a" : "b"));
        DialogAnswerer answerer;
        answerer.press(QMessageBox::Ok);
        QVERIFY(QMetaObject::invokeMethod(&window(), "onSaveAllFile", Qt::DirectConnection));
        QVERIFY(answerer.waitUntilAnswered());
        QCOMPARE(answerer.texts(), QStringList{QStringLiteral("保存成功")});
    }
}

void DocumentDialogsTest::a_new_document_takes_the_typed_name_data() {
    QTest::addColumn<QString>("trigger");
    QTest::newRow("tool bar") << QStringLiteral("action_NewFile");
    QTest::newRow("menu") << QStringLiteral("actionNew");
}

void DocumentDialogsTest::a_new_document_takes_the_typed_name() {
    QFETCH(QString, trigger);
    DialogAnswerer answerer;
    answerer.fillAndPress(typeName(QStringLiteral(" Plate1 ")), QStringLiteral("pushButtonOK"));
    action(qPrintable(trigger))->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.titles(), QStringList{QStringLiteral("新建文档")});
    QCOMPARE(openNames(), QStringList{"plate1"});
    QCOMPARE(rowNames(), QStringList{"plate1"});
    QCOMPARE(activeName(), QStringLiteral("plate1"));
    QVERIFY(m_Root.exists(QStringLiteral("/MarkFile/plate1.mkf")));
    QCOMPARE(recent(), QByteArray("1\nplate1\n"));
    QVERIFY(window().GetActiveView()->isVisible());
    QVERIFY(window().GetActiveView()->GetShowObjList()->isVisible());
}

void DocumentDialogsTest::a_new_document_of_an_open_name_is_not_refused() {
    window().NewFile(QStringLiteral("plate"));
    QRulerView* first = window().GetActiveView();
    DialogAnswerer answerer;
    answerer.fillAndPress(typeName(QStringLiteral("plate")), QStringLiteral("pushButtonOK"));
    answerer.press(QMessageBox::Yes); // the file is there: overwrite
    action("action_NewFile")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(openNames(), (QStringList{"plate", "plate"}));
    QCOMPARE(rowNames(), (QStringList{"plate", "plate"}));
    QVERIFY(window().GetActiveView() != first);
    QCOMPARE(recent(), QByteArray("2\nplate\nplate\n"));
    // Its path is open once already, so that the next start brings up one view.
    start();
    QCOMPARE(openNames(), QStringList{"plate"});
}

void DocumentDialogsTest::a_new_document_that_cannot_be_stored_is_told_and_stays_open() {
    QVERIFY(QDir().mkpath(file("plate")));
    DialogAnswerer answerer;
    answerer.fillAndPress(typeName(QStringLiteral("plate")), QStringLiteral("pushButtonOK"));
    answerer.press(QMessageBox::Ok);
    action("action_NewFile")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.texts().last(), QStringLiteral("保存失败"));
    QCOMPARE(openNames(), QStringList{"plate"});
}

void DocumentDialogsTest::a_cancelled_dialog_changes_nothing_data() {
    QTest::addColumn<QString>("trigger");
    for (char const* name : {"action_NewFile", "actionNew", "actionOpenFlie", "actionOpen", "actionSaveAs"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void DocumentDialogsTest::a_cancelled_dialog_changes_nothing() {
    QFETCH(QString, trigger);
    window().NewFile(QStringLiteral("plate"));
    const QByteArray before = recent();
    DialogAnswerer answerer;
    answerer.press(QStringLiteral("pushButtonCancel"));
    action(qPrintable(trigger))->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(openNames(), QStringList{"plate"});
    QCOMPARE(recent(), before);
}

void DocumentDialogsTest::without_the_right_no_dialog_comes_up_data() {
    QTest::addColumn<QString>("trigger");
    for (char const* name : {"action_NewFile", "actionNew", "actionOpenFlie", "actionOpen", "actionSaveFile",
                             "actionSave", "actionSaveAll", "actionSaveAs"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void DocumentDialogsTest::without_the_right_no_dialog_comes_up() {
    QFETCH(QString, trigger);
    window().NewFile(QStringLiteral("plate"));
    window().GetActiveView()->AddMarkPoint(QPointF(0, 0));
    const QByteArray stored = m_Root.read(QStringLiteral("/MarkFile/plate.mkf"));
    action(qPrintable(trigger))->setEnabled(true);
    SystemParam::Instance()->SetEnableUserManager(true);
    DialogAnswerer answerer; // complains of any dialog
    action(qPrintable(trigger))->trigger();
    QCOMPARE(answerer.seen().size(), 0);
    QCOMPARE(openNames(), QStringList{"plate"});
    QCOMPARE(m_Root.read(QStringLiteral("/MarkFile/plate.mkf")), stored);
}

void DocumentDialogsTest::a_stored_document_is_opened_by_its_row_data() {
    QTest::addColumn<QString>("trigger");
    QTest::newRow("tool bar") << QStringLiteral("actionOpenFlie");
    QTest::newRow("menu") << QStringLiteral("actionOpen");
}

void DocumentDialogsTest::a_stored_document_is_opened_by_its_row() {
    QFETCH(QString, trigger);
    makeFile(QStringLiteral("one"), 1);
    makeFile(QStringLiteral("two"), 2);
    for (int turn = 0; turn < 2; ++turn) {
        DialogAnswerer answerer;
        answerer.fillAndPress(chooseName(QStringLiteral("two")), QStringLiteral("pushButtonOK"));
        action(qPrintable(trigger))->trigger();
        QVERIFY(answerer.waitUntilAnswered());
        QCOMPARE(answerer.titles(), QStringList{QStringLiteral("打开文档")});
        // Chosen once more, it is only activated.
        QCOMPARE(openNames(), QStringList{"two"});
    }
    QCOMPARE(window().GetActiveView()->GetToolLayer(1), 0);
    QCOMPARE(recent(), QByteArray("1\ntwo\n"));
}

void DocumentDialogsTest::an_unreadable_document_is_passed_over_without_a_word() {
    QVERIFY(m_Root.write(QStringLiteral("/MarkFile/bad.mkf"), "not a document"));
    DialogAnswerer answerer;
    answerer.fillAndPress(chooseName(QStringLiteral("bad")), QStringLiteral("pushButtonOK"));
    action("actionOpenFlie")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().size(), 1);
    QVERIFY(window().GetDocs().isEmpty());
}

void DocumentDialogsTest::save_as_takes_the_document_to_its_new_name() {
    for (char const* name : {"a", "b", "c"})
        window().NewFile(QString::fromLatin1(name));
    window().SetCurDoc(1);
    QRulerView* view = window().GetActiveView();
    view->AddMarkPoint(QPointF(0, 0));
    const QByteArray old = m_Root.read(QStringLiteral("/MarkFile/b.mkf"));
    DialogAnswerer answerer;
    answerer.fillAndPress(typeName(QStringLiteral("Copy")), QStringLiteral("pushButtonOK"));
    answerer.press(QMessageBox::Ok);
    action("actionSaveAs")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.titles(), (QStringList{QStringLiteral("另存为"), QStringLiteral("保存")}));
    QCOMPARE(answerer.texts().last(), QStringLiteral("保存成功"));
    QCOMPARE(window().GetActiveView(), view);
    QCOMPARE(openNames(), (QStringList{"a", "copy", "c"}));
    QCOMPARE(rowNames(), openNames());
    QVERIFY(!window().IsFileOpened(QStringLiteral("b")));
    QVERIFY(window().IsFileOpened(QStringLiteral("copy")));
    QCOMPARE(recent(), QByteArray("3\na\ncopy\nc\n"));
    QCOMPARE(m_Root.read(QStringLiteral("/MarkFile/b.mkf")), old);
    QVERIFY(m_Root.read(QStringLiteral("/MarkFile/copy.mkf")) != old);
    // Under its new name it is closed too.
    window().CloseFile(QStringLiteral("copy"));
    QCOMPARE(openNames(), (QStringList{"a", "c"}));
    QVERIFY(!window().IsFileOpened(QStringLiteral("copy")));
}

void DocumentDialogsTest::save_as_that_fails_is_told_and_loses_nothing() {
    window().NewFile(QStringLiteral("a"));
    window().GetActiveView()->AddMarkPoint(QPointF(0, 0));
    QVERIFY(QDir().mkpath(file("b")));
    DialogAnswerer answerer;
    answerer.fillAndPress(typeName(QStringLiteral("b")), QStringLiteral("pushButtonOK"));
    answerer.press(QMessageBox::Ok);
    action("actionSaveAs")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.texts().last(), QStringLiteral("保存失败"));
    QCOMPARE(window().GetActiveView()->GetToolLayer(0), 0);
    QVERIFY(m_Root.exists(QStringLiteral("/MarkFile/a.mkf")));
}

void DocumentDialogsTest::save_as_without_a_document_asks_nothing() {
    DialogAnswerer answerer; // complains of any dialog
    for (char const* name : {"actionSaveAs", "actionSave"})
        action(name)->trigger();
    QCOMPARE(answerer.seen().size(), 0);
}

void DocumentDialogsTest::the_menu_saves_the_active_document() {
    window().NewFile(QStringLiteral("a"));
    const QByteArray before = m_Root.read(QStringLiteral("/MarkFile/a.mkf"));
    window().GetActiveView()->AddMarkPoint(QPointF(0, 0));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    action("actionSave")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.texts(), QStringList{QStringLiteral("保存成功")});
    QVERIFY(m_Root.read(QStringLiteral("/MarkFile/a.mkf")) != before);
}

void DocumentDialogsTest::save_all_stores_every_document_and_tells_a_failure() {
    for (char const* name : {"a", "b", "c"}) {
        window().NewFile(QString::fromLatin1(name));
        window().GetActiveView()->AddMarkPoint(QPointF(0, 0));
    }
    QVERIFY(QFile::remove(file("a")) && QFile::remove(file("b")) && QFile::remove(file("c")));
    QVERIFY(QDir().mkpath(file("b")));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    action("actionSaveAll")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.texts(), QStringList{QStringLiteral("保存失败")});
    // One that fails keeps none of the others from being stored.
    QVERIFY(QFileInfo(file("a")).isFile() && QFileInfo(file("c")).isFile());
    QCOMPARE(openNames(), (QStringList{"a", "b", "c"}));
}

void DocumentDialogsTest::the_delete_button_of_a_row_data() {
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("open");
    QTest::addColumn<bool>("stored");
    QTest::newRow("yes stores and closes") << int(QMessageBox::Yes) << QStringList{"a"} << true;
    QTest::newRow("no closes") << int(QMessageBox::No) << QStringList{"a"} << false;
    QTest::newRow("cancel leaves it open") << int(QMessageBox::Cancel) << QStringList{"a", "b"} << false;
}

void DocumentDialogsTest::the_delete_button_of_a_row() {
    QFETCH(int, answer);
    QFETCH(QStringList, open);
    QFETCH(bool, stored);
    window().NewFile(QStringLiteral("a"));
    window().NewFile(QStringLiteral("b"));
    window().GetActiveView()->AddMarkPoint(QPointF(0, 0));
    const QByteArray before = m_Root.read(QStringLiteral("/MarkFile/b.mkf"));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::StandardButton(answer));
    deleteRow(1);
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(openNames(), open);
    QCOMPARE(rowNames(), open);
    QCOMPARE(activeName(), open.last());
    QCOMPARE(m_Root.read(QStringLiteral("/MarkFile/b.mkf")) != before, stored);
    QCOMPARE(window().IsFileOpened(QStringLiteral("b")), open.contains(QStringLiteral("b")));
}

void DocumentDialogsTest::a_document_that_cannot_be_stored_is_not_closed() {
    for (char const* name : {"a", "b", "c"})
        window().NewFile(QString::fromLatin1(name));
    QRulerView* view = window().GetDocs().at(1);
    view->AddMarkPoint(QPointF(0, 0));
    QVERIFY(QFile::remove(file("b")) && QDir().mkpath(file("b")));
    const QByteArray list = recent();
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Yes);
    answerer.press(QMessageBox::Ok);
    deleteRow(1);
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.texts().last(), QStringLiteral("保存失败"));
    QCOMPARE(openNames(), (QStringList{"a", "b", "c"}));
    QCOMPARE(rowNames(), openNames());
    QCOMPARE(window().GetActiveView(), view);
    QCOMPARE(rows()->currentRow(), 1);
    QCOMPARE(recent(), list);
    // The row works as before.
    QVERIFY(QDir().rmdir(file("b")));
    answerer.press(QMessageBox::Yes);
    deleteRow(1);
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(openNames(), (QStringList{"a", "c"}));
    QVERIFY(QFileInfo(file("b")).isFile());
}

void DocumentDialogsTest::a_document_that_goes_while_a_dialog_asks_about_it_is_not_edited_data() {
    QTest::addColumn<QByteArray>("asking");
    QTest::newRow("array") << QByteArray("actionarrayObj");
    QTest::newRow("roughen") << QByteArray("actionalienation");
}

/// As a controlling station may close it.
void DocumentDialogsTest::a_document_that_goes_while_a_dialog_asks_about_it_is_not_edited() {
    QFETCH(QByteArray, asking);
    window().NewFile(file("a"));
    QRulerView* view = window().GetActiveView();
    view->AddMarkPoint(QPointF(1.0, 2.0));
    QVERIFY(view->GetSelectedToolCnt() > 0);
    DialogAnswerer answerer;
    answerer.fillAndPress([this](QWidget&) { window().CloseAllFile(); }, QStringLiteral("确定"));
    action(asking)->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QVERIFY(window().GetDocs().isEmpty());
}

QTEST_MAIN(DocumentDialogsTest)
#include "tst_documentdialogs.moc"
