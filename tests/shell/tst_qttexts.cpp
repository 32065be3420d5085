// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "shell/qttexts.h"
#include "tests/shell/windowfixture.h"

#include <QAbstractButton>
#include <QMessageBox>

using namespace tests;

/// The texts of the tool kit follow the operator's language.
class QtTextsTest : public QObject {
    Q_OBJECT

    TemporaryRoot m_root;

    static QString yes() {
        const QMessageBox box(QMessageBox::Question, QString(), QString(), QMessageBox::Yes | QMessageBox::No);
        return box.button(QMessageBox::Yes)->text().remove(QLatin1Char('&'));
    }

private slots:
    void cleanup() { QVERIFY(tessera::SetQtLanguage(QStringLiteral("en"))); }

    void buttons_are_chinese_and_english_again() {
        QVERIFY(tessera::SetQtLanguage(QStringLiteral("zh_CN")));
        QVERIFY2(yes().startsWith(QStringLiteral("是")), qPrintable(yes()));
        QVERIFY(tessera::SetQtLanguage(QStringLiteral("zh_CN")));
        QVERIFY(tessera::SetQtLanguage(QStringLiteral("en")));
        QCOMPARE(yes(), QStringLiteral("Yes"));
    }

    void a_language_without_texts_is_told_and_english() {
        QVERIFY(!tessera::SetQtLanguage(QStringLiteral("xx_YY")));
        QCOMPARE(yes(), QStringLiteral("Yes"));
    }

    void the_window_takes_them_with_its_own() {
        const QString before = LanguageManager::GetCurrentLan();
        RunningWindow window;
        LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
        window->SetUIText();
        QVERIFY(yes().startsWith(QStringLiteral("是")));
        LanguageManager::SetCurrentLan(QStringLiteral("en"));
        window->SetUIText();
        QCOMPARE(yes(), QStringLiteral("Yes"));
        LanguageManager::SetCurrentLan(before);
    }
};

QTEST_MAIN(QtTextsTest)
#include "tst_qttexts.moc"
