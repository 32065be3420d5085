// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "simengine/params/inifile.h"
#include "support/approot.h"

#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>
#include <atomic>
#include <thread>

class TestLanguage : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_root;

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        tessera::setApplicationRoot(m_root.path());
    }

    void init() { QVERIFY(LanguageManager::SetCurrentLan("zh_CN")); }

    void chinese_is_the_key() {
        QCOMPARE(LanguageManager::GetCurrentLan(), QString("zh_CN"));
        QCOMPARE(LanguageManager::GetLanText("运行"), QString("运行"));
        QCOMPARE(LanguageManager::GetLanText(QString("运行")), QString("运行"));
    }

    void english_is_the_translation_and_an_unknown_key_itself() {
        QVERIFY(LanguageManager::SetCurrentLan("en"));
        QCOMPARE(LanguageManager::GetLanText("运行"), QString("Run"));
        QCOMPARE(LanguageManager::GetLanText(QString("急停按钮")), QString("Emergency stop button"));
        QCOMPARE(LanguageManager::GetLanText(QString("没有的键")), QString("没有的键"));
        QCOMPARE(LanguageManager::GetLanText(QString()), QString());
    }

    void keys_in_latin_letters_have_a_chinese_text() {
        QCOMPARE(LanguageManager::GetLanText("ImportTTFFont"), QString("导入字体"));
        QVERIFY(LanguageManager::SetCurrentLan("en"));
        QCOMPARE(LanguageManager::GetLanText("ImportTTFFont"), QString("Import fonts"));
    }

    void every_text_of_the_file_is_in_the_library_data() {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("least");
        QTest::newRow("English") << "en" << 701;
        QTest::newRow("Chinese") << "zh_CN" << 30;
    }
    void every_text_of_the_file_is_in_the_library() {
        QFETCH(QString, language);
        QFETCH(int, least);
        QVERIFY(LanguageManager::SetCurrentLan(language));
        QFile file(qEnvironmentVariable("TESSERA_SOURCE_DIR") + "/resources/translations/tessera_" + language + ".ts");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        int count = 0;
        QString key;
        while (!xml.atEnd()) {
            xml.readNext();
            if (!xml.isStartElement())
                continue;
            if (xml.name() == QLatin1String("source"))
                key = xml.readElementText();
            if (xml.name() == QLatin1String("translation")) {
                QString const text = xml.readElementText();
                QCOMPARE(LanguageManager::GetLanText(key), text);
                ++count;
            }
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QVERIFY(count >= least);
    }

    void the_choice_is_stored_and_a_strange_one_refused() {
        QVERIFY(LanguageManager::SetCurrentLan("en"));
        QVERIFY(!LanguageManager::SetCurrentLan("fr"));
        QCOMPARE(LanguageManager::GetCurrentLan(), QString("en"));
        sim::IniFile const file(tessera::rootPath("/ini/Language.ini"));
        QCOMPARE(file.value("Language", "Current").value(), QString("en"));
    }

    void texts_may_be_asked_on_any_thread_during_a_change() {
        std::atomic<bool> stop{false};
        std::atomic<int> strange{0};
        std::thread reader([&] {
            while (!stop) {
                QString const text = LanguageManager::GetLanText("暂停");
                if (text != "暂停" && text != "Pause")
                    ++strange;
            }
        });
        for (int i = 0; i < 20; ++i)
            LanguageManager::SetCurrentLan(i % 2 ? "zh_CN" : "en");
        stop = true;
        reader.join();
        QCOMPARE(strange.load(), 0);
    }
};

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
