// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/trace.h"
#include "simengine/view/draftraster.h"
#include "simengine/view/scenepainter.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>

namespace sim {

/// What a running job has marked so far and where its spot is, drawn over the objects of the document that it belongs
/// to. While the laser marks, the objects are faded and the marked parts stand out in their pens' colours; a preview
/// marks nothing and shows the spot of the pilot beam alone.
///
/// It follows the card's trace at the rate of the screen, and looks at it only: each look costs the card a pointer for
/// 4096 rows, and takes the main thread no longer than kMostMs, however fast the card is. What is left is drawn at the
/// next look. A pass of a loop begins anew. After the end it all goes, unless the next job of the document begins
/// within kLinger, so that a row of runs does not flicker; what was marked faster than it can be drawn is drawn first.
///
/// jobBegins() and jobEnds() on any thread, all else on the main thread.
class JobOverlay : public QObject {
    Q_OBJECT
public:
    static constexpr int kPeriod = 33;     ///< ms between two looks
    static constexpr int kLinger = 700;    ///< ms
    static constexpr double kMostMs = 4.0; ///< of the main thread for one look

    explicit JobOverlay(QObject* parent);

    /// A job of the document goes to the card, whose trace has come to `pass` before it.
    void jobBegins(std::uint64_t pass, MarkKind kind);
    void jobEnds();

    /// Something is shown.
    bool isActive() const { return m_phase != Phase::Idle; }
    bool isRunning() const { return m_phase == Phase::Running; }
    /// The objects are to be faded.
    bool fadesObjects() const { return isActive() && m_kind == MarkKind::Laser; }
    /// Rows of the trace that are in the picture.
    std::size_t rowsDrawn() const { return m_next; }

    /// The view as it is now; another one lets the marked parts be drawn anew.
    void setView(const ViewTransform& transform, double devicePixelRatio, const PenColors& colors);
    /// Marked parts and spot, in pixels.
    void paint(QPainter& painter) const;
    /// Looks at the card now.
    void follow();

signals:
    /// Pixels that look different now; empty for all of them.
    void changed(const QRect& pixels);

private:
    enum class Phase { Idle, Running, Lingering };

    void begin(std::uint64_t pass, MarkKind kind);
    void end();
    void clearWhenDrawn();
    void clear();
    void restart();
    std::size_t draw(const TraceSnapshot& rows, std::size_t from, std::size_t to);
    void drawRun(const QVector<QPointF>& run, int pen);
    QPointF onDocument(const Point& place) const { return {m_signX * place.x, m_signY * place.y}; }
    void moveSpot();
    void paintSpot(QPainter& painter) const;
    QRect spotRect(const QPointF& mm) const;

    Phase m_phase = Phase::Idle;
    MarkKind m_kind = MarkKind::Laser;
    std::uint64_t m_passBefore = 0; ///< pass of the trace when the job began; its rows are another job's
    std::uint64_t m_pass = 0;
    std::size_t m_next = 0;              ///< first row that is not drawn yet
    double m_signX = 1.0, m_signY = 1.0; ///< of the axes that the machine has the other way round

    ViewTransform m_transform;
    double m_ratio = 1.0;
    PenColors m_colors;
    std::unique_ptr<DraftRaster> m_raster;
    int m_rasterPen = -1;
    QRectF m_dirty;

    std::optional<QPointF> m_spot; ///< mm
    bool m_spotMarks = false;
    int m_spotPen = 0;
    std::optional<QPointF> m_lastMarked; ///< where the line that goes on now began, mm

    QTimer m_look;
    QTimer m_linger;
};

} // namespace sim
