// SPDX-License-Identifier: MIT
#include "editing/importttffont.h"
#include "engine/languagemanager.h"
#include "tests/editing/editingfixture.h"

#include <QDir>
#include <QFontDatabase>
#include <QListWidget>
#include <QPushButton>
#include <QRawFont>

using namespace tests;

namespace {

/// A real font under a family name that no system has: that of a font of this system with its first letters replaced.
QByteArray unknownFont(QString& family) {
    QVector<QString> paths;
    QVector<QString> names;
    SearchTTFFiles(QStringLiteral("/usr/share/fonts/truetype"), paths, names);
    for (QString const& path : paths) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        QByteArray bytes = file.readAll();
        const QString known = QRawFont(bytes, 12.0).familyName();
        if (known.size() < 4)
            continue;
        family = QStringLiteral("Qxzw") + known.mid(4);
        const auto wide = [](QString const& text) {
            QByteArray big;
            for (QChar c : text)
                big += QByteArray(1, char(c.unicode() >> 8)) + QByteArray(1, char(c.unicode() & 0xff));
            return big;
        };
        bytes.replace(wide(known), wide(family));
        bytes.replace(known.toLatin1(), family.toLatin1());
        if (QRawFont(bytes, 12.0).familyName() == family)
            return bytes;
    }
    return QByteArray();
}

} // namespace

/// The dialog that takes fonts from a stick.
class ImportTTFFontTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void captions_are_as_told();
    void files_of_a_folder_come_before_those_of_its_folders();
    void capitals_in_the_extension_are_found();
    void a_link_that_leads_back_ends();
    void search_fills_the_list_anew();
    void no_medium_leaves_the_lists_empty_and_imports_nothing();
    void a_double_click_chooses_and_lets_go();
    void equal_names_can_be_chosen_only_once();
    void import_copies_counts_and_renews_the_cache();
    void existing_and_missing_files_are_not_counted();
    void with_a_count_of_0_nothing_is_shown();
    void a_font_cache_that_is_not_renewed_is_logged_data();
    void a_font_cache_that_is_not_renewed_is_logged();
    void a_new_family_can_be_used_at_once();

private:
    QString media(QString const& file = {}) { return root->path(QStringLiteral("/media") + file); }
    QString target(QString const& file = {}) { return root->path(QStringLiteral("/fonts/users") + file); }
    QStringList items(char const* list) {
        QStringList texts;
        auto* widget = part<QListWidget>(*dialog, list);
        for (int i = 0; i < widget->count(); ++i)
            texts.append(widget->item(i)->text());
        return texts;
    }
    void press(char const* name) { part<QPushButton>(*dialog, name)->click(); }
    void doubleClick(char const* list, int row) {
        auto* widget = part<QListWidget>(*dialog, list);
        const QPoint place = widget->visualItemRect(widget->item(row)).center();
        QTest::mouseClick(widget->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseDClick(widget->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    }
    QString report(int count) {
        return LanguageManager::GetLanText("Import OK:") + QString::number(count) + QStringLiteral(" ,") +
               LanguageManager::GetLanText("please restart");
    }
    /// How often the program that renews the font cache ran.
    int cacheRuns() { return root->read(QStringLiteral("/runs")).count('\n'); }

    std::unique_ptr<TemporaryRoot> root;
    std::unique_ptr<ImportTTFFont> dialog;
    QByteArray m_Path;
};

void ImportTTFFontTest::init() {
    root = std::make_unique<TemporaryRoot>();
    for (char const* file : {"/media/stick/b.ttf", "/media/stick/a.TTF", "/media/stick/sub/c.ttf",
                             "/media/stick/readme.txt", "/media/other/b.ttf", "/media/top.ttf"})
        QVERIFY(root->write(QString::fromLatin1(file), QByteArray("font ") + file));
    // The system's own cache is left alone: a program of that name that only counts comes first in the path.
    QVERIFY(root->write(QStringLiteral("/bin/fc-cache"),
                        "#!/bin/sh\necho run >> " + root->path(QStringLiteral("/runs")).toUtf8() + "\n"));
    QVERIFY(QFile::setPermissions(root->path(QStringLiteral("/bin/fc-cache")),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    m_Path = qgetenv("PATH");
    qputenv("PATH", root->path(QStringLiteral("/bin")).toUtf8() + ":" + m_Path);
    dialog = std::make_unique<ImportTTFFont>(nullptr, FontFolders{media(), target()});
    dialog->show();
}

void ImportTTFFontTest::cleanup() {
    dialog.reset();
    qputenv("PATH", m_Path);
    root.reset();
}

void ImportTTFFontTest::captions_are_as_told() {
    QCOMPARE(dialog->windowTitle(), LanguageManager::GetLanText("ImportTTFFont"));
    QCOMPARE(part<QPushButton>(*dialog, "pushButton")->text(), LanguageManager::GetLanText("-->"));
    QCOMPARE(part<QPushButton>(*dialog, "pushButton_2")->text(), LanguageManager::GetLanText("<--"));
    QCOMPARE(part<QPushButton>(*dialog, "pushButtonSearch")->text(), LanguageManager::GetLanText("Search"));
    QCOMPARE(part<QPushButton>(*dialog, "pushButtonImport")->text(), LanguageManager::GetLanText("Import"));
    const FontFolders folders;
    QCOMPARE(folders.media, QStringLiteral("/media"));
    QCOMPARE(folders.target, QStringLiteral("/usr/share/fonts/truetype/fontusers"));
}

void ImportTTFFontTest::files_of_a_folder_come_before_those_of_its_folders() {
    QVector<QString> paths;
    QVector<QString> names;
    SearchTTFFiles(media(), paths, names);
    QCOMPARE(names.first(), QStringLiteral("top.ttf"));
    QVERIFY(names.indexOf(QStringLiteral("c.ttf")) > paths.indexOf(media(QStringLiteral("/stick/b.ttf"))));
    QCOMPARE(names.size(), 5);
    for (int i = 0; i < names.size(); ++i)
        QVERIFY(paths[i].endsWith(QLatin1Char('/') + names[i]));
}

void ImportTTFFontTest::capitals_in_the_extension_are_found() {
    press("pushButtonSearch");
    QVERIFY(items("listWidget").contains(QStringLiteral("a.TTF")));
    QVERIFY(!items("listWidget").contains(QStringLiteral("readme.txt")));
}

void ImportTTFFontTest::a_link_that_leads_back_ends() {
    QVERIFY(QFile::link(media(), media(QStringLiteral("/stick/loop"))));
    press("pushButtonSearch");
    QCOMPARE(items("listWidget").size(), 5);
}

void ImportTTFFontTest::search_fills_the_list_anew() {
    press("pushButtonSearch");
    press("pushButtonSearch");
    QCOMPARE(items("listWidget").size(), 5);
    QVERIFY(QFile::remove(media(QStringLiteral("/top.ttf"))));
    press("pushButtonSearch");
    QCOMPARE(items("listWidget").size(), 4);
}

void ImportTTFFontTest::no_medium_leaves_the_lists_empty_and_imports_nothing() {
    QVERIFY(QDir(media()).removeRecursively());
    press("pushButtonSearch");
    press("pushButton");
    press("pushButtonImport");
    QVERIFY(items("listWidget").isEmpty());
    QVERIFY(items("listWidget_2").isEmpty());
    QVERIFY2(QDir(target()).exists(), "the folder is made all the same");
    QCOMPARE(cacheRuns(), 0);
}

void ImportTTFFontTest::a_double_click_chooses_and_lets_go() {
    press("pushButtonSearch");
    doubleClick("listWidget", 0);
    QCOMPARE(items("listWidget_2"), QStringList(QStringLiteral("top.ttf")));
    doubleClick("listWidget", 0);
    QCOMPARE(items("listWidget_2").size(), 1);
    doubleClick("listWidget", 1);
    QCOMPARE(items("listWidget_2").size(), 2);
    doubleClick("listWidget_2", 0);
    QCOMPARE(items("listWidget_2"), QStringList(items("listWidget")[1]));
    press("pushButton_2");
    QVERIFY(items("listWidget_2").isEmpty());
}

void ImportTTFFontTest::equal_names_can_be_chosen_only_once() {
    press("pushButtonSearch");
    QCOMPARE(items("listWidget").count(QStringLiteral("b.ttf")), 2);
    press("pushButton");
    QCOMPARE(items("listWidget_2").count(QStringLiteral("b.ttf")), 1);
    QCOMPARE(items("listWidget_2").size(), 4);
}

void ImportTTFFontTest::import_copies_counts_and_renews_the_cache() {
    press("pushButtonSearch");
    press("pushButton");
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    press("pushButtonImport");
    QCOMPARE(answerer.titles(), QStringList(LanguageManager::GetLanText("Import TTF")));
    QCOMPARE(answerer.texts(), QStringList(report(4)));
    QCOMPARE(cacheRuns(), 1);
    QCOMPARE(root->read(QStringLiteral("/fonts/users/c.ttf")), QByteArray("font /media/stick/sub/c.ttf"));
    QCOMPARE(QDir(target()).entryList(QDir::Files).size(), 4);
}

void ImportTTFFontTest::existing_and_missing_files_are_not_counted() {
    QVERIFY(root->write(QStringLiteral("/fonts/users/top.ttf"), "older"));
    press("pushButtonSearch");
    press("pushButton");
    QVERIFY(QFile::remove(media(QStringLiteral("/stick/a.TTF"))));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    press("pushButtonImport");
    QCOMPARE(answerer.texts(), QStringList(report(2)));
    QCOMPARE(root->read(QStringLiteral("/fonts/users/top.ttf")), QByteArray("older"));
}

void ImportTTFFontTest::with_a_count_of_0_nothing_is_shown() {
    QVERIFY(root->write(QStringLiteral("/fonts/users/top.ttf"), "older"));
    press("pushButtonSearch");
    doubleClick("listWidget", 0);
    press("pushButtonImport");
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(cacheRuns(), 0);
}

void ImportTTFFontTest::a_font_cache_that_is_not_renewed_is_logged_data() {
    QTest::addColumn<bool>("there");
    QTest::addColumn<QString>("log");
    QTest::newRow("it fails") << true << "fc-cache: 3";
    QTest::newRow("it is not there") << false << "fc-cache: -2";
}

/// The fonts are copied all the same, and the operator is told of them.
void ImportTTFFontTest::a_font_cache_that_is_not_renewed_is_logged() {
    QFETCH(bool, there);
    const QString program = root->path(QStringLiteral("/bin/fc-cache"));
    if (there) {
        QFile script(program);
        QVERIFY(script.open(QIODevice::WriteOnly));
        QVERIFY(script.write("#!/bin/sh\nexit 3\n") > 0);
    } else {
        QVERIFY(QFile::remove(program));
        qputenv("PATH", root->path(QStringLiteral("/bin")).toUtf8());
    }
    press("pushButtonSearch");
    doubleClick("listWidget", 0);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    press("pushButtonImport");
    QCOMPARE(answerer.texts(), QStringList(report(1)));
    QTEST(logTexts("error").join(QLatin1Char('|')), "log");
}

void ImportTTFFontTest::a_new_family_can_be_used_at_once() {
    QString family;
    const QByteArray font = unknownFont(family);
    QVERIFY2(!font.isEmpty(), "the tests need a TrueType font on the system");
    QVERIFY(!QFontDatabase().families().contains(family));
    QVERIFY(root->write(QStringLiteral("/media/top.ttf"), font));
    press("pushButtonSearch");
    doubleClick("listWidget", 0);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    press("pushButtonImport");
    QVERIFY(QFontDatabase().families().contains(family));
    const QRawFont used = QRawFont::fromFont(QFont(family));
    QCOMPARE(used.familyName(), family);
}

QTEST_MAIN(ImportTTFFontTest)
#include "tst_importttffont.moc"
