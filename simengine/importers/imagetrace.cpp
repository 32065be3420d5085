// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/imagetrace.h"

#include "engine/languagemanager.h"
#include "simengine/importers/tracewire.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// Least and most extent of a picture, mm.
constexpr double kLeastSize = 0.01;
constexpr double kMostSize = 10000.0;

bool isSize(double mm) {
    return std::isfinite(mm) && mm >= kLeastSize && mm <= kMostSize;
}

wire::BitmapHead headOf(const ImageSource& image, const TraceSettings& settings) {
    wire::BitmapHead head;
    head.width = image.width;
    head.height = image.height;
    head.despeckle = qBound(0, settings.despeckle, kMostDespeckle);
    head.optimise = settings.optimise ? 1 : 0;
    head.cornerLimit = std::clamp(settings.smoothness, 0.0, kMostSmoothness);
    head.tolerance = std::clamp(settings.tolerance, 0.0, 5.0);
    head.maxCurves = kMaxTracedPoints / 2; // two points of a corner, three of a curve
    return head;
}

/// Appends one contour, which begins where its last curve ends.
void appendContour(const std::vector<wire::Curve>& curves, double scaleX, double scaleY, PathShape& path) {
    const auto point = [&](const wire::Curve& curve, int i) {
        return QPointF(curve.x[i] * scaleX, curve.y[i] * scaleY);
    };
    path.moveTo(point(curves.back(), 2));
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const wire::Curve& curve = curves[i];
        if (!curve.corner) {
            path.cubicTo(point(curve, 0), point(curve, 1), point(curve, 2));
            continue;
        }
        path.lineTo(point(curve, 1));
        if (i + 1 < curves.size()) // closing draws the last line
            path.lineTo(point(curve, 2));
    }
    path.close();
}

bool readOutlines(TracerProcess& process, const QSizeF& scale, TracedImage& result) {
    wire::TraceHead head;
    if (!process.read(&head, sizeof(head)) || head.magic != wire::kMagic)
        return false;
    std::vector<wire::Curve> curves;
    for (std::uint32_t i = 0; i < head.outlines; ++i) {
        wire::OutlineHead outline;
        if (!process.read(&outline, sizeof(outline)) || outline.curves == 0)
            return false;
        curves.resize(outline.curves);
        if (!process.read(curves.data(), curves.size() * sizeof(wire::Curve)))
            return false;
        if (!outline.hole)
            result.outlines.emplace_back();
        if (result.outlines.empty())
            return false;
        appendContour(curves, scale.width(), scale.height(), result.outlines.back());
    }
    return true;
}

} // namespace

std::vector<std::uint64_t> markedPixels(const ImageSource& image, int threshold, bool invert) {
    const auto rowWords = static_cast<std::size_t>(wire::wordsOfRow(image.width));
    const auto width = static_cast<std::size_t>(image.width);
    const auto height = static_cast<std::size_t>(image.height);
    std::vector<std::uint64_t> words(rowWords * height);
    for (std::size_t y = 0; y < height; ++y) {
        const std::size_t begin = y * width;
        std::uint64_t* row = words.data() + (height - 1 - y) * rowWords;
        for (std::size_t x = 0; x < width; ++x) {
            const bool dark = image.value(begin + x, invert) < threshold;
            if (dark != invert)
                row[x / 64] |= std::uint64_t(1) << (63 - x % 64);
        }
    }
    return words;
}

TracedImage traceImage(const ImageSource& image, const TraceSettings& settings, const TracerLimit& limit) {
    TracedImage result;
    result.sizeMm = settings.sizeMm.isEmpty() ? image.sizeMm() : settings.sizeMm;
    if (!isSize(result.sizeMm.width()) || !isSize(result.sizeMm.height())) {
        result.error = LanguageManager::GetLanText("图片尺寸超出0.01至10000 mm的范围");
        return result;
    }
    result.threshold = settings.threshold > 0 ? qMin(settings.threshold, 255) : bestThreshold(image, settings.invert);
    const std::vector<std::uint64_t> words = markedPixels(image, result.threshold, settings.invert);
    const wire::BitmapHead head = headOf(image, settings);
    TracerProcess process(limit);
    const QSizeF scale(result.sizeMm.width() / image.width, result.sizeMm.height() / image.height);
    const bool traced = process.start(wire::kTrace) &&
                        process.write(QByteArray(reinterpret_cast<const char*>(&head), sizeof(head)), words.data(),
                                      words.size() * sizeof(words[0])) &&
                        readOutlines(process, scale, result);
    if (!traced) {
        result.outlines.clear();
        result.cancelled = limit.isCancelled();
        result.error = process.fault();
        return result;
    }
    for (const PathShape& outline : result.outlines)
        result.points += outline.points.size();
    if (result.points > kMaxTracedPoints) {
        result.outlines.clear();
        result.error = LanguageManager::GetLanText("图片细节过多,请降低分辨率或增大去斑点值");
    } else if (result.outlines.empty()) {
        result.error = LanguageManager::GetLanText("图片中没有可描摹的区域,请调整阈值或反相");
    }
    return result;
}

} // namespace sim
