// SPDX-License-Identifier: MIT
#pragma once

#include "engine/fillparam.h"

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVector>

/// A rectangle to be drawn: its place in mm, x and y being the bottom left corner, its pen and its hatches.
struct DrawnRect {
    QRectF rect;
    int layer = 0; ///< pen, 0 to 19
    QVector<FillParam> fills;
};

/// A text to be drawn in the engine's plainest single-line font, as QRulerView::AddText tells.
struct DrawnText {
    QPointF place; ///< mm, where the base line begins
    QString text;
    double height = 2.0; ///< mm, of a capital letter
    int layer = 0;       ///< pen, 0 to 19
};
