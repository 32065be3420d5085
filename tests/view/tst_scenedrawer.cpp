// SPDX-License-Identifier: MIT
// Pictures of large documents that another thread draws.
#include "simengine/view/scenedrawer.h"
#include "support/scarcememory.h"
#include "support/timeoutscale.h"
#include "support/waitfor.h"
#include "viewfixture.h"

#include <QBackingStore>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>
#include <cmath>

using namespace sim;
using tests::ViewFixture;

namespace {

constexpr QSize kPixels(640, 480);

/// Small waves in rows and columns; enough of them to take longer than a frame's share on any machine.
void addWaves(ViewFixture& f, int objects, int vertices) {
    ObjectList list;
    const int side = static_cast<int>(std::ceil(std::sqrt(objects)));
    const double pitch = 90.0 / side;
    for (int i = 0; i < objects; ++i) {
        const QPointF corner(-45.0 + (i % side) * pitch, -45.0 + i / side * pitch);
        PolylineShape shape;
        for (int k = 0; k < vertices; ++k) {
            const double t = static_cast<double>(k) / vertices;
            shape.points << corner + pitch * QPointF(t * 0.9, 0.45 + 0.4 * std::sin(t * 12.0));
        }
        ObjectData data;
        data.shape = shape;
        data.pen = i % kLayerCount;
        list.push_back(MarkObject::make(std::move(data)));
    }
    f.session().document().edit([&](const DocumentState& state) { return edits::add(state, list); });
    f.session().document().select({});
}

void addLargeDrawing(ViewFixture& f) {
    addWaves(f, 20000, 40);
}

SceneOrder orderOf(ViewFixture& f) {
    SceneOrder order;
    order.state = f.state();
    order.transform.setViewport(kPixels);
    order.transform.fit(f.canvas().fieldMm(), 10.0);
    order.colors.fill(Qt::black);
    order.fieldMm = f.canvas().fieldMm();
    order.pixels = kPixels;
    return order;
}

/// What the window shows of the canvas now.
QImage shown(ViewFixture& f) {
    auto* image = dynamic_cast<QImage*>(f.canvas().window()->backingStore()->paintDevice());
    if (!image)
        return QImage();
    const QPoint corner = f.canvas().mapTo(f.canvas().window(), QPoint(0, 0));
    return image->copy(QRect(corner, f.canvas().size())).convertToFormat(QImage::Format_RGB32);
}

QImage grabbed(ViewFixture& f) {
    return f.canvas().grab().toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

class tst_SceneDrawer : public QObject {
    Q_OBJECT

private slots:
    void the_other_thread_draws_the_same_picture() {
        ViewFixture f;
        addWaves(f, 500, 40);
        const SceneOrder order = orderOf(f);
        SceneCache cache;
        const QImage expected = drawScene(cache, order).image;
        SceneDrawer drawer(nullptr);
        QImage image;
        QThread const* deliveredOn = nullptr;
        connect(&drawer, &SceneDrawer::drawn, this, [&](const ScenePicture& picture) {
            image = picture.image;
            deliveredOn = QThread::currentThread();
        });
        drawer.draw(order);
        QVERIFY(drawer.isBusy());
        QTRY_VERIFY(!image.isNull());
        QVERIFY(!drawer.isBusy());
        QCOMPARE(deliveredOn, thread());
        QCOMPARE(image, expected);
    }

    void one_picture_is_drawn_at_a_time() {
        ViewFixture f;
        addWaves(f, 500, 40);
        SceneDrawer drawer(nullptr);
        int pictures = 0;
        connect(&drawer, &SceneDrawer::drawn, this, [&pictures] { ++pictures; });
        for (int i = 0; i < 5; ++i)
            drawer.draw(orderOf(f));
        QTRY_VERIFY(!drawer.isBusy());
        QCOMPARE(pictures, 1);
        drawer.draw(orderOf(f));
        QTRY_COMPARE(pictures, 2);
    }

    void without_memory_for_the_objects_the_field_is_shown_and_the_next_picture_is_whole() {
        ViewFixture f;
        addLargeDrawing(f);
        const SceneOrder order = orderOf(f);
        SceneOrder bare = order;
        bare.state = std::make_shared<const DocumentState>();
        SceneCache cache;
        const QImage field = drawScene(cache, bare).image;
        const QImage whole = drawScene(cache, order).image;
        SceneDrawer drawer(nullptr);
        QVector<ScenePicture> pictures;
        connect(&drawer, &SceneDrawer::drawn, this, [&](const ScenePicture& picture) { pictures << picture; });
        {
            // No event is handled meanwhile: the canvas draws the document too.
            const tests::ScarceMemory scarce(100'000);
            QElapsedTimer time;
            time.start();
            drawer.draw(order);
            while (scarce.refused() == 0 && !time.hasExpired(tests::scaled(5000)))
                QThread::msleep(1);
            QVERIFY(scarce.refused() > 0);
        }
        QTRY_COMPARE(pictures.size(), 1);
        QVERIFY(!drawer.isBusy());
        QCOMPARE(pictures[0].image, field);
        QVERIFY(std::isinf(pictures[0].workMs));
        drawer.draw(order);
        QTRY_COMPARE(pictures.size(), 2);
        QCOMPARE(pictures[1].image, whole);
        QVERIFY(std::isfinite(pictures[1].workMs));
    }

    void a_drawer_that_goes_meanwhile_delivers_nothing() {
        ViewFixture f;
        addLargeDrawing(f);
        int pictures = 0;
        {
            SceneDrawer drawer(nullptr);
            connect(&drawer, &SceneDrawer::drawn, this, [&pictures] { ++pictures; });
            drawer.draw(orderOf(f));
        }
        QCoreApplication::processEvents();
        QCOMPARE(pictures, 0);
    }

    void the_window_shows_a_change_of_a_large_document_when_it_is_drawn() {
        ViewFixture f;
        addLargeDrawing(f);
        QVERIFY(!grabbed(f).isNull());
        QVERIFY2(f.canvas().lastSceneTime() > 4.0, qPrintable(QString::number(f.canvas().lastSceneTime())));
        // lies over the canvas in the window
        f.view.findChild<QWidget*>(QStringLiteral("viewBar"))->hide();
        auto* drawer = f.canvas().findChild<SceneDrawer*>();
        QVERIFY(drawer);
        int pictures = 0;
        connect(drawer, &SceneDrawer::drawn, this, [&pictures] { ++pictures; });
        f.addRect(-40, -40, 80, 80, 3);
        QTRY_VERIFY(pictures > 0 && !drawer->isBusy());
        QCoreApplication::processEvents();
        const int drawnByWindow = pictures;
        const QImage window = shown(f);
        QVERIFY(!window.isNull());
        QCOMPARE(window, grabbed(f));
        QCOMPARE(pictures, drawnByWindow);
    }

    void a_picture_that_is_asked_for_shows_a_change_at_once() {
        ViewFixture f;
        addLargeDrawing(f);
        const QImage before = grabbed(f);
        auto* drawer = f.canvas().findChild<SceneDrawer*>();
        QVERIFY(drawer);
        int pictures = 0;
        connect(drawer, &SceneDrawer::drawn, this, [&pictures] { ++pictures; });
        f.addRect(-40, -40, 80, 80, 3);
        const QImage after = grabbed(f);
        QCOMPARE(pictures, 0);
        QVERIFY(before != after);
    }

    void a_view_may_go_while_its_picture_is_drawn() {
        ViewFixture f;
        addLargeDrawing(f);
        QVERIFY(!grabbed(f).isNull());
        auto* drawer = f.canvas().findChild<SceneDrawer*>();
        QVERIFY(drawer);
        f.addRect(-40, -40, 80, 80, 3);
        // Looked at between any two events: the picture may be there soon.
        QElapsedTimer time;
        time.start();
        while (!drawer->isBusy() && !time.hasExpired(tests::scaled(5000)))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        QVERIFY(drawer->isBusy());
    }

    void a_drawer_that_goes_gives_up_its_picture() {
        ViewFixture f;
        SceneOrder order = orderOf(f);
        ObjectData data;
        data.shape = RectShape{QRectF(0, 0, 1, 15'000)};
        data.hatch.fills[0].Enable = true;
        data.hatch.fills[0].FillDist = 0.001;
        constexpr std::uint64_t kRows = 15'000'000;
        DocumentState state;
        state.objects = std::make_shared<const ObjectList>(ObjectList{MarkObject::make(std::move(data))});
        order.state = std::make_shared<const DocumentState>(state);
        auto drawer = std::make_unique<SceneDrawer>(nullptr);
        drawer->draw(order);
        const auto work = drawer->work();
        QVERIFY(tests::waitFor([&work] { return work->steps() > 10; }));
        drawer.reset();
        QVERIFY(work->isCancelled());
        QVERIFY2(work->steps() < kRows, qPrintable(QString::number(work->steps())));
    }
};

QTEST_MAIN(tst_SceneDrawer)
#include "tst_scenedrawer.moc"
