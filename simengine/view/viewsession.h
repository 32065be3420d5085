// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/marktypes.h"
#include "simengine/document/document.h"

#include <QColor>
#include <QObject>
#include <array>
#include <atomic>
#include <memory>
#include <optional>

class MarkTool;

namespace sim {

/// One open document as the windows work on it: the document, what the next press does, the clipboard, and signals.
/// Main thread, but for mirrorCallback.
class ViewSession : public QObject {
    Q_OBJECT
public:
    explicit ViewSession(QObject* parent = nullptr);
    ~ViewSession() override;

    Document& document() { return m_document; }
    const Document& document() const { return m_document; }
    StatePtr state() const { return m_document.state(); }

    OperatorOnView operatorOnView() const { return m_operator; }
    void setOperatorOnView(OperatorOnView op);
    /// The view itself goes back to selecting; emits operatorChanged().
    void finishOperator();

    /// Object that operator 10 places.
    void setAddMarkTool(std::unique_ptr<MarkTool> tool);
    MarkTool* addMarkTool() const { return m_addTool.get(); }

    /// Adds an object of the current pen and selects it. False when the document is read-only or the shape is no
    /// object.
    bool addShape(const Shape& shape, const QTransform& transform = QTransform());
    /// The same of a text; what hinders it is told in the log.
    bool addText(const TextSpec& spec, const QPointF& place);
    /// Another text in place of that of object `index`. False when nothing changed; what hinders it is told in the log.
    bool changeText(int index, const TextSpec& spec);
    /// Moves the selection; a row of moves is one step of undo.
    bool moveByKey(double dx, double dy);
    bool removeSelected();
    void copySelected() const;
    /// Puts the clipboard's objects in, each paste of the same objects one offset further.
    bool paste();

    /// Display colours of the pens as they are now: the panels edit them beside the document's steps.
    std::array<QColor, kLayerCount> penColors() const;

    int currentPen() const { return m_document.settings().currentPen; }
    void setCurrentPen(int pen, bool alsoSelection);
    double keyMoveDistance() const { return m_document.settings().keyMoveDistance; }

    /// Called with the place of a press while teaching. May be set from any thread.
    std::atomic<void (*)(QPointF)> mirrorCallback{nullptr};
    /// A press while teaching: tells the callback and keeps the place for confirmTaughtPoint().
    void teach(const QPointF& mm);
    /// Place of the last press while teaching.
    std::optional<QPointF> taughtPoint() const { return m_taught; }
    /// Operator 13 makes the taught place a mark point, 17 and 18 take it as the next point of a circle or an arc.
    void confirmTaughtPoint();
    const QVector<QPointF>& confirmedPoints() const { return m_confirmed; }

signals:
    /// Objects, selection or steps are different. Many changes within one turn of the event loop give one signal.
    void changed();
    /// The operator was changed from inside the view.
    void operatorChanged();
    /// Something that is drawn over the objects is different.
    void overlayChanged();

private:
    void notify();

    Document m_document;
    OperatorOnView m_operator = OperatorSelect;
    std::unique_ptr<MarkTool> m_addTool;
    std::optional<QPointF> m_taught;
    QVector<QPointF> m_confirmed;
};

} // namespace sim
