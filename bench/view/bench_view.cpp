// SPDX-License-Identifier: MIT
// How long the view takes for a frame of a large document, beside a bare QPainter that draws the same polylines, mapped
// by a matrix, into a picture of the same size in the same run; and how long the window takes to show another of two
// open documents, beside a bare pile of two widgets that draw the same lines. A frame is to be there within 50 ms.
#include "bench/support/newroot.h"
#include "bench/support/threadms.h"
#include "engine/qrulerview.h"
#include "shell/mainwindow.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/gridpainter.h"
#include "simengine/view/qrulerviewaccess.h"
#include "simengine/view/viewsession.h"

#include <QDir>
#include <QPainter>
#include <QStackedWidget>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

using namespace sim;

namespace {

constexpr int kRounds = 15;
constexpr QSize kSize(1600, 900);
constexpr double kGoal = 50.0;           // ms
constexpr double kLongestSeries = 2e3;   // ms
constexpr double kCloser = 20.0;         // magnification of the second view
const QRectF kField(-55, -55, 110, 110); // mm

double medianMs(const std::function<void()>& work) {
    std::vector<double> times;
    double sum = 0.0;
    // What takes seconds needs no median.
    for (int i = 0; i < kRounds && sum < kLongestSeries; ++i) {
        const double begin = bench::threadMs();
        work();
        times.push_back(bench::threadMs() - begin);
        sum += times.back();
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void print(const char* name, const char* what, double own, double bare) {
    std::printf("%-36s %-17s %8.2f ms   %8.2f ms   ratio %5.2f   %s\n", name, what, own, bare, own / bare,
                own <= kGoal ? "within 50 ms" : "above 50 ms");
}

ObjectPtr lineObject(QPolygonF points, int pen) {
    ObjectData data;
    PolylineShape shape;
    shape.points = std::move(points);
    data.shape = shape;
    data.pen = pen;
    return MarkObject::make(std::move(data));
}

/// One spiral over the field.
ObjectList spiral(int vertices) {
    QPolygonF points;
    for (int i = 0; i < vertices; ++i) {
        const double t = static_cast<double>(i) / vertices;
        const double angle = t * 2.0 * M_PI * 60.0;
        points << QPointF(48.0 * t * std::cos(angle), 48.0 * t * std::sin(angle));
    }
    return {lineObject(points, 1)};
}

/// Small waves in rows and columns.
ObjectList waves(int objects, int vertices) {
    ObjectList list;
    const int side = static_cast<int>(std::ceil(std::sqrt(objects)));
    const double pitch = 96.0 / side;
    for (int i = 0; i < objects; ++i) {
        QPolygonF points;
        const int row = i / side;
        const QPointF corner(-48.0 + (i % side) * pitch, -48.0 + row * pitch);
        for (int k = 0; k < vertices; ++k) {
            const double t = static_cast<double>(k) / vertices;
            points << corner + pitch * QPointF(t * 0.9, 0.45 + 0.4 * std::sin(t * 12.0));
        }
        list.push_back(lineObject(points, i % kLayerCount));
    }
    return list;
}

/// A square of long lines there and back, turned by `degrees`; far more lines than there are rows of pixels.
ObjectList hatch(int lines, double degrees) {
    QPolygonF points;
    const QTransform turned = QTransform().rotate(degrees);
    for (int i = 0; i < lines; ++i) {
        const double y = -34.0 + 68.0 * i / lines;
        points << turned.map(QPointF(i % 2 ? 34 : -34, y)) << turned.map(QPointF(i % 2 ? -34 : 34, y));
    }
    return {lineObject(points, 2)};
}

void drawBare(QPainter& painter, const ObjectList& objects, const QTransform& matrix) {
    for (const ObjectPtr& object : objects) {
        for (const FlatLine& line : object->flattened())
            painter.drawPolyline(matrix.map(line.points));
    }
}

double bareMs(const ObjectList& objects, const ViewTransform& transform) {
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    return medianMs([&] {
        image.fill(Qt::white);
        QPainter painter(&image);
        drawBare(painter, objects, transform.matrix());
    });
}

/// The picture of all objects as the view makes it after each change of the transform.
double viewMs(SceneCache& scene, const ViewTransform& transform) {
    PenColors colors;
    colors.fill(Qt::black);
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    const auto paint = [&] {
        QPainter painter(&image);
        paintGrid(painter, transform, kField);
        ScenePainter(scene, transform, colors).paint(painter, ScenePainter::Part::All);
    };
    paint(); // the first one makes the polylines
    return medianMs(paint);
}

void frames(const char* name, const ObjectList& objects) {
    ViewSession session;
    session.document().edit([&](const DocumentState& state) { return edits::add(state, objects); });
    session.document().select({});
    SceneCache scene;
    scene.setState(session.state());
    ViewTransform transform;
    transform.setViewport(kSize);
    transform.fit(kField, 24.0);
    ViewTransform close = transform;
    close.zoomAbout(QPointF(kSize.width() * 0.6, kSize.height() * 0.5), kCloser);
    const double bare = bareMs(objects, transform);
    print(name, "whole", viewMs(scene, transform), bare);
    print(name, "20 times closer", viewMs(scene, close), bareMs(objects, close));

    CanvasWidget canvas(session, nullptr);
    canvas.resize(kSize);
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    canvas.setViewTransform(transform);
    canvas.render(&image);
    int step = 0;
    const double pan = medianMs([&] {
        ViewTransform moved = canvas.viewTransform();
        moved.panBy({++step % 2 ? 7.0 : -7.0, 3.0});
        canvas.setViewTransform(moved);
        canvas.render(&image);
    });
    print(name, "moved by a finger", pan, bare);
    session.document().selectAll();
    canvas.render(&image);
    const double drag = medianMs([&] {
        canvas.setDragPreview(QTransform::fromTranslate(++step % 5, 2));
        canvas.render(&image);
    });
    print(name, "all dragged", drag, bare);
}

/// Draws its lines anew at each paint, as a widget does that keeps nothing.
class BareCanvas : public QWidget {
public:
    BareCanvas(const ObjectList& objects, const QTransform& matrix)
        : m_objects(objects)
        , m_matrix(matrix) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        drawBare(painter, m_objects, m_matrix);
    }

private:
    ObjectList m_objects;
    QTransform m_matrix;
};

double bareSwitchMs(const ObjectList& first, const ObjectList& second, const ViewTransform& transform) {
    QStackedWidget pile;
    pile.resize(transform.viewport().toSize());
    pile.addWidget(new BareCanvas(first, transform.matrix()));
    pile.addWidget(new BareCanvas(second, transform.matrix()));
    pile.show();
    QCoreApplication::processEvents();
    return medianMs([&] {
        pile.setCurrentIndex(1 - pile.currentIndex());
        QCoreApplication::processEvents();
    });
}

bool store(const QString& path, const ObjectList& objects) {
    QRulerView view(nullptr);
    view.SetFileName(path);
    QRulerViewAccess::session(view).document().edit(
        [&](const DocumentState& state) { return edits::add(state, objects); });
    return view.SaveDoc();
}

/// Counts how often the canvas of a document has been painted.
class PaintCounter : public QObject {
public:
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        m_count += event->type() == QEvent::Paint;
        return false;
    }

private:
    int m_count = 0;
};

/// The window with two documents of the same size, each shown in turn.
bool switching(const QString& root) {
    const ObjectList first = waves(1000, 100);
    const ObjectList second = spiral(100000);
    const QString paths[] = {root + QStringLiteral("/MarkFile/waves.mkf"),
                             root + QStringLiteral("/MarkFile/spiral.mkf")};
    QDir().mkpath(root + QStringLiteral("/MarkFile"));
    if (!store(paths[0], first) || !store(paths[1], second))
        return false;
    MainWindow::InitMainWnd();
    MainWindow* window = MainWindow::Instance();
    window->resize(1920, 1080);
    window->show();
    for (const QString& path : paths)
        window->OpenFile(path);
    QCoreApplication::processEvents();
    PaintCounter painted;
    for (QRulerView* view : window->GetDocs())
        QRulerViewAccess::canvas(*view).installEventFilter(&painted);
    int shown = 0;
    int rounds = 0;
    const auto change = [&] {
        shown = 1 - shown;
        window->SetCurDoc(shown);
        QCoreApplication::processEvents();
        ++rounds;
    };
    change();
    change();
    const int before = painted.count();
    rounds = 0;
    const double own = medianMs(change);
    const bool all = window->GetDocs().size() == 2 && painted.count() - before >= rounds;
    const ViewTransform transform = QRulerViewAccess::canvas(*window->GetActiveView()).viewTransform();
    print("two documents of 100000 vertices", "other one shown", own, bareSwitchMs(first, second, transform));
    MainWindow::ClearMainWnd();
    return all;
}

int run(QString const& root) {
    std::printf("bench_view: time of a frame of %d x %d, median of %d; reference: bare QPainter\n", kSize.width(),
                kSize.height(), kRounds);
    frames("ordinary, 200 objects x 50 vertices", waves(200, 50));
    frames("10000 objects x 100 vertices", waves(10000, 100));
    frames("100000 objects x 10 vertices", waves(100000, 10));
    frames("one spiral of 1000000 vertices", spiral(1000000));
    frames("hatch of 250 lines, level", hatch(250, 0.0));
    frames("hatch of 1000 lines, turned by 30", hatch(1000, 30.0));
    frames("hatch of 20000 lines, level", hatch(20000, 0.0));
    frames("hatch of 20000 lines, turned by 30", hatch(20000, 30.0));
    if (!switching(root)) {
        std::fprintf(stderr, "bench_view: the two documents were not shown in turn\n");
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    return bench::runInNewRoot(argc, argv, run);
}
