// SPDX-License-Identifier: MIT
#include "editing/centertype.h"
#include "tests/editing/editingfixture.h"

#include <QRadioButton>

using namespace tests;

/// The nine buttons of the base point by themselves.
class CenterTypeTest : public QObject {
    Q_OBJECT

private slots:
    void base_point_buttons_lie_in_their_grid();
    void a_press_beside_a_base_point_takes_the_nearest();
};

void CenterTypeTest::base_point_buttons_lie_in_their_grid() {
    CenterType points;
    QVector<int> changed;
    connect(&points, &CenterType::BasePointChangedSignal, this, [&](BasePoint point) { changed.append(point); });
    for (int i = 0; i < 9; ++i) {
        auto* button = part<QRadioButton>(points, qPrintable(QStringLiteral("radioButton%1").arg(i)));
        QCOMPARE(button->geometry(), QRect(1 + i % 3 * 14, 1 + i / 3 * 14, 13, 13));
        points.setCheck(static_cast<BasePoint>(i));
        QCOMPARE(changed.size(), i + 1);
        QCOMPARE(changed.last(), i);
        int on = 0;
        for (auto* each : points.findChildren<QRadioButton*>())
            on += each->isChecked() ? 1 : 0;
        QCOMPARE(on, 1);
    }
    for (int outside : {9, -1}) {
        points.setCheck(static_cast<BasePoint>(outside));
        for (auto* each : points.findChildren<QRadioButton*>())
            QVERIFY(!each->isChecked());
    }
    QCOMPARE(changed.size(), 9);
}

void CenterTypeTest::a_press_beside_a_base_point_takes_the_nearest() {
    CenterType points;
    points.resize(60, 60);
    QTest::mouseClick(&points, Qt::LeftButton, Qt::NoModifier, QPoint(58, 57));
    QVERIFY(part<QRadioButton>(points, "radioButton8")->isChecked());
    QTest::mouseClick(&points, Qt::LeftButton, Qt::NoModifier, QPoint(0, 20));
    QVERIFY(part<QRadioButton>(points, "radioButton3")->isChecked());
}

QTEST_MAIN(CenterTypeTest)
#include "tst_centertype.moc"
