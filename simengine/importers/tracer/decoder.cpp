// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/tracer/decoder.h"

#include "simengine/importers/tracer/completeness.h"
#include "simengine/importers/tracer/density.h"
#include "simengine/importers/tracer/streams.h"
#include "simengine/importers/tracewire.h"

#include <QFile>
#include <QImageReader>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <new>
#include <vector>

namespace sim {

namespace {

using Bytes = std::vector<std::uint8_t>;

void say(const QString& text) {
    std::fputs(text.toUtf8().constData(), stderr);
}

/// Grey and opacity of a picture, without a second picture in full colour beside it.
void takeRows(const QImage& image, Bytes& grey, Bytes& alpha) {
    constexpr int kRows = 32;
    const auto width = static_cast<std::size_t>(image.width());
    grey.resize(width * static_cast<std::size_t>(image.height()));
    if (image.hasAlphaChannel())
        alpha.resize(grey.size());
    for (int top = 0; top < image.height(); top += kRows) {
        const int rows = qMin(kRows, image.height() - top);
        const QImage part = image.copy(0, top, image.width(), rows).convertToFormat(QImage::Format_ARGB32);
        if (part.isNull())
            throw std::bad_alloc();
        for (int row = 0; row < rows; ++row) {
            const auto* line = reinterpret_cast<const QRgb*>(part.constScanLine(row));
            const std::size_t begin = static_cast<std::size_t>(top + row) * width;
            for (std::size_t x = 0; x < width; ++x) {
                grey[begin + x] = static_cast<std::uint8_t>(qGray(line[x]));
                if (!alpha.empty())
                    alpha[begin + x] = static_cast<std::uint8_t>(qAlpha(line[x]));
            }
        }
    }
}

/// The picture as its camera was held.
void turn(Bytes& bytes, QSize size, QImageIOHandler::Transformations how) {
    if (bytes.empty() || how == QImageIOHandler::TransformationNone)
        return;
    const bool mirror = how & QImageIOHandler::TransformationMirror;
    const bool flip = how & QImageIOHandler::TransformationFlip;
    const bool quarter = how & QImageIOHandler::TransformationRotate90;
    const auto width = static_cast<std::size_t>(size.width());
    const auto height = static_cast<std::size_t>(size.height());
    Bytes turned(bytes.size());
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const std::size_t toX = mirror ? width - 1 - x : x;
            const std::size_t toY = flip ? height - 1 - y : y;
            const std::size_t to = quarter ? toX * height + (height - 1 - toY) : toY * width + toX;
            turned[to] = bytes[y * width + x];
        }
    }
    bytes.swap(turned);
}

bool writeImage(QSize size, QSizeF dots, const Bytes& grey, const Bytes& alpha) {
    wire::ImageHead head;
    head.width = size.width();
    head.height = size.height();
    head.alpha = alpha.empty() ? 0 : 1;
    head.dotsPerMmX = dots.isEmpty() ? 0.0 : dots.width();
    head.dotsPerMmY = dots.isEmpty() ? 0.0 : dots.height();
    head.seconds = double(std::clock()) / CLOCKS_PER_SEC;
    return writeRecord(head) && writeAll(grey.data(), grey.size()) && writeAll(alpha.data(), alpha.size()) &&
           std::fflush(stdout) == 0;
}

} // namespace

int decodeImage(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        say(file.errorString());
        return wire::ExitNoFile;
    }
    const QByteArray format = QImageReader::imageFormat(&file);
    if (format != "png" && format != "jpeg" && format != "bmp")
        return wire::ExitNoImage;
    if (!isWhole(file, format)) {
        say(QStringLiteral("the file ends too early"));
        return wire::ExitDamaged;
    }
    QSizeF dots = dotsPerMm(file, format);
    file.seek(0);
    QImageReader reader(&file, format);
    QSize size = reader.size();
    if (qint64(size.width()) * size.height() > kMaxPixels) {
        say(QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()));
        return wire::ExitManyPixels;
    }
    const QImageIOHandler::Transformations how = reader.transformation();
    QImage image = reader.read();
    if (image.isNull()) {
        say(reader.errorString());
        return wire::ExitDamaged;
    }
    size = image.size();
    Bytes grey, alpha;
    takeRows(image, grey, alpha);
    image = QImage();
    turn(grey, size, how);
    turn(alpha, size, how);
    if (how & QImageIOHandler::TransformationRotate90) {
        size.transpose();
        dots.transpose();
    }
    return writeImage(size, dots, grey, alpha) ? wire::ExitDone : wire::ExitBrokenInput;
}

} // namespace sim
