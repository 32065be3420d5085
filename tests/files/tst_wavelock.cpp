// SPDX-License-Identifier: MIT
#include "engine/layerparamex.h"
#include "tests/shell/windowfixture.h"

#include <QDir>

using namespace tests;

namespace {

void switchWaves(QRulerView* view, int on) {
    for (LayerData& layer : view->GetLayerParams()->GetLayerData()) {
        layer.PointWaveEnable = on;
        layer.LineWaveEnable = on;
        layer.LineWaveFlag = on;
    }
}

/// How many of the pens have the single-point waveform on.
int pointWaves(QRulerView* view) {
    int on = 0;
    for (LayerData const& layer : view->GetLayerParams()->GetLayerData())
        on += layer.PointWaveEnable != 0;
    return on;
}

} // namespace

/// The single-point waveform of the pens when a document becomes the active one.
class WaveLockTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_Root.isValid()); }
    void init() {
        QDir(m_Root.path(QStringLiteral("/MarkFile"))).removeRecursively();
        resetMachine();
        m_Window = std::make_unique<RunningWindow>();
    }
    void cleanup() {
        m_Window.reset();
        resetMachine();
        SystemParam::Instance()->SetEnableWaveForm(false);
    }

    void the_waveform_goes_where_it_is_locked_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<int>("left");
        QTest::newRow("marking") << 0 << false << 20;
        QTest::newRow("welding") << 1 << false << 20;
        QTest::newRow("custom, switched off") << 2 << false << 0;
        QTest::newRow("custom, switched on") << 2 << true << 20;
        QTest::newRow("central control, switched off") << 3 << false << 0;
        QTest::newRow("central control, switched on") << 3 << true << 20;
    }

    void the_waveform_goes_where_it_is_locked() {
        QFETCH(int, mode);
        QFETCH(bool, enabled);
        QFETCH(int, left);
        QRulerView* first = m_Window->newDocument(1, QStringLiteral("first"));
        QRulerView* second = m_Window->newDocument(1, QStringLiteral("second"));
        switchWaves(first, 1);
        switchWaves(second, 1);
        SystemParam::Instance()->SetWorkMode(mode);
        SystemParam::Instance()->SetEnableWaveForm(enabled);
        QVERIFY((*m_Window)->SetCurDoc(0));
        QCOMPARE((*m_Window)->GetActiveView(), first);
        QCOMPARE(pointWaves(first), left);
        // Only the document that has become active, and only this switch.
        QCOMPARE(pointWaves(second), 20);
        for (LayerData const& layer : first->GetLayerParams()->GetLayerData())
            QVERIFY(layer.LineWaveEnable == 1 && layer.LineWaveFlag == 1);
    }

    void a_moved_row_is_the_current_one_too() {
        m_Window->newDocument(1, QStringLiteral("first"));
        QRulerView* second = m_Window->newDocument(1, QStringLiteral("second"));
        switchWaves(second, 1);
        SystemParam::Instance()->SetWorkMode(2);
        QTest::keyClick(m_Window->child<QWidget>("FileListView")->findChild<QWidget*>("listWidget"), Qt::Key_Up);
        QCOMPARE((*m_Window)->GetDocs().at(0), second);
        QCOMPARE(pointWaves(second), 0);
    }

    void closing_the_last_document_leaves_nothing_to_clear() {
        m_Window->newDocument(1, QStringLiteral("first"));
        SystemParam::Instance()->SetWorkMode(2);
        (*m_Window)->CloseAllFile();
        QVERIFY(!(*m_Window)->GetActiveView());
    }

private:
    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
};

QTEST_MAIN(WaveLockTest)
#include "tst_wavelock.moc"
