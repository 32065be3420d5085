// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"
#include "simengine/view/sceneitem.h"

#include <unordered_map>

namespace sim {

/// The drawn form of a document's objects, made when an object is first drawn and kept as long as the document has it.
class SceneCache {
public:
    /// Forgets what the state does not contain any more.
    void setState(const StatePtr& state);
    const StatePtr& state() const { return m_state; }

    /// The item of object `index`, fine enough to be drawn at `pixelsPerMm`.
    const SceneItem& item(int index, double pixelsPerMm);
    /// Of what is made from now on; what was cancelled is not whole.
    void setCancellation(const Cancellation* cancellation) { m_cancellation = cancellation; }
    const Cancellation* cancellation() const { return m_cancellation; }
    /// Vertices of the items made so far.
    qint64 vertexCount() const { return m_vertices; }
    int itemCount() const { return static_cast<int>(m_items.size()); }

    /// Distance in mm between a curve and its polyline at a scale: less than a third of a pixel, in steps of 4, so that
    /// small changes of the scale use the same polylines, never coarser than a tenth of a millimetre and never finer
    /// than a job's: close by, the polylines are those that are marked.
    static double toleranceAt(double pixelsPerMm);

private:
    StatePtr m_state = std::make_shared<const DocumentState>();
    std::unordered_map<const MarkObject*, std::unique_ptr<SceneItem>> m_items;
    qint64 m_vertices = 0;
    const Cancellation* m_cancellation = nullptr;
};

} // namespace sim
