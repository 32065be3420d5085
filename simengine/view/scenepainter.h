// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/marktypes.h"
#include "simengine/view/scenecache.h"
#include "simengine/view/viewtransform.h"

#include <QColor>
#include <array>

class QPainter;

namespace sim {

/// Colours of the pens as the document has them.
using PenColors = std::array<QColor, kLayerCount>;

/// Draws objects of a document into a viewport. Objects outside it are left out and those below a pixel become specks.
/// The lines of a pen are drawn together. Up to kSmoothVertices lines are smoothed, more are not.
class ScenePainter {
public:
    static constexpr qint64 kSmoothVertices = 60000;
    static constexpr qint64 kHaloVertices = 6000; ///< wide pens are slow

    enum class Part { All, Unselected };

    ScenePainter(SceneCache& cache, const ViewTransform& transform, const PenColors& colors);

    /// The objects in their pens' colours. Gives the number of vertices drawn.
    qint64 paint(QPainter& painter, Part part) const;
    /// The selected objects, marked as selected, `moved` applied to them in mm. Gives the number of vertices drawn.
    qint64 paintSelection(QPainter& painter, const QTransform& moved = QTransform()) const;
    /// The outline of one object in one colour and width.
    void paintOutline(QPainter& painter, int index, const QColor& color, double width) const;

private:
    SceneCache& m_cache;
    ViewTransform m_transform;
    PenColors m_colors;
};

} // namespace sim
