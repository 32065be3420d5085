// SPDX-License-Identifier: MIT
// A document of a million vertices: saving and opening it beside a bare writing (with a sync) and reading of as many
// bytes, the memory that it takes in a process of its own, a full repaint beside a bare QPainter::drawLines of the same
// segments, and the frames while two fingers move the view of a shown window.
#include "bench/support/threadms.h"
#include "drawings.h"
#include "engine/qrulerview.h"
#include "figures.h"
#include "simengine/document/mkfcodec.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/qrulerviewaccess.h"
#include "simengine/view/scenedrawer.h"
#include "simengine/view/viewsession.h"
#include "support/approot.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTouchDevice>
#include <QTouchEvent>

#include <cmath>
#include <cstdio>
#include <cstdlib>

using namespace sim;
using namespace bench;

namespace {

constexpr int kRounds = 9;
constexpr int kPanFrames = 500;
constexpr double kVertices = 1e6;
constexpr QSize kSize(1600, 900);
constexpr double kMostFileRatio = 3.0;
constexpr double kMostPaintRatio = 1.3;
constexpr double kMostBytes = 120.0; // a vertex
constexpr double kFrame = 16.7;      // ms
constexpr int kAbove = 3;            // exit code of the process that measures the memory

// Not beside the temporary files of others: those may be kept in memory, where a sync costs nothing.
QString folder() {
    return QDir::currentPath();
}

void require(bool done, const char* what) {
    if (done)
        return;
    std::fprintf(stderr, "bench_document: %s failed\n", what);
    std::exit(1);
}

bool fileFigures(const ObjectList& objects, const QString& own, const QString& bare) {
    Document document;
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(objects);
    document.setContent(content);
    document.setFileName(own);
    require(saveDocument(document, nullptr), "saving");
    const qint64 bytes = QFileInfo(own).size();
    const double save = medianMs(kRounds, [&] { require(saveDocument(document, nullptr), "saving"); });
    const double write = medianMs(kRounds, [&] { require(writeSynced(bare, bytes), "writing"); });
    Document opened;
    opened.setFileName(own);
    const auto open = [&] { require(loadDocument(opened, nullptr), "opening"); };
    const auto read = [&] { require(readWhole(bare) == bytes, "reading"); };
    // The document that was there before goes with the opening, as it does in the program.
    open();
    const double openWarm = medianMs(kRounds, open);
    const double readWarm = medianMs(kRounds, read);
    std::vector<double> openCold, readCold;
    for (int i = 0; i < kRounds; ++i) {
        forget(own);
        openCold.push_back(wallMs(open));
        forget(bare);
        readCold.push_back(wallMs(read));
    }
    std::printf("  file of %.1f MB\n", double(bytes) / 1e6);
    // The bound is on what writing, syncing and reading take together; what each takes beside its own half is told.
    const double both = write + quantile(readCold, 0.5);
    bool kept = printRatio("save", save, "write, sync and read", both, kMostFileRatio);
    kept &= printRatio("open, from the disk", quantile(openCold, 0.5), "write, sync and read", both, kMostFileRatio);
    printRatio("save", save, "write and sync", write, kMostFileRatio);
    printRatio("open, from the disk", quantile(openCold, 0.5), "read, from the disk", quantile(readCold, 0.5),
               kMostFileRatio);
    printRatio("open, from memory", openWarm, "read, from memory", readWarm, kMostFileRatio);
    return kept;
}

QVector<QLineF> segmentsOf(const ObjectList& objects, const QTransform& matrix) {
    QVector<QLineF> segments;
    for (const ObjectPtr& object : objects) {
        for (const FlatLine& line : object->flattened()) {
            const QPolygonF pixels = matrix.map(line.points);
            for (int i = 1; i < pixels.size(); ++i)
                segments.append(QLineF(pixels[i - 1], pixels[i]));
        }
    }
    return segments;
}

bool repaintFigure(const StatePtr& state, const ViewTransform& transform, const QRectF& field) {
    const QVector<QLineF> segments = segmentsOf(*state->objects, transform.matrix());
    QImage image(kSize, QImage::Format_RGB32);
    const double bare = medianMs(kRounds, [&] {
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.drawLines(segments);
    });
    SceneOrder order;
    order.state = state;
    order.transform = transform;
    order.colors.fill(Qt::black);
    order.fieldMm = field;
    order.pixels = kSize;
    SceneCache cache;
    drawScene(cache, order); // the first one makes the polylines
    const double own = medianMs(kRounds, [&] { drawScene(cache, order); });
    const bool kept = printRatio("full repaint", own, "drawLines", bare, kMostPaintRatio);
    std::printf("  %-26s %9.1f ns a segment; drawLines %.1f ns\n", "", own * 1e6 / segments.size(),
                bare * 1e6 / segments.size());
    return kept;
}

/// Notes when the canvas has been painted.
class PaintWatch : public QObject {
public:
    bool painted = false;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        painted = painted || event->type() == QEvent::Paint;
        return false;
    }
};

QTouchEvent touch(QTouchDevice& device, QEvent::Type type, Qt::TouchPointState state, const QPointF& at) {
    QList<QTouchEvent::TouchPoint> points;
    for (int finger = 0; finger < 2; ++finger) {
        QTouchEvent::TouchPoint point(finger);
        point.setState(state);
        point.setPos(at + QPointF(finger * 120.0, 0.0));
        points.append(point);
    }
    return QTouchEvent(type, &device, Qt::NoModifier, state, points);
}

/// Two fingers go to and fro; each frame is the time from a touch to the end of the painting that follows it.
bool panFigure(CanvasWidget& canvas) {
    QTouchDevice device;
    device.setType(QTouchDevice::TouchScreen);
    PaintWatch watch;
    canvas.installEventFilter(&watch);
    const QPointF middle(kSize.width() / 2.0, kSize.height() / 2.0);
    QTouchEvent begin = touch(device, QEvent::TouchBegin, Qt::TouchPointPressed, middle);
    QCoreApplication::sendEvent(&canvas, &begin);
    std::vector<double> frames, work;
    for (int i = 0; i < kPanFrames; ++i) {
        const double swing = 40.0;
        const QPointF at = middle + QPointF(swing * std::sin(i * 0.13), swing * std::cos(i * 0.07));
        watch.painted = false;
        const double begun = threadMs();
        frames.push_back(wallMs([&] {
            QTouchEvent move = touch(device, QEvent::TouchUpdate, Qt::TouchPointMoved, at);
            QCoreApplication::sendEvent(&canvas, &move);
            while (!watch.painted)
                QCoreApplication::processEvents();
        }));
        work.push_back(threadMs() - begun);
    }
    QTouchEvent end = touch(device, QEvent::TouchEnd, Qt::TouchPointReleased, middle);
    QCoreApplication::sendEvent(&canvas, &end);
    std::printf("  %-26s %9.2f ms median, %.2f ms longest of %d\n", "frames while panning", quantile(frames, 0.5),
                quantile(frames, 1.0), kPanFrames);
    const bool kept = printBound("99th percentile", quantile(frames, 0.99), "ms", kFrame);
    std::printf("  %-26s %9.2f ms of the thread's own work, 99th percentile\n", "", quantile(work, 0.99));
    return kept;
}

void settle(CanvasWidget& canvas) {
    auto* drawer = canvas.findChild<SceneDrawer*>();
    QElapsedTimer time;
    time.start();
    while (!time.hasExpired(1000) || (drawer && drawer->isBusy() && !time.hasExpired(10000)))
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

bool viewFigures(const ObjectList& objects, double closer) {
    QRulerView view(nullptr);
    Document& document = QRulerViewAccess::session(view).document();
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(objects);
    document.setContent(content);
    view.resize(kSize + QSize(24, 24));
    view.show();
    CanvasWidget& canvas = QRulerViewAccess::canvas(view);
    canvas.fitField();
    canvas.zoomAbout(QPointF(kSize.width() * 0.6, kSize.height() * 0.5), closer);
    settle(canvas);
    std::printf(" view of %d x %d, %g times closer than the whole field\n", kSize.width(), kSize.height(), closer);
    const bool painted = repaintFigure(document.state(), canvas.viewTransform(), canvas.fieldMm());
    return panFigure(canvas) && painted;
}

/// In a process of its own: what opening and showing a document of a file adds to the memory. Gives the exit code.
int memoryFigure(const QString& file) {
    QRulerView view(nullptr);
    view.resize(kSize + QSize(24, 24));
    view.show();
    settle(QRulerViewAccess::canvas(view));
    const qint64 empty = residentBytes();
    view.SetFileName(file);
    require(view.ReadDoc(), "opening");
    const qint64 opened = residentBytes() - empty;
    CanvasWidget& canvas = QRulerViewAccess::canvas(view);
    settle(canvas);
    // As in use: the thread has drawn too.
    canvas.zoomAbout(QPointF(800, 450), 1.3);
    settle(canvas);
    canvas.fitField();
    settle(canvas);
    const qint64 shown = residentBytes() - empty;
    bool kept = printBound("document", double(opened) / kVertices, "bytes a vertex", kMostBytes);
    kept &= printBound("document and its view", double(shown) / kVertices, "bytes a vertex", kMostBytes);
    std::printf("  %-26s %9.2f bytes a vertex, passing\n", "most while opening",
                double(peakBytes() - empty) / kVertices);
    return kept ? 0 : kAbove;
}

bool memoryFigures(const QString& file) {
    QProcess other;
    other.setProcessChannelMode(QProcess::ForwardedChannels);
    other.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--memory"), file});
    require(other.waitForFinished(60000) && other.exitStatus() == QProcess::NormalExit &&
                (other.exitCode() == 0 || other.exitCode() == kAbove),
            "measuring the memory");
    return other.exitCode() == 0;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir root;
    tessera::setApplicationRoot(root.path());
    QApplication app(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    if (app.arguments().value(1) == QStringLiteral("--memory"))
        return memoryFigure(app.arguments().value(2));
    double load[3] = {0, 0, 0};
    ::getloadavg(load, 3);
    std::printf("bench_document: median of %d, load average %.2f at the start\n", kRounds, load[0]);
    const QTemporaryDir files(folder() + QStringLiteral("/bench_document_XXXXXX"));
    require(files.isValid(), "making a folder here");
    bool kept = true;
    for (const Drawing& drawing : drawings()) {
        std::printf("%s\n", drawing.name);
        const QString own = files.filePath(QStringLiteral("own.mkf"));
        {
            const ObjectList objects = drawing.make();
            kept &= fileFigures(objects, own, files.filePath(QStringLiteral("bare")));
        }
        kept &= memoryFigures(own);
        const ObjectList objects = drawing.make();
        kept &= viewFigures(objects, 1.0);
        kept &= viewFigures(objects, 20.0);
    }
    if (!kept)
        std::printf("a bound was not kept\n");
    return kept ? 0 : 1;
}
