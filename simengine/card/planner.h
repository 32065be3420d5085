// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/job.h"
#include "simengine/card/penparams.h"
#include "simengine/card/powercurve.h"
#include "simengine/card/strokeshape.h"
#include "simengine/card/timemodel.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace sim {

/// The smallest thing the head executes: one straight movement or one wait.
struct Piece {
    enum class Kind : std::uint8_t { Jump, Mark, Delay };

    Point to;        ///< where the head stands at the end; a wait ends where it began
    double us = 0.0; ///< duration on the simulated clock
    double mm = 0.0; ///< length along the commanded line
    float power = 0; ///< percent of the laser's full power at the end
    std::uint8_t pen = 0;
    Kind kind = Kind::Delay;
    bool laser = false;      ///< laser gate open during the piece
    bool vertex = false;     ///< ends on a vertex of the path: gives a trace row
    bool centreLine = false; ///< the way to a stroke whose wobble is too long to be traced
};

/// Adds one piece to the accounts of a job.
void addPiece(JobTime& time, const Piece& piece);

/// Measures the strokes whose pens need their length, so that the worker does not have to look at all points of a long
/// stroke before it marks the first.
void measureStrokes(Job& job, const PenTable& pens);

/// Finds the way of a border preview: the hull of a million vertices takes tenths of a second, the rectangle round
/// twenty millions too, which a stop would have to wait for on the worker.
void measureBorder(Job& job, const BorderSettings& border);

/// Walks a job stroke by stroke and turns it into pieces, a chunk at a time, so that the first vector is ready at once
/// however long the job is. Estimation and execution both use this walk; no other code knows the formulas' order.
///
/// The job must outlive the planner. A copy goes on from the same place for itself, and takes less than a kilobyte. Not
/// thread-safe.
class Planner {
public:
    Planner(const Job& job, const PenTable& pens, const PlanSettings& settings, Point start);
    Planner(Job&&, const PenTable&, const PlanSettings&, Point) = delete;

    /// Writes up to capacity (at least kMaxStep) further pieces; 0 when the pass is complete.
    std::size_t fill(Piece* out, std::size_t capacity);

    /// Starts the walk again for another pass, from the place where the last one ended.
    void restart();
    /// Where the head stands now, when it was moved on after the last piece.
    void setPlace(Point at) { m_at = m_beam = at; }

    /// Lets fill() return early where an object is about to be repeated; roundsLeft() tells that it did.
    void haltAtRounds() { m_haltAtRounds = true; }
    /// Rounds of the object that are still to come when fill() has halted, the one about to begin included; else 0.
    int roundsLeft() const { return m_halted ? m_repeatsLeft + 1 : 0; }
    /// Vertices of such a round.
    std::size_t roundVertices() const;
    /// Leaves out the rounds that are still to come. Each would end as the one before did, but for the share in
    /// kMaxWobbleVertices that it would have taken.
    void skipRounds();
    /// Where the beam is commanded to, the wobble's offset included.
    Point beam() const { return m_beam; }

    /// True when the job has at least one valid point.
    static bool hasWork(const Job& job);

    /// The most pieces one step can give.
    static constexpr std::size_t kMaxStep = kWavePoints + 6;
    /// The most vertices that wobble may add to a pass. A stroke that needs more than are left is planned along its
    /// centre line, at the same time and length.
    static constexpr double kMaxWobbleVertices = 4'000'000;

private:
    /// What follows from the pens, and for border previews from the card's settings.
    struct PenValues {
        PenTable pens; ///< sanitized
        std::array<LineRamps, kPenCount> ramps{};
        std::array<double, kPenCount> usPerMm{};
    };

    static std::shared_ptr<const PenValues> valuesOf(const PenTable& pens, MarkKind kind, const BorderSettings& border);
    void step(Piece*& out);
    void planArrival(Piece*& out);
    void planVector(Piece*& out);
    void planCut(Piece*& out);
    void endVector(Piece*& out);
    void planPoint(Piece*& out, Point at);
    void planCurve(Piece*& out, const PowerCurve& curve, double dwellUs);
    void shapeStroke(Point first);
    void planBorderCorner(Piece*& out);
    void planEnd(Piece*& out);
    void planJump(Piece*& out, Point to);
    void planMark(Piece*& out, Point to);
    void addMark(Piece*& out, Point to, double us, double mm);
    void planOffset(Piece*& out, Point to);
    void planDelay(Piece*& out, double us, bool laser);
    void nextStroke();
    void openGroup(std::size_t first);
    void findVertex(std::size_t from);
    bool isLaser() const { return m_job.kind == MarkKind::Laser; }
    const PenParams& pen() const { return m_values->pens[static_cast<std::size_t>(m_pen)]; }
    double usPerMm() const { return m_values->usPerMm[static_cast<std::size_t>(m_pen)]; }

    const Job& m_job;
    std::shared_ptr<const PenValues> m_values;
    PlanSettings m_settings;
    Point m_at;                                ///< commanded
    Point m_beam;                              ///< with the wobble's offset
    std::shared_ptr<const BorderWay> m_border; ///< null but in a border preview of a job with valid points
    std::size_t m_stroke = 0;
    std::size_t m_vertex = 0; ///< next valid vertex of the stroke, the stroke's size when there is none
    std::size_t m_corner = 0; ///< next one of the border
    std::size_t m_groupFirst = 0;
    std::size_t m_groupEnd = 0; ///< one past the object's last stroke
    int m_repeatsLeft = 0;
    int m_pen = 0;
    int m_lastPen = -1;  ///< pen of the stroke before, -1 before the first of a pass
    StrokeShape m_shape; ///< of the stroke on which the head is, when it has one
    Point m_vectorEnd;   ///< of the vector that is being cut
    double m_vectorUs = 0.0;
    double m_vectorMm = 0.0;
    double m_vectorShare = 0.0; ///< of it that is planned
    double m_wobbleLeft = kMaxWobbleVertices;
    float m_power = 0;
    bool m_shaped = false;     ///< m_shape is in use
    bool m_cutting = false;    ///< a vector is being cut
    bool m_centreLine = false; ///< the stroke's wobble is not planned
    bool m_arrived = false;    ///< the head is on the stroke's line
    bool m_done = false;
    bool m_haltAtRounds = false;
    bool m_halted = false; ///< before the first step of a repetition
};

} // namespace sim
