// SPDX-License-Identifier: MIT
// What the panel tells when the trace cannot be exported.
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/vzmarkcard.h"
#include "simengine/panel/panelwindow.h"
#include "simengine/simcontrol.h"
#include "support/dialoganswerer.h"
#include "support/scarcememory.h"
#include "support/temporaryroot.h"
#include "support/timeoutscale.h"

#include <QElapsedTimer>
#include <QPushButton>
#include <QThread>
#include <QtTest>
#include <memory>
#include <vector>

using namespace sim;

class tst_PanelExport : public QObject {
    Q_OBJECT

private:
    SimControl& machine() { return *tessera_sim_control(); }
    static PanelWindow& panel() { return *PanelWindow::instance(); }
    /// Marks ways of 500 mm there and back.
    void mark(int ways) {
        std::vector<DOT3> points;
        for (int i = 0; i <= ways; ++i)
            points.push_back({i % 2 ? 250.0 : -250.0, 0, 0});
        IMarkCardBase* card = MarkCardInstance::Instance();
        card->BeginList(1);
        card->AddList(points.data(), int(points.size()), 2);
        card->EndList();
    }

    std::unique_ptr<tests::TemporaryRoot> m_root;

private slots:
    void initTestCase() { m_root = std::make_unique<tests::TemporaryRoot>(); }
    void init() {
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard());
        machine().setSpeed(0.0);
        MarkCardInstance::Instance()->OpenCard();
        // Not shown for long: it would follow the trace meanwhile.
        std::string error;
        QVERIFY2(machine().showPanel(true, error), error.c_str());
        QVERIFY2(machine().showPanel(false, error), error.c_str());
    }
    void cleanup() {
        std::string error;
        QVERIFY(machine().setHead({}, error) == SimOutcome::Done);
        MarkCardInstance::Instance()->CloseCard();
        machine().setSpeed(1.0);
        LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
        MarkCardInstance::SetMarkCardInstance(nullptr);
    }

    void the_operator_is_told_why_in_his_language_data() {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("ending") << "zh_CN"
                                << "trace.txt"
                                << "轨迹文件的扩展名须为.svg、.png或.csv";
        QTest::newRow("ending, English") << "en"
                                         << "trace.txt"
                                         << "The name of a trace file must end in .svg, .png or .csv";
        QTest::newRow("points") << "zh_CN"
                                << "trace.svg"
                                << "轨迹点数过多,无法导出为图形,请导出为.csv";
        QTest::newRow("points, English") << "en"
                                         << "trace.png"
                                         << "The trace has too many points for a drawing. Please export it as .csv.";
        QTest::newRow("folder") << "zh_CN"
                                << "plain/trace.csv"
                                << "文件写入失败,请检查磁盘空间";
    }
    void the_operator_is_told_why_in_his_language() {
        QFETCH(QString, language);
        QFETCH(QString, name);
        QFETCH(QString, reason);
        // A head that bends them gives each way a thousand points.
        SimHeadDistortion bent;
        bent.barrel = 0.01;
        std::string error;
        QVERIFY(machine().setHead(bent, error) == SimOutcome::Done);
        mark(20'100);
        QVERIFY(m_root->write("/plain", "a file, no folder"));
        QVERIFY(LanguageManager::SetCurrentLan(language));
        const QString file = m_root->path(name);
        tests::DialogAnswerer answerer;
        answerer.press(LanguageManager::GetLanText("确定"));
        panel().exportTrace(file);
        QVERIFY(answerer.waitUntilAnswered());
        QCOMPARE(answerer.seen().at(0).text,
                 LanguageManager::GetLanText("导出失败") + QStringLiteral("\n") + file + QStringLiteral("\n") + reason);
        QVERIFY(panel().findChild<QPushButton*>("exportTrace")->isEnabled());
    }

    void an_export_without_memory_fails_and_the_next_one_is_done() {
        mark(200'000);
        const QString file = m_root->path("/large.csv");
        tests::DialogAnswerer answerer;
        answerer.press(QStringLiteral("确定"));
        {
            // No event is handled meanwhile: only the export is short of memory.
            const tests::ScarceMemory scarce(1'000'000);
            QElapsedTimer time;
            time.start();
            panel().exportTrace(file);
            while (scarce.refused() == 0 && !time.hasExpired(tests::scaled(5000)))
                QThread::msleep(1);
            QVERIFY(scarce.refused() > 0);
        }
        QVERIFY(answerer.waitUntilAnswered());
        QCOMPARE(answerer.seen().at(0).text, QString("导出失败\n内存不足"));
        auto* button = panel().findChild<QPushButton*>("exportTrace");
        QVERIFY(button->isEnabled());
        QVERIFY(!QFile::exists(file));
        panel().exportTrace(file);
        QTRY_VERIFY(button->isEnabled());
        QVERIFY(m_root->read("/large.csv").startsWith("time,x,y,laser,pen\n"));
    }
};

QTEST_MAIN(tst_PanelExport)
#include "tst_panelexport.moc"
