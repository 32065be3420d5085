// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/codemaker.h"

#include "simengine/document/codesymbol.h"

#include <polyclipping/clipper.hpp>

namespace sim {

namespace {

/// Cells from `first` up to `end`, that one excluded.
struct Run {
    int first = 0;
    int end = 0;
};

/// What is marked of a code, in cells: the modules, inverted or not, with the quiet zone when inverted.
class CodeGrid {
public:
    CodeGrid(const CodeSpec& spec, const CodeSymbol& symbol, double module)
        : m_symbol(symbol)
        , m_spec(spec)
        , m_matrix(isMatrix(spec.symbology))
        , m_sideZone(spec.invert ? spec.quietZone : 0)
        , m_endZone(m_matrix ? m_sideZone : 0)
        , m_cell(module, m_matrix ? module : spec.barHeight) {}

    bool isMatrixCode() const { return m_matrix; }
    int firstRow() const { return -m_endZone; }
    int endRow() const { return m_symbol.rows + m_endZone; }

    int firstColumn() const { return -m_sideZone; }
    int endColumn() const { return m_symbol.columns + m_sideZone; }

    /// The marked cells of a row.
    std::vector<Run> runs(int row) const {
        return runsBetween(firstColumn(), endColumn(), [&](int column) { return isMarked(column, row); });
    }
    /// Those of a column, from the top.
    std::vector<Run> columnRuns(int column) const {
        return runsBetween(firstRow(), endRow(), [&](int row) { return isMarked(column, row); });
    }

    /// The place of a corner of the cells, mm; rows count from the top.
    QPointF place(double column, double row) const {
        return {column * m_cell.width(), (m_symbol.rows - row) * m_cell.height()};
    }

private:
    template<class Marked>
    static std::vector<Run> runsBetween(int first, int end, Marked marked) {
        std::vector<Run> runs;
        for (int cell = first; cell < end; ++cell) {
            if (!marked(cell))
                continue;
            if (runs.empty() || runs.back().end != cell)
                runs.push_back({cell, cell});
            ++runs.back().end;
        }
        return runs;
    }
    bool isMarked(int column, int row) const {
        const bool inside = column >= 0 && column < m_symbol.columns && row >= 0 && row < m_symbol.rows;
        return (inside && m_symbol.isDark(column, row)) != m_spec.invert;
    }

    const CodeSymbol& m_symbol;
    const CodeSpec& m_spec;
    bool m_matrix;
    int m_sideZone;
    int m_endZone;
    QSizeF m_cell;
};

/// Neighbouring runs become one area without inner edges, so that no line is marked twice and a hatch goes through.
PathShape unitedOutline(const CodeGrid& grid) {
    ClipperLib::Clipper clipper;
    const auto add = [&](int left, int top, int right, int bottom) {
        clipper.AddPath({{left, top}, {right, top}, {right, bottom}, {left, bottom}}, ClipperLib::ptSubject, true);
    };
    for (int row = grid.firstRow(); row < grid.endRow(); ++row) {
        for (const Run& run : grid.runs(row))
            add(run.first, row, run.end, row + 1);
    }
    // The library does not join all areas that only touch along an edge; the columns lie over the rows and join them.
    for (int column = grid.firstColumn(); column < grid.endColumn(); ++column) {
        for (const Run& run : grid.columnRuns(column))
            add(column, run.first, column + 1, run.end);
    }
    ClipperLib::Paths united;
    clipper.Execute(ClipperLib::ctUnion, united, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
    PathShape outline;
    for (const ClipperLib::Path& path : united) {
        outline.moveTo(grid.place(double(path[0].X), double(path[0].Y)));
        for (size_t i = 1; i < path.size(); ++i)
            outline.lineTo(grid.place(double(path[i].X), double(path[i].Y)));
        outline.close();
    }
    return outline;
}

/// Lines as wide as their distance fill the modules up to their edges: the outer ones and the ends keep half of it
/// away.
PathShape rowLines(const CodeGrid& grid, int lines) {
    PathShape path;
    const double half = 0.5 / lines;
    for (int row = grid.firstRow(); row < grid.endRow(); ++row) {
        for (int i = 0; i < lines; ++i) {
            const double y = row + (2 * i + 1) * half;
            for (const Run& run : grid.runs(row)) {
                path.moveTo(grid.place(run.first + half, y));
                path.lineTo(grid.place(run.end - half, y));
            }
        }
    }
    return path;
}

/// Lines along the bars, up and down in turn.
PathShape barLines(const CodeGrid& grid, int lines) {
    PathShape path;
    const double half = 0.5 / lines;
    bool up = true;
    for (const Run& run : grid.runs(0)) {
        for (int i = 0; i < lines * (run.end - run.first); ++i) {
            const double x = run.first + (2 * i + 1) * half;
            path.moveTo(grid.place(x, up ? 1.0 : 0.0));
            path.lineTo(grid.place(x, up ? 0.0 : 1.0));
            up = !up;
        }
    }
    return path;
}

QVector<QPointF> moduleDots(const CodeGrid& grid) {
    QVector<QPointF> dots;
    for (int row = grid.firstRow(); row < grid.endRow(); ++row) {
        for (const Run& run : grid.runs(row)) {
            for (int column = run.first; column < run.end; ++column)
                dots.append(grid.place(column + 0.5, row + 0.5));
        }
    }
    return dots;
}

void layOut(const CodeSpec& spec, const CodeSymbol& symbol, MadeCode& made) {
    const CodeGrid grid(spec, symbol, made.module);
    switch (spec.marking) {
    case CodeMarking::Outline:
        made.shape.outline = unitedOutline(grid);
        break;
    case CodeMarking::Lines:
        made.shape.outline =
            grid.isMatrixCode() ? rowLines(grid, spec.linesPerModule) : barLines(grid, spec.linesPerModule);
        break;
    case CodeMarking::Dots:
        made.shape.dots = moduleDots(grid);
        break;
    }
}

} // namespace

MadeCode makeCode(const CodeSpec& spec, const QString& content) {
    MadeCode made;
    made.shape.spec = spec;
    if (spec.variables)
        made.shape.shown = content;
    made.fault = codeSpecFault(spec, &made.detail);
    CodeSymbol symbol;
    if (made.ok())
        made.fault = encodeSymbol(spec, content, symbol, &made.detail);
    if (!made.ok())
        return made;
    made.columns = symbol.columns;
    made.rows = symbol.rows;
    made.module = spec.fitted ? spec.width / (symbol.columns + 2 * spec.quietZone) : spec.module;
    made.size =
        QSizeF(symbol.columns * made.module, isMatrix(spec.symbology) ? symbol.rows * made.module : spec.barHeight);
    if (made.module < kLeastModule)
        made.fault = CodeFault::BadSize;
    else
        layOut(spec, symbol, made);
    return made;
}

} // namespace sim
