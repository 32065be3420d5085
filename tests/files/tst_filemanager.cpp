// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "tests/files/managerfixture.h"

#include <QtTest>

using namespace tests;

/// How the dialog lists, names and chooses files.
class FileManagerTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void each_mode_has_its_title_and_widgets_data();
    void each_mode_has_its_title_and_widgets();
    void numbers_of_modes_and_kinds_are_fixed();
    void folder_is_made_when_missing_data();
    void folder_is_made_when_missing();
    void names_are_listed_in_small_letters_and_sorted_data();
    void names_are_listed_in_small_letters_and_sorted();
    void path_of_the_documents_ends_in_a_slash();
    void typed_name_is_trimmed_and_in_small_letters_data();
    void typed_name_is_trimmed_and_in_small_letters();
    void empty_name_is_refused_and_the_dialog_stays_data();
    void empty_name_is_refused_and_the_dialog_stays();
    void names_that_are_no_file_names_are_refused_data();
    void names_that_are_no_file_names_are_refused();
    void existing_name_is_asked_about_data();
    void existing_name_is_asked_about();
    void open_mode_needs_a_selection();
    void open_mode_takes_the_selected_name();
    void manage_mode_just_accepts();
    void cancel_rejects();
    void double_click_copies_the_name();
    void targets_are_large_enough_for_a_finger_data();
    void targets_are_large_enough_for_a_finger();
    void texts_are_there_in_english();

private:
    static void type(FileManager& dialog, QString const& name) {
        child<QLineEdit>(dialog, "lineEditAddFileName")->setText(name);
    }
    /// Title and text with which a press of OK is refused; none when the dialog has closed.
    static QStringList refusal(FileManager& dialog) {
        DialogAnswerer answerer;
        answerer.press(QMessageBox::Ok);
        press(dialog, "pushButtonOK");
        return dialog.isVisible() ? answerer.titles() + answerer.texts() : QStringList();
    }

    std::unique_ptr<TemporaryRoot> m_Root;
};

void FileManagerTest::init() {
    m_Root = std::make_unique<TemporaryRoot>();
    QVERIFY(m_Root->isValid());
}

void FileManagerTest::cleanup() {
    m_Root.reset();
}

void FileManagerTest::each_mode_has_its_title_and_widgets_data() {
    QTest::addColumn<FileManagerType>("mode");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("named");
    QTest::addColumn<bool>("managed");
    QTest::newRow("new") << FileManagerNew << "新建文档" << true << false;
    QTest::newRow("save as") << FileManagerSaveAs << "另存为" << true << false;
    QTest::newRow("open") << FileManagerOpen << "打开文档" << false << false;
    QTest::newRow("manage") << FileManagerManage << "文档管理" << false << true;
}

void FileManagerTest::each_mode_has_its_title_and_widgets() {
    QFETCH(FileManagerType, mode);
    QFETCH(QString, title);
    QFETCH(bool, named);
    QFETCH(bool, managed);
    for (MarkFileType kind : {MarkFileDocument, MarkFileProject}) {
        FileManager dialog(nullptr, mode, kind);
        dialog.show();
        QCOMPARE(dialog.windowTitle(), title);
        QVERIFY(child<QWidget>(dialog, "listWidget")->isVisible());
        QVERIFY(child<QWidget>(dialog, "pushButtonOK")->isVisible());
        QVERIFY(child<QWidget>(dialog, "pushButtonCancel")->isVisible());
        QCOMPARE(child<QWidget>(dialog, "lineEditAddFileName")->isVisible(), named);
        for (char const* button : {"pushButtonDeleteSelectFile", "pushButtonBackUpSelectFile", "pushButtonImportFile"})
            QVERIFY2(child<QWidget>(dialog, button)->isVisible() == managed, button);
    }
}

void FileManagerTest::numbers_of_modes_and_kinds_are_fixed() {
    QCOMPARE(int(FileManagerNew), 0);
    QCOMPARE(int(FileManagerOpen), 1);
    QCOMPARE(int(FileManagerManage), 2);
    QCOMPARE(int(FileManagerSaveAs), 3);
    QCOMPARE(int(MarkFileDocument), 0);
    QCOMPARE(int(MarkFileProject), 1);
}

void FileManagerTest::folder_is_made_when_missing_data() {
    QTest::addColumn<MarkFileType>("kind");
    QTest::addColumn<QString>("folder");
    QTest::newRow("documents") << MarkFileDocument << "/MarkFile";
    QTest::newRow("projects") << MarkFileProject << "/MarkFile/MultiDocMarkFile";
}

void FileManagerTest::folder_is_made_when_missing() {
    QFETCH(MarkFileType, kind);
    QFETCH(QString, folder);
    QVERIFY(!m_Root->exists("/MarkFile"));
    FileManager dialog(nullptr, FileManagerOpen, kind);
    QVERIFY(QFileInfo(m_Root->path(folder)).isDir());
    QCOMPARE(listed(dialog), QStringList());
}

void FileManagerTest::names_are_listed_in_small_letters_and_sorted_data() {
    QTest::addColumn<MarkFileType>("kind");
    QTest::addColumn<QStringList>("names");
    // Sorted by the letters of the files: capitals stand first.
    QTest::newRow("documents") << MarkFileDocument << QStringList({"zinc", "a.b", "alloy", "steel"});
    QTest::newRow("projects") << MarkFileProject << QStringList({"set"});
}

void FileManagerTest::names_are_listed_in_small_letters_and_sorted() {
    QFETCH(MarkFileType, kind);
    QFETCH(QStringList, names);
    for (char const* file : {"/MarkFile/steel.mkf", "/MarkFile/alloy.MKF", "/MarkFile/Zinc.mkf", "/MarkFile/a.b.mkf",
                             "/MarkFile/RecentFile.of", "/MarkFile/copper.mdf", "/MarkFile/steel.mkf.old",
                             "/MarkFile/MultiDocMarkFile/Set.mdf", "/MarkFile/MultiDocMarkFile/lone.mkf",
                             "/MarkFile/MultiDocMarkFile/recent", "/MarkFile/folder.mkf/inner.mkf"})
        QVERIFY(m_Root->write(file, "x"));
    FileManager dialog(nullptr, FileManagerOpen, kind);
    QCOMPARE(listed(dialog), names);
    dialog.LoadFiles();
    QCOMPARE(listed(dialog), names);
}

void FileManagerTest::path_of_the_documents_ends_in_a_slash() {
    QCOMPARE(FileManager::GetFilePath(), m_Root->path() + "/MarkFile/");
}

void FileManagerTest::typed_name_is_trimmed_and_in_small_letters_data() {
    QTest::addColumn<FileManagerType>("mode");
    QTest::addColumn<MarkFileType>("kind");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    for (FileManagerType mode : {FileManagerNew, FileManagerSaveAs}) {
        auto row = [mode](char const* tag, MarkFileType kind, char const* typed, char const* name) {
            QTest::addRow("%s, mode %d", tag, mode) << mode << kind << typed << name;
        };
        row("Plate1 yields plate1", MarkFileDocument, "Plate1", "plate1");
        row("blanks around", MarkFileDocument, "  plate 2 \t", "plate 2");
        row("project", MarkFileProject, "Set", "set");
        row("Chinese", MarkFileDocument, "齿轮", "齿轮");
        row("its own extension is dropped", MarkFileDocument, "Plate.MKF", "plate");
        row("another extension stays", MarkFileDocument, "plate.mdf", "plate.mdf");
        row("longest", MarkFileDocument, QByteArray(251, 'a').constData(), QByteArray(251, 'a').constData());
    }
}

void FileManagerTest::typed_name_is_trimmed_and_in_small_letters() {
    QFETCH(FileManagerType, mode);
    QFETCH(MarkFileType, kind);
    QFETCH(QString, typed);
    QFETCH(QString, name);
    FileManager dialog(nullptr, mode, kind);
    type(dialog, typed);
    press(dialog, "pushButtonOK");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.GetFileName(), name);
}

void FileManagerTest::empty_name_is_refused_and_the_dialog_stays_data() {
    QTest::addColumn<QString>("typed");
    QTest::newRow("nothing") << "";
    QTest::newRow("blanks") << "   ";
    QTest::newRow("only the extension") << ".mkf";
}

void FileManagerTest::empty_name_is_refused_and_the_dialog_stays() {
    QFETCH(QString, typed);
    for (FileManagerType mode : {FileManagerNew, FileManagerSaveAs}) {
        FileManager dialog(nullptr, mode, MarkFileDocument);
        dialog.show();
        type(dialog, typed);
        QCOMPARE(refusal(dialog), QStringList({"错误", "请输入文档名字"}));
    }
}

void FileManagerTest::names_that_are_no_file_names_are_refused_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("text");
    const QString bad = "文件名不能以点开头,也不能包含/等特殊字符";
    QTest::newRow("another folder") << "../ini/marking" << bad;
    QTest::newRow("absolute") << "/etc/passwd" << bad;
    QTest::newRow("up") << ".." << bad;
    QTest::newRow("hidden") << ".plate" << bad;
    QTest::newRow("too long") << QString(252, QLatin1Char('a')) << "文件名太长";
}

void FileManagerTest::names_that_are_no_file_names_are_refused() {
    QFETCH(QString, typed);
    QFETCH(QString, text);
    FileManager dialog(nullptr, FileManagerNew, MarkFileDocument);
    dialog.show();
    type(dialog, typed);
    QCOMPARE(refusal(dialog), QStringList({"错误", text}));
    QCOMPARE(dialog.GetFileName(), QString());
}

void FileManagerTest::existing_name_is_asked_about_data() {
    QTest::addColumn<FileManagerType>("mode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("overwrite");
    for (FileManagerType mode : {FileManagerNew, FileManagerSaveAs}) {
        QTest::addRow("no in mode %d", mode) << mode << "plate" << false;
        QTest::addRow("yes in mode %d", mode) << mode << "plate" << true;
        QTest::addRow("trailing blanks in mode %d", mode) << mode << "Plate  " << true;
        QTest::addRow("with extension in mode %d", mode) << mode << "plate.mkf" << true;
    }
}

void FileManagerTest::existing_name_is_asked_about() {
    QFETCH(FileManagerType, mode);
    QFETCH(QString, typed);
    QFETCH(bool, overwrite);
    QVERIFY(m_Root->write("/MarkFile/Plate.mkf", "x"));
    FileManager dialog(nullptr, mode, MarkFileDocument);
    dialog.show();
    type(dialog, typed);
    DialogAnswerer answerer;
    answerer.press(overwrite ? QMessageBox::Yes : QMessageBox::No);
    press(dialog, "pushButtonOK");
    QCOMPARE(answerer.titles(), QStringList("是否覆盖"));
    QCOMPARE(answerer.texts(), QStringList("打标文件 \"plate\" 已存在"));
    QCOMPARE(answerer.seen().first().buttons.size(), 2);
    QCOMPARE(dialog.isVisible(), !overwrite);
    QCOMPARE(dialog.GetFileName(), overwrite ? "plate" : "");
}

void FileManagerTest::open_mode_needs_a_selection() {
    QVERIFY(m_Root->write("/MarkFile/plate.mkf", "x"));
    FileManager dialog(nullptr, FileManagerOpen, MarkFileDocument);
    dialog.show();
    QCOMPARE(refusal(dialog), QStringList({"错误", "请选择要打开的文件"}));
}

void FileManagerTest::open_mode_takes_the_selected_name() {
    QVERIFY(m_Root->write("/MarkFile/Plate.mkf", "x"));
    QVERIFY(m_Root->write("/MarkFile/wheel.mkf", "x"));
    FileManager dialog(nullptr, FileManagerOpen, MarkFileDocument);
    child<QListWidget>(dialog, "listWidget")->setCurrentRow(0);
    press(dialog, "pushButtonOK");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.GetFileName(), "plate");
}

void FileManagerTest::manage_mode_just_accepts() {
    FileManager dialog(nullptr, FileManagerManage, MarkFileDocument);
    press(dialog, "pushButtonOK");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.GetFileName(), QString());
}

void FileManagerTest::cancel_rejects() {
    FileManager dialog(nullptr, FileManagerNew, MarkFileDocument);
    dialog.show();
    type(dialog, "plate");
    press(dialog, "pushButtonCancel");
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.GetFileName(), QString());
}

void FileManagerTest::double_click_copies_the_name() {
    QVERIFY(m_Root->write("/MarkFile/Plate.mkf", "x"));
    FileManager dialog(nullptr, FileManagerSaveAs, MarkFileDocument);
    dialog.show();
    auto* list = child<QListWidget>(dialog, "listWidget");
    const QPoint middle = list->visualItemRect(list->item(0)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, middle);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, middle);
    QCOMPARE(child<QLineEdit>(dialog, "lineEditAddFileName")->text(), "plate");
    QVERIFY(dialog.isVisible());
}

void FileManagerTest::targets_are_large_enough_for_a_finger_data() {
    QTest::addColumn<FileManagerType>("mode");
    QTest::addColumn<QString>("language");
    for (FileManagerType mode : {FileManagerNew, FileManagerOpen, FileManagerManage, FileManagerSaveAs}) {
        for (char const* language : {"zh_CN", "en"})
            QTest::addRow("mode %d, %s", mode, language) << mode << language;
    }
}

void FileManagerTest::targets_are_large_enough_for_a_finger() {
    QFETCH(FileManagerType, mode);
    QFETCH(QString, language);
    QFile file(":/myQSS.qss");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(m_Root->write("/MarkFile/plate.mkf", "x"));
    qApp->setStyleSheet(QString::fromUtf8(file.readAll()));
    QVERIFY(LanguageManager::SetCurrentLan(language));
    FileManager dialog(nullptr, mode, MarkFileDocument);
    dialog.show();
    QCoreApplication::processEvents();
    QStringList small;
    for (QWidget const* widget : dialog.findChildren<QWidget*>()) {
        const bool target = qobject_cast<QPushButton const*>(widget) || qobject_cast<QLineEdit const*>(widget);
        if (target && widget->isVisible() && (widget->height() < 40 || widget->width() < widget->sizeHint().width()))
            small.append(widget->objectName());
    }
    auto const* list = child<QListWidget>(dialog, "listWidget");
    const int row = list->visualItemRect(list->item(0)).height();
    const QSize size = dialog.size();
    qApp->setStyleSheet(QString());
    QVERIFY(LanguageManager::SetCurrentLan("zh_CN"));
    QCOMPARE(small, QStringList());
    QVERIFY2(row >= 40, qPrintable(QString::number(row)));
    QVERIFY(size.width() <= 1024 && size.height() <= 600);
}

void FileManagerTest::texts_are_there_in_english() {
    QVERIFY(LanguageManager::SetCurrentLan("en"));
    for (FileManagerType mode : {FileManagerNew, FileManagerOpen, FileManagerManage, FileManagerSaveAs}) {
        FileManager dialog(nullptr, mode, MarkFileDocument);
        QStringList texts = {dialog.windowTitle()};
        for (QPushButton const* button : dialog.findChildren<QPushButton*>())
            texts.append(button->text());
        const QString all = texts.join(' ');
        QVERIFY2(std::all_of(all.begin(), all.end(), [](QChar c) { return c.unicode() < 128; }), qPrintable(all));
        QVERIFY(!dialog.windowTitle().isEmpty());
    }
    QVERIFY(LanguageManager::SetCurrentLan("zh_CN"));
}

QTEST_MAIN(FileManagerTest)
#include "tst_filemanager.moc"
