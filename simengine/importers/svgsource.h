// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importresult.h"

#include <QByteArray>
#include <QRectF>
#include <QTransform>

namespace sim {

/// A drawing brought into the form that the renderer reads rightly: lengths in pixels, inner drawings as groups, only
/// elements that it draws.
struct SvgSource {
    QByteArray xml;
    QRectF viewBox;    ///< of the root, in user units
    QTransform toPage; ///< user units to mm on the page, y downwards
    QSizeF pageSize;   ///< mm
    QString error;     ///< set when the file cannot be taken
    QVector<ImportSkip> skipped;
    int texts = 0; ///< text elements, whether they are in `xml` or not
};

/// What becomes of texts.
enum class SvgTexts { Draw, LeaveOut };

/// Files larger than this are refused.
constexpr qint64 kMaxSvgBytes = qint64(128) << 20;

/// Elements inside elements at most.
constexpr int kMaxSvgDepth = 200;

SvgSource readSvgSource(const QByteArray& bytes, SvgTexts texts = SvgTexts::Draw);

/// How user units come to lie in a viewport of the given size: the rules of viewBox and preserveAspectRatio.
/// `preserve` empty stands for the default "xMidYMid meet".
QTransform viewBoxTransform(const QRectF& viewBox, const QSizeF& viewport, const QString& preserve);

} // namespace sim
