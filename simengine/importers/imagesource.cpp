// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/imagesource.h"

#include "engine/languagemanager.h"
#include "simengine/importers/svglength.h"
#include "simengine/importers/tracewire.h"

#include <QFileInfo>
#include <array>

namespace sim {

QSizeF ImageSource::sizeMm() const {
    if (dotsPerMm.isEmpty())
        return QSizeF(width, height) * kMmPerSvgPixel;
    return {width / dotsPerMm.width(), height / dotsPerMm.height()};
}

ImageRead readImage(const QString& path, const TracerLimit& limit) {
    TracerProcess process(limit);
    wire::ImageHead head;
    auto image = std::make_shared<ImageSource>();
    if (process.start(wire::kDecode, {QFileInfo(path).absoluteFilePath()}) && process.read(&head, sizeof(head)) &&
        head.magic == wire::kMagic) {
        const std::size_t pixels = static_cast<std::size_t>(head.width) * static_cast<std::size_t>(head.height);
        image->width = head.width;
        image->height = head.height;
        image->dotsPerMm = QSizeF(head.dotsPerMmX, head.dotsPerMmY);
        image->grey.resize(pixels);
        image->alpha.resize(head.alpha ? pixels : 0);
        if (process.read(image->grey.data(), image->grey.size()) &&
            process.read(image->alpha.data(), image->alpha.size()))
            return {image, {}, head.seconds};
    }
    return {nullptr, process.fault(), 0.0};
}

int bestThreshold(const ImageSource& image, bool invert) {
    constexpr int kGreys = 256;
    std::array<double, kGreys> counts{};
    for (std::size_t i = 0; i < image.grey.size(); ++i)
        counts[static_cast<std::size_t>(image.value(i, invert))] += 1.0;
    double all = 0.0, sum = 0.0;
    for (int grey = 0; grey < kGreys; ++grey) {
        all += counts[static_cast<std::size_t>(grey)];
        sum += grey * counts[static_cast<std::size_t>(grey)];
    }
    double below = 0.0, sumBelow = 0.0, best = 0.0;
    int first = kGreys / 2, last = kGreys / 2;
    for (int threshold = 1; threshold < kGreys; ++threshold) {
        below += counts[static_cast<std::size_t>(threshold - 1)];
        sumBelow += (threshold - 1) * counts[static_cast<std::size_t>(threshold - 1)];
        const double above = all - below;
        if (below <= 0.0 || above <= 0.0)
            continue;
        const double distance = sumBelow / below - (sum - sumBelow) / above;
        const double variance = below / all * (above / all) * distance * distance;
        if (variance > best * (1.0 + 1e-12)) {
            best = variance;
            first = threshold;
        }
        if (variance >= best * (1.0 - 1e-12))
            last = threshold;
    }
    return (first + last) / 2;
}

} // namespace sim
