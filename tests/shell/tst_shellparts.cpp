// SPDX-License-Identifier: MIT
#include "shell/homingplan.h"
#include "shell/recentfile.h"
#include "shell/statuslayout.h"
#include "shell/windowgeometry.h"

#include <QtTest>

using namespace tessera;

/// What the main window decides without a window.
class ShellPartsTest : public QObject {
    Q_OBJECT

private slots:
    void recent_list_reads_as_many_lines_as_it_counts_data();
    void recent_list_reads_as_many_lines_as_it_counts();
    void recent_list_is_written_with_its_count();
    void window_leaves_a_strip_at_the_bottom();
    void dialog_is_centred_by_edges_data();
    void dialog_is_centred_by_edges();
    void card_state_label_stands_left_of_the_bar_end();
    void clock_stands_around_the_middle();
    void homing_takes_enabled_axes_by_order();
    void homing_looks_at_fitted_axes_only();
    void status_bar_is_one_row_on_a_wide_screen();
    void status_bar_breaks_on_a_narrow_screen_without_overlap_data();
    void status_bar_breaks_on_a_narrow_screen_without_overlap();
};

void ShellPartsTest::recent_list_reads_as_many_lines_as_it_counts_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("paths");
    QTest::newRow("empty") << QByteArray() << QStringList();
    QTest::newRow("none") << QByteArray("0\n") << QStringList();
    QTest::newRow("two") << QByteArray("2\n/a/b.mkf\n/c.mkf\n") << QStringList{"/a/b.mkf", "/c.mkf"};
    QTest::newRow("left-over lines") << QByteArray("1\n/a.mkf\n/b.mkf\n/c.mkf\n") << QStringList{"/a.mkf"};
    QTest::newRow("fewer lines than counted") << QByteArray("5\n/a.mkf") << QStringList{"/a.mkf"};
    QTest::newRow("capitals and blanks") << QByteArray("1\n  /Mark/Plate A.MKF \n") << QStringList{"/mark/plate a.mkf"};
    QTest::newRow("line ends of other systems") << QByteArray("1\r\n/a.mkf\r\n") << QStringList{"/a.mkf"};
    QTest::newRow("Chinese") << QByteArray("1\n/打标/图.mkf\n") << QStringList{QStringLiteral("/打标/图.mkf")};
    QTest::newRow("no number") << QByteArray("x\n/a.mkf\n") << QStringList();
    QTest::newRow("negative") << QByteArray("-3\n/a.mkf\n") << QStringList();
}

void ShellPartsTest::recent_list_reads_as_many_lines_as_it_counts() {
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, paths);
    QCOMPARE(QStringList(ReadRecentList(bytes).toList()), paths);
}

void ShellPartsTest::recent_list_is_written_with_its_count() {
    QCOMPARE(WriteRecentList({}), QByteArray("0\n"));
    QCOMPARE(WriteRecentList({QStringLiteral("/a.mkf"), QStringLiteral("/图.mkf")}),
             QByteArray("2\n/a.mkf\n/图.mkf\n"));
}

void ShellPartsTest::window_leaves_a_strip_at_the_bottom() {
    QCOMPARE(WindowRect(QRect(0, 0, 1920, 1080)), QRect(0, 0, 1920, 1030));
    QCOMPARE(WindowRect(QRect(1280, 24, 1024, 600)), QRect(1280, 24, 1024, 550));
}

void ShellPartsTest::dialog_is_centred_by_edges_data() {
    QTest::addColumn<QRect>("window");
    QTest::addColumn<QRect>("dialog");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("even") << QRect(0, 0, 1920, 1030) << QRect(5, 5, 385, 180) << QPoint(767, 425);
    QTest::newRow("odd") << QRect(0, 0, 1025, 551) << QRect(5, 5, 385, 180) << QPoint(320, 185);
    QTest::newRow("window elsewhere") << QRect(100, 50, 1025, 551) << QRect(5, 5, 385, 180) << QPoint(320, 185);
    QTest::newRow("larger than the window") << QRect(0, 0, 300, 100) << QRect(5, 5, 385, 180) << QPoint(-42, -40);
}

void ShellPartsTest::dialog_is_centred_by_edges() {
    QFETCH(QRect, window);
    QFETCH(QRect, dialog);
    QFETCH(QPoint, place);
    QCOMPARE(CentredRect(window, dialog), QRect(place, dialog.size()));
}

void ShellPartsTest::card_state_label_stands_left_of_the_bar_end() {
    const QRect bar(600, 40, 424, 44); // right edge 1023
    const QRect place = CardStateRect(bar, 140);
    QCOMPARE(place.left(), 883);
    QCOMPARE(place.right(), 1022);
    QCOMPARE(place.top(), 40);
    QCOMPARE(place.bottom(), 83);
}

void ShellPartsTest::clock_stands_around_the_middle() {
    const QRect place = TimeRect(QSize(1920, 40));
    QCOMPARE(place.left(), 740);
    QCOMPARE(place.right(), 1139);
    QCOMPARE(place.height(), 40);
}

void ShellPartsTest::homing_takes_enabled_axes_by_order() {
    Class_CardPara para;
    para.AxisCount = 4;
    para.Home[0] = {true, false, 7};
    para.Home[1] = {false, true, 0};
    para.Home[2] = {true, true, 2};
    para.Home[3] = {true, true, 7};
    const QVector<AxisMoveStruct> plan = HomingPlan(para);
    QCOMPARE(plan.size(), 3);
    QVector<int> axes;
    for (AxisMoveStruct const& move : plan) {
        axes.append(move.AxisNo);
        QVERIFY(move.Home);
        QCOMPARE(move.Pos, 0.0);
        QCOMPARE(move.Vel, 0.0);
        QCOMPARE(move.Acc, 0.0);
    }
    QCOMPARE(axes, (QVector<int>{2, 0, 3}));
    QVERIFY(plan.at(0).Wait);
    QVERIFY(!plan.at(1).Wait);
}

void ShellPartsTest::homing_looks_at_fitted_axes_only() {
    Class_CardPara para;
    for (AxisHomePlan& home : para.Home)
        home.Enable = true;
    para.AxisCount = 2;
    QCOMPARE(HomingPlan(para).size(), 2);
    para.AxisCount = 99;
    QCOMPARE(HomingPlan(para).size(), kAxisSlots);
}

void ShellPartsTest::status_bar_is_one_row_on_a_wide_screen() {
    const StatusPlaces places = LayStatusBar(1920, {200, 200, 200}, {{20}, {20}, {20}, {110, true}, {90}, {90, true}});
    QCOMPARE(places.height, 40);
    for (QRect const& place : places.left + places.right)
        QCOMPARE(place.top(), 0);
    QVERIFY(places.left.last().right() < 740);
    QVERIFY(places.right.first().left() > 1139);
    QVERIFY(places.right.last().right() < 1920);
}

void ShellPartsTest::status_bar_breaks_on_a_narrow_screen_without_overlap_data() {
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("safety");
    for (int width : {1024, 1100, 1280, 1366, 1440, 1600, 1680}) {
        for (bool safety : {false, true})
            QTest::addRow("%d, safety indicator %s", width, safety ? "pressed" : "shown") << width << safety;
    }
}

void ShellPartsTest::status_bar_breaks_on_a_narrow_screen_without_overlap() {
    QFETCH(int, width);
    QFETCH(bool, safety);
    const QVector<StatusItem> right{{16}, {16}, {16}, {110, true}, {90, safety}, {150}, {140}, {95, true}};
    const StatusPlaces places = LayStatusBar(width, {200, 200, 200}, right);
    QVERIFY2(places.height <= 80, qPrintable(QString::number(places.height)));
    QVector<QRect> all = places.left + places.right;
    all.append(TimeRect(QSize(width, places.height)));
    for (int i = 0; i < all.size(); ++i) {
        QVERIFY2(QRect(0, 0, width, places.height).contains(all.at(i)), qPrintable(QString::number(i)));
        for (int j = 0; j < i; ++j)
            QVERIFY2(!all.at(i).intersects(all.at(j)), qPrintable(QStringLiteral("%1 %2").arg(i).arg(j)));
    }
    for (int i = 0; i < right.size(); ++i)
        QVERIFY(!right.at(i).touch || places.right.at(i).height() >= 40);
}

QTEST_GUILESS_MAIN(ShellPartsTest)
#include "tst_shellparts.moc"
