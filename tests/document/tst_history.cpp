// SPDX-License-Identifier: MIT
#include "samples.h"
#include "simengine/document/jobbuilder.h"

#include <QRandomGenerator>
#include <QTest>
#include <atomic>
#include <thread>

using namespace sim;

namespace {

bool add(Document& document, const ObjectPtr& object) {
    return document.edit([&](const DocumentState& s) { return edits::add(s, {object}); });
}

bool nudge(Document& document, double dx) {
    return document.edit([&](const DocumentState& s) { return edits::move(s, dx, 0); }, true);
}

/// One random edit out of every kind that there is.
EditResult randomEdit(const DocumentState& s, QRandomGenerator& random) {
    HatchSettings hatch;
    hatch.fills[0] = {true, 0.01 + random.bounded(1.0), 0, int(random.bounded(20)), 0, 0, 0};
    switch (random.bounded(20)) {
    case 0:
        return edits::add(s, samples::everyKind());
    case 1:
        return edits::removeSelected(s);
    case 2:
        return edits::move(s, random.bounded(2.0) - 1, random.bounded(2.0) - 1);
    case 3:
        return edits::scale(s, 0.5 + random.bounded(1.0), 0.5 + random.bounded(1.0), 1, 2);
    case 4:
        return edits::setAngle(s, random.bounded(360.0));
    case 5:
        return edits::mirror(s, random.bounded(2) ? MirrorTopBottom : MirrorLeftRight);
    case 6:
        return edits::setPen(s, int(random.bounded(20)));
    case 7:
        return edits::setWorkType(s, int(random.bounded(2)));
    case 8:
        return edits::reorder(s, edits::OrderMove(random.bounded(4)));
    case 9:
        return edits::group(s);
    case 10:
        return edits::ungroup(s);
    case 11:
        return edits::paste(s, samples::everyKind(), 1, 1);
    case 12:
        return edits::setHatch(s, hatch);
    case 13:
        return edits::align(s, edits::Alignment(random.bounded(6)));
    case 14:
        return edits::sameSize(s, random.bounded(2), random.bounded(2));
    case 15:
        return edits::sortByJumps(s);
    case 16:
        return edits::moveToCenter(s, {0, 0});
    case 17:
        return edits::rotate(s, random.bounded(90.0), {1, 1});
    case 18:
        return s.count() < 200 ? edits::array(s, 2, 1, 3, 3) : EditResult();
    default:
        return s.count() ? edits::setName(s, 0, QString::number(random.generate())) : EditResult();
    }
}

} // namespace

class HistoryTest : public QObject {
    Q_OBJECT

private slots:
    void random_edits_undo_and_redo_to_the_same_bytes_data();
    void random_edits_undo_and_redo_to_the_same_bytes();
    void undo_gives_the_selection_back();
    void steps_are_bounded_in_number();
    void steps_are_bounded_in_memory_but_the_last_stays();
    void moved_lines_share_their_points_between_steps();
    void new_edit_drops_the_steps_forth();
    void key_moves_become_one_step_until_the_selection_changes();
    void read_only_document_refuses_edits();
    void failed_edit_is_no_step();
    void listener_hears_every_change();
    void settings_are_checked();
    void runs_keep_their_objects_while_the_document_is_edited();
    void edits_from_two_threads_are_all_kept();
};

void HistoryTest::random_edits_undo_and_redo_to_the_same_bytes_data() {
    QTest::addColumn<uint>("seed");
    for (uint seed = 1; seed <= 8; ++seed)
        QTest::newRow(qPrintable(QString::number(seed))) << seed;
}

void HistoryTest::random_edits_undo_and_redo_to_the_same_bytes() {
    QFETCH(uint, seed);
    QRandomGenerator random(seed);
    Document document;
    document.setContent(samples::fullContent());
    QList<QByteArray> bytes = {samples::bytesOf(document)};
    while (bytes.size() <= 100) {
        QList<int> chosen;
        for (int i = 0; i < document.state()->count(); ++i) {
            if (random.bounded(3) == 0)
                chosen.append(i);
        }
        document.select(chosen);
        if (document.edit([&](const DocumentState& s) { return randomEdit(s, random); }))
            bytes.append(samples::bytesOf(document));
    }
    for (int i = bytes.size() - 2; i >= 0; --i) {
        QVERIFY(document.undo());
        QCOMPARE(samples::bytesOf(document), bytes[i]);
    }
    QVERIFY(!document.canUndo() && !document.undo());
    QVERIFY(!document.isModified());
    for (int i = 1; i < bytes.size(); ++i) {
        QVERIFY(document.redo());
        QCOMPARE(samples::bytesOf(document), bytes[i]);
    }
    QVERIFY(!document.canRedo() && !document.redo());
}

void HistoryTest::undo_gives_the_selection_back() {
    Document document;
    add(document, samples::point(0, 0));
    add(document, samples::point(1, 0));
    document.select({1, 0});
    document.edit(edits::removeSelected);
    document.undo();
    QCOMPARE(document.state()->selection.ordered(), (QList<int>{1, 0}));
    document.redo();
    QVERIFY(document.state()->selection.isEmpty());
}

void HistoryTest::steps_are_bounded_in_number() {
    Document document;
    QVERIFY(History::kMostSteps >= 1000);
    for (int i = 0; i < History::kMostSteps + 50; ++i)
        add(document, samples::point(i % 100, 0));
    int steps = 0;
    while (document.undo())
        ++steps;
    QCOMPARE(steps, History::kMostSteps);
    QCOMPARE(document.state()->count(), 50);
}

void HistoryTest::steps_are_bounded_in_memory_but_the_last_stays() {
    const auto stateOf = [](int points) {
        return std::make_shared<const DocumentState>(samples::state({samples::line(QPolygonF(points))}, {}));
    };
    History history(100, 100000);
    StatePtr current = stateOf(1000);
    for (int i = 0; i < 50; ++i) {
        const StatePtr next = stateOf(1000);
        history.record(current, next, false);
        current = next;
    }
    QVERIFY(history.cost() <= 100000);
    QVERIFY(history.undoCount() >= 4 && history.undoCount() <= 6);
    const StatePtr huge = stateOf(100000);
    history.record(current, huge, false);
    history.record(huge, stateOf(1), false);
    QCOMPARE(history.undoCount(), 1);
    QCOMPARE(history.undo(stateOf(1)), huge);
}

void HistoryTest::moved_lines_share_their_points_between_steps() {
    History history;
    auto before = std::make_shared<const DocumentState>(samples::state({samples::line(QPolygonF(1000000))}, {0}));
    for (int i = 0; i < 50; ++i) {
        auto after = std::make_shared<const DocumentState>(*edits::move(*before, 1, 0));
        history.record(before, after, false);
        before = after;
    }
    QCOMPARE(history.undoCount(), 50);
    QVERIFY(history.cost() < 1000000);
}

void HistoryTest::new_edit_drops_the_steps_forth() {
    Document document;
    add(document, samples::point(0, 0));
    document.undo();
    QVERIFY(document.canRedo());
    add(document, samples::point(1, 0));
    QVERIFY(!document.canRedo());
}

void HistoryTest::key_moves_become_one_step_until_the_selection_changes() {
    Document document;
    add(document, samples::point(0, 0));
    add(document, samples::point(0, 0));
    for (int i = 0; i < 5; ++i)
        QVERIFY(nudge(document, 0.5));
    document.select({0});
    nudge(document, 1);
    nudge(document, 1);
    QVERIFY(document.undo());
    QCOMPARE(document.state()->at(0)->bounds().minX, 0.0);
    QCOMPARE(document.state()->at(1)->bounds().minX, 2.5);
    QVERIFY(document.undo());
    QCOMPARE(document.state()->at(1)->bounds().minX, 0.0);
    // after a step back a key move begins a step of its own
    QVERIFY(nudge(document, 1));
    QVERIFY(document.undo());
    QCOMPARE(document.state()->count(), 2);
}

void HistoryTest::read_only_document_refuses_edits() {
    Document document;
    add(document, samples::point(0, 0));
    document.setReadOnly(true);
    QVERIFY(!add(document, samples::point(1, 0)));
    QVERIFY(!document.undo());
    document.selectAll();
    QCOMPARE(document.state()->selection.count(), 1);
    document.setReadOnly(false);
    QVERIFY(document.undo());
}

void HistoryTest::failed_edit_is_no_step() {
    Document document;
    QVERIFY(!document.edit([](const DocumentState& s) { return edits::move(s, 1, 1); }));
    QVERIFY(!document.canUndo());
}

void HistoryTest::listener_hears_every_change() {
    Document document;
    int heard = 0;
    document.setListener([&] {
        ++heard;
        document.state(); // no lock is held
        document.canUndo();
    });
    add(document, samples::point(0, 0));
    QCOMPARE(heard, 1);
    document.select({});
    QCOMPARE(heard, 2);
    document.select({});
    QCOMPARE(heard, 2);
    document.undo();
    QCOMPARE(heard, 3);
    document.redo();
    QCOMPARE(heard, 4);
    document.setContent({});
    QCOMPARE(heard, 5);
    QVERIFY(!document.redo());
    QCOMPARE(heard, 5);
}

void HistoryTest::settings_are_checked() {
    Document document;
    QCOMPARE(document.settings().keyMoveDistance, 0.01);
    QVERIFY(document.setSettings({19, BasePointTop, 10}));
    for (const DocumentSettings& bad : {DocumentSettings{20, BasePointTop, 1}, DocumentSettings{-1, BasePointTop, 1},
                                        DocumentSettings{0, BasePoint(9), 1}, DocumentSettings{0, BasePointTop, 0},
                                        DocumentSettings{0, BasePointTop, qInf()}})
        QVERIFY(!document.setSettings(bad));
    QCOMPARE(document.settings().currentPen, 19);
}

void HistoryTest::runs_keep_their_objects_while_the_document_is_edited() {
    // every state that the document is ever in holds squares of one and the same size: a job that mixed two states
    // would show two sizes
    Document document;
    for (int i = 0; i < 20; ++i)
        add(document, samples::rect(i, 0, 1, 1));
    document.selectAll();
    std::atomic<bool> done{false};
    std::atomic<int> jobs{0};
    std::atomic<int> mixed{0};
    const auto run = [&] {
        while (!done) {
            const Job job = buildJob(*document.state(), {});
            const double width = job.strokes[0].points[1].x - job.strokes[0].points[0].x;
            for (const Stroke& stroke : job.strokes) {
                if (std::abs(stroke.points[1].x - stroke.points[0].x - width) > 1e-9)
                    ++mixed;
            }
            ++jobs;
        }
    };
    std::thread first(run);
    std::thread second(run);
    for (int i = 0; i < 500 || jobs < 50; ++i) {
        document.edit([&](const DocumentState& s) { return edits::scale(s, i % 2 ? 0.5 : 2.0, 1, 0, 0); });
        if (i % 7 == 0)
            document.undo();
        if (i % 11 == 0)
            document.selectAll();
    }
    done = true;
    first.join();
    second.join();
    QCOMPARE(mixed.load(), 0);
}

void HistoryTest::edits_from_two_threads_are_all_kept() {
    Document document;
    const auto work = [&] {
        for (int i = 0; i < 300; ++i)
            add(document, samples::point(i, 0));
    };
    std::thread other(work);
    work();
    other.join();
    QCOMPARE(document.state()->count(), 600);
}

QTEST_GUILESS_MAIN(HistoryTest)
#include "tst_history.moc"
