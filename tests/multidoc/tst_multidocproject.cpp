// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "tests/multidoc/multidocfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <atomic>
#include <unistd.h>

using namespace tests;

/// How often everything was written out.
static std::atomic<int> writtenOut{0};

/// The C library's, seen and left out: the disk is not this test's matter.
extern "C" __attribute__((visibility("default"))) void sync() noexcept {
    ++writtenOut;
}

/// The project side of the multi-document window.
class MultiDocProjectTest : public QObject, private MultiDocFixture {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void it_exists_hidden_from_the_start();
    void without_a_project_the_buttons_are_off();
    void the_last_project_is_opened_at_the_start();
    void a_last_project_that_is_gone_leaves_none_data();
    void a_last_project_that_is_gone_leaves_none();
    void a_project_without_entries_is_open();
    void a_shorter_project_leaves_the_tail_of_the_longer_one();
    void a_file_that_cannot_be_read_leaves_an_empty_list_and_the_name();
    void a_new_project_is_empty_and_current();
    void everything_is_written_out_after_the_project_buttons_data();
    void everything_is_written_out_after_the_project_buttons();
    void a_project_of_more_entries_than_anyone_needs_is_kept();
    void the_question_before_a_new_project_saves_nothing_data();
    void the_question_before_a_new_project_saves_nothing();
    void opening_another_project_asks_and_reads_it();
    void opening_the_current_project_does_nothing();
    void opening_a_project_that_has_gone_is_told();
    void saving_writes_the_entries_and_asks_nothing();
    void saving_as_makes_the_new_name_current();
    void without_a_project_saving_and_managing_do_nothing();
    void a_save_that_fails_is_told();
    void a_document_is_added();
    void a_cancelled_document_is_not_added();
    void an_entry_is_edited_in_place();
    void an_entry_is_deleted_after_a_question();
    void without_a_row_nothing_is_edited_or_deleted();
    void entries_move_by_the_buttons();
    void places_outside_the_list_move_nothing_data();
    void places_outside_the_list_move_nothing();
    void a_distant_move_swaps_the_entries_and_moves_the_row();
    void a_double_click_opens_the_document();
    void an_import_reads_the_last_project_anew();
    void a_row_asks_for_its_size();
    void entries_that_can_fire_together_are_warned_of();
    void texts_are_in_the_operators_language();

private:
    /// What is saved, in a line an entry.
    QStringList entries() {
        dialog().SaveDoc(QStringLiteral("look"));
        const QStringList lines = QString::fromUtf8(project(QStringLiteral("look"))).split('\n');
        QStringList all;
        for (int i = 0; i < lines.first().toInt(); ++i)
            all.append(QStringList(lines.mid(1 + 3 * i, 3)).join('|'));
        return all;
    }
    void beCurrent(QString const& name) { dialog().SetCurMultiMarkFile(name); }
    static bool buttonsAre(bool enabled) {
        for (char const* name : {"pushButtonAdd", "pushButtonDel", "pushButtonMoveUp", "pushButtonMoveDown",
                                 "pushButtonEdit", "pushButtonRun"}) {
            if (part<QPushButton>(name)->isEnabled() != enabled)
                return false;
        }
        return true;
    }
};

namespace {

void typeName(QWidget& dialog, QString const& name) {
    dialog.findChild<QLineEdit*>(QStringLiteral("lineEditAddFileName"))->setText(name);
}

void chooseRow(QWidget& dialog, QString const& name) {
    auto* list = dialog.findChild<QListWidget*>(QStringLiteral("listWidget"));
    const QList<QListWidgetItem*> found = list->findItems(name, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    list->setCurrentItem(found.first());
}

const QString kOk = QStringLiteral("pushButtonOK");

} // namespace

void MultiDocProjectTest::it_exists_hidden_from_the_start() {
    QVERIFY(MultiDocMark::Instance());
    QVERIFY(!dialog().isVisible() && !dialog().IsShown());
    QCOMPARE(window().MarkWindowIsVisible(), 0);
    QCOMPARE(dialog().windowTitle(), QStringLiteral("多文档运行V0:"));
    MultiDocMark* first = MultiDocMark::Instance();
    MultiDocMark::InitWindow(&window());
    QCOMPARE(MultiDocMark::Instance(), first);
}

void MultiDocProjectTest::without_a_project_the_buttons_are_off() {
    QVERIFY(!dialog().HasFile());
    QVERIFY(buttonsAre(false));
    QVERIFY(!part<QPushButton>("pushButtonStop")->isEnabled());
    QVERIFY(part<QPushButton>("pushButtonStopMark")->isEnabled());
}

void MultiDocProjectTest::the_last_project_is_opened_at_the_start() {
    writeProject(QStringLiteral("front plates"), "2\nPlate A\n4\n12\n前盖\n0\n1\n");
    QVERIFY(m_Root.write(recentFile(), "front plates\n"));
    start();
    QCOMPARE(rows(), (QStringList{"Plate A", "前盖"}));
    QVERIFY(dialog().HasFile() && buttonsAre(true));
    QCOMPARE(dialog().windowTitle(), QStringLiteral("多文档运行V0:front plates"));
    QCOMPARE(label("labelProject"), QStringLiteral("front plates"));
    QCOMPARE(entries(), (QStringList{"Plate A|4|12", "前盖|0|1"}));
    QCOMPARE(recent(), QByteArray("front plates\n"));
}

void MultiDocProjectTest::a_last_project_that_is_gone_leaves_none_data() {
    QTest::addColumn<QByteArray>("recent");
    QTest::newRow("gone") << QByteArray("gone\n");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("another spelling") << QByteArray("Here\n");
}

void MultiDocProjectTest::a_last_project_that_is_gone_leaves_none() {
    QFETCH(QByteArray, recent);
    writeProject(QStringLiteral("here"), "1\nA\n1\n1\n");
    QVERIFY(m_Root.write(recentFile(), recent));
    start();
    QVERIFY(!dialog().HasFile() && rows().isEmpty() && buttonsAre(false));
}

void MultiDocProjectTest::a_project_without_entries_is_open() {
    writeProject(QStringLiteral("none"), "0\n");
    QVERIFY(m_Root.write(recentFile(), "none\n"));
    start();
    QVERIFY(dialog().HasFile() && rows().isEmpty() && buttonsAre(true));
}

void MultiDocProjectTest::a_shorter_project_leaves_the_tail_of_the_longer_one() {
    beCurrent(QStringLiteral("set"));
    add(QStringLiteral("PlateA"), 4, 12);
    add(QStringLiteral("PlateB"), 1, 1);
    trigger("actionSaveProject");
    QCOMPARE(project(QStringLiteral("set")), QByteArray("2\nPlateA\n4\n12\nPlateB\n1\n1\n"));
    dialog().RemoveDoc(1);
    trigger("actionSaveProject");
    QCOMPARE(project(QStringLiteral("set")), QByteArray("1\nPlateA\n4\n12\nPlateB\n1\n1\n"));
    start();
    QCOMPARE(entries(), QStringList{"PlateA|4|12"});
    beCurrent(QStringLiteral("s"));
    QCOMPARE(recent(), QByteArray("s\nt\n"));
}

void MultiDocProjectTest::a_file_that_cannot_be_read_leaves_an_empty_list_and_the_name() {
    beCurrent(QStringLiteral("set"));
    add(QStringLiteral("A"), 1, 1);
    dialog().OpenDoc(m_Root.path(QStringLiteral("/MarkFile/none.mdf")));
    QVERIFY(rows().isEmpty() && dialog().HasFile());
    QCOMPARE(dialog().windowTitle(), QStringLiteral("多文档运行V0:set"));
}

void MultiDocProjectTest::a_new_project_is_empty_and_current() {
    DialogAnswerer answerer;
    answerer.fillAndPress([](QWidget& manager) { typeName(manager, QStringLiteral("Front Plates")); }, kOk);
    trigger("actionNewProject");
    QCOMPARE(answerer.seen().size(), 1);
    QCOMPARE(answerer.seen().first().title, QStringLiteral("新建文档"));
    QCOMPARE(project(QStringLiteral("front plates")), QByteArray("0\n"));
    QCOMPARE(recent(), QByteArray("front plates\n"));
    QVERIFY(dialog().HasFile() && buttonsAre(true));
    QCOMPARE(dialog().windowTitle(), QStringLiteral("多文档运行V0:front plates"));
}

void MultiDocProjectTest::everything_is_written_out_after_the_project_buttons_data() {
    QTest::addColumn<QString>("action");
    QTest::addColumn<bool>("accept");
    QTest::addColumn<int>("syncs");
    // The new project's are written out however its dialog ends.
    QTest::newRow("new, accepted") << "actionNewProject" << true << 1;
    QTest::newRow("new, cancelled") << "actionNewProject" << false << 1;
    QTest::newRow("save as, accepted") << "actionSaveProjectAs" << true << 1;
    QTest::newRow("save as, cancelled") << "actionSaveProjectAs" << false << 0;
}

void MultiDocProjectTest::everything_is_written_out_after_the_project_buttons() {
    QFETCH(QString, action);
    QFETCH(bool, accept);
    QFETCH(int, syncs);
    beCurrent(QStringLiteral("set"));
    DialogAnswerer answerer;
    if (action == QLatin1String("actionNewProject"))
        answerer.press(QMessageBox::No);
    if (accept)
        answerer.fillAndPress([](QWidget& manager) { typeName(manager, QStringLiteral("front")); }, kOk);
    else
        answerer.reject();
    const int before = writtenOut;
    trigger(qPrintable(action));
    QCOMPARE(writtenOut - before, syncs);
    QCOMPARE(recent(), accept ? QByteArray("front\n") : QByteArray("set\n"));
}

void MultiDocProjectTest::a_project_of_more_entries_than_anyone_needs_is_kept() {
    const int count = 10001;
    QByteArray text = QByteArray::number(count) + '\n';
    for (int i = 0; i < count; ++i)
        text += "Plate " + QByteArray::number(i) + '\n' + QByteArray::number(i) + "\n1023\n";
    writeProject(QStringLiteral("large"), text);
    dialog().OpenDoc(m_Root.path(projectFile(QStringLiteral("large"))));
    QCOMPARE(list()->count(), count);
    dialog().SaveDoc(QStringLiteral("copy"));
    QCOMPARE(project(QStringLiteral("copy")), text);
}

void MultiDocProjectTest::the_question_before_a_new_project_saves_nothing_data() {
    QTest::addColumn<int>("answer");
    QTest::newRow("yes") << int(QMessageBox::Yes);
    QTest::newRow("no") << int(QMessageBox::No);
}

void MultiDocProjectTest::the_question_before_a_new_project_saves_nothing() {
    QFETCH(int, answer);
    writeProject(QStringLiteral("set"), "0\n");
    beCurrent(QStringLiteral("set"));
    add(QStringLiteral("A"), 1, 1);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::StandardButton(answer)).reject();
    trigger("actionNewProject");
    QCOMPARE(answerer.titles(), (QStringList{"是否保存", "新建文档"}));
    QCOMPARE(answerer.texts().first(), QStringLiteral("是否保存当前多文档"));
    QCOMPARE(project(QStringLiteral("set")), QByteArray("0\n"));
    QCOMPARE(rows(), QStringList{"A"});
}

void MultiDocProjectTest::opening_another_project_asks_and_reads_it() {
    writeProject(QStringLiteral("set"), "0\n");
    writeProject(QStringLiteral("other"), "1\nB\n0\n2\n");
    beCurrent(QStringLiteral("set"));
    add(QStringLiteral("A"), 1, 1);
    DialogAnswerer answerer;
    answerer.fillAndPress([](QWidget& manager) { chooseRow(manager, QStringLiteral("other")); }, kOk)
        .press(QMessageBox::Yes);
    trigger("actionOpenProject");
    QCOMPARE(answerer.titles(), (QStringList{"打开文档", "是否保存"}));
    QCOMPARE(project(QStringLiteral("set")), QByteArray("0\n"));
    QCOMPARE(entries(), QStringList{"B|0|2"});
    QCOMPARE(recent(), QByteArray("other\n"));
}

void MultiDocProjectTest::opening_the_current_project_does_nothing() {
    writeProject(QStringLiteral("set"), "0\n");
    beCurrent(QStringLiteral("set"));
    add(QStringLiteral("A"), 1, 1);
    DialogAnswerer answerer;
    answerer.fillAndPress([](QWidget& manager) { chooseRow(manager, QStringLiteral("set")); }, kOk);
    trigger("actionOpenProject");
    QCOMPARE(answerer.seen().size(), 1);
    QCOMPARE(rows(), QStringList{"A"});
}

void MultiDocProjectTest::opening_a_project_that_has_gone_is_told() {
    writeProject(QStringLiteral("other"), "1\nB\n0\n2\n");
    beCurrent(QStringLiteral("set"));
    add(QStringLiteral("A"), 1, 1);
    DialogAnswerer answerer;
    answerer
        .fillAndPress(
            [this](QWidget& manager) {
                chooseRow(manager, QStringLiteral("other"));
                QVERIFY(QFile::remove(m_Root.path(projectFile(QStringLiteral("other")))));
            },
            kOk)
        .press(QMessageBox::Ok);
    trigger("actionOpenProject");
    QCOMPARE(answerer.titles(), (QStringList{"打开文档", "打开失败"}));
    QCOMPARE(answerer.texts().last(), QStringLiteral("文件不存在"));
    QCOMPARE(rows(), QStringList{"A"});
    QCOMPARE(recent(), QByteArray("set\n"));
}

void MultiDocProjectTest::saving_writes_the_entries_and_asks_nothing() {
    beCurrent(QStringLiteral("set"));
    add(QStringLiteral("Plate A"), 4, 12);
    trigger("actionSaveProject");
    QCOMPARE(project(QStringLiteral("set")), QByteArray("1\nPlate A\n4\n12\n"));
}

void MultiDocProjectTest::saving_as_makes_the_new_name_current() {
    beCurrent(QStringLiteral("set"));
    add(QStringLiteral("A"), 1, 1);
    DialogAnswerer answerer;
    answerer.fillAndPress([](QWidget& manager) { typeName(manager, QStringLiteral("copy")); }, kOk);
    trigger("actionSaveProjectAs");
    QCOMPARE(answerer.titles(), QStringList{"另存为"});
    QCOMPARE(project(QStringLiteral("copy")), QByteArray("1\nA\n1\n1\n"));
    QCOMPARE(recent(), QByteArray("copy\n"));
    QCOMPARE(dialog().windowTitle(), QStringLiteral("多文档运行V0:copy"));
}

void MultiDocProjectTest::without_a_project_saving_and_managing_do_nothing() {
    const DialogAnswerer answerer; // complains about any dialog
    for (char const* name : {"actionSaveProject", "actionSaveProjectAs", "actionManageProjects"})
        trigger(name);
    QVERIFY(!QFile::exists(m_Root.path(projectFile(QString()))));
    QVERIFY(answerer.seen().isEmpty());
}

void MultiDocProjectTest::a_save_that_fails_is_told() {
    QVERIFY(QDir().mkpath(m_Root.path(projectFile(QStringLiteral("set")))));
    beCurrent(QStringLiteral("set"));
    trigger("actionSaveProject");
    QListWidget const* told = m_Window->statusList();
    QCOMPARE(told->item(told->count() - 1)->text(), QStringLiteral("多文档保存失败"));
}

void MultiDocProjectTest::a_document_is_added() {
    makeFile(QStringLiteral("PlateA"));
    beCurrent(QStringLiteral("set"));
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [](QWidget& entry) {
            entry.findChild<QComboBox*>(QStringLiteral("comboBox"))->setCurrentText(QStringLiteral("PlateA"));
            for (char const* name : {"checkBoxM2", "checkBoxM3", "checkBoxV2"})
                entry.findChild<QCheckBox*>(QLatin1String(name))->setChecked(true);
        },
        kOk);
    press("pushButtonAdd");
    QCOMPARE(answerer.titles(), QStringList{"添加文档"});
    QCOMPARE(entries(), QStringList{"PlateA|4|12"});
}

void MultiDocProjectTest::a_cancelled_document_is_not_added() {
    beCurrent(QStringLiteral("set"));
    DialogAnswerer answerer;
    answerer.press(QStringLiteral("pushButtonCancel"));
    press("pushButtonAdd");
    QVERIFY(rows().isEmpty());
}

void MultiDocProjectTest::an_entry_is_edited_in_place() {
    makeFile(QStringLiteral("A"));
    beCurrent(QStringLiteral("set"));
    add(QStringLiteral("A"), 1, 1);
    list()->setCurrentRow(0);
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [](QWidget& entry) { entry.findChild<QCheckBox*>(QStringLiteral("checkBoxM9"))->setChecked(true); }, kOk);
    press("pushButtonEdit");
    QCOMPARE(answerer.titles(), QStringList{"编辑文档"});
    QCOMPARE(entries(), QStringList{"A|1|513"});
    QCOMPARE(rows(), QStringList{"A"});
}

void MultiDocProjectTest::an_entry_is_deleted_after_a_question() {
    beCurrent(QStringLiteral("set"));
    for (char const* name : {"A", "B", "C"})
        add(QLatin1String(name), 1, 1);
    list()->setCurrentRow(1);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::No).press(QMessageBox::Yes);
    press("pushButtonDel");
    QCOMPARE(rows(), (QStringList{"A", "B", "C"}));
    press("pushButtonDel");
    QCOMPARE(answerer.titles(), (QStringList{"是否删除", "是否删除"}));
    QCOMPARE(answerer.texts(), (QStringList{"是否删除指定文档", "是否删除指定文档"}));
    QCOMPARE(rows(), (QStringList{"A", "C"}));
    QCOMPARE(entries(), (QStringList{"A|1|1", "C|1|1"}));
}

void MultiDocProjectTest::without_a_row_nothing_is_edited_or_deleted() {
    const DialogAnswerer answerer;
    beCurrent(QStringLiteral("set"));
    for (char const* name : {"pushButtonEdit", "pushButtonDel", "pushButtonMoveUp", "pushButtonMoveDown"})
        press(name);
    add(QStringLiteral("A"), 1, 1);
    list()->setCurrentRow(-1);
    for (char const* name : {"pushButtonEdit", "pushButtonDel", "pushButtonMoveUp", "pushButtonMoveDown"})
        press(name);
    dialog().RemoveDoc(-1);
    dialog().RemoveDoc(1);
    QCOMPARE(entries(), QStringList{"A|1|1"});
    QVERIFY(answerer.seen().isEmpty());
}

void MultiDocProjectTest::entries_move_by_the_buttons() {
    beCurrent(QStringLiteral("set"));
    unsigned int value = 0;
    for (char const* name : {"A", "B", "C"})
        add(QLatin1String(name), value++, 1);
    list()->setCurrentRow(0);
    press("pushButtonMoveUp");
    QCOMPARE(rows(), (QStringList{"A", "B", "C"}));
    press("pushButtonMoveDown");
    QCOMPARE(entries(), (QStringList{"B|1|1", "A|0|1", "C|2|1"}));
    QCOMPARE(rows(), (QStringList{"B", "A", "C"}));
    QCOMPARE(list()->currentRow(), 1);
    press("pushButtonMoveDown");
    press("pushButtonMoveDown");
    QCOMPARE(entries(), (QStringList{"B|1|1", "C|2|1", "A|0|1"}));
    press("pushButtonMoveUp");
    QCOMPARE(rows(), (QStringList{"B", "A", "C"}));
    QCOMPARE(list()->currentRow(), 1);
}

void MultiDocProjectTest::places_outside_the_list_move_nothing_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("from before") << -1 << 0;
    QTest::newRow("to itself") << 1 << 1;
    QTest::newRow("to behind") << 1 << 2;
    QTest::newRow("to before") << 0 << -1;
    QTest::newRow("from behind") << 2 << 0;
}

void MultiDocProjectTest::places_outside_the_list_move_nothing() {
    QFETCH(int, from);
    QFETCH(int, to);
    add(QStringLiteral("A"), 1, 1);
    add(QStringLiteral("B"), 2, 2);
    list()->setCurrentRow(0);
    dialog().ChangeIndex(from, to);
    QCOMPARE(entries(), (QStringList{"A|1|1", "B|2|2"}));
    QCOMPARE(rows(), (QStringList{"A", "B"}));
    QCOMPARE(list()->currentRow(), 0);
}

void MultiDocProjectTest::a_distant_move_swaps_the_entries_and_moves_the_row() {
    for (char const* name : {"A", "B", "C"})
        add(QLatin1String(name), 1, 1);
    dialog().ChangeIndex(0, 2);
    QCOMPARE(entries(), (QStringList{"C|1|1", "B|1|1", "A|1|1"}));
    QCOMPARE(rows(), (QStringList{"B", "C", "A"}));
    QCOMPARE(list()->currentRow(), 2);
}

void MultiDocProjectTest::a_double_click_opens_the_document() {
    makeFile(QStringLiteral("PlateA"));
    add(QStringLiteral("PlateA"), 1, 1);
    emit list()->itemDoubleClicked(list()->item(0));
    QVERIFY(window().GetActiveView());
    QCOMPARE(window().GetActiveView()->GetFileName(), QStringLiteral("PlateA"));
}

void MultiDocProjectTest::an_import_reads_the_last_project_anew() {
    m_Window->newDocument(1, QStringLiteral("open"));
    writeProject(QStringLiteral("imported"), "1\nB\n0\n2\n");
    QVERIFY(m_Root.write(recentFile(), "imported\n"));
    window().ResetFiles();
    QCOMPARE(rows(), QStringList{"B"});
    QCOMPARE(dialog().windowTitle(), QStringLiteral("多文档运行V0:imported"));
}

void MultiDocProjectTest::a_row_asks_for_its_size() {
    add(QStringLiteral("A"), 1, 1);
    QCOMPARE(list()->item(0)->sizeHint(), QSize(100, 32));
}

void MultiDocProjectTest::entries_that_can_fire_together_are_warned_of() {
    auto* warning = part<QLabel>("labelClash");
    add(QStringLiteral("A"), 1, 1);
    add(QStringLiteral("B"), 0, 1);
    QVERIFY(warning->isHidden());
    add(QStringLiteral("C"), 3, 3);
    QVERIFY(!warning->isHidden());
    QCOMPARE(warning->text(), QStringLiteral("可能同时触发,只运行靠前的文档: 0-2"));
    QCOMPARE(list()->item(2)->data(tessera::ProjectPattern).toString(), "11" + QString(30, '-'));
    dialog().ChangeIndex(2, 1);
    QCOMPARE(warning->text(), QStringLiteral("可能同时触发,只运行靠前的文档: 0-1"));
    dialog().RemoveDoc(0);
    QVERIFY(warning->isHidden());
    for (int i = 0; i < 5; ++i)
        add(QStringLiteral("D"), 4, 4);
    QCOMPARE(warning->text().section('\n', 0, 0),
             QStringLiteral("可能同时触发,只运行靠前的文档: 2-3, 2-4, 2-5, 2-6, 3-4, 3-5, 3-6, 4-5 +2"));
    dialog().ClearDocs();
    QVERIFY(warning->isHidden());
    for (unsigned int bit : {1U, 2U, 4U, 8U})
        add(QStringLiteral("E"), bit, bit);
    QCOMPARE(warning->text(), QStringLiteral("6对文档仅在多个输入同时变化时同时触发,只运行靠前的文档"));
}

void MultiDocProjectTest::texts_are_in_the_operators_language() {
    QVERIFY(LanguageManager::SetCurrentLan(QStringLiteral("en")));
    dialog().SetUIText();
    QStringList texts{dialog().windowTitle()};
    for (QLabel const* label : dialog().findChildren<QLabel*>())
        texts.append(label->text());
    for (QAbstractButton const* button : dialog().findChildren<QAbstractButton*>())
        texts.append(button->text());
    QVERIFY(LanguageManager::SetCurrentLan(QStringLiteral("zh_CN")));
    for (QString const& text : qAsConst(texts)) {
        for (QChar letter : text)
            QVERIFY2(letter.unicode() < 128, qPrintable(text));
    }
    QVERIFY(texts.contains(QStringLiteral("Stop(F8)")));
}

QTEST_MAIN(MultiDocProjectTest)
#include "tst_multidocproject.moc"
