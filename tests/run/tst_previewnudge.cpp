// SPDX-License-Identifier: MIT
#include "engine/drawnparts.h"
#include "run/redlooppreview.h"
#include "tests/run/formfixture.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <algorithm>
#include <cmath>
#include <limits>

using namespace tests;

namespace {

constexpr int kColumns = 50;
constexpr int kRows = 40;
constexpr double kStep = 0.25;    // mm, exact in the trace
constexpr double kPitch = 1.0;    // mm
constexpr double kLeftMost = -25; // mm

} // namespace

/// The direction keys and arrows during a looping preview of many vertices.
class PreviewNudgeTest : public QObject, private RunDialogFixture {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_direction_key_of_the_locked_window_moves_the_beam_data();
    void a_direction_key_of_the_locked_window_moves_the_beam();
    void nudges_of_many_vertices_are_on_the_trace();
    void at_most_one_key_waits();
    void keys_of_a_locked_window_leave_a_laser_job_alone();
    void a_document_for_reading_only_is_not_moved();

private:
    QRulerView* view() { return (*m_Window)->GetActiveView(); }
    double left() {
        double x = 0.0, y = 0.0, width = 0.0, height = 0.0, angle = 0.0;
        view()->GetSelectObjPos(x, y, width, height, angle);
        return x;
    }
    /// First vertex of the newest pass, which is the corner where the first rectangle begins.
    bool firstVertex(sim::SimTraceRow& first) {
        std::uint64_t pass = 0;
        std::size_t from = 0;
        std::vector<sim::SimTraceRow> rows;
        machine().followTrace(pass, from, rows, 1);
        if (rows.empty())
            return false;
        first = rows.front();
        return true;
    }
    bool beamBeganAt(double x) {
        sim::SimTraceRow first;
        return firstVertex(first) && qAbs(first.x - x) < 1e-6;
    }
    double firstX() {
        sim::SimTraceRow first;
        return firstVertex(first) ? first.x : std::numeric_limits<double>::quiet_NaN();
    }
    /// Five vertices each.
    void drawRectangles() {
        QVector<DrawnRect> rects;
        for (int row = 0; row < kRows; ++row) {
            for (int column = 0; column < kColumns; ++column) {
                DrawnRect rect;
                rect.rect = QRectF(kLeftMost + column * kPitch, -20 + row * kPitch, 0.75, 0.75);
                rects.append(rect);
            }
        }
        QVERIFY(view()->AddDrawing(rects, {}));
        QCOMPARE(view()->GetSelectedToolCnt(), kColumns * kRows);
        view()->SetKeyMoveDist(kStep);
    }
    void beginPreview() {
        dialog().StartMarkPreview(true, true, 10, MarkTypeRedPreview);
        QTRY_VERIFY((*m_Window)->IsRedView() && !view()->isEnabled());
        QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
        QTRY_VERIFY(!std::isnan(firstX()));
    }
    /// As the operator's keyboard does it: to what has the focus, or to the window.
    void key(Qt::Key key) {
        QWidget* target = (*m_Window)->focusWidget();
        if (!target || !target->isEnabled())
            target = &**m_Window;
        QTest::keyClick(target, key);
    }
};

void PreviewNudgeTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void PreviewNudgeTest::init() {
    begin();
    SystemParam::Instance()->SetInvertX(false);
    SystemParam::Instance()->SetInvertY(false);
    drawRectangles();
}

void PreviewNudgeTest::cleanup() {
    dialog().StopMark();
    QTRY_VERIFY(idle());
    end();
}

void PreviewNudgeTest::a_direction_key_of_the_locked_window_moves_the_beam_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<double>("dx");
    QTest::addColumn<double>("dy");
    QTest::newRow("left") << int(Qt::Key_Left) << -kStep << 0.0;
    QTest::newRow("right") << int(Qt::Key_Right) << kStep << 0.0;
    QTest::newRow("up") << int(Qt::Key_Up) << 0.0 << kStep;
    QTest::newRow("down") << int(Qt::Key_Down) << 0.0 << -kStep;
}

void PreviewNudgeTest::a_direction_key_of_the_locked_window_moves_the_beam() {
    QFETCH(int, key);
    QFETCH(double, dx);
    QFETCH(double, dy);
    beginPreview();
    sim::SimTraceRow before;
    QVERIFY(firstVertex(before));
    QSignalSpy passes(&dialog(), &Form_Marking::SendRunData);
    this->key(Qt::Key(key));
    sim::SimTraceRow after = before;
    QTRY_VERIFY(firstVertex(after) && (after.x != before.x || after.y != before.y));
    QVERIFY(qAbs(after.x - before.x - dx) < 1e-6 && qAbs(after.y - before.y - dy) < 1e-6);
    QCOMPARE(passes.count(), 0);
    QVERIFY(dialog().IsRunning());
    QCOMPARE(look(), QStringLiteral("background:green"));
}

/// From the press of the key to the first vertex of the moved objects on the trace.
void PreviewNudgeTest::nudges_of_many_vertices_are_on_the_trace() {
    const int nudges = qMax(10, qEnvironmentVariableIntValue("TESSERA_NUDGES"));
    int objects = 0;
    int vertices = 0;
    view()->GetDocStatistics(objects, vertices);
    QVERIFY(vertices >= 10000);
    beginPreview();
    const double start = firstX();
    std::vector<double> times;
    for (int i = 1; i <= nudges; ++i) {
        QElapsedTimer time;
        time.start();
        key(Qt::Key_Right);
        while (!beamBeganAt(start + i * kStep) && time.elapsed() < 10000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        times.push_back(double(time.nsecsElapsed()) / 1e6);
        QVERIFY2(beamBeganAt(start + i * kStep), qPrintable(QString::number(firstX() - start)));
        QVERIFY(dialog().IsRunning());
    }
    std::sort(times.begin(), times.end());
    qInfo("%d vertices, %d nudges: median %.1f ms, 9 of 10 within %.1f ms, longest %.1f ms", vertices, nudges,
          times[times.size() / 2], times[times.size() * 9 / 10], times.back());
}

/// The key thread takes what waits every 10 ms; keys that come faster find one waiting and are dropped.
void PreviewNudgeTest::at_most_one_key_waits() {
    beginPreview();
    const double start = firstX();
    int longest = 0;
    for (int i = 0; i < 500; ++i) {
        key(Qt::Key_Right);
        const QMutexLocker lock(&view()->m_DirKeyLock);
        longest = qMax(longest, view()->m_DirKeys.size());
    }
    QCOMPARE(longest, 1);
    QTRY_VERIFY(firstX() > start);
    QVERIFY(dialog().IsRunning());
}

void PreviewNudgeTest::keys_of_a_locked_window_leave_a_laser_job_alone() {
    machine().setSpeed(kSlow);
    press("pushButtonStart");
    QTRY_VERIFY(!view()->isEnabled());
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    const double before = left();
    machine().clearJournal();
    key(Qt::Key_Right);
    QVERIFY(!waitFor([&] { return left() != before; }, 100));
    QVERIFY(machineJournal().isEmpty());
}

void PreviewNudgeTest::a_document_for_reading_only_is_not_moved() {
    beginPreview();
    view()->SetReadOnly(true);
    const double before = left();
    machine().clearJournal();
    key(Qt::Key_Right);
    QVERIFY(!waitFor([&] { return left() != before || machineCalls("StopMark") > 0; }, 100));
}

QTEST_MAIN(PreviewNudgeTest)
#include "tst_previewnudge.moc"
