// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

class QRulerView;
class VZListViewEx;

namespace sim {
class CanvasWidget;
class ViewSession;
} // namespace sim

/// The engine's own way behind the boundary classes of the view.
struct QRulerViewAccess {
    static sim::ViewSession& session(QRulerView& view);
    static sim::CanvasWidget& canvas(QRulerView& view);
    static void attach(VZListViewEx& list, sim::ViewSession& session);
};
