// SPDX-License-Identifier: MIT
#include "randomdocument.h"

#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "simengine/card/cardlink.h"
#include "simengine/log/runtimes.h"
#include "simengine/view/playbackwindow.h"
#include "simengine/view/qrulerviewaccess.h"
#include "simengine/view/viewsession.h"
#include "support/temporaryroot.h"
#include "support/waitfor.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>

using namespace sim;

namespace {

/// Pixels in which two pictures differ.
int difference(const QImage& one, const QImage& other) {
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x)
            count += one.pixel(x, y) != other.pixel(x, y);
    }
    return count;
}

} // namespace

/// The playback of a job: clock, window, picture.
class PlaybackTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void clock_goes_on_and_stops_at_the_end();
    void clock_takes_what_is_sound();
    void durations_as_text_data();
    void durations_as_text();
    void button_of_the_view_opens_one_window();
    void window_goes_with_its_view();
    void estimate_is_shown_with_its_parts();
    void slider_moves_the_head_to_its_place();
    void marked_part_grows_and_shrinks();
    void playing_ends_at_the_end();
    void selection_alone();
    void edits_and_pens_are_followed();
    void empty_document_is_told();
    void inverted_axes_are_shown_as_drawn();
    void runs_are_listed();
    void card_is_never_touched();
    void million_vertices_are_shown_in_short_steps();
    void repeated_rounds_are_passed_over();
    void closing_ends_a_long_calculation();

private:
    PlaybackWindow* open();
    void addLine(const QVector<QPointF>& points, int pen = 0);
    void setPens(double markSpeed, int count = 1);

    std::unique_ptr<tests::TemporaryRoot> m_root;
    std::unique_ptr<QRulerView> m_view;
};

void PlaybackTest::init() {
    m_root = std::make_unique<tests::TemporaryRoot>();
    QVERIFY(m_root->isValid());
    LayerData::InitLayerData();
    m_view = std::make_unique<QRulerView>(nullptr);
    m_view->resize(900, 600);
    m_view->show();
    m_view->SetFileName(m_root->path(QStringLiteral("MarkFile/plate.mkf")));
    setPens(100.0);
}

void PlaybackTest::cleanup() {
    RunTimes::instance().flush();
    m_view.reset();
    m_root.reset();
}

/// Pens that only mark and jump: no delays.
void PlaybackTest::setPens(double markSpeed, int count) {
    for (LayerData& pen : m_view->GetLayerParams()->GetLayerData()) {
        const LayerData before = pen;
        pen = LayerData();
        pen.ColorR = before.ColorR;
        pen.ColorG = before.ColorG;
        pen.ColorB = before.ColorB;
        pen.MarkSpeed = markSpeed;
        pen.JumpSpeed = 1000.0;
        pen.MarkCnt = count;
        pen.OpenLaserDelay = pen.CloseLaserDelay = pen.EndDelay = pen.TurnDelay = pen.MarkDelay = 0;
        pen.MinJumpDelay = pen.MaxJumpDelay = 0;
    }
}

void PlaybackTest::addLine(const QVector<QPointF>& points, int pen) {
    ObjectData data;
    PolylineShape line;
    line.points = QPolygonF(points);
    data.shape = line;
    data.pen = pen;
    const ObjectPtr object = MarkObject::make(data);
    QVERIFY(object);
    QVERIFY(QRulerViewAccess::session(*m_view).document().edit(
        [&](const DocumentState& state) { return edits::add(state, {object}); }));
}

PlaybackWindow* PlaybackTest::open() {
    auto* button = m_view->findChild<QToolButton*>(QStringLiteral("viewPlayback"));
    if (!button)
        return nullptr;
    button->click();
    auto* window = m_view->window()->findChild<PlaybackWindow*>();
    // A job that takes longer is waited for by its own test.
    if (window)
        (void)tests::waitFor([&] { return window->isReady() && window->view().isComplete(); }, 3000);
    return window;
}

void PlaybackTest::clock_goes_on_and_stops_at_the_end() {
    PlaybackClock clock;
    clock.play();
    QVERIFY(!clock.isPlaying()); // no job
    clock.setTotal(1000.0);
    clock.play();
    clock.advance(100.0);
    QCOMPARE(clock.now(), 100.0);
    clock.setSpeed(4);
    clock.advance(100.0);
    QCOMPARE(clock.now(), 500.0);
    QCOMPARE(clock.left(), 500.0);
    clock.pause();
    clock.advance(100.0);
    QCOMPARE(clock.now(), 500.0);
    clock.play();
    clock.setSpeed(16);
    clock.advance(1000.0);
    QCOMPARE(clock.now(), 1000.0);
    QVERIFY(!clock.isPlaying());
    clock.play(); // from the beginning again
    QCOMPARE(clock.now(), 0.0);
    QVERIFY(clock.isPlaying());
    clock.setTotal(500.0);
    QVERIFY(!clock.isPlaying());
    QCOMPARE(clock.speed(), 16);
}

void PlaybackTest::clock_takes_what_is_sound() {
    PlaybackClock clock;
    clock.setTotal(qQNaN());
    QCOMPARE(clock.total(), 0.0);
    clock.setTotal(-1.0);
    QCOMPARE(clock.total(), 0.0);
    clock.setTotal(100.0);
    clock.seek(-5.0);
    QCOMPARE(clock.now(), 0.0);
    clock.seek(500.0);
    QCOMPARE(clock.now(), 100.0);
    clock.seek(qQNaN());
    QCOMPARE(clock.now(), 100.0);
    clock.setSpeed(3);
    clock.setSpeed(0);
    QCOMPARE(clock.speed(), 1);
}

void PlaybackTest::durations_as_text_data() {
    QTest::addColumn<double>("ms");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << 0.0 << "0.000 s";
    QTest::newRow("below zero") << -3.0 << "0.000 s";
    QTest::newRow("seconds") << 12345.4 << "12.345 s";
    QTest::newRow("just below a minute") << 59999.4 << "59.999 s";
    QTest::newRow("rounded up to a minute") << 59999.6 << "1:00.000";
    QTest::newRow("minutes") << 125678.0 << "2:05.678";
    QTest::newRow("hours") << 3725678.0 << "1:02:05.678";
    QTest::newRow("many hours") << 360000000.0 << "100:00:00.000";
}

void PlaybackTest::durations_as_text() {
    QFETCH(double, ms);
    QFETCH(QString, text);
    QCOMPARE(durationText(ms), text);
}

void PlaybackTest::button_of_the_view_opens_one_window() {
    addLine({{0, 0}, {10, 0}});
    PlaybackWindow* window = open();
    QVERIFY(window && window->isVisible());
    QVERIFY(!window->isModal());
    QCOMPARE(open(), window);
    QCOMPARE(m_view->window()->findChildren<PlaybackWindow*>().size(), 1);
    for (const QAbstractButton* button : window->findChildren<QAbstractButton*>())
        QVERIFY2(button->height() >= 40 || !button->isVisible(), qPrintable(button->objectName()));
    window->findChild<QPushButton*>(QStringLiteral("pushButtonClose"))->click();
    QTRY_VERIFY(m_view->window()->findChildren<PlaybackWindow*>().isEmpty());
}

void PlaybackTest::window_goes_with_its_view() {
    QWidget shell;
    m_view->setParent(&shell);
    shell.show();
    addLine({{0, 0}, {10, 0}});
    const QPointer<PlaybackWindow> window = open();
    QVERIFY(window);
    m_view.reset();
    QVERIFY(!window);
}

void PlaybackTest::estimate_is_shown_with_its_parts() {
    addLine({{0, 0}, {10, 0}});
    addLine({{10, 10}, {10, 30}}, 1);
    const PlaybackWindow* window = open();
    QCOMPARE(window->clock().total(), 310e3); // 30 mm at 100 mm/s and 10 mm at 1000 mm/s
    QCOMPARE(window->findChild<QLabel*>(QStringLiteral("labelEstimate"))->text(), QStringLiteral("0.310 s"));
    const QString parts = window->findChild<QLabel*>(QStringLiteral("labelParts"))->text();
    QVERIFY2(parts.contains(QStringLiteral("0.300 s (30.0 mm)")), qPrintable(parts));
    QVERIFY2(parts.contains(QStringLiteral("0.010 s (10.0 mm)")), qPrintable(parts));
    QVERIFY(window->findChild<QLabel*>(QStringLiteral("labelBesides"))->text().contains("不含"));
}

void PlaybackTest::slider_moves_the_head_to_its_place() {
    addLine({{0, 0}, {10, 0}});
    addLine({{10, 10}, {10, 30}}, 1);
    PlaybackWindow* window = open();
    auto* slider = window->findChild<QSlider*>(QStringLiteral("sliderPlayback"));
    slider->setValue(slider->maximum() * 5 / 31); // 50 ms
    PlaybackMoment moment = window->view().moment();
    QVERIFY(std::abs(moment.at.x() - 5.0) < 0.02);
    QCOMPARE(moment.at.y(), 0.0);
    QCOMPARE(moment.pen, 0);
    QVERIFY(moment.laser);
    QVERIFY(window->findChild<QLabel*>(QStringLiteral("labelPen"))
                ->text()
                .startsWith(QStringLiteral("1 "))); // as in the pens' list
    QCOMPARE(window->findChild<QLabel*>(QStringLiteral("labelLaser"))->text(), QStringLiteral("开"));
    slider->setValue(slider->maximum() * 21 / 31); // 210 ms
    moment = window->view().moment();
    QVERIFY(std::abs(moment.at.y() - 20.0) < 0.05);
    QCOMPARE(moment.pen, 1);
    QTest::mouseClick(slider, Qt::LeftButton, {}, QPoint(slider->width() / 2, slider->height() / 2));
    QVERIFY(std::abs(slider->value() - slider->maximum() / 2) < slider->maximum() / 50);
    slider->setValue(slider->maximum());
    moment = window->view().moment();
    QVERIFY(std::abs(moment.at.y() - 30.0) < 1e-6);
    QVERIFY(!moment.laser);
    QCOMPARE(window->findChild<QLabel*>(QStringLiteral("labelLeft"))->text(), QStringLiteral("0.000 s"));
}

void PlaybackTest::marked_part_grows_and_shrinks() {
    addLine({{-20, 0}, {20, 0}});
    addLine({{-20, 20}, {20, 20}}, 1);
    PlaybackWindow* window = open();
    auto* slider = window->findChild<QSlider*>(QStringLiteral("sliderPlayback"));
    const auto shown = [&](int share) {
        slider->setValue(slider->maximum() * share / 100);
        if (!tests::waitFor([&] { return window->view().isComplete(); }))
            qFatal("the picture does not come");
        return window->view().grab().toImage();
    };
    const QImage begin = shown(0);
    const QImage third = shown(33);
    const QImage all = shown(100);
    const int marked = difference(begin, all);
    QVERIFY2(marked > 400, qPrintable(QString::number(marked))); // both lines
    QVERIFY(difference(begin, third) > marked / 4);
    QVERIFY(difference(begin, third) < marked / 2);
    QCOMPARE(shown(33), third); // back again
    QCOMPARE(shown(0), begin);
    QCOMPARE(shown(100), all);
    window->findChild<QCheckBox*>(QStringLiteral("checkBoxJumps"))->click();
    QVERIFY(difference(shown(100), all) > 100);
}

void PlaybackTest::playing_ends_at_the_end() {
    addLine({{0, 0}, {10, 0}});
    PlaybackWindow* window = open();
    window->findChild<QPushButton*>(QStringLiteral("pushButtonSpeed16"))->click();
    QCOMPARE(window->clock().speed(), 16);
    auto* play = window->findChild<QPushButton*>(QStringLiteral("pushButtonPlay"));
    play->click();
    QVERIFY(window->clock().isPlaying());
    QTRY_VERIFY(!window->clock().isPlaying());
    QCOMPARE(window->clock().left(), 0.0);
    window->findChild<QPushButton*>(QStringLiteral("pushButtonFirst"))->click();
    QCOMPARE(window->clock().now(), 0.0);
}

void PlaybackTest::selection_alone() {
    addLine({{0, 0}, {10, 0}});
    addLine({{0, 0}, {0, 30}});
    QRulerViewAccess::session(*m_view).document().select({0});
    PlaybackWindow* window = open();
    QCOMPARE(window->clock().total(), 410e3); // and the jump back
    window->findChild<QCheckBox*>(QStringLiteral("checkBoxSelectedOnly"))->click();
    QTRY_VERIFY(window->isReady() && window->clock().total() == 100e3);
    QRulerViewAccess::session(*m_view).document().select({1});
    QTRY_COMPARE(window->clock().total(), 300e3);
}

void PlaybackTest::edits_and_pens_are_followed() {
    addLine({{0, 0}, {10, 0}});
    PlaybackWindow* window = open();
    QCOMPARE(window->clock().total(), 100e3);
    addLine({{10, 0}, {30, 0}});
    QTRY_COMPARE(window->clock().total(), 300e3);
    setPens(200.0);
    QTRY_COMPARE(window->clock().total(), 150e3);
    setPens(200.0, 3); // each object three times, with the way back
    QTRY_COMPARE(window->clock().total(), 450e3 + 2 * 10e3 + 2 * 20e3);
}

void PlaybackTest::empty_document_is_told() {
    const PlaybackWindow* window = open();
    QCOMPARE(window->clock().total(), 0.0);
    QCOMPARE(window->findChild<QLabel*>(QStringLiteral("labelEstimate"))->text(), QStringLiteral("没有可加工的对象"));
    QVERIFY(!window->findChild<QPushButton*>(QStringLiteral("pushButtonPlay"))->isEnabled());
}

void PlaybackTest::inverted_axes_are_shown_as_drawn() {
    SystemParam::Instance()->SetInvertX(true);
    addLine({{0, 0}, {10, 0}});
    PlaybackWindow* window = open();
    auto* slider = window->findChild<QSlider*>(QStringLiteral("sliderPlayback"));
    slider->setValue(slider->maximum() / 2);
    const double x = window->view().moment().at.x();
    SystemParam::Instance()->SetInvertX(false);
    QVERIFY(std::abs(x - 5.0) < 0.02);
}

void PlaybackTest::runs_are_listed() {
    addLine({{0, 0}, {10, 0}});
    VZMarkCard card;
    simulatedCard().setSpeed(0.0);
    card.OpenCard();
    card.SetMarkStaus(MarkStatusRun);
    card.SetMarkType(MarkTypeLaser);
    card.DownLayerPara(m_view->GetLayerParams(), kLayerCount);
    PlaybackWindow* window = open();
    auto* table = window->findChild<QTableWidget*>(QStringLiteral("tableRuns"));
    QCOMPARE(table->rowCount(), 0);
    QVERIFY(m_view->GetMarkTools()->StartMark(false, false, m_view->GetLayerParams()));
    QTRY_COMPARE(table->rowCount(), 1);
    QCOMPARE(table->item(0, 1)->text(), QStringLiteral("0.100 s"));
    QCOMPARE(table->item(0, 2)->text(), QStringLiteral("0.100 s"));
    QCOMPARE(table->item(0, 3)->text(), QStringLiteral("1.0000"));
    card.CloseCard();
}

void PlaybackTest::card_is_never_touched() {
    addLine({{0, 0}, {10, 0}});
    VZMarkCard card;
    card.OpenCard();
    simulatedCard().journal().setEnabled(true);
    const auto jobs = simulatedCard().runner().jobs();
    const auto calls = simulatedCard().journal().lastSequence();
    const Point head = simulatedCard().head().at;
    PlaybackWindow* window = open();
    window->findChild<QPushButton*>(QStringLiteral("pushButtonSpeed16"))->click();
    window->findChild<QPushButton*>(QStringLiteral("pushButtonPlay"))->click();
    QTRY_VERIFY(!window->clock().isPlaying());
    QCOMPARE(simulatedCard().runner().jobs(), jobs);
    QCOMPARE(simulatedCard().journal().lastSequence(), calls);
    QVERIFY(simulatedCard().head().at == head);
    simulatedCard().journal().setEnabled(false);
    card.CloseCard();
}

void PlaybackTest::million_vertices_are_shown_in_short_steps() {
    constexpr int kVertices = 1'000'000;
    QVector<QPointF> points;
    points.reserve(kVertices);
    for (int i = 0; i < kVertices; ++i)
        points.append({-50.0 + (i % 1000) * 0.1, -50.0 + i / 1000 * 0.1 + (i % 2) * 0.03});
    addLine(points);
    QElapsedTimer clock;
    clock.start();
    PlaybackWindow* window = open();
    QTRY_VERIFY_WITH_TIMEOUT(window->isReady() && window->view().isComplete(), 30000);
    const qint64 opened = clock.restart();
    auto* slider = window->findChild<QSlider*>(QStringLiteral("sliderPlayback"));
    qint64 longest = 0;
    for (const int share : {90, 10, 50, 51, 100, 0, 73}) {
        QElapsedTimer step;
        step.start();
        slider->setValue(slider->maximum() * share / 100);
        longest = std::max(longest, step.elapsed());
    }
    clock.restart();
    QTRY_VERIFY_WITH_TIMEOUT(window->view().isComplete(), 30000);
    qInfo("1,000,000 vertices: shown after %lld ms; the slider holds up for %lld ms at most; the picture follows in "
          "%lld ms",
          opened, longest, clock.elapsed());
    QVERIFY(window->view().moment().laser);
}

void PlaybackTest::repeated_rounds_are_passed_over() {
    setPens(100.0, 2'000'000'000);
    addLine({{0, 0}, {10, 0}});
    PlaybackWindow* window = open();
    QTRY_VERIFY(window->isReady());
    QVERIFY(window->clock().total() > 2e9 * 110e3 * 0.999);
    auto* slider = window->findChild<QSlider*>(QStringLiteral("sliderPlayback"));
    slider->setValue(slider->maximum() / 3);
    QTRY_VERIFY(window->view().isComplete());
    slider->setValue(slider->maximum());
    QTRY_VERIFY(window->view().isComplete());
    QVERIFY(std::abs(window->view().moment().at.x() - 10.0) < 1e-3);
}

void PlaybackTest::closing_ends_a_long_calculation() {
    // Each too short to be kept once, and too many for a moment.
    setPens(100.0, 2000);
    ObjectList objects;
    ObjectData data;
    PolylineShape line;
    line.points << QPointF(0, 0) << QPointF(1, 0);
    data.shape = line;
    for (int i = 0; i < 20000; ++i)
        objects.push_back(MarkObject::make(data));
    QVERIFY(QRulerViewAccess::session(*m_view).document().edit(
        [&](const DocumentState& state) { return edits::add(state, objects); }));
    m_view->findChild<QToolButton*>(QStringLiteral("viewPlayback"))->click();
    auto* window = m_view->window()->findChild<PlaybackWindow*>();
    QVERIFY(window && !window->isReady());
    window->close();
    QTRY_VERIFY(m_view->window()->findChildren<PlaybackWindow*>().isEmpty());
}

QTEST_MAIN(PlaybackTest)
#include "tst_playback.moc"
