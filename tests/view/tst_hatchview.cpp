// SPDX-License-Identifier: MIT
// What is drawn is what is marked, hatches included.
#include "engine/markcardinstance.h"
#include "engine/markshapecontainer.h"
#include "engine/vzmarkcard.h"
#include "simengine/card/cardcore.h"
#include "simengine/view/scenecache.h"
#include "viewfixture.h"

#include <cmath>
#include <random>
#include <unordered_map>

using namespace sim;
using tests::ViewFixture;

namespace {

/// Drawing and marking may differ by so much, mm.
constexpr double kSame = 0.001;

struct Stretch {
    QPointF a, b;
    int pen = 0;
};

double apart(QPointF const& a, QPointF const& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

/// How far the ends of two stretches are apart at most, whichever way they run.
double apart(Stretch const& s, Stretch const& t) {
    return std::min(std::max(apart(s.a, t.a), apart(s.b, t.b)), std::max(apart(s.a, t.b), apart(s.b, t.a)));
}

/// A heap of stretches in which an equal one can be found.
class Heap {
public:
    void add(Stretch const& stretch) { m_cells[keyOf(middle(stretch), 0, 0)].push_back(stretch); }
    /// Takes out the stretch that lies nearest with the same pen; false when none lies in the same place.
    bool take(Stretch const& wanted) {
        double best = kSame;
        std::vector<Stretch>* cellOfBest = nullptr;
        std::size_t index = 0;
        for (int dx = -1; dx <= 1; ++dx) {
            for (int dy = -1; dy <= 1; ++dy) {
                std::vector<Stretch>& cell = m_cells[keyOf(middle(wanted), dx, dy)];
                for (std::size_t i = 0; i < cell.size(); ++i) {
                    if (cell[i].pen == wanted.pen && apart(cell[i], wanted) <= best) {
                        best = apart(cell[i], wanted);
                        cellOfBest = &cell;
                        index = i;
                    }
                }
            }
        }
        if (!cellOfBest)
            return false;
        (*cellOfBest)[index] = cellOfBest->back();
        cellOfBest->pop_back();
        return true;
    }

private:
    static QPointF middle(Stretch const& p) { return (p.a + p.b) / 2.0; }
    static qint64 keyOf(QPointF const& p, int dx, int dy) {
        constexpr double kCell = 0.01;
        return (qint64(std::floor(p.x() / kCell)) + dx) * 1'000'003 + qint64(std::floor(p.y() / kCell)) + dy;
    }

    std::unordered_map<qint64, std::vector<Stretch>> m_cells;
};

template<typename Points>
void addStretches(Points begin, Points end, int pen, std::vector<Stretch>& stretches) {
    for (Points p = begin; p != end && p + 1 != end; ++p) {
        if (p[0] != p[1])
            stretches.push_back({p[0], p[1], pen});
    }
}

/// What the view draws as marked when it is close by.
std::vector<Stretch> drawn(StatePtr const& state) {
    constexpr double kCloseBy = 1000.0; // pixels a mm
    SceneCache cache;
    cache.setState(state);
    std::vector<Stretch> stretches;
    for (int i = 0; i < state->count(); ++i) {
        for (SceneLeaf const& leaf : cache.item(i, kCloseBy).leaves()) {
            if (!leaf.works)
                continue;
            for (FlatLine const& line : leaf.lines)
                addStretches(line.points.begin(), line.points.end(), leaf.pen, stretches);
            for (std::size_t k = 0; leaf.hatch && k < leaf.hatch->count(); k += leaf.hatchStep)
                addStretches(leaf.hatch->begin(k), leaf.hatch->end(k), leaf.pen, stretches);
        }
    }
    return stretches;
}

std::vector<Stretch> marked() {
    const TraceSnapshot rows = simulatedCard().trace().snapshot();
    std::vector<Stretch> stretches;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        if (rows[i].laser)
            stretches.push_back({{rows[i - 1].at.x, rows[i - 1].at.y}, {rows[i].at.x, rows[i].at.y}, rows[i].pen});
    }
    return stretches;
}

/// Documents of outlines with hatches of every kind.
class RandomDocument {
public:
    RandomDocument(ViewFixture& fixture, unsigned seed)
        : m_fixture(fixture)
        , m_random(seed) {}

    void make() {
        const int count = whole(1, 4);
        for (int i = 0; i < count; ++i) {
            const int index = addOutline();
            m_fixture.session().document().select({index});
            if (whole(0, 3) > 0)
                fill();
            if (whole(0, 1) == 0)
                m_fixture.view.ChangeSelectedObjAngle(real(-180, 180));
            if (whole(0, 3) == 0)
                m_fixture.view.ScaleSelectedObj(real(0.4, 1.2), real(0.4, 1.2), 0.0, 0.0);
            if (whole(0, 7) == 0)
                m_fixture.view.SetSelectObjWorkType(0);
        }
        if (count > 1 && whole(0, 1) == 0) {
            m_fixture.session().document().select({0, 1});
            m_fixture.view.Combine();
            m_fixture.view.ChangeSelectedObjAngle(real(-180, 180));
        }
    }

private:
    int whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    double real(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }

    int addOutline() {
        const double x = real(-20, 20);
        const double y = real(-20, 20);
        const int pen = whole(0, 19);
        if (whole(0, 2) == 0)
            return m_fixture.addRect(x, y, real(1, 15), real(1, 15), pen);
        if (whole(0, 1) == 0)
            return m_fixture.addCircle(x, y, real(0.5, 10), pen);
        QPolygonF points;
        for (int i = whole(3, 20); i > 0; --i)
            points.append(QPointF(x + real(-10, 10), y + real(-10, 10)));
        return m_fixture.addLine(points, pen, whole(0, 4) > 0);
    }

    void fill() {
        QVector<FillParam> fills(kFillCount);
        for (FillParam& fill : fills) {
            fill.Enable = whole(0, 1) == 0;
            fill.FillDist = real(0.05, 1.0);
            fill.FillAngle = whole(0, 1) == 0 ? 0.0 : real(-360, 360);
            fill.FillLayer = whole(0, 19);
            fill.FillOffset = whole(0, 1) == 0 ? 0.0 : real(0, 1);
            fill.EdgeCnt = whole(0, 3) == 0 ? whole(1, 4) : 0;
            fill.FillType = whole(0, 4);
        }
        m_fixture.view.FillSelectedObj(fills, whole(0, 3) > 0, whole(0, 1) == 0, false);
    }

    ViewFixture& m_fixture;
    std::mt19937 m_random;
};

} // namespace

class tst_HatchView : public QObject {
    Q_OBJECT

private slots:
    void init() {
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard());
        simulatedCard().setSpeed(0.0);
        MarkCardInstance::Instance()->OpenCard();
    }
    void cleanup() {
        MarkCardInstance::Instance()->CloseCard();
        MarkCardInstance::SetMarkCardInstance(nullptr);
        simulatedCard().setSpeed(1.0);
    }

    void what_is_drawn_is_what_is_marked() {
        qint64 compared = 0;
        for (unsigned seed = 1; seed <= 200; ++seed) {
            ViewFixture f;
            RandomDocument(f, seed).make();
            const std::vector<Stretch> screen = drawn(f.state());
            MarkCardInstance::Instance()->SetMarkStaus(MarkStatusRun);
            const bool ran = f.view.GetMarkTools()->StartMark(false, false, f.view.GetLayerParams());
            const std::vector<Stretch> machine = ran ? marked() : std::vector<Stretch>();
            QVERIFY2(screen.size() == machine.size(), qPrintable(QStringLiteral("document %1: %2 drawn, %3 marked")
                                                                     .arg(seed)
                                                                     .arg(screen.size())
                                                                     .arg(machine.size())));
            Heap heap;
            for (Stretch const& stretch : screen)
                heap.add(stretch);
            for (Stretch const& stretch : machine)
                QVERIFY2(heap.take(stretch),
                         qPrintable(QStringLiteral("document %1: from %2, %3 to %4, %5 with pen %6 is "
                                                   "marked and not drawn")
                                        .arg(seed)
                                        .arg(stretch.a.x(), 0, 'f', 5)
                                        .arg(stretch.a.y(), 0, 'f', 5)
                                        .arg(stretch.b.x(), 0, 'f', 5)
                                        .arg(stretch.b.y(), 0, 'f', 5)
                                        .arg(stretch.pen)));
            compared += qint64(machine.size());
        }
        qInfo("%lld segments compared", static_cast<long long>(compared));
        QVERIFY(compared > 10'000);
    }

    void an_outline_that_is_left_out_is_drawn_as_not_marked() {
        ViewFixture f;
        f.session().document().select({f.addRect(0, 0, 10, 10)});
        QVector<FillParam> fills(kFillCount);
        fills[0].Enable = true;
        f.view.FillSelectedObj(fills, false, false, false);
        SceneCache cache;
        cache.setState(f.state());
        const std::vector<SceneLeaf>& leaves = cache.item(0, 10.0).leaves();
        QCOMPARE(leaves.size(), std::size_t(2));
        QVERIFY(!leaves[0].works && leaves[0].lines.size() == 1);
        QVERIFY(leaves[1].works && leaves[1].hatch->count() == 100);
    }

    void shown_in_the_simple_way_a_hundred_lines_are_drawn() {
        ViewFixture f;
        f.session().document().select({f.addRect(0, 0, 10, 10)});
        QVector<FillParam> fills(kFillCount);
        fills[0].Enable = true;
        fills[0].FillDist = 0.01;
        f.view.FillSelectedObj(fills, true, false, true);
        SceneCache cache;
        cache.setState(f.state());
        const SceneLeaf& leaf = cache.item(0, 10.0).leaves()[1];
        QCOMPARE(leaf.hatch->count(), std::size_t(1000));
        QCOMPARE((leaf.hatch->count() + leaf.hatchStep - 1) / leaf.hatchStep, std::size_t(91));
    }

    void a_closer_look_uses_the_same_hatch() {
        ViewFixture f;
        f.session().document().select({f.addCircle(0, 0, 10)});
        QVector<FillParam> fills(kFillCount);
        fills[0].Enable = true;
        f.view.FillSelectedObj(fills, true, false, false);
        SceneCache cache;
        cache.setState(f.state());
        const std::shared_ptr<const PackedLines> far = cache.item(0, 1.0).leaves()[1].hatch;
        QCOMPARE(cache.item(0, 1000.0).leaves()[1].hatch, far);
    }
};

QTEST_MAIN(tst_HatchView)
#include "tst_hatchview.moc"
