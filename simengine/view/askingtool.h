// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"
#include "simengine/view/canvastool.h"
#include "simengine/view/canvaswidget.h"

#include <QDialog>
#include <algorithm>
#include <optional>

namespace sim {

/// A dialog of this class over the canvas waits for its answer.
template<class Dialog>
bool isAsking(const CanvasWidget& canvas) {
    // one that was answered lives on until the event loop deletes it
    const auto dialogs = canvas.findChildren<Dialog*>(QString(), Qt::FindDirectChildrenOnly);
    return std::any_of(dialogs.begin(), dialogs.end(), [](const Dialog* dialog) { return dialog->isVisible(); });
}

/// Opens a dialog and comes back; `accepted` is called with the dialog once the operator confirms it. It belongs to the
/// canvas and goes with it.
template<class Dialog, class Accepted>
void openOver(CanvasWidget& canvas, Dialog* dialog, Accepted accepted) {
    QObject::connect(dialog, &QDialog::accepted, &canvas, [dialog, accepted] { accepted(*dialog); });
    dialog->open();
}

/// Where the object now stands in the document: itself, or the one that shows other values of its variables in its
/// place. -1 when it was removed or edited meanwhile.
int presentIndex(const DocumentState& state, const ObjectPtr& object, int formerIndex);

/// A press asks for an object and puts it there; the right button goes back to selecting.
class AskingTool : public CanvasTool {
public:
    using CanvasTool::CanvasTool;
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint&) override {}
    void release(const CanvasPoint& point) override;
    bool cancel() override;
    bool snaps() const override { return true; }
    QCursor cursor() const override { return Qt::CrossCursor; }

protected:
    /// The dialog is open.
    virtual bool isOpen() const = 0;
    /// Opens it; what is confirmed is placed at `place`, mm.
    virtual void ask(const QPointF& place) = 0;

private:
    std::optional<QPointF> m_place; ///< mm, while the button is down
};

} // namespace sim
