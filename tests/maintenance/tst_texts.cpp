// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "maintenance/archivetext.h"
#include "maintenance/filenametext.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>

using tessera::ArchiveFault;
using tessera::FileNameFault;

/// What an operator reads about archives and names.
class TextsTest : public QObject {
    Q_OBJECT

private slots:
    void each_archive_fault_has_a_text_of_its_own_in_both_languages() {
        QVERIFY(!tessera::ArchiveFaultKey(ArchiveFault::None));
        QVERIFY(!tessera::ArchiveFaultKey(ArchiveFault::Cancelled));
        QSet<QString> texts;
        const int first = int(ArchiveFault::SourceUnreadable);
        const int last = int(ArchiveFault::TooLarge);
        for (char const* language : {"zh_CN", "en"}) {
            QVERIFY(LanguageManager::SetCurrentLan(language));
            for (int fault = first; fault <= last; ++fault)
                texts.insert(LanguageManager::GetLanText(tessera::ArchiveFaultKey(ArchiveFault(fault))));
        }
        QCOMPARE(texts.size(), 2 * (last - first + 1));
    }

    void each_fault_of_a_name_has_a_text() {
        QVERIFY(!tessera::FileNameFaultKey(FileNameFault::None));
        QCOMPARE(QString(tessera::FileNameFaultKey(FileNameFault::Empty)), "请输入正确的文件名");
        QCOMPARE(QString(tessera::FileNameFaultKey(FileNameFault::BadCharacter)),
                 "文件名不能以点开头,也不能包含/等特殊字符");
        QCOMPARE(QString(tessera::FileNameFaultKey(FileNameFault::TooLong)), "文件名太长");
    }

private:
    tests::TemporaryRoot m_Root;
};

QTEST_GUILESS_MAIN(TextsTest)
#include "tst_texts.moc"
