// SPDX-License-Identifier: MIT
#include "support/filename.h"

#include <QtTest>

using tessera::FileNameFault;
using tessera::FileNamePlace;

Q_DECLARE_METATYPE(FileNameFault)

class FileNameTest : public QObject {
    Q_OBJECT

private slots:
    void names_are_taken_or_refused_data();
    void names_are_taken_or_refused();
};

void FileNameTest::names_are_taken_or_refused_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<FileNameFault>("machine");
    QTest::addColumn<FileNameFault>("stick");
    auto row = [](char const* tag, QString const& name, FileNameFault machine, FileNameFault stick) {
        QTest::newRow(tag) << name << machine << stick;
    };
    constexpr FileNameFault none = FileNameFault::None;
    constexpr FileNameFault bad = FileNameFault::BadCharacter;
    row("plain", "plate1", none, none);
    row("Chinese", QStringLiteral("齿轮 板"), none, none);
    row("dots within", "a.b..c", none, none);
    row("empty", "", FileNameFault::Empty, FileNameFault::Empty);
    row("a folder up", "..", bad, bad);
    row("the folder itself", ".", bad, bad);
    row("hidden", ".plate", bad, bad);
    row("in another folder", "../ini/Marking", bad, bad);
    row("absolute", "/etc/passwd", bad, bad);
    row("below", "a/b", bad, bad);
    row("line end", "a\nb", bad, bad);
    row("nul", QString::fromUtf16(u"a\0b", 3), bad, bad);
    row("delete character", "a\x7f", bad, bad);
    row("half a character", QString(QChar(0xd800)), bad, bad);
    for (char const c : QByteArray("\\:*?\"<>|"))
        row(QByteArray("stick: ").append(c).constData(), QString("a%1b").arg(QLatin1Char(c)), none, bad);
    row("longest", QString(251, QLatin1Char('a')), none, none);
    row("too long", QString(252, QLatin1Char('a')), FileNameFault::TooLong, FileNameFault::TooLong);
    row("longest in bytes", QString(83, QChar(0x9f7f)) + "aa", none, none);
    row("too long in bytes", QString(84, QChar(0x9f7f)), FileNameFault::TooLong, FileNameFault::TooLong);
}

void FileNameTest::names_are_taken_or_refused() {
    QFETCH(QString, name);
    QFETCH(FileNameFault, machine);
    QFETCH(FileNameFault, stick);
    QCOMPARE(tessera::fileNameFault(name, ".mkf", FileNamePlace::Machine), machine);
    QCOMPARE(tessera::fileNameFault(name, ".mkf", FileNamePlace::Stick), stick);
}

QTEST_GUILESS_MAIN(FileNameTest)
#include "tst_filename.moc"
