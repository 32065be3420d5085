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
/// The lines of a pen are drawn together. They are smoothed within kSmooth, more are drawn as a draft.
class ScenePainter {
public:
    /// How much is drawn in a certain way.
    struct Budget {
        qint64 vertices;
        double effort; ///< as DeviceLines counts it
    };
    static constexpr Budget kSmooth{60000, 600000.0};
    static constexpr Budget kHalo{6000, 100000.0}; ///< wide pens are slow

    enum class Part { All, Unselected };

    ScenePainter(SceneCache& cache, const ViewTransform& transform, const PenColors& colors);

    /// The objects in their pens' colours. Gives the number of vertices drawn.
    qint64 paint(QPainter& painter, Part part) const;
    /// The selected objects, marked as selected, `moved` applied to them in mm. Gives the number of vertices drawn.
    qint64 paintSelection(QPainter& painter, const QTransform& moved = QTransform()) const;
    /// The outline of one object in one colour and width.
    void paintOutline(QPainter& painter, int index, const QColor& color, double width) const;

private:
    /// Colour of a pen, or of objects that are not marked for numbers above the pens.
    QColor colorOf(int key) const;

    SceneCache& m_cache;
    ViewTransform m_transform;
    PenColors m_colors;
};

} // namespace sim
