// SPDX-License-Identifier: MIT
// What a run with offset records marks, seen in the trace of the machine.
#include "drawnplaces.h"
#include "engine/markshapecontainer.h"
#include "engine/vzmarkcard.h"
#include "samples.h"
#include "simengine/card/cardcore.h"
#include "simengine/view/marktoolaccess.h"
#include "support/temporaryroot.h"

#include <QDir>
#include <QtTest>
#include <cmath>
#include <limits>
#include <random>

using namespace sim;

namespace {

CCDBufdata record(double dx, double dy, double angle = 0.0) {
    CCDBufdata data;
    data.Values = {dx, dy, angle, 11.0, 12.0, 0.0, 0.0};
    return data;
}

QVector<QPointF> shifted(const QVector<QPointF>& places, double dx, double dy) {
    QVector<QPointF> result;
    for (const QPointF& p : places)
        result.append({p.x() + dx, p.y() + dy});
    return result;
}

/// Exact: QPointF's own comparison is not.
bool same(const QVector<QPointF>& a, const QVector<QPointF>& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](const QPointF& p, const QPointF& q) {
               return p.x() == q.x() && p.y() == q.y();
           });
}

} // namespace

class OffsetsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<tests::TemporaryRoot> m_root;
    std::unique_ptr<Document> m_document;
    std::unique_ptr<MarkShapeContainer> m_container;
    std::unique_ptr<VZMarkCard> m_card;

    void draw(const ObjectList& objects) {
        m_document->selectAll();
        m_document->edit(edits::removeSelected);
        m_document->edit([&objects](const DocumentState& s) { return edits::add(s, objects); });
    }
    bool run() { return m_container->StartMark(false, false, m_document->pens()); }
    void setRecords(const QVector<CCDBufdata>& records) {
        m_container->ClearCCDBuf();
        for (const CCDBufdata& data : records)
            m_container->AddCCDBuf(data);
    }
    QString logText() const {
        QString all;
        for (const QString& name : QDir(m_root->path("/日志文件")).entryList({"*.log"}, QDir::Files))
            all += QString::fromUtf8(m_root->read("/日志文件/" + name));
        return all;
    }

private slots:
    void init() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        QVERIFY(m_root->isValid());
        m_document = std::make_unique<Document>();
        m_container = MarkShapeContainerAccess::make(*m_document);
        LayerData::InitLayerData();
        m_card = std::make_unique<VZMarkCard>();
        CardCore& card = simulatedCard();
        card.setSpeed(0.0);
        QVERIFY(card.open());
        card.setKind(MarkKind::Laser);
        card.setState(RunState::Run);
        draw({samples::line({{0.1, 0.2}, {2.3, 0.7}, {-3.3, 4.4}}), samples::rect(5, 5, 7.7, 1.3)});
    }
    void cleanup() {
        m_card.reset();
        m_container.reset();
        m_document.reset();
        m_root.reset();
    }

    void without_records_the_drawing_is_marked_as_it_is() {
        QVERIFY(run());
        const QVector<QPointF> plain = drawn();
        setRecords({record(3, 4, 5)});
        m_container->ClearCCDBuf();
        QVERIFY(run());
        QVERIFY(same(drawn(), plain));
    }

    void shifts_are_exact_to_the_last_bit() {
        QVERIFY(run());
        const QVector<QPointF> plain = drawn();
        QVERIFY(plain.size() >= 6);
        std::mt19937 random(7);
        std::uniform_real_distribution<double> mm(-50.0, 50.0);
        for (int i = 0; i < 1000; ++i) {
            const double dx = mm(random);
            const double dy = mm(random);
            setRecords({record(dx, dy)});
            QVERIFY(run());
            QVERIFY2(same(drawn(), shifted(plain, dx, dy)), qPrintable(QString("%1 %2").arg(dx).arg(dy)));
        }
    }

    void each_record_marks_the_whole_drawing_in_the_records_order() {
        QVERIFY(run());
        const QVector<QPointF> plain = drawn();
        setRecords({record(1.5, 0.25), record(0, 0), record(3, 1), record(1.5, 0.25)});
        QVERIFY(run());
        QVERIFY(same(drawn(), shifted(plain, 1.5, 0.25) + plain + shifted(plain, 3, 1) + shifted(plain, 1.5, 0.25)));
    }

    void angles_turn_about_the_field_centre_before_the_shift_data() {
        QTest::addColumn<double>("angle");
        for (double angle : {90.0, -90.0, 180.0, 30.0, 0.001, 360.0, -725.5})
            QTest::addRow("%g", angle) << angle;
    }
    void angles_turn_about_the_field_centre_before_the_shift() {
        QFETCH(double, angle);
        QVERIFY(run());
        const QVector<QPointF> plain = drawn();
        setRecords({record(10, -20, angle)});
        QVERIFY(run());
        const QVector<QPointF> places = drawn();
        QCOMPARE(places.size(), plain.size());
        const double a = angle * M_PI / 180.0;
        for (int i = 0; i < plain.size(); ++i) {
            const double x = plain[i].x() * std::cos(a) - plain[i].y() * std::sin(a) + 10;
            const double y = plain[i].x() * std::sin(a) + plain[i].y() * std::cos(a) - 20;
            QVERIFY(std::hypot(places[i].x() - x, places[i].y() - y) < 1e-9);
        }
    }

    void a_shift_out_of_the_field_gives_what_a_drawing_there_gives_data() {
        QTest::addColumn<double>("dx");
        QTest::newRow("beyond the field") << 400.0;
        QTest::newRow("beyond the position registers") << 50'000.0;
        QTest::newRow("astronomical") << 9.0e5;
    }
    void a_shift_out_of_the_field_gives_what_a_drawing_there_gives() {
        QFETCH(double, dx);
        draw({samples::line({{dx, 1}, {dx + 2, 3}})});
        QVERIFY(run());
        const QVector<QPointF> there = drawn();
        QVERIFY(!there.isEmpty() || dx > 1e4);
        draw({samples::line({{0, 1}, {2, 3}})});
        setRecords({record(dx, 0)});
        QVERIFY(run());
        QVERIFY(same(drawn(), there));
    }

    void the_largest_numbers_do_not_disturb_the_machine() {
        setRecords({record(std::numeric_limits<double>::max(), -std::numeric_limits<double>::max(), 1e300)});
        run();
        for (const QPointF& place : drawn())
            QVERIFY(std::isfinite(place.x()) && std::isfinite(place.y()));
        m_container->ClearCCDBuf();
        QVERIFY(run());
        QVERIFY(!drawn().isEmpty());
    }

    void records_that_cannot_be_mark_nothing_and_are_told_data() {
        QTest::addColumn<double>("dx");
        QTest::addColumn<bool>("valid");
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << true;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << true;
        QTest::newRow("invalid") << 1.0 << false;
    }
    void records_that_cannot_be_mark_nothing_and_are_told() {
        QFETCH(double, dx);
        QFETCH(bool, valid);
        CCDBufdata data = record(dx, 0);
        data.Valid = valid;
        setRecords({data});
        const std::uint64_t before = simulatedCard().trace().snapshot().size();
        QVERIFY(!run());
        QCOMPARE(std::uint64_t(simulatedCard().trace().snapshot().size()), before);
        QVERIFY(logText().contains("offset records: no valid record, or a number that is not finite"));
    }

    void records_that_repeat_too_much_are_refused_and_told() {
        QPolygonF points;
        for (int i = 0; i < 20'001; ++i)
            points.append({i * 1e-3, (i % 2) * 1e-3});
        draw({samples::line(points)});
        setRecords(QVector<CCDBufdata>(1000, record(1, 1)));
        QVERIFY(!run());
        QVERIFY(logText().contains("offset records: 1000 records repeat too large a drawing"));
        // A few are no trouble.
        setRecords(QVector<CCDBufdata>(3, record(1, 1)));
        QVERIFY(run());
    }

    void previews_follow_the_records_too() {
        setRecords({record(10, 0), record(20, 0)});
        simulatedCard().setKind(MarkKind::RedPreview);
        QVERIFY(run());
        const TraceSnapshot trace = simulatedCard().trace().snapshot();
        double highest = 0.0;
        for (size_t i = 0; i < trace.size(); ++i)
            highest = std::max(highest, trace[i].at.x);
        QCOMPARE(highest, 5.0 + 7.7 + 20.0);
    }
};

QTEST_GUILESS_MAIN(OffsetsTest)
#include "tst_offsets.moc"
