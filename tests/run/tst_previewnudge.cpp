// SPDX-License-Identifier: MIT
#include "bench/support/percentile.h"
#include "engine/drawnparts.h"
#include "engine/markcardinstance.h"
#include "run/redlooppreview.h"
#include "tests/run/formfixture.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace tests;

namespace {

constexpr int kColumns = 50;
constexpr int kRows = 40;
constexpr double kStep = 0.25;    // mm, exact in the trace
constexpr double kPitch = 1.0;    // mm
constexpr double kLeftMost = -25; // mm
constexpr int kNudgesOneWay = 40;
/// From the key to the trace.
constexpr double kNudgeBoundMs = 50.0;
/// An output that nothing else uses: its write is the mark of a key in the journal.
constexpr int kMarkOutput = 30;

/// ms
struct NudgeTimes {
    std::vector<double> toStop;   ///< from the key until the running preview is stopped
    std::vector<double> toOrder;  ///< from there until the one with the new data is ordered
    std::vector<double> toVertex; ///< from there until its first vertex is on the trace
    std::vector<double> all;
};

void handleEventsFor(int microseconds) {
    QElapsedTimer time;
    time.start();
    while (time.nsecsElapsed() < microseconds * 1000LL)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
}

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
    void a_key_of_a_document_that_was_left_is_dropped();
    void keys_of_a_locked_window_leave_a_laser_job_alone();
    void a_document_for_reading_only_is_not_moved();

private:
    void nudge(Qt::Key direction, NudgeTimes& times);
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

void PreviewNudgeTest::nudge(Qt::Key direction, NudgeTimes& times) {
    const double aim = firstX() + (direction == Qt::Key_Right ? kStep : -kStep);
    const std::uint64_t since = machine().journalEnd();
    MarkCardInstance::Instance()->SetOutputBit(kMarkOutput, 1);
    QElapsedTimer time;
    time.start();
    key(direction);
    while (!beamBeganAt(aim) && time.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    const double all = double(time.nsecsElapsed()) / 1e6;
    QVERIFY2(beamBeganAt(aim), qPrintable(QStringLiteral("at %1 for %2").arg(firstX()).arg(aim)));
    QVERIFY(dialog().IsRunning());
    const std::vector<sim::SimCall> calls = machine().journal(since);
    const auto at = [&calls](char const* name) {
        const auto found =
            std::find_if(calls.begin(), calls.end(), [name](auto const& call) { return call.name == name; });
        return found != calls.end() ? found->ms : std::numeric_limits<double>::quiet_NaN();
    };
    times.all.push_back(all);
    times.toStop.push_back(at("StopMark") - at("SetOutputBit"));
    times.toOrder.push_back(at("StartMark") - at("StopMark"));
    times.toVertex.push_back(all - (at("StartMark") - at("SetOutputBit")));
}

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

/// From the press of the key, at any moment of the key thread's beat, to the first vertex of the moved objects on the
/// trace. The long form holds it to 50 ms.
void PreviewNudgeTest::nudges_of_many_vertices_are_on_the_trace() {
    const int asked = qEnvironmentVariableIntValue("TESSERA_NUDGES");
    const int nudges = qMax(10, asked);
    int objects = 0;
    int vertices = 0;
    view()->GetDocStatistics(objects, vertices);
    QVERIFY(vertices >= 10000);
    beginPreview();
    std::mt19937 random(44);
    NudgeTimes times;
    for (int i = 0; i < nudges; ++i) {
        handleEventsFor(int(random() % 25000));
        // There and back again, so that everything stays in the field.
        nudge(i / kNudgesOneWay % 2 == 0 ? Qt::Key_Right : Qt::Key_Left, times);
        if (QTest::currentTestFailed())
            return;
    }
    qInfo("%d vertices, %d nudges: median %.1f ms, 9 of 10 within %.1f ms, longest %.1f ms", vertices, nudges,
          bench::percentile(times.all, 0.5), bench::percentile(times.all, 0.9), bench::percentile(times.all, 1.0));
    qInfo(
        "  medians of its parts: %.1f ms until the preview is stopped (10 ms beat, move of the objects), %.1f ms until "
        "the new one is ordered, %.1f ms to its first vertex",
        bench::percentile(times.toStop, 0.5), bench::percentile(times.toOrder, 0.5),
        bench::percentile(times.toVertex, 0.5));
    if (asked > 0) {
        QVERIFY2(bench::percentile(times.all, 0.5) < kNudgeBoundMs,
                 qPrintable(QString::number(bench::percentile(times.all, 0.5))));
        QVERIFY2(bench::percentile(times.all, 0.9) < kNudgeBoundMs,
                 qPrintable(QString::number(bench::percentile(times.all, 0.9))));
    }
}

/// Keys that come while the main thread is held up find one waiting, in the list or on its way, and are dropped; the
/// key thread looks every 10 ms meanwhile.
void PreviewNudgeTest::at_most_one_key_waits() {
    beginPreview();
    const double start = left();
    const double beam = firstX();
    int longest = 0;
    QElapsedTimer held;
    held.start();
    for (int i = 0; i < 500 || held.elapsed() < 100; ++i) {
        key(Qt::Key_Right);
        view()->OnKeyUpDonwEvent(1, true);
        const QMutexLocker lock(&view()->m_DirKeyLock);
        longest = qMax(longest, view()->m_DirKeys.size());
    }
    QCOMPARE(longest, 1);
    QCOMPARE(left(), start);
    QCoreApplication::processEvents();
    QCOMPARE(left(), start + kStep);
    QTRY_VERIFY(beamBeganAt(beam + kStep));
    QCOMPARE(left(), start + kStep);
    QVERIFY(dialog().IsRunning());
}

/// It may be long until the document is the current one again. An order to move that is under way finds none either.
void PreviewNudgeTest::a_key_of_a_document_that_was_left_is_dropped() {
    QRulerView* first = view();
    const double start = left();
    m_Window->newDocument(1, QStringLiteral("other"));
    QRulerView* second = view();
    QVERIFY(second != first);
    (*m_Window)->SetCurDoc(first->GetFileName());
    QCOMPARE(view(), first);
    {
        const QMutexLocker lock(&first->m_DirKeyLock);
        first->m_DirKeys.append(Qt::Key_Right);
    }
    (*m_Window)->SetCurDoc(second->GetFileName());
    QCOMPARE(view(), second);
    {
        const QMutexLocker lock(&first->m_DirKeyLock);
        QVERIFY(first->m_DirKeys.isEmpty());
    }
    (*m_Window)->SetCurDoc(first->GetFileName());
    int polls = 0;
    QObject context;
    connect(&**m_Window, &MainWindow::TimerUpDate, &context, [&polls] { ++polls; });
    QTRY_VERIFY(polls >= 3);
    QCOMPARE(left(), start);
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
