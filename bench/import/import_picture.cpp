// SPDX-License-Identifier: MIT
// Imports a drawing as the program does and writes it as a picture: .png at 96 dots to the inch with smooth lines, or
// .pdf with its lines as they are.
//
//   import_picture DRAWING PICTURE
#include "simengine/document/markobject.h"
#include "simengine/importers/importers.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <cstdio>

namespace {

constexpr double kDotsPerMm = 96.0 / 25.4;

void draw(QPainter& painter, const sim::ImportResult& drawing, const sim::Box& box, double scale) {
    painter.setWindow(painter.viewport());
    painter.scale(scale, -scale);
    painter.translate(-box.minX, -box.maxY);
    QPen pen(Qt::black);
    pen.setWidth(0);
    std::vector<sim::FlatLine> lines;
    for (const sim::ObjectPtr& object : drawing.objects) {
        pen.setColor(drawing.penColors.value(object->pen(), QColor(Qt::black)));
        painter.setPen(pen);
        if (const auto* line = std::get_if<sim::PolylineShape>(&object->shape());
            line && object->transform().isIdentity() && !line->closed) {
            painter.drawPolyline(line->points);
            continue;
        }
        lines = object->flattened();
        for (const sim::FlatLine& line : lines)
            painter.drawPolyline(line.points);
    }
}

int fail(const QString& reason) {
    std::fprintf(stderr, "%s\n", qPrintable(reason));
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    // a drawing without texts needs no window system, and a picture of lines neither
    QCoreApplication application(argc, argv);
    if (argc != 3)
        return fail(QStringLiteral("import_picture DRAWING PICTURE"));
    const QString target = QString::fromLocal8Bit(argv[2]);
    const sim::ImportResult drawing = sim::importDrawing(QString::fromLocal8Bit(argv[1]));
    if (!drawing.ok())
        return fail(drawing.error);
    sim::Box box;
    for (const sim::ObjectPtr& object : drawing.objects)
        box.add(object->bounds());
    if (target.endsWith(QLatin1String(".pdf"))) {
        QPdfWriter writer(target);
        writer.setPageSize(QPageSize(QSizeF(box.width(), box.height()), QPageSize::Millimeter));
        writer.setPageMargins(QMarginsF());
        writer.setResolution(1200);
        QPainter painter(&writer);
        draw(painter, drawing, box, 1200.0 / 25.4);
        return painter.end() ? 0 : fail(QStringLiteral("no picture"));
    }
    QImage image(int(drawing.pageSize.width() * kDotsPerMm) + 1, int(drawing.pageSize.height() * kDotsPerMm) + 1,
                 QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter, drawing, box, kDotsPerMm);
    painter.end();
    return image.save(target) ? 0 : fail(QStringLiteral("no picture"));
}
