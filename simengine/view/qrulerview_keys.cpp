// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/frontendlink.h"
#include "simengine/view/qrulerview_p.h"
#include "simengine/view/runningjob.h"

#include <QKeyEvent>

namespace {

struct Direction {
    int key;
    int x;
    int y;
};

constexpr Direction kDirections[] = {
    {Qt::Key_Left, -1, 0}, {Qt::Key_Up, 0, 1}, {Qt::Key_Right, 1, 0}, {Qt::Key_Down, 0, -1}};

const Direction* directionOf(int key) {
    for (const Direction& direction : kDirections) {
        if (direction.key == key)
            return &direction;
    }
    return nullptr;
}

} // namespace

bool QRulerView::Private::handleKey(QKeyEvent& event) {
    if (canvas->handleKey(event))
        return true;
    return handleConfirm(event) || handleArrow(event) || handleCommand(event);
}

// A key that is held down confirms once.
bool QRulerView::Private::handleConfirm(const QKeyEvent& event) {
    const OperatorOnView op = session.operatorOnView();
    if (event.key() != Qt::Key_F6 || (op != OperatorTeachCircle && op != OperatorTeachArc))
        return false;
    if (!event.isAutoRepeat())
        session.confirmTaughtPoint();
    return true;
}

// While a job runs the key goes by way of the key thread, so that the preview is renewed with the move; a key that the
// front end has no use for is dropped.
bool QRulerView::Private::handleArrow(QKeyEvent& event) {
    const Direction* direction = directionOf(event.key());
    if (!direction)
        return false;
    if (sim::jobRuns())
        sim::handDirectionKey(event);
    else
        moveByKeys({event.key()}, false);
    return true;
}

void QRulerView::Private::takeKeys(bool renewPreview) {
    QList<int> keys;
    {
        const QMutexLocker lock(&q.m_DirKeyLock);
        keys.swap(q.m_DirKeys);
        moveDue = false;
    }
    moveByKeys(keys, renewPreview);
}

void QRulerView::Private::moveByKeys(const QList<int>& keys, bool renewPreview) {
    const double distance = session.keyMoveDistance();
    bool moved = false;
    for (const int key : keys) {
        if (const Direction* direction = directionOf(key))
            moved = session.moveByKey(direction->x * distance, direction->y * distance) || moved;
    }
    if (moved && renewPreview && sim::previewRuns())
        sim::renewPreview();
}

bool QRulerView::Private::handleCommand(QKeyEvent& event) {
    if (event.key() == Qt::Key_Delete) {
        canvas->cancelGesture();
        session.removeSelected();
        return true;
    }
    if (event.matches(QKeySequence::SelectAll)) {
        session.document().selectAll();
    } else if (event.matches(QKeySequence::Copy)) {
        session.copySelected();
    } else if (event.matches(QKeySequence::Cut)) {
        if (!session.document().isReadOnly())
            session.copySelected();
        session.removeSelected();
    } else if (event.matches(QKeySequence::Paste)) {
        session.paste();
    } else if (event.matches(QKeySequence::Undo)) {
        q.Undo();
    } else if (event.key() == Qt::Key_Y && event.modifiers() == Qt::ControlModifier) {
        q.Redo();
    } else if (event.matches(QKeySequence::Redo)) {
        q.Redo();
    } else {
        return false;
    }
    return true;
}
