// SPDX-License-Identifier: MIT
// Editing the nodes of a path of 100,000 curves: what each gesture costs, beside a bare QPainter that draws the same
// curves once into a picture of the same size in the same run. A frame of a drag is to be there within 50 ms.
#include "bench/support/newroot.h"
#include "bench/support/threadms.h"
#include "engine/qrulerview.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/nodeedittool.h"
#include "simengine/view/qrulerviewaccess.h"
#include "simengine/view/viewsession.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

using namespace sim;

namespace {

constexpr int kNodes = 100000;
constexpr int kRounds = 15;
constexpr QSize kSize(1600, 900);
constexpr double kGoal = 50.0; // ms

double medianMs(const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < kRounds; ++i) {
        const double begin = bench::threadMs();
        work();
        times.push_back(bench::threadMs() - begin);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void print(const char* what, double own, double bare) {
    std::printf("%-44s %8.2f ms   %8.2f ms   ratio %5.2f   %s\n", what, own, bare, own / bare,
                own <= kGoal ? "within 50 ms" : "above 50 ms");
}

PathShape spiral() {
    PathShape path;
    for (int i = 0; i < kNodes; ++i) {
        const double angle = i * 0.01;
        const QPointF at = (4.0 + i * 0.0004) * QPointF(std::cos(angle), std::sin(angle));
        const QPointF along = at.x() == 0.0 && at.y() == 0.0 ? QPointF() : QPointF(-at.y(), at.x()) * 0.01 / 3.0;
        if (i == 0)
            path.moveTo(at);
        else
            path.cubicTo(path.points.last() + along, at - along, at);
    }
    return path;
}

double bareMs(const PathShape& path, const QTransform& matrix) {
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    return medianMs([&] {
        image.fill(Qt::white);
        QPainter painter(&image);
        std::vector<FlatLine> lines;
        flattenShape(Shape(path), QTransform(), lines);
        for (const FlatLine& line : lines)
            painter.drawPolyline(matrix.map(line.points));
    });
}

void mouse(CanvasWidget& canvas, QEvent::Type type, const QPointF& place, Qt::MouseButton button,
           Qt::MouseButtons held) {
    QMouseEvent event(type, place, canvas.mapToGlobal(place.toPoint()), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&canvas, &event);
}

void drags(CanvasWidget& canvas, const char* what, const char* released, const QPointF& from, double bare) {
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    mouse(canvas, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    int step = 0;
    print(what, medianMs([&] {
              mouse(canvas, QEvent::MouseMove, from + QPointF(20.0 + ++step, 15.0), Qt::NoButton, Qt::LeftButton);
              canvas.render(&image);
          }),
          bare);
    const double begin = bench::threadMs();
    mouse(canvas, QEvent::MouseButtonRelease, from + QPointF(20.0 + step, 15.0), Qt::LeftButton, Qt::NoButton);
    canvas.render(&image);
    print(released, bench::threadMs() - begin, bare);
}

int run(QString const&) {
    ViewSession session;
    const PathShape path = spiral();
    session.addShape(path);
    CanvasWidget canvas(session, nullptr);
    canvas.resize(kSize);
    ViewTransform transform;
    transform.setViewport(kSize);
    transform.fit(QRectF(-50, -50, 100, 100), 24.0);
    canvas.setViewTransform(transform);
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    canvas.render(&image);
    const double bare = bareMs(path, transform.matrix());
    std::printf("%d nodes; each line: this program, a bare QPainter, their ratio\n", kNodes);
    print("begin to edit the nodes", medianMs([&] { editNodes(canvas); }), bare);
    canvas.render(&image);
    const QPointF last = transform.toPixel(path.points.last());
    int step = 0;
    print("pointer moved over the nodes", medianMs([&] {
              mouse(canvas, QEvent::MouseMove, last + QPointF(-3.0 * ++step, 0.0), Qt::NoButton, Qt::NoButton);
              canvas.render(&image);
          }),
          bare);
    drags(canvas, "one node dragged, a frame", "one node released", last, bare);
    auto& tool = dynamic_cast<NodeEditTool&>(canvas.tool());
    QKeyEvent all(QEvent::KeyPress, Qt::Key_A, Qt::ControlModifier);
    tool.key(all);
    const QPointF now = transform.toPixel(tool.path().contours().front().nodes.back().at);
    drags(canvas, "all nodes dragged, a frame", "all nodes released", now, bare);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    return bench::runInNewRoot(argc, argv, run);
}
