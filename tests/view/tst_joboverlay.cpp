// SPDX-License-Identifier: MIT
// What the view shows of a running job: marked parts and the spot.
#include "engine/markcardinstance.h"
#include "engine/markshapecontainer.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "simengine/card/cardcore.h"
#include "simengine/view/viewtheme.h"
#include "viewfixture.h"

#include <future>

using namespace sim;
using tests::ViewFixture;

namespace {

QImage picture(ViewFixture& f) {
    return f.canvas().grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// The colour of the pixel nearest to a place on which something of this colour is drawn, or of the place itself.
bool shows(const QImage& image, const QPoint& at, const QColor& color) {
    for (int dy = -2; dy <= 2; ++dy) {
        for (int dx = -2; dx <= 2; ++dx) {
            if (image.rect().contains(at + QPoint(dx, dy)) && image.pixelColor(at + QPoint(dx, dy)) == color)
                return true;
        }
    }
    return false;
}

QPolygonF line(std::initializer_list<QPointF> points) {
    return QPolygonF(QVector<QPointF>(points));
}

QColor penColor(ViewFixture& f, int pen) {
    return theme::onCanvas(f.session().penColors()[static_cast<std::size_t>(pen)]);
}

} // namespace

class tst_JobOverlay : public QObject {
    Q_OBJECT

private:
    static IMarkCardBase* card() { return MarkCardInstance::Instance(); }

    /// Marks the document in the background; the pens are slow enough for a look.
    static std::future<bool> run(ViewFixture& f, double speed) {
        LayerData* pen = nullptr;
        for (int i = 0; i < kLayerCount; ++i) {
            f.view.GetLayerParams()->GetLayerData(i, pen);
            pen->MarkSpeed = speed;
            pen->RedSpeed = speed;
        }
        card()->DownLayerPara(f.view.GetLayerParams(), kLayerCount);
        card()->SetMarkStaus(MarkStatusRun);
        MarkShapeContainer* tools = f.view.GetMarkTools();
        LayerParamEx* pens = f.view.GetLayerParams();
        return std::async(std::launch::async, [=] { return tools->StartMark(false, false, pens); });
    }
    static void stop() {
        card()->StopMark();
        card()->SetMarkStaus(MarkStatusStop);
        card()->StopMark();
    }
    static QPointF headMm() {
        const Point at = simulatedCard().head().at;
        return {at.x, at.y};
    }

    /// The laser of the job that is shown is beyond a place, to the right or with `left` to the left of it.
    static bool marksBeyond(ViewFixture& f, double x, bool left = false) {
        const HeadState head = simulatedCard().head();
        return f.canvas().job().isRunning() && head.laser && (left ? head.at.x < x : head.at.x > x);
    }

private slots:
    void init() {
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard());
        simulatedCard().setSpeed(1.0);
        card()->OpenCard();
        card()->SetMarkType(MarkTypeLaser);
    }
    void cleanup() {
        stop();
        card()->SetMarkType(MarkTypeLaser);
        card()->CloseCard();
        MarkCardInstance::SetMarkCardInstance(nullptr);
        SystemParam::Instance()->SetBufLoop(false);
    }

    void nothing_is_shown_without_a_job() {
        ViewFixture f;
        f.addRect(-10, -5, 20, 10);
        QVERIFY(!f.canvas().job().isActive());
    }

    void marked_parts_stand_out_and_all_goes_after_the_job() {
        ViewFixture f;
        f.addLine(line({{-40, 0}, {-20, 0}, {40, 0}}), 3);
        f.addLine(line({{-40, 30}, {40, 30}}), 4);
        const QImage before = picture(f);
        auto job = run(f, 40.0);
        QTRY_VERIFY(marksBeyond(f, -10.0));
        f.canvas().job().follow();
        const QImage during = picture(f);
        QVERIFY(shows(during, f.pixel(-30, 0), penColor(f, 3)));
        // what is not marked yet is faded
        QVERIFY(!shows(during, f.pixel(0, 30), penColor(f, 4)));
        QVERIFY(shows(before, f.pixel(0, 30), penColor(f, 4)));
        simulatedCard().setSpeed(0.0);
        QVERIFY(job.get());
        QTRY_VERIFY(!f.canvas().job().isRunning());
        QVERIFY(f.canvas().job().isActive());
        QTRY_VERIFY(!f.canvas().job().isActive());
        QCOMPARE(picture(f), before);
    }

    void what_is_selected_is_faded_too() {
        ViewFixture f;
        f.addLine(line({{-40, 0}, {40, 0}}), 3);
        f.addLine(line({{-40, 30}, {40, 30}}), 4);
        f.session().document().select({1});
        QVERIFY(shows(picture(f), f.pixel(0, 30), penColor(f, 4)));
        auto job = run(f, 20.0);
        QTRY_VERIFY(marksBeyond(f, -35.0));
        f.canvas().job().follow();
        QVERIFY(!shows(picture(f), f.pixel(0, 30), penColor(f, 4)));
        stop();
        QVERIFY(job.get());
    }

    void the_line_that_is_being_marked_reaches_to_the_spot() {
        ViewFixture f;
        f.addLine(line({{-50, 0}, {50, 0}}), 2);
        auto job = run(f, 25.0);
        QTRY_VERIFY(marksBeyond(f, -30.0));
        f.canvas().job().follow();
        const QImage during = picture(f);
        QVERIFY(shows(during, f.pixel(-40, 0), penColor(f, 2)));
        stop();
        QVERIFY(job.get());
    }

    void the_spot_stands_with_a_paused_job() {
        ViewFixture f;
        f.addLine(line({{-50, 10}, {50, 10}}), 2);
        auto job = run(f, 50.0);
        QTRY_VERIFY(marksBeyond(f, -30.0));
        card()->PauseMark();
        f.canvas().job().follow();
        const QImage one = picture(f);
        f.canvas().job().follow();
        QCOMPARE(picture(f), one);
        const QPoint spot = f.canvas().viewTransform().toPixel(headMm()).toPoint();
        // out of the laser while it waits
        QVERIFY(shows(one, spot, QColor(theme::kNotWorking)));
        card()->RestartMark();
        stop();
        QVERIFY(job.get());
    }

    void a_preview_shows_the_pilot_beam_and_fades_nothing() {
        ViewFixture f;
        f.addLine(line({{-50, -20}, {50, -20}}), 2);
        const QImage before = picture(f);
        card()->SetMarkType(MarkTypeRedPreview);
        auto job = run(f, 50.0);
        QTRY_VERIFY(f.canvas().job().isRunning() && headMm().x() > -40.0);
        f.canvas().job().follow();
        QVERIFY(!f.canvas().job().fadesObjects());
        const QImage during = picture(f);
        QVERIFY(shows(during, f.pixel(40, -20), penColor(f, 2)));
        QVERIFY(during != before);
        stop();
        QVERIFY(job.get());
        QTRY_VERIFY(!f.canvas().job().isActive());
        QCOMPARE(picture(f), before);
    }

    void other_documents_show_nothing() {
        ViewFixture f;
        f.addLine(line({{-50, 0}, {50, 0}}));
        QRulerView other(nullptr);
        other.show();
        auto job = run(f, 50.0);
        QTRY_VERIFY(f.canvas().job().isRunning());
        QVERIFY(!QRulerViewAccess::canvas(other).job().isActive());
        stop();
        QVERIFY(job.get());
        QCoreApplication::processEvents();
        QVERIFY(!QRulerViewAccess::canvas(other).job().isActive());
    }

    void inverted_axes_show_the_marks_on_the_drawing() {
        ViewFixture f;
        SystemParam::Instance()->SetInvertX(true);
        f.addLine(line({{20, 0}, {40, 0}, {50, 0}}), 3);
        auto job = run(f, 20.0);
        QTRY_VERIFY(marksBeyond(f, -41.0, true));
        f.canvas().job().follow();
        const QImage during = picture(f);
        SystemParam::Instance()->SetInvertX(false);
        QVERIFY(shows(during, f.pixel(30, 0), penColor(f, 3)));
        QVERIFY(!shows(during, f.pixel(-30, 0), penColor(f, 3)));
        stop();
        QVERIFY(job.get());
    }

    void a_closer_look_draws_the_marked_parts_anew() {
        ViewFixture f;
        f.addLine(line({{-40, 0}, {-20, 0}, {40, 0}}), 3);
        auto job = run(f, 20.0);
        QTRY_VERIFY(marksBeyond(f, -15.0));
        f.canvas().zoomAbout(f.pixel(-30, 0), 3.0);
        const QImage during = picture(f);
        QVERIFY(f.canvas().job().rowsDrawn() >= 2);
        QVERIFY(shows(during, f.pixel(-25, 0), penColor(f, 3)));
        stop();
        QVERIFY(job.get());
    }

    void a_pass_of_a_loop_begins_anew() {
        ViewFixture f;
        f.addLine(line({{-10, 0}, {10, 0}}), 3);
        SystemParam::Instance()->SetBufLoop(true);
        MarkShapeContainer* tools = f.view.GetMarkTools();
        LayerParamEx* pens = f.view.GetLayerParams();
        LayerData* pen = nullptr;
        pens->GetLayerData(3, pen);
        pen->MarkSpeed = 200.0;
        card()->DownLayerPara(pens, kLayerCount);
        card()->SetMarkStaus(MarkStatusRun);
        auto job = std::async(std::launch::async, [=] { return tools->StartMark(false, true, pens); });
        const std::uint64_t first = simulatedCard().trace().pass();
        QTRY_VERIFY(simulatedCard().trace().pass() > first + 2);
        f.canvas().job().follow();
        QVERIFY(f.canvas().job().rowsDrawn() <= simulatedCard().trace().size() + 2);
        QVERIFY(f.canvas().job().isRunning());
        stop();
        QVERIFY(job.get());
    }

    void a_job_that_is_faster_than_the_screen_is_drawn_bit_by_bit() {
        ViewFixture f;
        QPolygonF points;
        for (int i = 0; i < 400000; ++i)
            points << QPointF(-50.0 + 100.0 * i / 400000, 20.0 * std::sin(i * 0.01));
        f.addLine(points, 3);
        simulatedCard().setSpeed(0.0);
        // it goes soon after it has all been drawn, too soon to be asked on a busy machine
        std::size_t most = 0;
        const JobOverlay& overlay = f.canvas().job();
        connect(&overlay, &JobOverlay::changed, this, [&] { most = std::max(most, overlay.rowsDrawn()); });
        auto job = run(f, 1000.0);
        QVERIFY(job.get());
        QTRY_VERIFY(overlay.isActive());
        QTRY_VERIFY(!overlay.isActive());
        disconnect(&overlay, nullptr, this, nullptr);
        QCOMPARE(most, simulatedCard().trace().size());
    }

    void a_run_after_a_run_leaves_no_gap() {
        ViewFixture f;
        f.addLine(line({{-10, 0}, {10, 0}}), 3);
        for (int i = 0; i < 3; ++i) {
            auto job = run(f, 400.0);
            QVERIFY(job.get());
            QTRY_VERIFY(f.canvas().job().isActive());
        }
        QTRY_VERIFY(!f.canvas().job().isActive());
    }
};

QTEST_MAIN(tst_JobOverlay)
#include "tst_joboverlay.moc"
