// SPDX-License-Identifier: MIT
#include "shell/alarmctrl.h"
#include "shell/alarmhistorycsv.h"
#include "shell/alarmhistorydialog.h"
#include "shell/alarmhistorymodel.h"
#include "shell/alarmhistorystore.h"
#include "shell/alarmrecorder.h"
#include "tests/shell/supervisionfixture.h"
#include "tests/support/dialoganswerer.h"

#include <QAbstractItemModelTester>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <limits>

using namespace tests;
using tessera::AlarmEnd;
using tessera::AlarmEntry;

/// The history from the poll to the table, and back from the disk after a restart.
class AlarmRecorderTest : public QObject, private SupervisionCase {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(hasRoot()); }
    void init() {
        m_Folder = std::make_unique<QTemporaryDir>();
        m_File = m_Folder->filePath(QStringLiteral("alarms.db"));
        QFile::remove(tessera::rootPath(QStringLiteral("/AlarmHistory")));
        QDir(tessera::rootPath(QStringLiteral("/AlarmHistory"))).removeRecursively();
        beginSupervision();
    }
    void cleanup() {
        machine().clearFaults();
        endSupervision();
        m_Folder.reset();
    }

    void a_look_that_changes_nothing_is_told_to_nobody();
    void the_end_of_the_recorder_ends_and_stores_what_is_active();
    void the_table_follows_newest_first();
    void the_table_of_active_alarms_loses_what_goes();
    void the_table_reads_earlier_runs_page_by_page();
    void the_table_keeps_to_the_limit();
    void earlier_runs_are_acknowledged_in_the_table_and_on_the_disk();
    void a_page_that_cannot_be_read_is_told();

    void inputs_come_into_the_history_with_their_first_out();
    void what_the_card_and_the_laser_tell_comes_into_the_history();
    void the_fibre_latch_lasts_to_the_end_of_the_program();
    void a_stop_that_is_not_confirmed_comes_into_the_history();
    void a_press_of_the_safety_indicator_opens_the_history_once();
    void targets_are_large_enough_for_a_finger();
    void a_press_of_acknowledge_notes_the_selected_alarms();
    void the_history_is_exported_to_the_file_that_is_chosen();
    void an_export_that_fails_is_told();
    void a_history_that_cannot_be_stored_disturbs_no_supervision_and_is_told();
    void after_a_restart_the_history_goes_on();

private:
    struct ClockedRecorder {
        explicit ClockedRecorder(QString const& file, int limit = tessera::kAlarmHistoryLimit)
            : recorder(
                  file, nullptr, [this] { return ++now; }, limit) {}
        qint64 now = 1000;
        tessera::AlarmRecorder recorder;
    };
    static tessera::AlarmSnapshot masked(unsigned int mask) {
        tessera::AlarmSnapshot snapshot;
        snapshot.mask = mask;
        return snapshot;
    }
    static QStringList texts(QAbstractItemModel const& model, int column = tessera::AlarmColumnText) {
        QStringList all;
        for (int row = 0; row < model.rowCount(); ++row)
            all.append(model.index(row, column).data().toString());
        return all;
    }
    static QVector<AlarmEntry> stored(QString const& file) {
        tessera::AlarmHistoryStore store(file, 9'000'000);
        QVector<AlarmEntry> all;
        if (!store.Read(std::numeric_limits<qint32>::max(), -1, all))
            qWarning("%s", qPrintable(store.Error()));
        return all;
    }
    void storeEarlier(int count) {
        tessera::AlarmHistoryStore store(m_File, 1);
        tessera::AlarmBatch batch;
        for (qint64 number = 1; number <= count; ++number) {
            AlarmEntry entry;
            entry.number = number;
            entry.code = QStringLiteral("old:%1").arg(number);
            entry.text = QStringLiteral("old %1").arg(number);
            entry.raisedMs = number;
            entry.clearedMs = number + 1;
            entry.end = AlarmEnd::Cleared;
            batch.entries.insert(number, entry);
        }
        QVERIFY2(store.Write(batch), qPrintable(store.Error()));
    }
    void pressIndicator() {
        QTest::mouseClick(m_Window->child<AlarmCtrl>("alarmSafe"), Qt::LeftButton);
        QVERIFY(historyDialog());
    }
    AlarmHistoryDialog* historyDialog() { return window().findChild<AlarmHistoryDialog*>(); }
    QAbstractItemModel& table() { return *historyDialog()->findChild<QTableView*>()->model(); }
    template<typename T>
    T* part(char const* name) {
        return historyDialog()->findChild<T*>(QString::fromLatin1(name));
    }
    void press(char const* button) { QTest::mouseClick(part<QPushButton>(button), Qt::LeftButton); }

    std::unique_ptr<QTemporaryDir> m_Folder;
    QString m_File;
};

void AlarmRecorderTest::a_look_that_changes_nothing_is_told_to_nobody() {
    ClockedRecorder clocked(m_File);
    QSignalSpy spy(&clocked.recorder, &tessera::AlarmRecorder::Changed);
    clocked.recorder.Look(masked(0));
    clocked.recorder.Look(masked(128));
    clocked.recorder.Look(masked(128));
    QCOMPARE(spy.size(), 1);
    clocked.recorder.Look(masked(0));
    QCOMPARE(spy.size(), 2);
    clocked.recorder.Acknowledge({5, 17}, QString());
    QCOMPARE(spy.size(), 2);
}

void AlarmRecorderTest::the_end_of_the_recorder_ends_and_stores_what_is_active() {
    {
        ClockedRecorder clocked(m_File);
        clocked.recorder.Look(masked(2));
        clocked.recorder.Look(masked(2 | 128));
        clocked.recorder.Look(masked(128));
    }
    const QVector<AlarmEntry> all = stored(m_File);
    QCOMPARE(all.size(), 2);
    QCOMPARE(all.at(0).code, QStringLiteral("emergency"));
    QCOMPARE(all.at(0).end, AlarmEnd::ProgramEnd);
    QVERIFY(!all.at(0).firstOut);
    QCOMPARE(all.at(1).end, AlarmEnd::Cleared);
    QVERIFY(all.at(1).firstOut);
}

void AlarmRecorderTest::the_table_follows_newest_first() {
    ClockedRecorder clocked(m_File);
    clocked.recorder.Look(masked(2));
    tessera::AlarmHistoryModel model(&clocked.recorder);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    clocked.recorder.Look(masked(2 | 128));
    clocked.recorder.Look(masked(128));
    QCOMPARE(texts(model), (QStringList{QStringLiteral("急停"), QStringLiteral("安全门1报警")}));
    QCOMPARE(texts(model, tessera::AlarmColumnState),
             (QStringList{QStringLiteral("报警中"), QStringLiteral("已清除")}));
    QCOMPARE(texts(model, tessera::AlarmColumnFirstOut), (QStringList{QString(), QStringLiteral("首发")}));
    // Marked by colour as well, and what is not acknowledged by weight.
    QVERIFY(model.index(0, 0).data(Qt::ForegroundRole).isValid());
    QVERIFY(!model.index(1, 0).data(Qt::ForegroundRole).isValid());
    QVERIFY(model.index(1, 0).data(Qt::FontRole).value<QFont>().bold());
    clocked.recorder.AcknowledgeAll(QStringLiteral("li"));
    QCOMPARE(texts(model, tessera::AlarmColumnUser), (QStringList{QStringLiteral("li"), QStringLiteral("li")}));
    QVERIFY(!model.index(1, 0).data(Qt::FontRole).isValid());
    QVERIFY(model.index(0, 0).data(Qt::ForegroundRole).isValid());
}

void AlarmRecorderTest::the_table_of_active_alarms_loses_what_goes() {
    ClockedRecorder clocked(m_File);
    clocked.recorder.Look(masked(2 | 4 | 8));
    tessera::AlarmHistoryModel model(&clocked.recorder);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.SetActiveOnly(true);
    QVERIFY(!model.canFetchMore(QModelIndex()));
    clocked.recorder.Look(masked(2 | 8 | 128));
    QCOMPARE(texts(model),
             (QStringList{QStringLiteral("急停"), QStringLiteral("安全门3报警"), QStringLiteral("安全门1报警")}));
    clocked.recorder.Look(masked(0));
    QCOMPARE(model.rowCount(), 0);
    model.SetActiveOnly(false);
    QCOMPARE(model.rowCount(), 4);
}

void AlarmRecorderTest::the_table_reads_earlier_runs_page_by_page() {
    storeEarlier(450);
    ClockedRecorder clocked(m_File);
    clocked.recorder.Look(masked(128));
    tessera::AlarmHistoryModel model(&clocked.recorder);
    QCOMPARE(model.rowCount(), 1);
    for (int rows : {201, 401, 451}) {
        QVERIFY(model.canFetchMore(QModelIndex()));
        model.fetchMore(QModelIndex());
        // One page at a time, and while it is on its way the table goes on.
        QVERIFY(!model.canFetchMore(QModelIndex()));
        QTRY_COMPARE(model.rowCount(), rows);
    }
    QVERIFY(!model.canFetchMore(QModelIndex()));
    clocked.recorder.Look(masked(0));
    QCOMPARE(texts(model).mid(0, 2), (QStringList{QStringLiteral("急停"), QStringLiteral("old 450")}));
    QCOMPARE(texts(model).last(), QStringLiteral("old 1"));
    // A page that was asked for before the filter changed is not taken.
    model.SetActiveOnly(true);
    model.SetActiveOnly(false);
    model.fetchMore(QModelIndex());
    model.SetActiveOnly(true);
    model.SetActiveOnly(false);
    model.fetchMore(QModelIndex());
    QTRY_COMPARE(model.rowCount(), 201);
    QCOMPARE(texts(model).at(200), QStringLiteral("old 251"));
}

void AlarmRecorderTest::the_table_keeps_to_the_limit() {
    storeEarlier(60);
    ClockedRecorder clocked(m_File, 50);
    tessera::AlarmHistoryModel model(&clocked.recorder);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.fetchMore(QModelIndex());
    QTRY_COMPARE(model.rowCount(), 50);
    for (int i = 0; i < 70; ++i) {
        clocked.recorder.Look(masked(128));
        clocked.recorder.Look(masked(0));
        QCOMPARE(model.rowCount(), 50);
    }
    QVERIFY(!texts(model).contains(QStringLiteral("old 60")));
}

void AlarmRecorderTest::earlier_runs_are_acknowledged_in_the_table_and_on_the_disk() {
    storeEarlier(250);
    {
        ClockedRecorder clocked(m_File);
        tessera::AlarmHistoryModel model(&clocked.recorder);
        model.fetchMore(QModelIndex());
        QTRY_COMPARE(model.rowCount(), 200);
        clocked.recorder.Acknowledge({model.Entry(1).number}, QStringLiteral("li"));
        QCOMPARE(model.Entry(1).acknowledgedBy, QStringLiteral("li"));
        QVERIFY(!model.Entry(0).IsAcknowledged());
        // Also those that the table has not read, and a page that is on its way.
        model.fetchMore(QModelIndex());
        clocked.recorder.AcknowledgeAll(QStringLiteral("wu"));
        QCOMPARE(model.Entry(0).acknowledgedBy, QStringLiteral("wu"));
        QTRY_COMPARE(model.rowCount(), 250);
        QCOMPARE(model.Entry(249).acknowledgedBy, QStringLiteral("wu"));
    }
    const QVector<AlarmEntry> all = stored(m_File);
    QCOMPARE(all.size(), 250);
    for (int row = 0; row < all.size(); ++row)
        QCOMPARE(all.at(row).acknowledgedBy, row == 1 ? QStringLiteral("li") : QStringLiteral("wu"));
}

void AlarmRecorderTest::a_page_that_cannot_be_read_is_told() {
    ClockedRecorder clocked(m_Folder->path()); // a folder is no file
    tessera::AlarmHistoryModel model(&clocked.recorder);
    QSignalSpy failed(&model, &tessera::AlarmHistoryModel::ReadFailed);
    model.fetchMore(QModelIndex());
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(!model.canFetchMore(QModelIndex()));
    QTRY_VERIFY(!clocked.recorder.StoreError().isEmpty());
}

void AlarmRecorderTest::inputs_come_into_the_history_with_their_first_out() {
    start(false);
    window().timerUpDate();
    machine().setInputs(1U << InDoor2);
    window().timerUpDate();
    machine().setInputs(1U << InDoor2 | 1U << InEmergency | 1U << InDoor5);
    window().timerUpDate();
    machine().setInputs(1U << InReady);
    window().timerUpDate();
    pressIndicator();
    QCOMPARE(texts(table()), (QStringList{QStringLiteral("机台就绪"), QStringLiteral("急停"),
                                          QStringLiteral("安全门5报警"), QStringLiteral("安全门2报警")}));
    QCOMPARE(texts(table(), tessera::AlarmColumnFirstOut),
             (QStringList{QString(), QString(), QString(), QStringLiteral("首发")}));
    // The open window follows.
    machine().setInputs(1U << InReady | 1U << InCurtain);
    window().timerUpDate();
    QCOMPARE(texts(table()).first(), QStringLiteral("安全光幕触发"));
    part<QRadioButton>("radioButtonActive")->click();
    QCOMPARE(texts(table()), (QStringList{QStringLiteral("安全光幕触发"), QStringLiteral("机台就绪")}));
    machine().setInputs(0);
    window().timerUpDate();
    QCOMPARE(table().rowCount(), 0);
    part<QRadioButton>("radioButtonAll")->click();
    QCOMPARE(table().rowCount(), 5);
}

void AlarmRecorderTest::what_the_card_and_the_laser_tell_comes_into_the_history() {
    start(false);
    watchLaser();
    pressIndicator();
    machine().setInputs(kLaserHot);
    window().timerUpDate();
    machine().setInputs(0);
    window().timerUpDate();
    for (char const* fault : {"card_alarm", "scan_alarm_x", "scan_loop", "io_timeout"})
        QVERIFY(machine().setFault(fault, true));
    window().timerUpDate();
    machine().clearFaults();
    window().timerUpDate();
    QCOMPARE(texts(table()),
             (QStringList{QStringLiteral("振镜闭环异常"), QStringLiteral("IO超时"), QStringLiteral("X振镜报警"),
                          QStringLiteral("板卡系统报警"), QStringLiteral("温度超标")}));
    for (QString const& state : texts(table(), tessera::AlarmColumnState))
        QCOMPARE(state, QStringLiteral("已清除"));
}

void AlarmRecorderTest::the_fibre_latch_lasts_to_the_end_of_the_program() {
    start(false);
    RunLaserStart::Instance()->nFiberAlarm = 1;
    QVERIFY(machine().setFault("card_alarm", true));
    window().timerUpDate();
    machine().clearFaults();
    window().timerUpDate();
    window().SetSafeAlarm(false, 256);
    window().timerUpDate();
    pressIndicator();
    part<QRadioButton>("radioButtonActive")->click();
    QCOMPARE(texts(table()), QStringList{QStringLiteral("光纤激光器报警已锁定")});
    m_Window.reset();
    const QVector<AlarmEntry> all = stored(tessera::AlarmRecorder::File());
    QCOMPARE(all.size(), 3);
    QCOMPARE(all.at(0).code, QStringLiteral("fibre"));
    QCOMPARE(all.at(0).end, AlarmEnd::ProgramEnd);
}

void AlarmRecorderTest::a_stop_that_is_not_confirmed_comes_into_the_history() {
    QVERIFY(startWithJob());
    pressIndicator();
    QVERIFY(machine().setFault("stop_hangs", true));
    dialog().StopMark();
    QTRY_COMPARE(texts(table()), QStringList{QStringLiteral("停止未确认")});
    QCOMPARE(texts(table(), tessera::AlarmColumnState), QStringList{QStringLiteral("报警中")});
    QVERIFY(polled());
    QCOMPARE(table().rowCount(), 1);
    QVERIFY(machine().setFault("stop_hangs", false));
    QTRY_COMPARE(texts(table(), tessera::AlarmColumnState), QStringList{QStringLiteral("已清除")});
}

void AlarmRecorderTest::a_press_of_the_safety_indicator_opens_the_history_once() {
    start();
    QVERIFY(!historyDialog());
    pressIndicator();
    AlarmHistoryDialog const* first = historyDialog();
    QVERIFY(first->isVisible());
    QVERIFY(!first->isModal());
    QTest::mouseClick(m_Window->child<AlarmCtrl>("alarmSafe"), Qt::LeftButton);
    QCOMPARE(window().findChildren<AlarmHistoryDialog*>().size(), 1);
    press("pushButtonClose");
    QTRY_VERIFY(!historyDialog());
    pressIndicator();
    QVERIFY(historyDialog()->isVisible());
}

void AlarmRecorderTest::targets_are_large_enough_for_a_finger() {
    start();
    window().resize(1024, 600);
    pressIndicator();
    QVERIFY(historyDialog()->width() <= 1024 && historyDialog()->height() <= 560);
    for (char const* name :
         {"pushButtonAcknowledge", "pushButtonAcknowledgeAll", "pushButtonExport", "pushButtonClose"}) {
        QVERIFY2(part<QPushButton>(name)->height() >= 40, name);
        QVERIFY2(part<QPushButton>(name)->sizeHint().width() <= part<QPushButton>(name)->width(), name);
    }
    QVERIFY(part<QRadioButton>("radioButtonAll")->height() >= 40);
    QVERIFY(part<QRadioButton>("radioButtonActive")->height() >= 40);
    QVERIFY(part<QTableView>("tableAlarms")->verticalHeader()->defaultSectionSize() >= 40);
    QVERIFY(part<QTableView>("tableAlarms")->verticalScrollBar()->sizeHint().width() >= 40);
    QVERIFY(m_Window->child<AlarmCtrl>("alarmSafe")->height() >= 40);
}

void AlarmRecorderTest::a_press_of_acknowledge_notes_the_selected_alarms() {
    start(false);
    window().timerUpDate();
    machine().setInputs(1U << InDoor1 | 1U << InDoor2);
    window().timerUpDate();
    window().show();
    pressIndicator();
    QVERIFY(!part<QPushButton>("pushButtonAcknowledge")->isEnabled());
    part<QTableView>("tableAlarms")->selectRow(1);
    QVERIFY(part<QPushButton>("pushButtonAcknowledge")->isEnabled());
    press("pushButtonAcknowledge");
    QVERIFY(!part<QPushButton>("pushButtonAcknowledge")->isEnabled());
    QCOMPARE(texts(table(), tessera::AlarmColumnUser), (QStringList{QString(), QStringLiteral("未登录")}));
    // The alarm itself is as it was.
    QCOMPARE(window().GetSafeAlarm(), 6U);
    QVERIFY(!window().CheckAlarmStatus());
    press("pushButtonAcknowledgeAll");
    QCOMPARE(texts(table(), tessera::AlarmColumnUser),
             (QStringList{QStringLiteral("未登录"), QStringLiteral("未登录")}));
}

void AlarmRecorderTest::the_history_is_exported_to_the_file_that_is_chosen() {
    start(false);
    window().timerUpDate();
    machine().setInputs(1U << InEmergency);
    window().timerUpDate();
    window().show();
    pressIndicator();
    const QString target = m_Folder->filePath(QStringLiteral("taken away"));
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [&target](QWidget& chooser) { chooser.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(target); },
        QStringLiteral("保存(S)"));
    press("pushButtonExport");
    QVERIFY(answerer.waitUntilAnswered());
    QTRY_COMPARE(part<QLabel>("labelMessage")->text(), QStringLiteral("已导出: taken away.csv"));
    QFile file(target + QStringLiteral(".csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("急停"));
    QVERIFY(part<QPushButton>("pushButtonExport")->isEnabled());
    // Another thought: nothing is written.
    DialogAnswerer second;
    second.reject();
    press("pushButtonExport");
    QVERIFY(second.waitUntilAnswered());
    QVERIFY(part<QPushButton>("pushButtonExport")->isEnabled());
}

void AlarmRecorderTest::an_export_that_fails_is_told() {
    start();
    pressIndicator();
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [](QWidget& chooser) {
            chooser.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QStringLiteral("/proc/alarms.csv"));
        },
        QStringLiteral("保存(S)"));
    press("pushButtonExport");
    QVERIFY(answerer.waitUntilAnswered());
    QTRY_VERIFY(part<QLabel>("labelMessage")->text().startsWith(QStringLiteral("导出失败: ")));
    QVERIFY(part<QPushButton>("pushButtonExport")->isEnabled());
}

void AlarmRecorderTest::a_history_that_cannot_be_stored_disturbs_no_supervision_and_is_told() {
    QFile blocked(tessera::rootPath(QStringLiteral("/AlarmHistory")));
    QVERIFY(blocked.open(QIODevice::WriteOnly));
    blocked.close();
    QVERIFY(startWithJob());
    QVERIFY(hold(InDoor1));
    QVERIFY(stoppedOnce());
    QCOMPARE(window().GetSafeAlarm(), 2U);
    pressIndicator();
    QCOMPARE(texts(table()), QStringList{QStringLiteral("安全门1报警")});
    QTRY_COMPARE(part<QLabel>("labelMessage")->text(), QStringLiteral("报警记录无法保存到磁盘"));
    QVERIFY(blocked.remove());
    m_Window.reset();
    QCOMPARE(stored(tessera::AlarmRecorder::File()).size(), 1);
}

void AlarmRecorderTest::after_a_restart_the_history_goes_on() {
    start(false);
    window().timerUpDate();
    machine().setInputs(1U << InDoor1);
    window().timerUpDate();
    machine().setInputs(0);
    start(false);
    window().timerUpDate();
    machine().setInputs(1U << InDoor2);
    window().timerUpDate();
    window().show();
    pressIndicator();
    QTRY_COMPARE(texts(table()), (QStringList{QStringLiteral("安全门2报警"), QStringLiteral("安全门1报警")}));
    QCOMPARE(texts(table(), tessera::AlarmColumnState),
             (QStringList{QStringLiteral("报警中"), QStringLiteral("程序退出")}));
    QCOMPARE(texts(table(), tessera::AlarmColumnFirstOut),
             (QStringList{QStringLiteral("首发"), QStringLiteral("首发")}));
}

QTEST_MAIN(AlarmRecorderTest)
#include "tst_alarmrecorder.moc"
