// SPDX-License-Identifier: MIT
#include "engine/iautologinoutmsg.h"
#include "engine/languagemanager.h"
#include "engine/manualresetevent.h"
#include "engine/marklog.h"
#include "engine/showdebuginfo.h"
#include "engine/showdebugino.h"
#include "engine/systemparam.h"
#include "tests/support/temporaryroot.h"
#include "tests/support/waitfor.h"

#include <QDir>
#include <QDirIterator>
#include <QtTest>
#include <thread>

namespace {

/// Keeps the lists that it is given.
class Sink : public ShowDebugIno {
public:
    void ClearTextSub() override { m_texts.clear(); }
    void ShowTextsSub(QString text, DebugInfoType) override { m_texts.append(text); }
    void SetTextsSub(QVector<QString> texts, QVector<DebugInfoType> types) override {
        m_texts = texts;
        m_types = types;
    }
    QVector<QString> m_texts;
    QVector<DebugInfoType> m_types;
};

QByteArray wholeLog(tests::TemporaryRoot const& root) {
    QByteArray all;
    QDirIterator files(root.path(QStringLiteral("日志文件")), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            all += file.readAll();
    }
    return all;
}

} // namespace

class TestTexts : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;

private slots:
    void initTestCase() { m_root = std::make_unique<tests::TemporaryRoot>(); }
    void cleanupTestCase() { m_root.reset(); }

    void unknown_key_is_its_own_translation() {
        for (char const* language : {"zh_CN", "en"}) {
            QVERIFY(LanguageManager::SetCurrentLan(QString::fromLatin1(language)));
            QCOMPARE(LanguageManager::GetCurrentLan(), QString::fromLatin1(language));
            QCOMPARE(LanguageManager::GetLanText("没有这个词条1234"), QStringLiteral("没有这个词条1234"));
            QCOMPARE(LanguageManager::GetLanText(QStringLiteral("没有这个词条1234")),
                     QStringLiteral("没有这个词条1234"));
            QCOMPARE(LanguageManager::GetLanText(""), QString());
        }
    }

    void chinese_text_is_the_key_and_english_another() {
        QVERIFY(LanguageManager::SetCurrentLan("zh_CN"));
        QCOMPARE(LanguageManager::GetLanText("开始"), QStringLiteral("开始"));
        QVERIFY(LanguageManager::SetCurrentLan("en"));
        QVERIFY(LanguageManager::GetLanText("开始") != QStringLiteral("开始"));
        QVERIFY(LanguageManager::SetCurrentLan("zh_CN"));
    }

    void language_that_is_not_there_is_refused() {
        QVERIFY(LanguageManager::SetCurrentLan("zh_CN"));
        QVERIFY(!LanguageManager::SetCurrentLan("xx_YY"));
        QCOMPARE(LanguageManager::GetCurrentLan(), QStringLiteral("zh_CN"));
    }

    void entry_is_in_the_log_when_the_call_returns() {
        SystemParam::Instance()->SetSaveOperator(true);
        MarkLog::Instance()->ShowNode(NoteOperator, QStringLiteral("操作一"));
        MarkLog::Instance()->ShowNote(QStringLiteral("记录二"));
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("错误三"));
        std::thread([] { MarkLog::Instance()->ShowNote(QStringLiteral("线程四")); }).join();
        QByteArray const log = wholeLog(*m_root);
        for (char const* text : {"操作一", "记录二", "错误三", "线程四"})
            QVERIFY2(log.contains(text), text);
    }

    void lists_reach_the_registered_sink_and_nobody_else() {
        QVector<QString> const texts{QStringLiteral("急停"), QStringLiteral("激光器报警")};
        QVector<DebugInfoType> const types{DebugInfoAlarm, DebugInfoAlarm};
        ShowDebugIno::ShowText(texts, types);
        Sink sink;
        ShowDebugIno::SetInstance(&sink);
        ShowDebugIno::ShowText(texts, types);
        QCOMPARE(sink.m_texts, texts);
        QCOMPARE(sink.m_types, types);
        ShowDebugIno::SetInstance(nullptr);
        ShowDebugIno::ShowText({}, {});
        QCOMPARE(sink.m_texts, texts);
    }

    void debug_lines_may_come_from_any_thread() {
        ShowDebugInfo::Instance();
        std::thread([] { ShowDebugInfo::Instance()->AddShowText(QStringLiteral("线程"), DebugInfoTrace); }).join();
        ShowDebugInfo::Instance()->ShowWindow();
        QCoreApplication::processEvents();
    }

    void event_stays_set_until_it_is_reset() {
        ManualResetEvent event(false);
        QVERIFY(!event.IsSet());
        QVERIFY(!event.WaitOne(1));
        event.Set();
        QVERIFY(event.WaitOne(0));
        QVERIFY(event.WaitOne());
        event.Reset();
        QVERIFY(!event.WaitOne(0));
        QVERIFY(ManualResetEvent(true).IsSet());
    }

    void event_wakes_every_waiter() {
        ManualResetEvent event(false);
        std::atomic<int> woken{0};
        std::vector<std::thread> waiters;
        for (int i = 0; i < 3; ++i)
            waiters.emplace_back([&] { woken += event.WaitOne() ? 1 : 100; });
        event.Set();
        for (std::thread& waiter : waiters)
            waiter.join();
        QCOMPARE(woken.load(), 3);
    }
};

QTEST_MAIN(TestTexts)
#include "tst_texts.moc"
