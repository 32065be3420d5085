// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgpath.h"

#include "simengine/importers/curves.h"
#include "simengine/importers/svgnumbers.h"

#include <cmath>
#include <cstring>

namespace sim {

namespace {

/// An elliptic arc by its ends, as path data give it: the centre follows from both.
void appendSvgArc(PathShape& path, const QPointF& from, double rx, double ry, double turn, bool large, bool clockwise,
                  const QPointF& to) {
    rx = std::abs(rx);
    ry = std::abs(ry);
    if (from == to)
        return;
    if (!(rx > 0.0) || !(ry > 0.0)) {
        path.lineTo(to);
        return;
    }
    const double c = std::cos(turn);
    const double s = std::sin(turn);
    const QPointF half = (from - to) / 2.0;
    const QPointF p(c * half.x() + s * half.y(), -s * half.x() + c * half.y());
    const double reach = p.x() * p.x() / (rx * rx) + p.y() * p.y() / (ry * ry);
    if (reach > 1.0) {
        rx *= std::sqrt(reach);
        ry *= std::sqrt(reach);
    }
    const double down = rx * rx * p.y() * p.y() + ry * ry * p.x() * p.x();
    const double up = std::max(0.0, rx * rx * ry * ry - down);
    const double f = (large == clockwise ? -1.0 : 1.0) * (down > 0.0 ? std::sqrt(up / down) : 0.0);
    const QPointF m(f * rx * p.y() / ry, -f * ry * p.x() / rx);
    const QPointF middle = (from + to) / 2.0;
    const QPointF center(c * m.x() - s * m.y() + middle.x(), s * m.x() + c * m.y() + middle.y());
    const double start = std::atan2((p.y() - m.y()) / ry, (p.x() - m.x()) / rx);
    const double end = std::atan2((-p.y() - m.y()) / ry, (-p.x() - m.x()) / rx);
    double sweep = end - start;
    if (clockwise && sweep < 0.0)
        sweep += 2.0 * M_PI;
    if (!clockwise && sweep > 0.0)
        sweep -= 2.0 * M_PI;
    if (!std::isfinite(center.x()) || !std::isfinite(center.y()) || !std::isfinite(sweep)) {
        path.lineTo(to);
        return;
    }
    const EllipseAxes ellipse{center, QPointF(c, s) * rx, QPointF(-s, c) * ry};
    appendEllipse(path, ellipse, start, sweep);
    path.points.last() = to;
}

class PathParser {
public:
    PathParser(const QStringRef& data, PathShape& path, ImportBudget& budget)
        : m_in(data)
        , m_path(path)
        , m_budget(budget) {}

    bool run() {
        ushort command = 0;
        while (const ushort next = m_in.peek()) {
            const bool letter = (next >= 'A' && next <= 'Z') || (next >= 'a' && next <= 'z');
            if (letter) {
                command = next;
                m_in.skip();
            } else if (command == 0 || (command | 0x20) == 'z') {
                return false;
            }
            if (m_begun == false && (command | 0x20) != 'm')
                return false;
            if (!m_budget.points(1) || !step(command))
                return false;
            // places behind a move are lines
            if (command == 'M')
                command = 'L';
            else if (command == 'm')
                command = 'l';
        }
        return true;
    }

private:
    std::optional<QPointF> place(bool relative) {
        const auto x = m_in.number();
        const auto y = x ? m_in.number() : std::nullopt;
        if (!y)
            return std::nullopt;
        return relative ? m_at + QPointF(*x, *y) : QPointF(*x, *y);
    }

    void begin() {
        if (m_moved || m_path.verbs.isEmpty() || m_path.verbs.constLast() == PathVerb::Close)
            m_path.moveTo(m_at);
        m_moved = false;
    }

    void line(const QPointF& to) {
        begin();
        m_path.verbs.append(PathVerb::Line);
        m_path.points.append(to);
        m_at = to;
    }

    void curve(const QPointF& c1, const QPointF& c2, const QPointF& to) {
        begin();
        m_path.cubicTo(c1, c2, to);
        m_at = to;
    }

    bool step(ushort command) {
        const bool relative = command >= 'a';
        const ushort kind = command | 0x20;
        const ushort before = m_before;
        m_before = kind;
        switch (kind) {
        case 'm':
            return move(relative);
        case 'z':
            close();
            return true;
        case 'l': {
            const auto to = place(relative);
            if (to)
                line(*to);
            return to.has_value();
        }
        case 'h':
        case 'v': {
            const auto v = m_in.number();
            if (!v)
                return false;
            const double base = relative ? (kind == 'h' ? m_at.x() : m_at.y()) : 0.0;
            line(kind == 'h' ? QPointF(base + *v, m_at.y()) : QPointF(m_at.x(), base + *v));
            return true;
        }
        case 'c':
        case 's':
            return cubic(relative, kind == 's', before == 'c' || before == 's');
        case 'q':
        case 't':
            return quadratic(relative, kind == 't', before == 'q' || before == 't');
        case 'a':
            return arc(relative);
        default:
            return false;
        }
    }

    bool move(bool relative) {
        const auto to = place(relative);
        if (!to)
            return false;
        m_at = m_start = *to;
        m_moved = true;
        m_begun = true;
        return true;
    }

    void close() {
        if (!m_path.verbs.isEmpty() && m_path.verbs.last() != PathVerb::Close && !m_moved)
            m_path.close();
        m_at = m_start;
    }

    bool cubic(bool relative, bool smooth, bool follows) {
        const auto c1 = smooth ? std::optional<QPointF>(follows ? m_at * 2.0 - m_handle : m_at) : place(relative);
        const auto c2 = c1 ? place(relative) : std::nullopt;
        const auto to = c2 ? place(relative) : std::nullopt;
        if (!to)
            return false;
        m_handle = *c2;
        curve(*c1, *c2, *to);
        return true;
    }

    bool quadratic(bool relative, bool smooth, bool follows) {
        const auto c = smooth ? std::optional<QPointF>(follows ? m_at * 2.0 - m_handle : m_at) : place(relative);
        const auto to = c ? place(relative) : std::nullopt;
        if (!to)
            return false;
        m_handle = *c;
        curve(m_at + (*c - m_at) * (2.0 / 3.0), *to + (*c - *to) * (2.0 / 3.0), *to);
        return true;
    }

    bool arc(bool relative) {
        const auto rx = m_in.number();
        const auto ry = rx ? m_in.number() : std::nullopt;
        const auto turn = ry ? m_in.number() : std::nullopt;
        const auto large = turn ? m_in.flag() : std::nullopt;
        const auto sweep = large ? m_in.flag() : std::nullopt;
        const auto to = sweep ? place(relative) : std::nullopt;
        if (!to || !m_budget.points(24))
            return false;
        begin();
        appendSvgArc(m_path, m_at, *rx, *ry, std::fmod(*turn, 360.0) * M_PI / 180.0, *large, *sweep, *to);
        m_at = *to;
        return true;
    }

    SvgNumbers m_in;
    PathShape& m_path;
    ImportBudget& m_budget;
    QPointF m_at;
    QPointF m_start;
    QPointF m_handle;
    ushort m_before = 0;
    bool m_moved = true;
    bool m_begun = false;
};

/// tidiedPath() would leave it as it is.
bool isTidy(const PathShape& path) {
    int at = 0;
    int begin = 0;
    for (int i = 0; i < path.verbs.size(); ++i) {
        const PathVerb verb = path.verbs[i];
        if (verb == PathVerb::Move)
            begin = at;
        at += verb == PathVerb::Cubic ? 3 : verb == PathVerb::Close ? 0 : 1;
        const bool last = i + 1 == path.verbs.size() || path.verbs[i + 1] == PathVerb::Move;
        if (last && (verb == PathVerb::Move || (at - begin > 2 && path.points[at - 1] == path.points[begin])))
            return false;
    }
    return true;
}

} // namespace

bool parseSvgPath(const QStringRef& data, PathShape& path, ImportBudget& budget) {
    /// Letters of data for a point, at least by far; what is taken too much is given back.
    constexpr int kLettersOfPoint = 8;
    PathShape raw;
    raw.points.reserve(data.size() / kLettersOfPoint + 1);
    raw.verbs.reserve(data.size() / kLettersOfPoint + 1);
    const bool good = PathParser(data, raw, budget).run();
    path = isTidy(raw) ? std::move(raw) : tidiedPath(raw);
    path.points.squeeze();
    path.verbs.squeeze();
    return good;
}

bool parseSvgPoints(const QStringRef& data, bool closed, PathShape& path, ImportBudget& budget) {
    SvgNumbers in(data);
    PathShape raw;
    bool good = true;
    while (!in.atEnd() && budget.points(1)) {
        const auto x = in.number();
        const auto y = x ? in.number() : std::nullopt;
        if (!y) {
            good = false;
            break;
        }
        if (raw.verbs.isEmpty())
            raw.moveTo({*x, *y});
        else
            raw.lineTo({*x, *y});
    }
    if (closed && raw.points.size() > 1)
        raw.close();
    path = tidiedPath(raw);
    return good;
}

PathShape closedContours(const PathShape& path) {
    PathShape closed;
    closed.points = path.points;
    closed.verbs.reserve(path.verbs.size() + 1);
    int points = 0;
    for (int i = 0; i < path.verbs.size(); ++i) {
        const PathVerb verb = path.verbs[i];
        points = verb == PathVerb::Move ? 1 : points + (verb == PathVerb::Cubic ? 3 : 1);
        closed.verbs.append(verb);
        const bool last = i + 1 == path.verbs.size() || path.verbs[i + 1] == PathVerb::Move;
        if (last && verb != PathVerb::Close && points > 2)
            closed.verbs.append(PathVerb::Close);
    }
    return closed;
}

PathShape tidiedPath(const PathShape& path) {
    PathShape out;
    out.points.reserve(path.points.size());
    out.verbs.reserve(path.verbs.size() + 1);
    int begin = 0;
    int at = 0;
    const auto finish = [&](bool closed) {
        if (out.verbs.isEmpty())
            return;
        if (out.verbs.last() == PathVerb::Move) {
            out.verbs.removeLast();
            out.points.removeLast();
            return;
        }
        const bool back = out.points.size() - begin > 2 && out.points.last() == out.points[begin];
        if (back && out.verbs.last() == PathVerb::Line) {
            out.verbs.removeLast();
            out.points.removeLast();
        }
        if (closed || back)
            out.verbs.append(PathVerb::Close);
    };
    bool open = false;
    for (PathVerb verb : path.verbs) {
        switch (verb) {
        case PathVerb::Move:
            if (open)
                finish(false);
            open = true;
            begin = out.points.size();
            out.moveTo(path.points[at++]);
            break;
        case PathVerb::Line:
            out.lineTo(path.points[at++]);
            break;
        case PathVerb::Cubic:
            out.cubicTo(path.points[at], path.points[at + 1], path.points[at + 2]);
            at += 3;
            break;
        case PathVerb::Close:
            finish(true);
            open = false;
            break;
        }
    }
    if (open)
        finish(false);
    return out;
}

} // namespace sim
