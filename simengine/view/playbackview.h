// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/jobtimeline.h"
#include "simengine/view/viewtransform.h"

#include <QColor>
#include <QImage>
#include <QTimer>
#include <QWidget>
#include <optional>

namespace sim {

/// What the head does at one moment of a playback.
struct PlaybackMoment {
    QPointF at; ///< mm in the document
    int pen = 0;
    bool laser = false;
};

/// Shows a job as far as it has come at a time: all of it pale, the marked part in the pens' colours, the beam's spot.
/// Drawn in short steps, so that a job of millions holds up nobody; forward only what is new.
class PlaybackView : public QWidget {
    Q_OBJECT
public:
    explicit PlaybackView(QWidget* parent);
    ~PlaybackView() override;

    using Colors = std::array<QColor, kPenCount>;

    /// Null shows nothing. With an inverted axis the machine counts the other way than the document.
    void setTimeline(std::shared_ptr<const JobTimeline> timeline, const Colors& colors, bool invertX, bool invertY);
    /// The place in the job that is shown, µs.
    void setTime(double us);
    void setShowJumps(bool on);
    /// The part of the field that fit() shows when there is no job.
    void setField(const QRectF& mm);
    void fit();
    void zoom(double factor);
    /// The picture has all that it is to show.
    bool isComplete() const { return m_ghostDone && m_markedDone; }
    PlaybackMoment moment() const;

    QSize sizeHint() const override { return {620, 420}; }
    QSize minimumSizeHint() const override { return {320, 220}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    class Pencil;

    void restart();
    void restartMarked();
    void work();
    bool drawGhost(double limitMs);
    bool drawMarked(double limitMs);
    void setView(const ViewTransform& transform);
    QPointF toDocument(const Point& machine) const;
    QPointF onPicture(const Point& machine) const { return m_pictureView.toPixel(toDocument(machine)); }
    QImage emptyPicture() const;
    void paintField(QPainter& painter) const;
    void paintHead(QPainter& painter);

    std::shared_ptr<const JobTimeline> m_timeline;
    Colors m_colors;
    bool m_invertX = false;
    bool m_invertY = false;
    bool m_showJumps = false;
    QRectF m_field;
    QRectF m_extent; ///< of the job, mm in the document
    ViewTransform m_transform;
    ViewTransform m_pictureView; ///< of the pictures; the view may have been dragged since
    double m_us = 0.0;

    std::optional<JobTimeline::Reader> m_now; ///< at m_us
    std::optional<JobTimeline::Reader> m_ghostAt;
    std::optional<JobTimeline::Reader> m_markedAt; ///< first piece that is not drawn
    QImage m_ghost;
    QImage m_marked;
    bool m_ghostDone = true;
    bool m_markedDone = true;
    bool m_markedEnd = false; ///< the last piece is drawn
    double m_drawnUs = 0.0;
    QTimer m_work;
    std::optional<QPointF> m_dragFrom;
};

} // namespace sim
