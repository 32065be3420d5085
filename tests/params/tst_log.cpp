// SPDX-License-Identifier: MIT
#include "engine/marklog.h"
#include "engine/showdebuginfo.h"
#include "engine/showdebugino.h"
#include "engine/systemparam.h"
#include "simengine/log/debugwindow.h"
#include "simengine/log/logfile.h"
#include "support/approot.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QtTest>
#include <thread>
#include <vector>

using sim::LogKind;

namespace {

QPlainTextEdit* debugText() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() == QLatin1String("ShowDebugInfo"))
            return window->findChild<QPlainTextEdit*>(QStringLiteral("plainTextEditDebug"));
    }
    return nullptr;
}

class Sink : public ShowDebugIno {
public:
    void ClearTextSub() override { lines.clear(); }
    void ShowTextsSub(QString text, DebugInfoType type) override {
        lines.append(text);
        types.append(type);
    }
    void SetTextsSub(QVector<QString> texts, QVector<DebugInfoType> kinds) override {
        lines = texts;
        types = kinds;
    }
    QVector<QString> lines;
    QVector<DebugInfoType> types;
};

using Switch = void (SystemParam::*)(bool);
constexpr Switch kSwitches[] = {&SystemParam::SetSaveOperator,    &SystemParam::SetSaveDebug,
                                &SystemParam::SetSaveChangeParam, &SystemParam::SetSaveRunningLog,
                                &SystemParam::SetSaveOpenCard,    &SystemParam::SetSaveCloseCard,
                                &SystemParam::SetSaveMarkData,    &SystemParam::SetSaveTriger};

void setSwitches(bool on) {
    for (Switch set : kSwitches)
        (SystemParam::Instance()->*set)(on);
}

} // namespace

class TestLog : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_root;

    /// All entries of all days: midnight may pass during a test.
    static QList<QByteArray> lines() {
        QByteArray all;
        QDir const folder(tessera::rootPath("/日志文件"));
        for (QString const& name : folder.entryList({"*.log"}, QDir::Files, QDir::Name)) {
            QFile file(folder.filePath(name));
            if (file.open(QIODevice::ReadOnly))
                all += file.readAll();
        }
        QList<QByteArray> found = all.split('\n');
        found.removeLast();
        return found;
    }

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }

    void init() {
        QDir(tessera::rootPath("/日志文件")).removeRecursively();
        setSwitches(true);
    }

    void a_line_has_time_kind_and_text() {
        QDateTime const time(QDate(2024, 3, 5), QTime(6, 7, 8, 9));
        QCOMPARE(sim::logLine(time, LogKind::Operator, "上移"),
                 QByteArray("2024-03-05 06:07:08.009\toperator\t上移\n"));
        QCOMPARE(sim::logPath(time.date()), tessera::rootPath("/日志文件/2024-03-05.log"));
    }

    void a_text_of_several_lines_stays_one_entry() {
        MarkLog::Instance()->ShowNote("one\r\ntwo\tthree");
        QCOMPARE(lines().size(), 1);
        QVERIFY(lines().at(0).endsWith("\tnote\tone\\r\\ntwo\\tthree"));
    }

    void each_switch_decides_over_its_kind_alone_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("row");
        QTest::newRow("operator") << 4 << 0;
        QTest::newRow("debug") << 5 << 1;
        QTest::newRow("param") << 7 << 2;
        QTest::newRow("run") << 9 << 3;
        QTest::newRow("open card") << 20 << 4;
        QTest::newRow("close card") << 21 << 5;
        QTest::newRow("mark data") << 22 << 6;
        QTest::newRow("triger") << 23 << 7;
    }

    void each_switch_decides_over_its_kind_alone() {
        QFETCH(int, kind);
        QFETCH(int, row);
        (SystemParam::Instance()->*kSwitches[row])(false);
        QVERIFY(sim::writeLog(static_cast<LogKind>(kind), "off"));
        QCOMPARE(lines().size(), 0);
        setSwitches(false);
        (SystemParam::Instance()->*kSwitches[row])(true);
        QVERIFY(sim::writeLog(static_cast<LogKind>(kind), "on"));
        QCOMPARE(lines().size(), 1);
    }

    void notes_errors_and_laser_failures_are_always_written() {
        setSwitches(false);
        MarkLog::Instance()->ShowNote("n");
        MarkLog::Instance()->ShowNote_Error("e");
        MarkLog::Instance()->ShowNode(NoteLaserFailure, "l");
        MarkLog::Instance()->ShowNode(NoteOperator, "o");
        QCOMPARE(lines().size(), 3);
        QVERIFY(lines().at(0).endsWith("\tnote\tn"));
        QVERIFY(lines().at(1).endsWith("\terror\te"));
        QVERIFY(lines().at(2).endsWith("\tlaser\tl"));
    }

    void a_file_removed_in_between_is_made_again() {
        MarkLog::Instance()->ShowNote("before");
        QVERIFY(QDir(tessera::rootPath("/日志文件")).removeRecursively());
        MarkLog::Instance()->ShowNote("after");
        QCOMPARE(lines().size(), 1);
    }

    void lines_of_several_threads_do_not_mix() {
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([t] {
                for (int i = 0; i < 250; ++i)
                    MarkLog::Instance()->ShowNode(NoteRun, QString(40, QChar('a' + t)));
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(lines().size(), 1000);
        for (QByteArray const& line : lines()) {
            QByteArray const text = line.mid(line.lastIndexOf('\t') + 1);
            QCOMPARE(text, QByteArray(40, text.at(0)));
        }
    }

    void a_folder_that_cannot_be_made_is_told() {
        QFile blocker(tessera::rootPath("/日志文件"));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        QVERIFY(!sim::writeLog(LogKind::Note, "lost"));
        blocker.remove();
    }

    void debug_lines_come_from_any_thread_into_the_window() {
        ShowDebugInfo* info = ShowDebugInfo::Instance();
        QPlainTextEdit* text = debugText();
        QVERIFY(text && !text->isVisible());
        std::thread([info] { info->AddShowText("from a worker", DebugInfoTrace); }).join();
        QTRY_COMPARE(text->toPlainText(), QString("from a worker"));
        info->ShowWindow();
        QVERIFY(text->isVisible());
        text->window()->hide();
    }

    void alarm_lines_reach_the_status_list_and_traces_do_not() {
        Sink sink;
        ShowDebugIno::SetInstance(&sink);
        ShowDebugInfo::Instance()->AddShowText("trace", DebugInfoTrace);
        ShowDebugInfo::Instance()->AddShowText("alarm", DebugInfoAlarm);
        QTRY_COMPARE(sink.lines, QVector<QString>{"alarm"});
        QCOMPARE(sink.types, QVector<DebugInfoType>{DebugInfoAlarm});
    }

    void a_full_file_of_a_day_takes_no_debug_lines_and_says_so() {
        setSwitches(true);
        QVERIFY(sim::writeLog(LogKind::Note, "begin"));
        QFile file(sim::logPath(QDate::currentDate()));
        qint64 const room = 130; // for one line, not for two
        QVERIFY(file.resize(sim::kLogDebugBytes - room));
        QVERIFY(sim::writeLog(LogKind::Debug, QString(70, 'x')));
        QVERIFY(file.size() < sim::kLogDebugBytes);
        QVERIFY(sim::writeLog(LogKind::Debug, "the last one"));
        qint64 const full = file.size();
        QVERIFY(full >= sim::kLogDebugBytes);
        QVERIFY(sim::writeLog(LogKind::Debug, "left out"));
        QCOMPARE(file.size(), full);
        QVERIFY(sim::writeLog(LogKind::Error, "goes on"));
        QVERIFY(file.open(QIODevice::ReadOnly) && file.seek(sim::kLogDebugBytes - room));
        QByteArray const end = file.readAll();
        file.close();
        QVERIFY(end.contains("\tdebug\tthe last one\n"));
        QVERIFY(end.contains("\tnote\tthe log is full: no debug lines for the rest of the day\n"));
        QVERIFY(!end.contains("left out"));
        QVERIFY(end.endsWith("\terror\tgoes on\n"));
        QVERIFY(file.remove());
    }

    void a_flood_of_lines_keeps_the_newest() {
        QPlainTextEdit* text = debugText();
        QVERIFY(text);
        int const count = 3 * sim::kDebugWindowLines;
        for (int i = 0; i < count; ++i)
            ShowDebugInfo::Instance()->AddShowText(QString::number(i), DebugInfoTrace);
        QString const last = QString::number(count - 1);
        QTRY_VERIFY(text->toPlainText().endsWith(last));
        QVERIFY(text->blockCount() <= sim::kDebugWindowLines);
    }

    void the_sink_gets_whole_lists_and_leaves_when_it_dies() {
        {
            Sink sink;
            ShowDebugIno::SetInstance(&sink);
            ShowDebugIno::ShowText({"a", "b"}, {DebugInfoAlarm, DebugInfoAlarm});
            QCOMPARE(sink.lines, QVector<QString>({"a", "b"}));
        }
        QVERIFY(!sim::debugSink());
        ShowDebugIno::ShowText({"c"}, {DebugInfoAlarm});
    }
};

QTEST_MAIN(TestLog)
#include "tst_log.moc"
