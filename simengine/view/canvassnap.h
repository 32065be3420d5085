// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/snapper.h"
#include "simengine/view/viewtransform.h"

class QPainter;

namespace sim {

/// Snapping on a canvas: the station's settings, the targets that are in view, and what is shown of the last answer.
/// Main thread.
class CanvasSnap {
public:
    const SnapSettings& settings() const { return m_settings; }
    void setSettings(const SnapSettings& settings) { m_settings = settings; }

    /// Objects that are moved are no targets for themselves.
    enum class Targets { All, Unselected };

    /// What is to be added to the places, in mm, so that one of them lies on a target; nothing with snapping off. What
    /// it found is shown until the next question or clear().
    QPointF correction(SnapQuery query, const ViewTransform& transform, const StatePtr& state, Targets targets,
                       bool touch);
    void clear() { m_hints.clear(); }
    const std::vector<SnapHint>& hints() const { return m_hints; }
    void paint(QPainter& painter, const ViewTransform& transform) const;

private:
    void collect(const ViewTransform& transform, const StatePtr& state, Targets targets);

    SnapSettings m_settings;
    SnapTargets m_targets;
    StatePtr m_state; ///< of the targets
    Targets m_which = Targets::All;
    ViewTransform m_transform;
    std::vector<SnapHint> m_hints;
};

} // namespace sim
