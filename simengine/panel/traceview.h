// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/simcontrol.h"
#include "simengine/view/viewtransform.h"

#include <QImage>
#include <QWidget>

namespace sim {

/// Follows what the head marks. Rows are drawn into a picture as they come, and a frame takes 10 ms of drawing at most:
/// what is left comes with the next ones.
class TraceView : public QWidget {
    Q_OBJECT
public:
    TraceView(const SimControl& machine, QWidget* parent);

    /// Draws the rows that have come since the last call and moves the head's mark.
    void follow(const SimCardState& state);
    /// Forgets what is drawn; rows that come later are shown.
    void clear();
    void setShowJumps(bool on);
    /// The field shown, mm: left and top() are the smallest x and y.
    void setField(const QRectF& mm);
    const ViewTransform& viewTransform() const { return m_transform; }
    /// Rows drawn since the pass began or the view was cleared.
    std::size_t rowCount() const { return m_drawn; }
    QSize sizeHint() const override { return {420, 320}; }
    QSize minimumSizeHint() const override { return {240, 180}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void restart();
    void draw(const std::vector<SimTraceRow>& rows, bool smooth);
    void drawWay(QPainter& painter, const SimTraceRow& row);
    void paintField(QPainter& painter) const;

    const SimControl& m_machine;
    ViewTransform m_transform;
    QRectF m_field;
    QImage m_picture;
    std::uint64_t m_pass = 0;
    std::size_t m_from = 0;
    std::size_t m_clearedAt = 0; ///< rows of the pass before this one are not shown
    std::size_t m_drawn = 0;
    bool m_hasLast = false;
    SimTraceRow m_last;
    double m_dotPower = 0.0; ///< highest power of the mark point that is being drawn
    bool m_showJumps = true;
    SimCardState m_state;
};

} // namespace sim
