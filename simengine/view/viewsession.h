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
    bool addShape(const Shape& shape, const QTransform& transform = QTransform(),
                  const HatchSettings& hatch = HatchSettings());
    /// The same of a text; what hinders it is told in the log.
    bool addText(const TextSpec& spec, const QPointF& place);
    /// Another text in place of that of object `index`. False when nothing changed; what hinders it is told in the log.
    bool changeText(int index, const TextSpec& spec);
    /// Adds a code whose lower left module lies at `place`, with the hatch that it needs to be read; what hinders it is
    /// told in the log.
    bool addCode(const CodeSpec& spec, const QPointF& place);
    /// Another code in place of that of object `index`. False when nothing changed; what hinders it is told in the log.
    bool changeCode(int index, const CodeSpec& spec);
    /// Carries out an edit of an object; when there can be no such object the log tells why.
    bool change(const std::function<EditResult(const DocumentState&, QString*)>& edit);
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
    /// A press while teaching: tells the callback, which sends the spot there.
    void teach(const QPointF& mm);
    /// The place that confirmTaughtPoint() takes: where the spot was steered to, by whatever means. With the card
    /// closed there is no spot, and the last press stands for it; while a job moves the spot it is nobody's to confirm.
    std::optional<QPointF> placeToConfirm() const;
    /// Operator 13 makes that place a mark point, 17 and 18 take it as the next point of a circle or an arc. A place
    /// that was just confirmed is not taken for the next one.
    void confirmTaughtPoint();
    const QVector<QPointF>& confirmedPoints() const { return m_confirmed; }

signals:
    /// Objects, selection or steps are different. Many changes within one turn of the event loop give one signal.
    void changed();
    /// The operator was changed from inside the view.
    void operatorChanged();
    /// Another object is to be placed by operator 10.
    void addMarkToolChanged();
    /// Something that is drawn over the objects is different.
    void overlayChanged();

private:
    /// A read-only document takes no objects, which the log tells.
    bool refusesEdit() const;
    void notify();

    Document m_document;
    OperatorOnView m_operator = OperatorSelect;
    std::unique_ptr<MarkTool> m_addTool;
    std::optional<QPointF> m_taught;
    QVector<QPointF> m_confirmed;
};

} // namespace sim
