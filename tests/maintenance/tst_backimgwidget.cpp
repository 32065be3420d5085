// SPDX-License-Identifier: MIT
#include "maintenance/backimgwidget.h"

#include <QLabel>
#include <QPainter>
#include <QtTest>

namespace {

QPixmap halves(int width, int height) {
    QPixmap pixmap(width, height);
    pixmap.fill(Qt::red);
    QPainter(&pixmap).fillRect(width / 2, 0, width - width / 2, height, Qt::blue);
    return pixmap;
}

} // namespace

/// Preview of a picture with a text in it.
class BackImgWidgetTest : public QObject {
    Q_OBJECT

private slots:
    void without_a_picture_it_is_white() {
        BackImgWidget widget;
        widget.resize(60, 40);
        const QImage image = widget.grab().toImage();
        for (QPoint const& at : {QPoint(0, 0), QPoint(59, 0), QPoint(30, 20), QPoint(0, 39), QPoint(59, 39)})
            QCOMPARE(image.pixelColor(at), QColor(Qt::white));
    }

    void the_picture_fills_the_widget_data() {
        QTest::addColumn<QSize>("picture");
        QTest::newRow("smaller") << QSize(8, 2);
        QTest::newRow("larger") << QSize(400, 900);
        QTest::newRow("the same") << QSize(60, 40);
    }
    void the_picture_fills_the_widget() {
        QFETCH(QSize, picture);
        BackImgWidget widget;
        widget.resize(60, 40);
        widget.SetPixmap(halves(picture.width(), picture.height()));
        const QImage image = widget.grab().toImage();
        for (QPoint const& at : {QPoint(0, 0), QPoint(0, 39), QPoint(20, 20)})
            QCOMPARE(image.pixelColor(at), QColor(Qt::red));
        for (QPoint const& at : {QPoint(59, 0), QPoint(59, 39), QPoint(40, 20)})
            QCOMPARE(image.pixelColor(at), QColor(Qt::blue));
        widget.SetPixmap(QPixmap());
        QCOMPARE(widget.grab().toImage().pixelColor(10, 10), QColor(Qt::white));
    }

    void the_text_gets_its_colour_data() {
        QTest::addColumn<QColor>("color");
        QTest::addColumn<QString>("style");
        QTest::newRow("a colour") << QColor(12, 0, 255) << QStringLiteral("color: rgb(12,0,255);");
        QTest::newRow("transparent") << QColor(1, 2, 3, 4) << QStringLiteral("color: rgb(1,2,3);");
        QTest::newRow("of a cancelled dialog") << QColor() << QStringLiteral("color: rgb(0,0,0);");
    }
    void the_text_gets_its_colour() {
        QFETCH(QColor, color);
        QFETCH(QString, style);
        BackImgWidget widget;
        QLabel text(&widget);
        widget.SetTextColor(color);
        QCOMPARE(widget.styleSheet(), style);
        text.ensurePolished();
        QCOMPARE(text.palette().color(QPalette::WindowText).name(),
                 QColor(color.red(), color.green(), color.blue()).name());
    }

    void a_coloured_text_leaves_the_picture() {
        BackImgWidget widget;
        widget.resize(60, 40);
        widget.SetPixmap(halves(60, 40));
        widget.SetTextColor(Qt::green);
        QCOMPARE(widget.grab().toImage().pixelColor(10, 10), QColor(Qt::red));
    }

    void its_child_takes_the_bottom_strip() {
        BackImgWidget widget;
        auto* text = new QLabel(QStringLiteral("Starting"), &widget);
        widget.show();
        for (QSize const& size : {QSize(300, 200), QSize(640, 480), QSize(90, 60)}) {
            widget.resize(size);
            const int strip = text->sizeHint().height();
            QTRY_COMPARE(text->geometry(), QRect(20, size.height() - strip, size.width() - 20, strip));
        }
    }

    void a_child_without_a_size_hint_keeps_its_height() {
        BackImgWidget widget;
        auto* child = new QWidget(&widget);
        child->resize(50, 33);
        widget.show();
        widget.resize(300, 200);
        QTRY_COMPARE(child->geometry(), QRect(20, 167, 280, 33));
        child->setMinimumHeight(48);
        widget.resize(200, 100);
        QTRY_COMPARE(child->geometry(), QRect(20, 52, 180, 48));
    }

    void without_a_child_it_is_resized_all_the_same() {
        BackImgWidget widget;
        widget.show();
        widget.resize(123, 45);
        QTRY_COMPARE(widget.size(), QSize(123, 45));
    }
};

QTEST_MAIN(BackImgWidgetTest)
#include "tst_backimgwidget.moc"
