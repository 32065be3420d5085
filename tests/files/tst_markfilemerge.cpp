// SPDX-License-Identifier: MIT
#include "files/copymarkfile.h"
#include "files/form_showimportinfo.h"
#include "files/markfilemerge.h"
#include "files/searchfiles.h"
#include "tests/support/dialoganswerer.h"
#include "tests/support/temporaryroot.h"

#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

using namespace tests;

namespace {

/// What an operator answers: o and O overwrite one and all, r and R rename one and all, x leaves the question, X does
/// so with rename and all chosen.
tessera::MergeAnswer answerOf(QChar c, QString const& name) {
    tessera::MergeAnswer answer;
    answer.accepted = c.toLower() != 'x';
    answer.applyAll = c.isUpper();
    answer.operation = c.toLower() == 'r' || c == 'X' ? 1 : 0;
    answer.name = answer.operation == 1 ? name + "-new" : name;
    return answer;
}

} // namespace

/// Merging folders of mark files, searching in trees and the report of an import.
class MarkFileMergeTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void conflicts_are_decided_one_by_one_or_for_all_data();
    void conflicts_are_decided_one_by_one_or_for_all();
    void names_that_are_not_there_are_copied_without_a_question();
    void names_are_compared_letter_for_letter();
    void rename_may_not_take_a_name_that_is_copied_too();
    void documents_and_projects_are_merged();
    void project_without_a_document_of_its_name_is_not_copied();
    void project_conflict_is_judged_by_the_documents();
    void document_without_a_project_gives_no_message();
    void rejected_conflict_overwrites();
    void renamed_document_is_copied_beside_the_old_one();
    void other_files_and_capital_extensions_are_no_documents();
    void file_that_is_not_copied_is_told();
    void files_of_a_folder_come_before_its_subfolders();
    void search_goes_deep_first_in_the_order_of_names();
    void search_wants_the_exact_name_of_a_file();
    void search_ends_in_a_circle_of_links();
    void import_report_shows_nine_values();

private:
    QString source() const { return m_Root->path("/source"); }
    QString target() const { return m_Root->path("/target"); }
    bool put(QString const& name, QByteArray const& bytes) { return m_Root->write(name, bytes); }
    QByteArray at(QString const& name) const { return m_Root->read(name); }

    std::unique_ptr<TemporaryRoot> m_Root;
};

void MarkFileMergeTest::init() {
    m_Root.reset();
    m_Root = std::make_unique<TemporaryRoot>();
    QVERIFY(m_Root->isValid());
}

void MarkFileMergeTest::conflicts_are_decided_one_by_one_or_for_all_data() {
    QTest::addColumn<QString>("answers");
    QTest::addColumn<QString>("asked"); // documents in small letters, projects in capitals
    QTest::addColumn<QString>("renamed");
    QTest::newRow("overwrite each") << "oooo"
                                    << "abAB"
                                    << "";
    QTest::newRow("overwrite all at once") << "O"
                                           << "a"
                                           << "";
    QTest::newRow("overwrite one, then all") << "oO"
                                             << "ab"
                                             << "";
    QTest::newRow("overwrite all documents late, projects follow") << "oO"
                                                                   << "ab"
                                                                   << "";
    QTest::newRow("overwrite all from the first project on") << "ooO"
                                                             << "abA"
                                                             << "";
    QTest::newRow("rename each") << "rrrr"
                                 << "abAB"
                                 << "abAB";
    QTest::newRow("rename all asks for each all the same") << "RRRR"
                                                           << "abAB"
                                                           << "abAB";
    QTest::newRow("rename all, then overwrite one") << "Rooo"
                                                    << "abAB"
                                                    << "a";
    QTest::newRow("rename all, then overwrite all") << "RO"
                                                    << "ab"
                                                    << "a";
    QTest::newRow("rename, then leave") << "rxxx"
                                        << "abAB"
                                        << "a";
    QTest::newRow("leave each") << "xxxx"
                                << "abAB"
                                << "";
    QTest::newRow("what is chosen when leaving does not count") << "XXXX"
                                                                << "abAB"
                                                                << "";
    QTest::newRow("leave, then overwrite all") << "xO"
                                               << "ab"
                                               << "";
    QTest::newRow("rename all, leave, overwrite all") << "RXO"
                                                      << "abA"
                                                      << "a";
    QTest::newRow("overwrite, rename, leave, rename") << "orxr"
                                                      << "abAB"
                                                      << "bB";
}

void MarkFileMergeTest::conflicts_are_decided_one_by_one_or_for_all() {
    QFETCH(QString, answers);
    QFETCH(QString, asked);
    QFETCH(QString, renamed);
    QString questions;
    const auto ask = [&](QString const& text, QString const& name, QVector<QString> const& taken) {
        const bool project = text.startsWith("多文档");
        if (text != (project ? "多文档打标文件已存在: " : "打标文件已存在: ") + name || !taken.contains("a") ||
            !taken.contains("b"))
            qFatal("asked \"%s\"", qPrintable(text));
        questions += project ? name.toUpper() : name;
        if (questions.size() > answers.size())
            qFatal("more questions than answers: %s", qPrintable(questions));
        return answerOf(answers.at(questions.size() - 1), name);
    };
    const QVector<tessera::MergeStep> steps = tessera::PlanMerge({"a", "b"}, {"b", "a", "z"}, ask);
    QCOMPARE(questions, asked);
    QStringList pairs;
    for (tessera::MergeStep const& step : steps)
        pairs.append(step.from + ">" + step.to);
    QStringList expected;
    for (char const* name : {"a", "b"})
        expected.append(QString("%1.mkf>%1%2.mkf").arg(name, renamed.contains(name) ? "-new" : ""));
    for (char const* name : {"a", "b"})
        expected.append(QString("MultiDocMarkFile/%1.mdf>MultiDocMarkFile/%1%2.mdf")
                            .arg(name, renamed.contains(QString(name).toUpper()) ? "-new" : ""));
    QCOMPARE(pairs, expected);
}

void MarkFileMergeTest::names_that_are_not_there_are_copied_without_a_question() {
    const auto never = [](QString const&, QString const&, QVector<QString> const&) -> tessera::MergeAnswer {
        qFatal("asked");
    };
    const QVector<tessera::MergeStep> steps = tessera::PlanMerge({"b", "a"}, {"c"}, never);
    QCOMPARE(steps.size(), 4);
    QCOMPARE(steps.at(0).to, "b.mkf");
    QCOMPARE(steps.at(1).to, "a.mkf");
    QCOMPARE(steps.at(2).to, "MultiDocMarkFile/b.mdf");
    QVERIFY(tessera::PlanMerge({}, {"c"}, never).isEmpty());
}

void MarkFileMergeTest::names_are_compared_letter_for_letter() {
    int asked = 0;
    tessera::PlanMerge({"Plate"}, {"plate"}, [&](QString const&, QString const&, QVector<QString> const&) {
        ++asked;
        return tessera::MergeAnswer();
    });
    QCOMPARE(asked, 0);
}

void MarkFileMergeTest::rename_may_not_take_a_name_that_is_copied_too() {
    QVector<QVector<QString>> taken;
    tessera::PlanMerge({"a", "b", "c"}, {"a", "b"},
                       [&](QString const&, QString const& name, QVector<QString> const& all) {
                           taken.append(all);
                           return answerOf('r', name);
                       });
    QCOMPARE(taken.at(0), QVector<QString>({"a", "b", "c"}));
    QCOMPARE(taken.at(1), QVector<QString>({"a", "b", "c", "a-new"}));
    // Projects lie in a folder of their own.
    QCOMPARE(taken.at(2), QVector<QString>({"a", "b", "c"}));
}

void MarkFileMergeTest::documents_and_projects_are_merged() {
    QVERIFY(put("/source/a.mkf", "new a") && put("/source/b.mkf", "new b"));
    QVERIFY(put("/source/MultiDocMarkFile/b.mdf", "new set b"));
    QVERIFY(put("/target/b.mkf", "old b") && put("/target/c.mkf", "old c"));
    QVERIFY(put("/target/MultiDocMarkFile/b.mdf", "old set b") && put("/target/MultiDocMarkFile/c.mdf", "old set c"));
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    auto overwriteAll = [](QWidget& dialog) {
        QCOMPARE(dialog.findChild<QLabel*>("labelText")->text(), "打标文件已存在: b");
        dialog.findChild<QCheckBox*>("checkBoxApplyAll")->setChecked(true);
    };
    answerer.fillAndPress(overwriteAll, "确定");
    QVERIFY(CopyMarkFile(source(), target()));
    QCOMPARE(answerer.seen().size(), 1);
    QCOMPARE(at("/target/a.mkf"), "new a");
    QCOMPARE(at("/target/b.mkf"), "new b");
    QCOMPARE(at("/target/c.mkf"), "old c");
    QCOMPARE(at("/target/MultiDocMarkFile/b.mdf"), "new set b");
    QCOMPARE(at("/target/MultiDocMarkFile/c.mdf"), "old set c");
    QCOMPARE(QDir(target()).entryList(QDir::Files), QStringList({"a.mkf", "b.mkf", "c.mkf"}));
}

void MarkFileMergeTest::project_without_a_document_of_its_name_is_not_copied() {
    QVERIFY(put("/source/a.mkf", "a") && put("/source/MultiDocMarkFile/set.mdf", "set"));
    QVERIFY(put("/target/keep.mkf", "k"));
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    QVERIFY(CopyMarkFile(source(), target()));
    QVERIFY(m_Root->exists("/target/a.mkf"));
    QVERIFY(!m_Root->exists("/target/MultiDocMarkFile/set.mdf"));
}

void MarkFileMergeTest::project_conflict_is_judged_by_the_documents() {
    // A project that is there is overwritten unasked when no document of its name is there.
    QVERIFY(put("/source/a.mkf", "a") && put("/source/MultiDocMarkFile/a.mdf", "new set"));
    QVERIFY(put("/target/MultiDocMarkFile/a.mdf", "old set"));
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    QVERIFY(CopyMarkFile(source(), target()));
    QCOMPARE(answerer.seen().size(), 0);
    QCOMPARE(at("/target/MultiDocMarkFile/a.mdf"), "new set");
}

void MarkFileMergeTest::document_without_a_project_gives_no_message() {
    QVERIFY(put("/source/a.mkf", "a"));
    QVERIFY(put("/target/MultiDocMarkFile/a.mdf", "old set"));
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    QVERIFY(CopyMarkFile(source(), target()));
    QCOMPARE(answerer.seen().size(), 0);
    QCOMPARE(at("/target/a.mkf"), "a");
    QCOMPARE(at("/target/MultiDocMarkFile/a.mdf"), "old set");
}

void MarkFileMergeTest::rejected_conflict_overwrites() {
    QVERIFY(put("/source/a.mkf", "new") && put("/target/a.mkf", "old"));
    DialogAnswerer answerer;
    answerer.leave("WorkProgress").reject().reject();
    QVERIFY(CopyMarkFile(source(), target()));
    QCOMPARE(answerer.seen().size(), 2); // once more for the project
    QCOMPARE(at("/target/a.mkf"), "new");
    QCOMPARE(QDir(target()).entryList(QDir::Files), QStringList("a.mkf"));
}

void MarkFileMergeTest::renamed_document_is_copied_beside_the_old_one() {
    QVERIFY(put("/source/a.mkf", "new") && put("/source/MultiDocMarkFile/a.mdf", "new set"));
    QVERIFY(put("/target/a.mkf", "old"));
    auto rename = [](char const* name) {
        return [name](QWidget& dialog) {
            dialog.findChild<QRadioButton*>("radioButtonRename")->setChecked(true);
            dialog.findChild<QLineEdit*>("lineEditName")->setText(name);
        };
    };
    DialogAnswerer answerer;
    answerer.leave("WorkProgress").fillAndPress(rename("second"), "确定").fillAndPress(rename("set 2"), "确定");
    QVERIFY(CopyMarkFile(source(), target()));
    QCOMPARE(at("/target/a.mkf"), "old");
    QCOMPARE(at("/target/second.mkf"), "new");
    QCOMPARE(at("/target/MultiDocMarkFile/set 2.mdf"), "new set");
    QVERIFY(!m_Root->exists("/target/MultiDocMarkFile/a.mdf"));
}

void MarkFileMergeTest::other_files_and_capital_extensions_are_no_documents() {
    QVERIFY(put("/source/RecentFile.of", "new") && put("/source/A.MKF", "a") && put("/source/b.mkf.old", "b"));
    QVERIFY(put("/source/sub.mkf/inner.mkf", "i"));
    QVERIFY(put("/target/RecentFile.of", "old"));
    // One there in capitals is not in the way of one that comes.
    QVERIFY(put("/source/c.mkf", "new") && put("/target/c.MKF", "old"));
    DialogAnswerer answerer;
    answerer.leave("WorkProgress");
    QVERIFY(CopyMarkFile(source(), target()));
    QCOMPARE(answerer.seen().size(), 0);
    QStringList files = QDir(target()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    files.sort();
    QCOMPARE(files, QStringList({"RecentFile.of", "c.MKF", "c.mkf"}));
    QCOMPARE(at("/target/c.MKF"), "old");
    QCOMPARE(at("/target/RecentFile.of"), "old");
}

void MarkFileMergeTest::file_that_is_not_copied_is_told() {
    for (int i = 0; i < 10; ++i)
        QVERIFY(put(QString("/source/f%1.mkf").arg(i), "new"));
    QVERIFY(put("/source/good.mkf", "new"));
    for (int i = 0; i < 10; ++i)
        QVERIFY(QDir().mkpath(target() + QString("/f%1.mkf").arg(i))); // a folder cannot be replaced
    DialogAnswerer answerer;
    answerer.leave("WorkProgress").press(QMessageBox::Ok);
    QVERIFY(!CopyMarkFile(source(), target()));
    QCOMPARE(answerer.titles(), QStringList("错误"));
    QCOMPARE(answerer.texts().first(), "以下文件导入失败:\nf0.mkf\nf1.mkf\nf2.mkf\nf3.mkf\nf4.mkf\nf5.mkf\nf6.mkf\n"
                                       "f7.mkf\n... (10)");
    QCOMPARE(at("/target/good.mkf"), "new");
}

void MarkFileMergeTest::files_of_a_folder_come_before_its_subfolders() {
    QVERIFY(put("/tree/a/wanted.txt", "deep") && put("/tree/wanted.txt", "near") && put("/tree/z.txt", "z"));
    QString path = "untouched";
    QVERIFY(SearchFiles(m_Root->path("/tree"), "wanted.txt", path));
    QCOMPARE(path, m_Root->path("/tree") + "/wanted.txt");
}

void MarkFileMergeTest::search_goes_deep_first_in_the_order_of_names() {
    QVERIFY(put("/tree/b/wanted.txt", "b") && put("/tree/a/deep/deeper/wanted.txt", "a") && put("/tree/c/x", "x"));
    QString path;
    QVERIFY(SearchFiles(m_Root->path("/tree"), "wanted.txt", path));
    QCOMPARE(path, m_Root->path("/tree") + "/a/deep/deeper/wanted.txt");
}

void MarkFileMergeTest::search_wants_the_exact_name_of_a_file() {
    QVERIFY(put("/tree/Wanted.txt", "x") && put("/tree/wanted.txt.old", "x") && put("/tree/wanted.txt/x", "x"));
    QString path = "untouched";
    QVERIFY(!SearchFiles(m_Root->path("/tree"), "wanted.txt", path));
    QVERIFY(!SearchFiles(m_Root->path("/nothing"), "wanted.txt", path));
    QCOMPARE(path, "untouched");
}

void MarkFileMergeTest::search_ends_in_a_circle_of_links() {
    QVERIFY(put("/tree/a/b/x", "x") && put("/outside/wanted.txt", "x"));
    for (char const* link : {"/tree/a/up", "/tree/a/b/up", "/tree/up"})
        QVERIFY(QFile::link(m_Root->path("/tree"), m_Root->path(link)));
    QString path;
    QVERIFY(!SearchFiles(m_Root->path("/tree"), "wanted.txt", path));
    QVERIFY(QFile::link(m_Root->path("/outside"), m_Root->path("/tree/zlink")));
    QVERIFY(SearchFiles(m_Root->path("/tree"), "wanted.txt", path));
    QCOMPARE(path, m_Root->path("/tree") + "/zlink/wanted.txt");
}

void MarkFileMergeTest::import_report_shows_nine_values() {
    const QStringList captions = {"校正数据行列数为:",
                                  "未识别的错误数据行数:",
                                  "偏差值越界行数:",
                                  "没有数据的空行数:",
                                  "是否缺少数据:",
                                  "测量中心偏移量:",
                                  "自动计算中校正错误排序行数:",
                                  "外部手动高精度数据导入结果:",
                                  "最大偏差数据:"};
    const QPointer<QDialog> report =
        new Form_ShowImportInfo(nullptr, "33 x 33", "1", "2", "3", "no", "0.1, 0.2", "4", "<b>good</b>", "0.5");
    const QStringList values = {"33 x 33", "1", "2", "3", "no", "0.1, 0.2", "4", "<b>good</b>", "0.5"};
    QCOMPARE(report->windowTitle(), "手动高精度文件导入信息显示");
    QVERIFY(report->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QCOMPARE(report->windowType(), Qt::Tool);
    QVERIFY(report->testAttribute(Qt::WA_DeleteOnClose));
    report->show();
    int above = -1;
    for (int i = 0; i < 9; ++i) {
        auto const* caption = report->findChild<QLabel*>(QString("labelCaption%1").arg(i + 1));
        auto const* value = report->findChild<QLabel*>(QString("labelValue%1").arg(i + 1));
        QCOMPARE(caption->text(), captions.at(i));
        QCOMPARE(value->text(), values.at(i));
        QCOMPARE(value->textFormat(), Qt::PlainText);
        QVERIFY(caption->y() > above);
        above = caption->y();
    }
    auto* button = report->findChild<QPushButton*>("pushButtonOK");
    QCOMPARE(button->text(), "确定");
    button->click();
    QTRY_VERIFY(report.isNull());
}

QTEST_MAIN(MarkFileMergeTest)
#include "tst_markfilemerge.moc"
