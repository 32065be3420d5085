// SPDX-License-Identifier: MIT
// A long day of editing, taken back and done again, as seen in the file.
#include "engine/vzlistviewex.h"
#include "simengine/document/history.h"
#include "tests/support/dialoganswerer.h"
#include "viewfixture.h"

#include <QDoubleSpinBox>
#include <QRandomGenerator>
#include <QSpinBox>

using namespace sim;
using tests::ViewFixture;

namespace {

constexpr int kEdits = 1000;
/// Beyond these the editor only makes the document smaller, so that a run ends in time.
constexpr int kManyObjects = 120;
constexpr int kManyVertices = 30'000;

struct Editor {
    ViewFixture& f;
    QRandomGenerator random;

    double between(double low, double high) { return low + random.bounded(1.0) * (high - low); }
    QPointF place() { return {between(-60, 60), between(-45, 45)}; }
    bool small() {
        int objects = 0, vertices = 0;
        f.view.GetDocStatistics(objects, vertices);
        return objects < kManyObjects && vertices < kManyVertices;
    }
    void selectSome() {
        const int chance = random.bounded(1, 5);
        QList<int> chosen;
        for (int i = 0; i < f.state()->count(); ++i) {
            if (int(random.bounded(4)) < chance)
                chosen.append(i);
        }
        std::shuffle(chosen.begin(), chosen.end(), random);
        f.session().document().select(chosen.mid(0, small() ? 6 : chosen.size()));
    }
    void draw(OperatorOnView op) {
        const QPointF from = place();
        f.view.SetOperatorOnView(op);
        f.dragFromTo(from, from + QPointF(between(3, 20), between(3, 15)));
        f.view.SetOperatorOnView(OperatorSelect);
    }
};

struct Kind {
    const char* name;
    bool grows; ///< not done to a large document
    void (*edit)(Editor&);
};

void drawLine(Editor& e) {
    e.f.view.SetOperatorOnView(OperatorAddLine);
    for (int i = e.random.bounded(2, 6); i > 0; --i) {
        const QPointF at = e.place();
        e.f.click(at.x(), at.y());
    }
    e.f.click(0, 0, {}, Qt::RightButton);
    e.f.view.SetOperatorOnView(OperatorSelect);
}

void fillIn(Editor& e) {
    QVector<FillParam> fills(3);
    fills[0].Enable = true;
    fills[0].FillDist = e.between(0.5, 2.0);
    fills[0].FillLayer = int(e.random.bounded(20));
    e.f.view.FillSelectedObj(fills, e.random.bounded(2) == 0, false, true);
}

void arrange(Editor& e) {
    if (e.f.view.GetSelectedToolCnt() == 0)
        return;
    const int columns = e.random.bounded(1, 4);
    const double step = e.between(-30, 30);
    tests::DialogAnswerer answerer;
    answerer.fillAndPress(
        [=](QWidget& dialog) {
            dialog.findChild<QSpinBox*>("spinBoxColumns")->setValue(columns);
            dialog.findChild<QDoubleSpinBox*>("doubleSpinBoxStepX")->setValue(step);
        },
        "确定");
    e.f.view.ArraySelectObj();
}

/// One curve at a time and not one that has been roughened already: each time makes some thirty vertices of one.
void roughen(Editor& e) {
    const QList<int> chosen = e.f.selected();
    if (chosen.isEmpty() || e.f.state()->at(chosen.first())->pointCount() > 200)
        return;
    e.f.session().document().select({chosen.first()});
    DissimilationParam param;
    param.Type = e.random.bounded(3);
    param.Amplitude = e.between(0.1, 1.0);
    param.Pitch = e.between(2.0, 6.0);
    e.f.view.DissimilationSelectObj(&param);
}

constexpr Kind kKinds[] = {
    {"point", true, [](Editor& e) { e.f.view.AddMarkPoint(e.place()); }},
    {"line", true, drawLine},
    {"rectangle", true, [](Editor& e) { e.draw(OperatorAddRect); }},
    {"circle", true, [](Editor& e) { e.draw(OperatorAddCircle); }},
    {"paste", true,
     [](Editor& e) {
         QTest::keyClick(&e.f.canvas(), Qt::Key_C, Qt::ControlModifier);
         QTest::keyClick(&e.f.canvas(), Qt::Key_V, Qt::ControlModifier);
     }},
    {"delete", false, [](Editor& e) { QTest::keyClick(&e.f.canvas(), Qt::Key_Delete); }},
    {"move", false, [](Editor& e) { e.f.view.MoveSelectObjRelative(e.between(-9, 9), e.between(-9, 9)); }},
    {"centre", false, [](Editor& e) { e.f.view.MoveSelected2Center(); }},
    {"scale", false,
     [](Editor& e) { e.f.view.ScaleSelectedObj(e.between(0.5, 1.4), e.between(0.5, 1.4), e.between(-9, 9), 2); }},
    {"rotate", false, [](Editor& e) { e.f.view.ChangeSelectedObjAngle(e.between(-180, 180)); }},
    {"mirror", false,
     [](Editor& e) { e.f.view.MirrorSelectObj(e.random.bounded(2) ? MirrorTopBottom : MirrorLeftRight); }},
    {"align left", false, [](Editor& e) { e.f.view.AlignLeft(); }},
    {"align middle", false, [](Editor& e) { e.f.view.AlignCenterH(); }},
    {"align right", false, [](Editor& e) { e.f.view.AlignRight(); }},
    {"align top", false, [](Editor& e) { e.f.view.AlignTop(); }},
    {"align middle line", false, [](Editor& e) { e.f.view.AlignCenterV(); }},
    {"align bottom", false, [](Editor& e) { e.f.view.AlignBottom(); }},
    {"same size", false, [](Editor& e) { e.f.view.SameSelectedSize(); }},
    {"same width", false, [](Editor& e) { e.f.view.SameSelectedWidth(); }},
    {"same height", false, [](Editor& e) { e.f.view.SameSelectedHeight(); }},
    {"group", false, [](Editor& e) { e.f.view.Combine(); }},
    {"ungroup", false, [](Editor& e) { e.f.view.UnCombine(); }},
    {"combine curves", false, [](Editor& e) { e.f.view.CombineCurve(); }},
    {"join curves", false, [](Editor& e) { e.f.view.CombineCurve(true); }},
    {"split", true, [](Editor& e) { e.f.view.UnCombineLine(); }},
    {"roughen", true, roughen},
    {"sort", false, [](Editor& e) { e.f.view.Sort(); }},
    {"up", false, [](Editor& e) { e.f.view.GetObjListView()->MoveObjUp(); }},
    {"down", false, [](Editor& e) { e.f.view.GetObjListView()->MoveObjDown(); }},
    {"first", false, [](Editor& e) { e.f.view.GetObjListView()->MoveObj2First(); }},
    {"last", false, [](Editor& e) { e.f.view.GetObjListView()->MoveObj2Last(); }},
    {"pen", false, [](Editor& e) { e.f.view.SetCurrentLayer(int(e.random.bounded(20))); }},
    {"work type", false, [](Editor& e) { e.f.view.SetSelectObjWorkType(int(e.random.bounded(2))); }},
    {"hatch", false, fillIn},
    {"array", true, arrange},
};

/// What the file holds once the document is saved. The pen of new objects is a setting beside the steps: an operator
/// who takes a drawing back goes on drawing with the pen chosen last.
QByteArray saved(ViewFixture& f) {
    f.view.SetCurrentLayerWithOutChangeLayer(0);
    return f.view.SaveDoc() ? f.root.read("/MarkFile/drawing.mkf") : QByteArray();
}

bool canUndo(ViewFixture& f) {
    bool redo = false, undo = false;
    f.view.RedoUndoStatus(redo, undo);
    return undo;
}

bool canRedo(ViewFixture& f) {
    bool redo = false, undo = false;
    f.view.RedoUndoStatus(redo, undo);
    return redo;
}

} // namespace

class tst_Undo : public QObject {
    Q_OBJECT

private slots:
    void a_thousand_random_edits_go_back_and_forth_byte_for_byte_data() {
        QTest::addColumn<uint>("seed");
        for (uint seed : {1u, 2u, 3u, 20u, 77u})
            QTest::newRow(qPrintable(QString("seed %1").arg(seed))) << seed;
    }

    void a_thousand_random_edits_go_back_and_forth_byte_for_byte() {
        QFETCH(uint, seed);
        qInfo("seed %u", seed);
        ViewFixture f;
        f.addRect(-20, -10, 15, 8, 3);
        f.addCircle(20, 10, 6, 4);
        f.addLine(QPolygonF(QVector<QPointF>{{0, 0}, {10, 5}, {20, -5}}), 5);
        const QByteArray drawn = saved(f);
        QVERIFY(!drawn.isEmpty());
        QVERIFY(f.view.ReadDoc());
        QVERIFY(!canUndo(f));
        QCOMPARE(saved(f), drawn);

        Editor editor{f, QRandomGenerator(seed)};
        QMap<QString, int> done;
        int edits = 0;
        for (int tries = 0; edits < kEdits && tries < 50 * kEdits; ++tries) {
            const Kind& kind = kKinds[editor.random.bounded(int(std::size(kKinds)))];
            if (kind.grows && !editor.small())
                continue;
            editor.selectSome();
            const auto before = f.state()->objects;
            kind.edit(editor);
            if (f.state()->objects == before)
                continue;
            ++edits;
            ++done[kind.name];
        }
        QCOMPARE(edits, kEdits);
        for (const Kind& kind : kKinds)
            QVERIFY2(done[kind.name] > 0, kind.name);
        const QByteArray edited = saved(f);
        QVERIFY(edited != drawn);

        int back = 0;
        for (; canUndo(f); ++back)
            f.view.Undo();
        QCOMPARE(back, kEdits);
        QCOMPARE(saved(f), drawn);
        int forth = 0;
        for (; canRedo(f); ++forth)
            f.view.Redo();
        QCOMPARE(forth, kEdits);
        QCOMPARE(saved(f), edited);
    }
};

QTEST_MAIN(tst_Undo)
#include "tst_undo.moc"
