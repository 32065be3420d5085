// SPDX-License-Identifier: MIT
#include "codereader.h"

#include <QPainter>
#include <QPainterPath>
#include <dmtx.h>
#include <memory>
#include <zbar.h>

namespace codereader {

namespace {

Found readBars(const QImage& picture) {
    const std::unique_ptr<zbar::zbar_image_scanner_t, void (*)(zbar::zbar_image_scanner_t*)> scanner(
        zbar::zbar_image_scanner_create(), zbar::zbar_image_scanner_destroy);
    zbar::zbar_image_scanner_set_config(scanner.get(), zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 1);
    QByteArray grey;
    for (int y = 0; y < picture.height(); ++y)
        grey.append(reinterpret_cast<const char*>(picture.constScanLine(y)), picture.width());
    const std::unique_ptr<zbar::zbar_image_t, void (*)(zbar::zbar_image_t*)> image(zbar::zbar_image_create(),
                                                                                   zbar::zbar_image_destroy);
    zbar::zbar_image_set_format(image.get(), zbar_fourcc('Y', '8', '0', '0'));
    zbar::zbar_image_set_size(image.get(), unsigned(picture.width()), unsigned(picture.height()));
    zbar::zbar_image_set_data(image.get(), grey.constData(), static_cast<unsigned long>(grey.size()), nullptr);
    zbar::zbar_scan_image(scanner.get(), image.get());
    const zbar::zbar_symbol_t* symbol = zbar::zbar_image_first_symbol(image.get());
    if (!symbol)
        return {};
    return {QString::fromLatin1(zbar::zbar_get_symbol_name(zbar::zbar_symbol_get_type(symbol))),
            QString::fromUtf8(zbar::zbar_symbol_get_data(symbol), int(zbar::zbar_symbol_get_data_length(symbol)))};
}

Found readDataMatrix(const QImage& picture) {
    // 24 bits a pixel, as rows of that need no padding of their own here
    QByteArray pixels;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            pixels.append(3, char(qGray(picture.pixel(x, y))));
    }
    DmtxImage* image = dmtxImageCreate(reinterpret_cast<unsigned char*>(pixels.data()), picture.width(),
                                       picture.height(), DmtxPack24bppRGB);
    DmtxDecode* decode = dmtxDecodeCreate(image, 1);
    DmtxTime limit = dmtxTimeAdd(dmtxTimeNow(), 20000);
    Found found;
    if (DmtxRegion* region = dmtxRegionFindNext(decode, &limit)) {
        if (DmtxMessage* message = dmtxDecodeMatrixRegion(decode, region, DmtxUndefined)) {
            found = {QStringLiteral("DataMatrix"),
                     QString::fromUtf8(reinterpret_cast<const char*>(message->output), int(message->outputIdx))};
            dmtxMessageDestroy(&message);
        }
        dmtxRegionDestroy(&region);
    }
    dmtxDecodeDestroy(&decode);
    dmtxImageDestroy(&image);
    return found;
}

} // namespace

QImage marked(const sim::MarkObject& object, double spot, double margin, double pixelsPerMm, bool light) {
    const sim::Box box = object.bounds();
    const int width = int((box.width() + 2 * margin) * pixelsPerMm);
    const int height = int((box.height() + 2 * margin) * pixelsPerMm);
    QImage picture(width, height, QImage::Format_Grayscale8);
    picture.fill(light ? Qt::black : Qt::white);
    QPainter painter(&picture);
    // the field's y goes up
    painter.setTransform(QTransform(pixelsPerMm, 0, 0, -pixelsPerMm, (margin - box.minX) * pixelsPerMm,
                                    (margin + box.maxY) * pixelsPerMm));
    const QColor colour(light ? Qt::white : Qt::black);
    QPainterPath area;
    area.setFillRule(Qt::OddEvenFill);
    painter.setPen(QPen(colour, spot, Qt::SolidLine, Qt::SquareCap));
    for (const sim::FlatLine& line : object.flattened()) {
        if (line.closed)
            area.addPolygon(line.points);
        else if (line.points.size() == 1)
            painter.fillRect(QRectF(line.points[0] - QPointF(spot, spot) / 2, QSizeF(spot, spot)), colour);
        else
            painter.drawPolyline(line.points);
    }
    painter.fillPath(area, colour);
    return picture;
}

Found read(const QImage& picture) {
    const Found found = readBars(picture);
    return found.kind.isEmpty() ? readDataMatrix(picture) : found;
}

} // namespace codereader
