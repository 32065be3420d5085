// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/drawingbuilder.h"
#include "simengine/importers/pltframe.h"
#include "simengine/importers/pltlabel.h"
#include "simengine/importers/pltreader.h"

namespace sim {

/// Carries a plotter file out: each command moves a pen over a sheet, and what it draws goes to the builder.
class PltPlotter {
public:
    PltPlotter(const QByteArray& bytes, ImportResult& result, ImportBudget& budget);

    /// Draws the whole file. Afterwards commandCount() tells whether it was one.
    void run();
    int commandCount() const { return m_commands; }

private:
    using Handler = void (PltPlotter::*)();
    struct Command {
        const char* name;
        Handler handler;
    };
    static const Command kCommands[];

    enum Filling { Outline, Filled };

    void initialize();
    void selectPen();
    void penUp();
    void penDown();
    void plotAbsolute();
    void plotRelative();
    void moves();
    void arcAbsolute();
    void arcRelative();
    void arcThroughAbsolute();
    void arcThroughRelative();
    void circle();
    void edgeRectangleAbsolute();
    void edgeRectangleRelative();
    void fillRectangleAbsolute();
    void fillRectangleRelative();
    void edgeWedge();
    void fillWedge();
    void bezierAbsolute();
    void bezierRelative();
    void encodedPolyline();
    void polygonMode();
    void edgePolygon();
    void fillPolygon();
    void label();
    void labelTerminator();
    void inputFrame();
    void inputRelativeFrame();
    void scale();
    void window();
    void rotate();
    void lineType();
    void labelSize();
    void labelRelativeSize();
    void labelDirection();
    void labelRelativeDirection();
    void labelSlant();
    void labelOrigin();
    void characterPlot();
    void tick();
    void passOver();

    void tell(Note note, bool dropped = true);
    bool inRange(const QPointF& p);
    PathShape& current();
    void travel(const QPointF& place);
    void curveTo(const QPointF& center, double sweepRadians);
    void arc(bool relative);
    void threePointArc(bool relative);
    void rectangle(bool relative, Filling filling);
    void wedge(Filling filling);
    void bezier(bool relative);
    void polygon(Filling filling);
    void finishStroke();
    void deliver(PathShape path, const QString& kind);
    void noteEdges(bool drawn);
    void closeContour(bool drawn);
    PathShape drawnEdges() const;
    void useFrame(bool good);
    void choosePen(double number);
    void encodedMove(const QPointF& given, bool up, bool absolute);
    int pen();

    PltReader m_in;
    ImportResult& m_result;
    ImportBudget& m_budget;
    PltFrame m_frame;
    PltLabel m_label;
    QByteArray m_name; ///< of the command at hand
    int m_commands = 0;
    int m_pen = 0; ///< 1 to 20; 0 none
    bool m_penChosen = false;
    bool m_down = false;
    bool m_relative = false;
    bool m_dot = false; ///< lowered, and not moved since
    bool m_inPolygon = false;
    bool m_startContour = false; ///< the next place begins a contour of the polygon
    QPointF m_at;                ///< in the file's coordinates
    PathShape m_path;            ///< mm; what the lowered pen has drawn
    PathShape m_polygon;
    std::vector<bool> m_drawnEdges; ///< for each verb of the polygon: the pen was down
    char m_terminator = '\x03';

public:
    DrawingBuilder builder;
};

} // namespace sim
