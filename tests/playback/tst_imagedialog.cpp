// SPDX-License-Identifier: MIT
#include "simengine/document/markobject.h"
#include "simengine/view/imagedialog.h"
#include "support/temporaryroot.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <cmath>

using namespace sim;

/// The dialog that asks how a picture becomes outlines.
class ImageDialogTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void picture_is_traced_at_once();
    void settings_change_the_outlines();
    void moved_threshold_is_no_longer_automatic();
    void size_keeps_its_ratio_until_told_otherwise();
    void untouched_size_is_the_exact_one();
    void one_object_when_asked_for();
    void damaged_file_is_told();
    void blank_settings_cannot_be_agreed_to();
    void closing_ends_what_goes_on();

private:
    QString picture();
    template<typename Field>
    Field* field(const char* name) const {
        return m_dialog->findChild<Field*>(QLatin1String(name));
    }
    ImportResult result() const { return m_dialog->result({}); }

    std::unique_ptr<tests::TemporaryRoot> m_root;
    std::unique_ptr<ImageDialog> m_dialog;
};

/// Two grey squares of 10 and 5 mm side by side, the picture 30 by 15 mm.
QString ImageDialogTest::picture() {
    QImage image(300, 150, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setDotsPerMeterX(10000);
    image.setDotsPerMeterY(10000);
    for (int y = 20; y < 120; ++y) {
        for (int x = 20; x < 120; ++x)
            image.setPixel(x, y, qRgb(40, 40, 40));
        for (int x = 200; x < 250 && y < 70; ++x)
            image.setPixel(x, y, qRgb(150, 150, 150));
    }
    const QString path = m_root->path(QStringLiteral("picture.png"));
    image.save(path);
    return path;
}

void ImageDialogTest::init() {
    m_root = std::make_unique<tests::TemporaryRoot>();
    QVERIFY(m_root->isValid());
    m_dialog = std::make_unique<ImageDialog>(picture(), nullptr);
    m_dialog->show();
    QTRY_VERIFY(m_dialog->isReady());
}

void ImageDialogTest::cleanup() {
    m_dialog.reset();
    m_root.reset();
}

void ImageDialogTest::picture_is_traced_at_once() {
    QVERIFY(field<QPushButton>("pushButtonOK")->isEnabled());
    QCOMPARE(field<QDoubleSpinBox>("doubleSpinBoxWidth")->value(), 30.0);
    QCOMPARE(field<QDoubleSpinBox>("doubleSpinBoxHeight")->value(), 15.0);
    QVERIFY(field<QLabel>("labelPicture")->pixmap(Qt::ReturnByValue).width() > 100);
    const ImportResult imported = result();
    QVERIFY(imported.ok());
    QVERIFY(std::abs(imported.objects.front()->bounds().height() - 10.0) < 0.01);
    for (const QWidget* button : m_dialog->findChildren<QAbstractButton*>())
        QVERIFY2(button->height() >= 40, qPrintable(button->objectName()));
}

void ImageDialogTest::settings_change_the_outlines() {
    field<QSlider>("sliderThreshold")->setValue(100);
    QVERIFY(!m_dialog->isReady());
    QVERIFY(!field<QPushButton>("pushButtonOK")->isEnabled());
    QTRY_VERIFY(m_dialog->isReady());
    QCOMPARE(int(result().objects.size()), 1);
    field<QSlider>("sliderThreshold")->setValue(200);
    QTRY_VERIFY(m_dialog->isReady());
    QCOMPARE(int(result().objects.size()), 2);
    field<QSpinBox>("spinBoxDespeckle")->setValue(2500);
    QTRY_VERIFY(m_dialog->isReady());
    QCOMPARE(int(result().objects.size()), 1);
    field<QCheckBox>("checkBoxInvert")->click();
    QTRY_VERIFY(m_dialog->isReady());
    QVERIFY(std::abs(result().objects.front()->bounds().width() - 30.0) < 0.01);
}

void ImageDialogTest::moved_threshold_is_no_longer_automatic() {
    QVERIFY(field<QCheckBox>("checkBoxAutomatic")->isChecked());
    const int best = field<QSlider>("sliderThreshold")->value();
    field<QSlider>("sliderThreshold")->setValue(10);
    QVERIFY(!field<QCheckBox>("checkBoxAutomatic")->isChecked());
    field<QCheckBox>("checkBoxAutomatic")->click();
    QTRY_VERIFY(m_dialog->isReady());
    QCOMPARE(field<QSlider>("sliderThreshold")->value(), best);
}

void ImageDialogTest::size_keeps_its_ratio_until_told_otherwise() {
    field<QDoubleSpinBox>("doubleSpinBoxWidth")->setValue(60.0);
    QCOMPARE(field<QDoubleSpinBox>("doubleSpinBoxHeight")->value(), 30.0);
    field<QDoubleSpinBox>("doubleSpinBoxHeight")->setValue(45.0);
    QCOMPARE(field<QDoubleSpinBox>("doubleSpinBoxWidth")->value(), 90.0);
    field<QCheckBox>("checkBoxKeepRatio")->click();
    field<QDoubleSpinBox>("doubleSpinBoxWidth")->setValue(30.0);
    QCOMPARE(field<QDoubleSpinBox>("doubleSpinBoxHeight")->value(), 45.0);
    QTRY_VERIFY(m_dialog->isReady());
    QVERIFY(std::abs(result().objects.front()->bounds().height() - 30.0) < 0.01);
    QCOMPARE(result().pageSize, QSizeF(30.0, 45.0));
}

void ImageDialogTest::untouched_size_is_the_exact_one() {
    m_dialog.reset();
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::black);
    image.setDotsPerMeterX(11811);
    image.setDotsPerMeterY(11811);
    const QString path = m_root->path(QStringLiteral("dense.png"));
    QVERIFY(image.save(path));
    m_dialog = std::make_unique<ImageDialog>(path, nullptr);
    QTRY_VERIFY(m_dialog->isReady());
    QCOMPARE(m_dialog->settings().sizeMm.width(), 100.0 / 11.811);
}

void ImageDialogTest::one_object_when_asked_for() {
    field<QSlider>("sliderThreshold")->setValue(200);
    QTRY_VERIFY(m_dialog->isReady());
    field<QCheckBox>("checkBoxOneObject")->click();
    QCOMPARE(int(result().objects.size()), 1);
    QCOMPARE(std::get<PathShape>(result().objects.front()->shape()).contourCount(), 2);
}

void ImageDialogTest::damaged_file_is_told() {
    m_dialog.reset();
    QVERIFY(QFile(picture()).resize(200));
    m_dialog = std::make_unique<ImageDialog>(m_root->path(QStringLiteral("picture.png")), nullptr);
    QTRY_VERIFY(field<QLabel>("labelMessage")->text().contains(QStringLiteral("图片文件已损坏")));
    QVERIFY(!field<QPushButton>("pushButtonOK")->isEnabled());
}

void ImageDialogTest::blank_settings_cannot_be_agreed_to() {
    field<QSlider>("sliderThreshold")->setValue(1);
    QTRY_VERIFY(field<QLabel>("labelMessage")->text().contains(QStringLiteral("没有可描摹的区域")));
    QVERIFY(!m_dialog->isReady());
    QVERIFY(!field<QPushButton>("pushButtonOK")->isEnabled());
}

void ImageDialogTest::closing_ends_what_goes_on() {
    QImage image(2000, 2000, QImage::Format_Grayscale8);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.scanLine(y)[x] = (x + y) % 2 ? 255 : 0;
    }
    const QString path = m_root->path(QStringLiteral("checker.png"));
    QVERIFY(image.save(path));
    auto dialog = std::make_unique<ImageDialog>(path, nullptr);
    auto* tracer = dialog->findChild<ImageTracer*>();
    QTRY_VERIFY(tracer->image() && tracer->isBusy());
    dialog.reset(); // does not wait for the whole of it
    QVERIFY(m_dialog->isReady());
}

QTEST_MAIN(ImageDialogTest)
#include "tst_imagedialog.moc"
