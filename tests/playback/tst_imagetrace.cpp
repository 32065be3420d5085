// SPDX-License-Identifier: MIT
#include "engine/qrulerview.h"
#include "simengine/document/markobject.h"
#include "simengine/importers/imageimport.h"
#include "support/temporaryroot.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <sys/resource.h>

using namespace sim;

namespace {

/// Dots a metre of 0.1 mm pixels.
constexpr int kTenAMm = 10000;

/// Area that the odd-even rule gives the contours of one object, mm²: a hole turns the other way round.
double areaOf(const MarkObject& object) {
    double area = 0.0;
    for (const FlatLine& line : object.flattened(1e-4)) {
        for (int i = 0; i + 1 < line.points.size(); ++i)
            area += line.points[i].x() * line.points[i + 1].y() - line.points[i + 1].x() * line.points[i].y();
    }
    return std::abs(area) / 2.0;
}

Box boundsOf(const ImportResult& result) {
    Box box;
    for (const ObjectPtr& object : result.objects)
        box.add(object->bounds());
    return box;
}

QImage blank(int width, int height, QRgb color = qRgb(255, 255, 255)) {
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(color);
    image.setDotsPerMeterX(kTenAMm);
    image.setDotsPerMeterY(kTenAMm);
    return image;
}

void fillRect(QImage& image, const QRect& rect, QRgb color = qRgb(0, 0, 0)) {
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            image.setPixel(x, y, color);
    }
}

void fillDisc(QImage& image, const QPointF& middle, double radius, QRgb color = qRgb(0, 0, 0)) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (std::hypot(x + 0.5 - middle.x(), y + 0.5 - middle.y()) <= radius)
                image.setPixel(x, y, color);
        }
    }
}

/// Processor time of all programs that were started and have ended, s.
double secondsOfChildren() {
    rusage used{};
    ::getrusage(RUSAGE_CHILDREN, &used);
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + double(time.tv_usec) * 1e-6; };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

/// A square of 20 mm with a hole of 10 mm, as a picture of 30 mm.
QImage frame() {
    QImage image = blank(300, 300);
    fillRect(image, {50, 50, 200, 200});
    fillRect(image, {100, 100, 100, 100}, qRgb(255, 255, 255));
    return image;
}

} // namespace

/// Pictures as outlines: geometry, sizes, settings, and what is refused.
class ImageTraceTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_root.reset(); }
    void square_with_a_hole_is_one_object_of_exact_size();
    void hatch_leaves_the_holes_free();
    void circle_keeps_its_size_and_is_made_of_curves();
    void checker_has_half_of_the_area();
    void an_island_in_a_hole_is_an_object_of_its_own();
    void the_picture_is_not_upside_down();
    void many_outlines_become_one_object();
    void size_of_each_format_data();
    void size_of_each_format();
    void size_without_a_density_is_that_of_a_screen_pixel();
    void entered_size_wins_and_may_differ_in_its_axes();
    void size_outside_the_limits_is_refused();
    void objects_get_the_current_pen();
    void page_placement_keeps_the_margin();
    void threshold_parts_the_greys();
    void threshold_can_be_entered();
    void inverted_picture_gives_the_light_parts();
    void transparent_parts_are_never_marked_data();
    void transparent_parts_are_never_marked();
    void specks_are_left_out();
    void smoothness_zero_gives_corners_alone();
    void optimising_saves_curves();
    void turned_photograph_stands_upright();
    void blank_picture_is_told();
    void refused_files_data();
    void refused_files();
    void cut_file_is_refused_data();
    void cut_file_is_refused();
    void hostile_pictures_are_refused_in_time_data();
    void hostile_pictures_are_refused_in_time();
    void cancelled_tracing_ends_at_once();
    void view_imports_a_picture_on_its_current_pen();

private:
    QString saved(const QImage& image, const char* name = "picture.png");
    ImportResult imported(const QImage& image) { return importImage(saved(image)); }
    TracedImage traced(const QImage& image, const TraceSettings& settings);

    std::unique_ptr<tests::TemporaryRoot> m_root;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void ImageTraceTest::init() {
    m_root = std::make_unique<tests::TemporaryRoot>();
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QString ImageTraceTest::saved(const QImage& image, const char* name) {
    const QString path = m_folder->filePath(QLatin1String(name));
    if (!image.save(path, nullptr, 100))
        qFatal("cannot save %s", name);
    return path;
}

TracedImage ImageTraceTest::traced(const QImage& image, const TraceSettings& settings) {
    const ImageRead read = readImage(saved(image), {});
    if (!read.image)
        qFatal("%s", qPrintable(read.error));
    return traceImage(*read.image, settings, {});
}

void ImageTraceTest::square_with_a_hole_is_one_object_of_exact_size() {
    const ImportResult result = imported(frame());
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(int(result.objects.size()), 1);
    const MarkObject& object = *result.objects.front();
    const auto* path = std::get_if<PathShape>(&object.shape());
    QVERIFY(path);
    QCOMPARE(path->contourCount(), 2);
    QVERIFY(std::abs(object.bounds().width() - 20.0) < 0.01);
    QVERIFY(std::abs(object.bounds().height() - 20.0) < 0.01);
    QVERIFY(std::abs(object.bounds().center().x()) < 0.01);
    QVERIFY2(std::abs(areaOf(object) - 300.0) < 0.5, qPrintable(QString::number(areaOf(object))));
    QCOMPARE(result.pageSize, QSizeF(30.0, 30.0));
    QCOMPARE(result.imported.value(QStringLiteral("MarkToolPath")), 1);
}

void ImageTraceTest::hatch_leaves_the_holes_free() {
    ObjectData data = imported(frame()).objects.front()->data();
    data.hatch.fills[0].Enable = true;
    data.hatch.fills[0].FillDist = 0.5;
    const ObjectPtr object = MarkObject::make(data);
    QVERIFY(object);
    double length = 0.0;
    const auto hatch = object->hatch();
    QVERIFY(hatch);
    for (const HatchPart& part : *hatch) {
        for (std::size_t i = 0; i < part.lines.count(); ++i) {
            for (auto point = part.lines.begin(i); point != part.lines.end(i); ++point)
                QVERIFY(std::abs(point->x()) > 4.9 || std::abs(point->y()) > 4.9);
            length += QLineF(*part.lines.begin(i), *(part.lines.end(i) - 1)).length();
        }
    }
    QVERIFY2(std::abs(length - 300.0 / 0.5) < 25.0, qPrintable(QString::number(length)));
}

void ImageTraceTest::circle_keeps_its_size_and_is_made_of_curves() {
    QImage image = blank(2400, 2400);
    image.setDotsPerMeterX(100000); // a pixel is 0.01 mm: a curve leaves half of one at either side
    image.setDotsPerMeterY(100000);
    fillDisc(image, {1200.0, 1200.0}, 1000.0);
    const ImportResult result = imported(image);
    QCOMPARE(int(result.objects.size()), 1);
    const MarkObject& object = *result.objects.front();
    QVERIFY2(std::abs(object.bounds().width() - 20.0) < 0.01,
             qPrintable(QString::number(object.bounds().width(), 'g', 8)));
    QVERIFY(std::abs(object.bounds().height() - 20.0) < 0.0101);
    QVERIFY2(std::abs(areaOf(object) - M_PI * 100.0) < 0.1, qPrintable(QString::number(areaOf(object))));
    const auto& path = std::get<PathShape>(object.shape());
    QVERIFY(path.verbs.contains(PathVerb::Cubic));
    QVERIFY(!path.verbs.contains(PathVerb::Line));
}

void ImageTraceTest::checker_has_half_of_the_area() {
    QImage image = blank(400, 400);
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 8; ++column) {
            if ((row + column) % 2 == 0)
                fillRect(image, {column * 50, row * 50, 50, 50});
        }
    }
    const ImportResult result = imported(image);
    QVERIFY(result.ok());
    double area = 0.0;
    QPainterPath all;
    all.setFillRule(Qt::OddEvenFill);
    for (const ObjectPtr& object : result.objects) {
        area += areaOf(*object);
        for (const FlatLine& line : object->flattened())
            all.addPolygon(line.points);
    }
    QVERIFY2(std::abs(area - 800.0) < 8.0, qPrintable(QString::number(area)));
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 8; ++column) // the topmost row of the picture is the uppermost one here
            QCOMPARE(all.contains(QPointF(-17.5 + column * 5.0, 17.5 - row * 5.0)), (row + column) % 2 == 0);
    }
    QVERIFY(std::abs(boundsOf(result).width() - 40.0) < 0.01);
    QVERIFY(std::abs(boundsOf(result).height() - 40.0) < 0.01);
}

void ImageTraceTest::an_island_in_a_hole_is_an_object_of_its_own() {
    QImage image = frame();
    fillRect(image, {130, 130, 40, 40});
    const ImportResult result = imported(image);
    QCOMPARE(int(result.objects.size()), 2);
    QCOMPARE(std::get<PathShape>(result.objects[0]->shape()).contourCount(), 2);
    QCOMPARE(std::get<PathShape>(result.objects[1]->shape()).contourCount(), 1);
    QVERIFY(std::abs(result.objects[1]->bounds().width() - 4.0) < 0.01);
}

void ImageTraceTest::the_picture_is_not_upside_down() {
    QImage image = blank(200, 400);
    fillRect(image, {20, 20, 160, 40}); // wide and at the top
    fillRect(image, {20, 300, 40, 40}); // narrow, below it and on the left
    const ImportResult result = imported(image);
    QCOMPARE(int(result.objects.size()), 2);
    const bool firstWide = result.objects[0]->bounds().width() > 10.0;
    const Box wide = result.objects[firstWide ? 0 : 1]->bounds();
    const Box narrow = result.objects[firstWide ? 1 : 0]->bounds();
    QVERIFY(wide.minY > narrow.maxY);
    QVERIFY(std::abs(wide.minX - narrow.minX) < 0.01);
}

void ImageTraceTest::many_outlines_become_one_object() {
    QImage image = blank(400, 400);
    for (int i = 0; i < 1600; ++i)
        fillRect(image, {i % 40 * 10, i / 40 * 10, 5, 5});
    const ImportResult result = imported(image);
    QCOMPARE(int(result.objects.size()), 1);
    QCOMPARE(std::get<PathShape>(result.objects[0]->shape()).contourCount(), 1600);
}

void ImageTraceTest::size_of_each_format_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("png") << "picture.png";
    QTest::newRow("jpeg") << "picture.jpg";
    QTest::newRow("bmp") << "picture.bmp";
    QTest::newRow("wrong ending") << "picture.png.jpg";
}

void ImageTraceTest::size_of_each_format() {
    QFETCH(QString, name);
    QImage image = frame();
    image.setDotsPerMeterX(11811); // 300 dots an inch
    image.setDotsPerMeterY(11811);
    const QString path = m_folder->filePath(name);
    QVERIFY(image.save(path, name.startsWith("picture.png") ? "png" : nullptr, 100));
    const ImportResult result = importImage(path);
    QVERIFY2(result.ok(), qPrintable(result.error));
    const double side = 200.0 / 300.0 * 25.4;
    QVERIFY2(std::abs(boundsOf(result).width() - side) < 0.01, qPrintable(QString::number(boundsOf(result).width())));
    QVERIFY(std::abs(boundsOf(result).height() - side) < 0.01);
}

void ImageTraceTest::size_without_a_density_is_that_of_a_screen_pixel() {
    const QString path = saved(frame());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    const int place = bytes.indexOf("pHYs");
    QVERIFY(place > 0);
    bytes.remove(place - 4, 4 + 4 + 9 + 4); // length, name, data, checksum
    file.seek(0);
    QVERIFY(file.resize(0));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    file.close();
    const ImportResult result = importImage(path);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QVERIFY(std::abs(boundsOf(result).width() - 200.0 / 96.0 * 25.4) < 0.01);
}

void ImageTraceTest::entered_size_wins_and_may_differ_in_its_axes() {
    TraceSettings settings;
    settings.sizeMm = QSizeF(60.0, 15.0);
    const ImportResult result = placedOutlines(traced(frame(), settings), {});
    QVERIFY(std::abs(boundsOf(result).width() - 40.0) < 0.01);
    QVERIFY(std::abs(boundsOf(result).height() - 10.0) < 0.01);
}

void ImageTraceTest::size_outside_the_limits_is_refused() {
    for (const QSizeF size :
         {QSizeF(0.001, 10.0), QSizeF(10.0, 20000.0), QSizeF(10.0, qInf()), QSizeF(10.0, qQNaN())}) {
        TraceSettings settings;
        settings.sizeMm = size;
        const TracedImage result = traced(frame(), settings);
        QVERIFY(!result.ok());
        QVERIFY(!result.error.isEmpty());
    }
}

void ImageTraceTest::objects_get_the_current_pen() {
    ImportOptions options;
    options.pen = 7;
    const ImportResult result = importImage(saved(frame()), options);
    QCOMPARE(result.objects.front()->pen(), 7);
}

void ImageTraceTest::page_placement_keeps_the_margin() {
    QImage image = blank(300, 300);
    fillRect(image, {0, 0, 100, 100});
    ImportOptions options;
    options.placement = ImportPlacement::CenterPage;
    options.center = {5.0, 5.0};
    const Box box = boundsOf(importImage(saved(image), options));
    QVERIFY(std::abs(box.minX + 10.0) < 0.01);
    QVERIFY(std::abs(box.maxY - 20.0) < 0.01);
}

void ImageTraceTest::threshold_parts_the_greys() {
    QImage image = blank(100, 100, qRgb(200, 200, 200));
    fillRect(image, {20, 20, 40, 40}, qRgb(120, 120, 120));
    const ImageRead read = readImage(saved(image), {});
    QVERIFY(read.image);
    const int threshold = bestThreshold(*read.image, false);
    QCOMPARE(threshold, 160); // the middle of all that part them
    const ImportResult result = imported(image);
    QVERIFY(std::abs(boundsOf(result).width() - 4.0) < 0.01);
}

void ImageTraceTest::threshold_can_be_entered() {
    QImage image = blank(100, 100);
    fillRect(image, {10, 10, 20, 20}, qRgb(40, 40, 40));
    fillRect(image, {50, 50, 40, 40}, qRgb(150, 150, 150));
    TraceSettings settings;
    settings.threshold = 100;
    QCOMPARE(int(traced(image, settings).outlines.size()), 1);
    settings.threshold = 200;
    QCOMPARE(int(traced(image, settings).outlines.size()), 2);
}

void ImageTraceTest::inverted_picture_gives_the_light_parts() {
    TraceSettings settings;
    settings.invert = true;
    const ImportResult result = placedOutlines(traced(frame(), settings), {});
    QCOMPARE(int(result.objects.size()), 2); // the margin, and the hole
    QVERIFY(std::abs(boundsOf(result).width() - 30.0) < 0.01);
    double area = 0.0;
    for (const ObjectPtr& object : result.objects)
        area += areaOf(*object);
    QVERIFY(std::abs(area - 600.0) < 1.0);
}

void ImageTraceTest::transparent_parts_are_never_marked_data() {
    QTest::addColumn<QColor>("color");
    QTest::addColumn<bool>("invert");
    QTest::newRow("black sign") << QColor(Qt::black) << false;
    QTest::newRow("white sign inverted") << QColor(Qt::white) << true;
    QTest::newRow("grey sign") << QColor(100, 100, 100) << false;
}

void ImageTraceTest::transparent_parts_are_never_marked() {
    QFETCH(QColor, color);
    QFETCH(bool, invert);
    QImage image = blank(300, 300, qRgba(0, 0, 0, 0));
    fillRect(image, {50, 50, 200, 200}, color.rgba());
    TraceSettings settings;
    settings.invert = invert;
    const ImportResult result = placedOutlines(traced(image, settings), {});
    QCOMPARE(int(result.objects.size()), 1);
    QVERIFY(std::abs(boundsOf(result).width() - 20.0) < 0.01);
}

void ImageTraceTest::specks_are_left_out() {
    QImage image = frame();
    fillRect(image, {10, 10, 3, 3});
    TraceSettings settings;
    settings.despeckle = 8;
    QCOMPARE(int(traced(image, settings).outlines.size()), 2);
    settings.despeckle = 9;
    QCOMPARE(int(traced(image, settings).outlines.size()), 1);
}

void ImageTraceTest::smoothness_zero_gives_corners_alone() {
    QImage image = blank(300, 300);
    fillDisc(image, {150.0, 150.0}, 100.0);
    TraceSettings settings;
    settings.smoothness = 0.0;
    const TracedImage corners = traced(image, settings);
    QVERIFY(corners.ok());
    QVERIFY(!corners.outlines.front().verbs.contains(PathVerb::Cubic));
    settings.smoothness = kMostSmoothness;
    QVERIFY(!traced(frame(), settings).outlines.front().verbs.contains(PathVerb::Line));
}

void ImageTraceTest::optimising_saves_curves() {
    QImage image = blank(300, 300);
    fillDisc(image, {150.0, 150.0}, 100.0);
    TraceSettings settings;
    const qint64 optimised = traced(image, settings).points;
    settings.optimise = false;
    const qint64 plain = traced(image, settings).points;
    QVERIFY2(optimised < plain, qPrintable(QStringLiteral("%1 %2").arg(optimised).arg(plain)));
}

/// A JPEG with an orientation as a camera writes it: row 0 is on the right of what was seen.
void ImageTraceTest::turned_photograph_stands_upright() {
    QImage image = blank(300, 200);
    fillRect(image, {20, 20, 60, 40});
    const QString path = saved(image, "picture.jpg");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    const QByteArray tiff = QByteArray::fromHex("4d4d002a00000008" // big endian, first directory at 8
                                                "0001"             // one entry: orientation, short, 1, value 6
                                                "0112000300000001"
                                                "00060000"
                                                "00000000");
    QByteArray exif = QByteArray("Exif\0\0", 6) + tiff;
    QByteArray segment("\xff\xe1");
    segment.append(char(0)).append(char(exif.size() + 2)).append(exif);
    bytes.insert(20, segment); // behind the JFIF header
    file.seek(0);
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    file.close();
    ImportOptions options;
    options.placement = ImportPlacement::CenterPage;
    const ImportResult result = importImage(path, options);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(result.pageSize, QSizeF(20.0, 30.0));
    const Box box = boundsOf(result); // its top left has come to the top right
    QVERIFY2(std::abs(box.maxX - 8.0) < 0.05 && std::abs(box.maxY - 13.0) < 0.05,
             qPrintable(QStringLiteral("%1 %2").arg(box.maxX).arg(box.maxY)));
    QVERIFY(std::abs(box.width() - 4.0) < 0.05);
}

void ImageTraceTest::blank_picture_is_told() {
    const ImportResult result = imported(blank(100, 100));
    QVERIFY(!result.ok());
    QVERIFY(result.objects.empty());
    QVERIFY2(result.error.contains(QStringLiteral("图片中没有可描摹的区域")), qPrintable(result.error));
}

void ImageTraceTest::refused_files_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << "文件不是PNG";
    QTest::newRow("text") << QByteArray("hello, this is no picture") << "文件不是PNG";
    QTest::newRow("other kind") << QByteArray("GIF89a\1\0\1\0\0\0\0;") << "文件不是PNG";
    QTest::newRow("head alone") << QByteArray("\x89PNG\r\n\x1a\n") << "图片文件已损坏";
    QImage large(8000, 7000, QImage::Format_Mono);
    large.fill(0);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    large.save(&buffer, "png");
    QTest::newRow("56 million pixels") << bytes << "图片过大,最多5000万像素 (8000 x 7000)";
    // the extents alone: a decoder that believed them would ask for 8 EiB
    QByteArray huge = bytes;
    for (int i = 16; i < 24; ++i)
        huge[i] = i % 4 == 0 ? 0x7f : char(0xff);
    QTest::newRow("huge extents") << huge << "图片";
}

void ImageTraceTest::refused_files() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const QString path = m_folder->filePath("picture.png");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    const ImportResult result = importImage(path);
    QVERIFY(result.objects.empty());
    QVERIFY2(result.error.contains(reason), qPrintable(result.error));
    QVERIFY(importImage(m_folder->filePath("none.png")).error.contains(QStringLiteral("文件无法打开")));
}

void ImageTraceTest::cut_file_is_refused_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("png") << QByteArray("picture.png");
    QTest::newRow("jpeg") << QByteArray("picture.jpg");
    QTest::newRow("bmp") << QByteArray("picture.bmp");
}

void ImageTraceTest::cut_file_is_refused() {
    QFETCH(QByteArray, name);
    const QString path = saved(frame(), name.constData());
    QFile file(path);
    const qint64 size = file.size();
    for (const double share : {0.9, 0.5, 0.1, 0.01}) {
        QVERIFY(file.resize(qint64(double(size) * share)));
        const ImportResult result = importImage(path);
        QVERIFY2(!result.ok() && result.objects.empty(), qPrintable(QString::number(share)));
    }
}

void ImageTraceTest::hostile_pictures_are_refused_in_time_data() {
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("kind");
    QTest::newRow("noise") << QSize(3000, 3000) << 0;
    QTest::newRow("single pixels in a checker") << QSize(2000, 2000) << 1;
    QTest::newRow("bars beside specks") << QSize(20000, 300) << 2;
}

void ImageTraceTest::hostile_pictures_are_refused_in_time() {
    QFETCH(QSize, size);
    QFETCH(int, kind);
    QRandomGenerator random(7);
    QImage image(size, QImage::Format_Grayscale8);
    for (int y = 0; y < size.height(); ++y) {
        uchar* line = image.scanLine(y);
        for (int x = 0; x < size.width(); ++x) {
            bool dark = (x + y) % 2 == 0;
            if (kind == 0)
                dark = random.bounded(2) == 0;
            else if (kind == 2)
                dark = x % 4 < 2 && (x < size.width() / 2 || y % 4 < 2);
            line[x] = dark ? 0 : 255;
        }
    }
    const QString path = saved(image);
    const double before = secondsOfChildren();
    const ImportResult result = importImage(path);
    const double spent = secondsOfChildren() - before;
    qInfo("%s: %.2f s, %s", QTest::currentDataTag(), spent, qPrintable(result.error));
    QVERIFY(!result.ok());
    QVERIFY(result.error.contains(QStringLiteral("图片")));
    QVERIFY(spent < 5.0);
}

void ImageTraceTest::cancelled_tracing_ends_at_once() {
    QImage image(2000, 2000, QImage::Format_Grayscale8);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.scanLine(y)[x] = (x + y) % 2 ? 255 : 0;
    }
    const ImageRead read = readImage(saved(image), {});
    QVERIFY(read.image);
    std::atomic<bool> cancelled{true};
    TracerLimit limit;
    limit.cancelled = &cancelled;
    const TracedImage result = traceImage(*read.image, {}, limit);
    QVERIFY(result.cancelled);
    QVERIFY(result.error.isEmpty());
    QVERIFY(!limit.deadline.hasExpired());
}

void ImageTraceTest::view_imports_a_picture_on_its_current_pen() {
    QRulerView view(nullptr);
    view.SetCurrentLayer(4);
    QString error;
    QVERIFY2(view.ImportVectorFile(saved(frame(), "PICTURE.PNG"), error), qPrintable(error));
    QCOMPARE(view.GetSelectedToolCnt(), 1);
    QCOMPARE(view.GetToolLayer(0), 4);
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0, angle = 0.0;
    view.GetSelectObjPos(x, y, width, height, angle);
    QVERIFY(std::abs(width - 20.0) < 0.01 && std::abs(height - 20.0) < 0.01);
    QVERIFY(!view.ImportVectorFile(saved(blank(50, 50)), error));
    QVERIFY2(error.contains(QStringLiteral("图片中没有可描摹的区域")), qPrintable(error));
    view.Undo();
    int objects = 0, vertices = 0;
    view.GetDocStatistics(objects, vertices);
    QCOMPARE(objects, 0);
}

QTEST_MAIN(ImageTraceTest)
#include "tst_imagetrace.moc"
