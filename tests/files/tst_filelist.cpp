// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "engine/systemparam.h"
#include "files/filelistview.h"
#include "files/filelistwidget.h"
#include "files/mfilebutton.h"
#include "tests/support/dialoganswerer.h"
#include "tests/support/temporaryroot.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using namespace tests;

/// The rows of the open documents without a window around them.
class FileListTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_row_asks_for_24_px_and_gets_what_a_finger_needs();
    void a_row_shows_its_name_behind_a_blank();
    void a_long_name_is_drawn_short_and_told_whole();
    void the_current_row_is_light_green_with_red_text();
    void the_frame_is_one_gray_pixel();
    void the_list_grows_to_three_rows();
    void an_item_alone_changes_no_current_row();
    void a_file_becomes_the_current_row_alone();
    void set_active_selects_one_row_alone();
    void set_active_beyond_the_rows_leaves_none();
    void a_press_on_the_name_makes_its_row_current();
    void the_button_takes_no_keys_from_the_list();
    void a_rename_finds_the_first_row();
    void a_rename_of_an_unknown_name_does_nothing();
    void the_close_question_data();
    void the_close_question();
    void the_close_question_by_escape_keeps_the_document();
    void closing_unasked_stores();
    void removing_an_unknown_name_tells_nothing();
    void removing_takes_the_first_row_of_the_name();
    void the_row_that_follows_a_removed_one_data();
    void the_row_that_follows_a_removed_one();
    void arrow_keys_move_the_row_data();
    void arrow_keys_move_the_row();
    void other_keys_do_nothing_data();
    void other_keys_do_nothing();
    void without_the_right_to_edit_nothing_moves();
    void a_move_tells_no_active_document();
    void a_move_is_told_when_the_row_is_in_place();
    void a_move_outside_the_rows_does_nothing();
    void rows_are_answered_again_after_a_move();
    void a_new_language_reaches_the_buttons();

private:
    TemporaryRoot m_Root;
    std::unique_ptr<FileListView> m_View;

    void fill(QStringList const& names) {
        for (QString const& name : names)
            m_View->AddFile(name);
    }
    FileListWidget* list() const {
        auto* widget = m_View->findChild<FileListWidget*>(QStringLiteral("listWidget"));
        if (!widget)
            qFatal("no list");
        return widget;
    }
    MFileButton* button(int row) const { return qobject_cast<MFileButton*>(list()->itemWidget(list()->item(row))); }
    QLabel* label(int row) const { return button(row)->findChild<QLabel*>(QStringLiteral("label")); }
    QPushButton* deleter(int row) const { return button(row)->findChild<QPushButton*>(QStringLiteral("pushButton")); }
    QStringList names() const {
        QStringList found;
        for (int row = 0; row < list()->count(); ++row)
            found.append(button(row)->GetFileName());
        return found;
    }
    QList<int> selected() const {
        QList<int> rows;
        for (QModelIndex const& index : list()->selectionModel()->selectedRows())
            rows.append(index.row());
        return rows;
    }
    /// How many pixels of a grab of `widget` have this colour.
    static int pixels(QWidget* widget, QColor const& colour) {
        const QImage image = widget->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == colour;
        }
        return count;
    }
};

void FileListTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void FileListTest::init() {
    SystemParam::Instance()->SetEnableUserManager(false);
    m_View = std::make_unique<FileListView>();
    m_View->resize(200, 200);
    m_View->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_View.get()));
}

void FileListTest::cleanup() {
    m_View.reset();
}

void FileListTest::a_row_asks_for_24_px_and_gets_what_a_finger_needs() {
    fill({"a", "b"});
    for (int row : {0, 1}) {
        QCOMPARE(list()->item(row)->sizeHint(), QSize(10, 24));
        QTRY_VERIFY(button(row)->height() >= 40);
        QVERIFY(list()->visualItemRect(list()->item(row)).height() >= 40);
        QVERIFY(deleter(row)->width() >= 40);
        QVERIFY(deleter(row)->height() >= 40);
        QTRY_COMPARE(deleter(row)->visibleRegion().boundingRect(), deleter(row)->rect());
    }
    QVERIFY(!button(0)->geometry().intersects(button(1)->geometry()));
}

void FileListTest::a_row_shows_its_name_behind_a_blank() {
    fill({"plate 1"});
    QCOMPARE(button(0)->GetFileName(), QStringLiteral("plate 1"));
    QCOMPARE(label(0)->text(), QStringLiteral(" plate 1"));
    QVERIFY(!deleter(0)->icon().isNull());
    button(0)->SetFileName(QStringLiteral("other"));
    QCOMPARE(button(0)->GetFileName(), QStringLiteral("other"));
    QCOMPARE(label(0)->text(), QStringLiteral(" other"));
}

void FileListTest::a_long_name_is_drawn_short_and_told_whole() {
    const QString name = QString(80, QLatin1Char('W'));
    fill({name});
    QTRY_VERIFY(button(0)->height() >= 40);
    QVERIFY(label(0)->width() < label(0)->fontMetrics().horizontalAdvance(name));
    QCOMPARE(label(0)->text(), QLatin1Char(' ') + name);
    QCOMPARE(label(0)->toolTip(), name);
    QVERIFY(deleter(0)->geometry().left() >= label(0)->geometry().right());
    QVERIFY(button(0)->rect().contains(deleter(0)->geometry()));
}

void FileListTest::the_current_row_is_light_green_with_red_text() {
    fill({"HHHH", "HHHH"});
    m_View->SetActive(0);
    QTRY_VERIFY(button(0)->height() >= 40);
    const QColor green(QStringLiteral("lightgreen"));
    QCOMPARE(list()->grab().toImage().pixelColor(list()->width() / 2, 3), green);
    QVERIFY(pixels(label(0), Qt::red) > 0);
    QCOMPARE(pixels(label(0), Qt::black), 0);
    QCOMPARE(pixels(label(1), Qt::red), 0);
    QVERIFY(pixels(label(1), Qt::black) > 0);
    m_View->SetActive(1);
    QCOMPARE(pixels(label(0), Qt::red), 0);
    QVERIFY(pixels(label(1), Qt::red) > 0);
}

void FileListTest::the_frame_is_one_gray_pixel() {
    const QImage image = list()->grab().toImage();
    QCOMPARE(image.pixelColor(0, 20), QColor(QStringLiteral("gray")));
    QVERIFY(image.pixelColor(1, 20) != QColor(QStringLiteral("gray")));
    QCOMPARE(image.pixelColor(image.width() - 1, 20), QColor(QStringLiteral("gray")));
}

void FileListTest::the_list_grows_to_three_rows() {
    int last = 0;
    for (int rows = 0; rows <= 5; ++rows) {
        const int height = list()->sizeHint().height();
        QVERIFY(height >= 40);
        QCOMPARE(height > last, rows == 0 || rows == 2 || rows == 3);
        last = height;
        m_View->AddItem(QString::number(rows));
    }
}

void FileListTest::an_item_alone_changes_no_current_row() {
    fill({"a"});
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    m_View->AddItem(QStringLiteral("b"));
    QCOMPARE(names(), (QStringList{"a", "b"}));
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(active.count(), 0);
}

void FileListTest::a_file_becomes_the_current_row_alone() {
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    fill({"a", "b", "a"});
    QCOMPARE(names(), (QStringList{"a", "b", "a"}));
    QCOMPARE(list()->currentRow(), 2);
    QCOMPARE(selected(), QList<int>{2});
    QCOMPARE(active.count(), 3);
    QCOMPARE(active.at(2).at(0).toInt(), 2);
}

void FileListTest::set_active_selects_one_row_alone() {
    fill({"a", "b", "c"});
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    m_View->SetActive(1);
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(selected(), QList<int>{1});
    QCOMPARE(active.count(), 1);
    QCOMPARE(active.at(0).at(0).toInt(), 1);
    m_View->SetActive(1);
    QCOMPARE(selected(), QList<int>{1});
    QCOMPARE(active.count(), 1);
}

void FileListTest::set_active_beyond_the_rows_leaves_none() {
    fill({"a", "b"});
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    m_View->SetActive(2);
    QCOMPARE(list()->currentRow(), -1);
    QCOMPARE(selected(), QList<int>());
    QCOMPARE(active.count(), 1);
    QCOMPARE(active.at(0).at(0).toInt(), -1);
}

void FileListTest::a_press_on_the_name_makes_its_row_current() {
    fill({"a", "b", "c"});
    QTRY_VERIFY(button(1)->height() >= 40);
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    QTest::mouseClick(label(1), Qt::LeftButton);
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(selected(), QList<int>{1});
    QCOMPARE(active.count(), 1);
    QCOMPARE(active.at(0).at(0).toInt(), 1);
}

void FileListTest::the_button_takes_no_keys_from_the_list() {
    fill({"a", "b"});
    list()->setFocus();
    QCOMPARE(m_View->focusWidget(), static_cast<QWidget*>(list()));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Cancel);
    QTest::mouseClick(deleter(1), Qt::LeftButton);
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(m_View->focusWidget(), static_cast<QWidget*>(list()));
}

void FileListTest::a_rename_finds_the_first_row() {
    fill({"x", "a", "a"});
    m_View->ChangeFileName(QStringLiteral("a"), QStringLiteral("b"));
    QCOMPARE(names(), (QStringList{"x", "b", "a"}));
    QCOMPARE(label(1)->text(), QStringLiteral(" b"));
    QCOMPARE(list()->item(1)->data(Qt::AccessibleTextRole).toString(), QStringLiteral("b"));
    QCOMPARE(list()->item(1)->text(), QString());
}

void FileListTest::a_rename_of_an_unknown_name_does_nothing() {
    fill({"a", "b"});
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    m_View->ChangeFileName(QStringLiteral("c"), QStringLiteral("d"));
    QCOMPARE(names(), (QStringList{"a", "b"}));
    QCOMPARE(active.count(), 0);
}

void FileListTest::the_close_question_data() {
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("closed");
    QTest::addColumn<bool>("save");
    QTest::newRow("yes") << int(QMessageBox::Yes) << true << true;
    QTest::newRow("no") << int(QMessageBox::No) << true << false;
    QTest::newRow("cancel leaves it open") << int(QMessageBox::Cancel) << false << false;
}

void FileListTest::the_close_question() {
    QFETCH(int, answer);
    QFETCH(bool, closed);
    QFETCH(bool, save);
    fill({"a", "b", "c"});
    QSignalSpy gone(m_View.get(), &FileListView::ClosedFile);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::StandardButton(answer));
    QTest::mouseClick(deleter(1), Qt::LeftButton);
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.titles(), QStringList{QStringLiteral("删除文档")});
    QCOMPARE(answerer.texts(), QStringList{QStringLiteral("是否保存当前文档")});
    QCOMPARE(answerer.seen().at(0).buttons.size(), 3);
    QCOMPARE(names(), closed ? (QStringList{"a", "c"}) : (QStringList{"a", "b", "c"}));
    QCOMPARE(gone.count(), closed ? 1 : 0);
    if (closed)
        QCOMPARE(gone.at(0), (QVariantList{1, save}));
}

void FileListTest::the_close_question_by_escape_keeps_the_document() {
    fill({"a"});
    QSignalSpy gone(m_View.get(), &FileListView::ClosedFile);
    DialogAnswerer answerer;
    answerer.reject();
    deleter(0)->click();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(names(), QStringList{"a"});
    QCOMPARE(gone.count(), 0);
}

void FileListTest::closing_unasked_stores() {
    fill({"a", "b"});
    QSignalSpy gone(m_View.get(), &FileListView::ClosedFile);
    m_View->CloseFile(QStringLiteral("a"), false);
    QCOMPARE(names(), QStringList{"b"});
    QCOMPARE(gone.count(), 1);
    QCOMPARE(gone.at(0), (QVariantList{0, true}));
}

void FileListTest::removing_an_unknown_name_tells_nothing() {
    fill({"a"});
    QSignalSpy gone(m_View.get(), &FileListView::ClosedFile);
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    m_View->RemoveItem(QStringLiteral("b"), true);
    m_View->RemoveItem(QString(), true);
    QCOMPARE(names(), QStringList{"a"});
    QCOMPARE(gone.count(), 0);
    QCOMPARE(active.count(), 0);
}

void FileListTest::removing_takes_the_first_row_of_the_name() {
    fill({"a", "b", "a"});
    QSignalSpy gone(m_View.get(), &FileListView::ClosedFile);
    m_View->RemoveItem(QStringLiteral("a"), false);
    QCOMPARE(names(), (QStringList{"b", "a"}));
    QCOMPARE(gone.at(0), (QVariantList{0, false}));
}

void FileListTest::the_row_that_follows_a_removed_one_data() {
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("removed");
    QTest::addColumn<QList<int>>("told"); ///< indices that ActivDocChanged told, while the row was still there
    QTest::addColumn<int>("after");       ///< the current row in the end
    QTest::newRow("current first: the one below") << 3 << 0 << 0 << QList<int>{1} << 0;
    QTest::newRow("current in the middle: the one below") << 3 << 1 << 1 << QList<int>{2} << 1;
    QTest::newRow("current last: the one above") << 3 << 2 << 2 << QList<int>{1} << 1;
    QTest::newRow("another above: stays, one up") << 3 << 2 << 0 << QList<int>{} << 1;
    QTest::newRow("another below: stays") << 3 << 0 << 2 << QList<int>{} << 0;
    QTest::newRow("the only one: none") << 1 << 0 << 0 << QList<int>{-1} << -1;
}

void FileListTest::the_row_that_follows_a_removed_one() {
    QFETCH(int, rows);
    QFETCH(int, current);
    QFETCH(int, removed);
    QFETCH(QList<int>, told);
    QFETCH(int, after);
    for (int row = 0; row < rows; ++row)
        m_View->AddFile(QString::number(row));
    m_View->SetActive(current);
    QList<int> indices;
    connect(m_View.get(), &FileListView::ActivDocChanged, m_View.get(),
            [&indices](int index) { indices.append(index); });
    QList<int> before;
    connect(m_View.get(), &FileListView::ClosedFile, m_View.get(), [&] { before = indices; });
    m_View->RemoveItem(QString::number(removed), false);
    QCOMPARE(indices, told);
    QCOMPARE(before, told);
    QCOMPARE(list()->currentRow(), after);
    QCOMPARE(selected(), after < 0 ? QList<int>() : QList<int>{after});
}

void FileListTest::arrow_keys_move_the_row_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("to");
    QTest::newRow("up on the first row") << 0 << int(Qt::Key_Up) << -1;
    QTest::newRow("up on the second row") << 1 << int(Qt::Key_Up) << 0;
    QTest::newRow("up on the last row") << 2 << int(Qt::Key_Up) << 1;
    QTest::newRow("down on the first row") << 0 << int(Qt::Key_Down) << 1;
    QTest::newRow("down on the second row") << 1 << int(Qt::Key_Down) << 2;
    QTest::newRow("down on the last row") << 2 << int(Qt::Key_Down) << -1;
    QTest::newRow("up without a current row") << -1 << int(Qt::Key_Up) << -1;
    QTest::newRow("down without a current row") << -1 << int(Qt::Key_Down) << -1;
}

void FileListTest::arrow_keys_move_the_row() {
    QFETCH(int, row);
    QFETCH(int, key);
    QFETCH(int, to);
    QStringList expected{"a", "b", "c"};
    fill(expected);
    m_View->SetActive(row);
    QSignalSpy moved(m_View.get(), &FileListView::ChangeFileIndex);
    QTest::keyClick(list(), Qt::Key(key));
    QCOMPARE(moved.count(), to >= 0 ? 1 : 0);
    if (to >= 0) {
        QCOMPARE(moved.at(0), (QVariantList{row, to}));
        expected.move(row, to);
    }
    QCOMPARE(names(), expected);
    QCOMPARE(list()->currentRow(), to >= 0 ? to : row);
    QCOMPARE(selected().size(), row >= 0 ? 1 : 0);
}

void FileListTest::other_keys_do_nothing_data() {
    QTest::addColumn<int>("key");
    for (Qt::Key key : {Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Left, Qt::Key_Right,
                        Qt::Key_A, Qt::Key_Space, Qt::Key_Return, Qt::Key_Delete})
        QTest::newRow(qPrintable(QKeySequence(key).toString())) << int(key);
}

void FileListTest::other_keys_do_nothing() {
    QFETCH(int, key);
    fill({"c", "b", "a"});
    m_View->SetActive(1);
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    QSignalSpy moved(m_View.get(), &FileListView::ChangeFileIndex);
    QTest::keyClick(list(), Qt::Key(key));
    QTest::keyClick(m_View.get(), Qt::Key(key));
    QCOMPARE(names(), (QStringList{"c", "b", "a"}));
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(selected(), QList<int>{1});
    QCOMPARE(active.count() + moved.count(), 0);
}

void FileListTest::without_the_right_to_edit_nothing_moves() {
    fill({"a", "b"});
    SystemParam::Instance()->SetEnableUserManager(true);
    QSignalSpy moved(m_View.get(), &FileListView::ChangeFileIndex);
    QTest::keyClick(list(), Qt::Key_Up);
    QCOMPARE(names(), (QStringList{"a", "b"}));
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(moved.count(), 0);
}

void FileListTest::a_move_tells_no_active_document() {
    fill({"a", "b", "c"});
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    QSignalSpy gone(m_View.get(), &FileListView::ClosedFile);
    for (auto const& [from, to] : {std::pair{2, 1}, {1, 0}, {0, 2}, {2, 0}, {1, 2}})
        m_View->OnChangeFileIndex(from, to);
    QCOMPARE(active.count(), 0);
    QCOMPARE(gone.count(), 0);
    QCOMPARE(list()->currentRow(), 2);
}

void FileListTest::a_move_is_told_when_the_row_is_in_place() {
    fill({"a", "b", "c"});
    QStringList seen;
    int current = -1;
    connect(m_View.get(), &FileListView::ChangeFileIndex, m_View.get(), [&] {
        seen = names();
        current = list()->currentRow();
    });
    list()->ChangeIndex(2, 0);
    QCOMPARE(seen, (QStringList{"c", "a", "b"}));
    QCOMPARE(current, 0);
    QCOMPARE(selected(), QList<int>{0});
    QCOMPARE(list()->item(0)->sizeHint(), QSize(10, 24));
}

void FileListTest::a_move_outside_the_rows_does_nothing() {
    fill({"a", "b"});
    QSignalSpy moved(m_View.get(), &FileListView::ChangeFileIndex);
    for (auto const& [from, to] : {std::pair{-1, 0}, {0, -1}, {2, 0}, {0, 2}})
        m_View->OnChangeFileIndex(from, to);
    QCOMPARE(names(), (QStringList{"a", "b"}));
    QCOMPARE(moved.count(), 0);
}

void FileListTest::rows_are_answered_again_after_a_move() {
    fill({"a", "b"});
    m_View->OnChangeFileIndex(1, 0);
    QSignalSpy active(m_View.get(), &FileListView::ActivDocChanged);
    m_View->SetActive(1);
    QCOMPARE(active.count(), 1);
    QCOMPARE(active.at(0).at(0).toInt(), 1);
}

void FileListTest::a_new_language_reaches_the_buttons() {
    fill({"a"});
    QCOMPARE(deleter(0)->toolTip(), LanguageManager::GetLanText("删除文档"));
    deleter(0)->setToolTip(QString());
    m_View->SetUIText();
    QCOMPARE(deleter(0)->toolTip(), LanguageManager::GetLanText("删除文档"));
}

QTEST_MAIN(FileListTest)
#include "tst_filelist.moc"
