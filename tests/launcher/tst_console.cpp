// SPDX-License-Identifier: MIT
#include "consoleprogress.h"
#include "runreport.h"

#include <QTemporaryFile>
#include <QtTest>
#include <memory>

using namespace tessera;

namespace {

/// What is written to a stream while `write` runs.
template<typename Write>
QByteArray written(Write write) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
    write(file.get());
    std::fflush(file.get());
    std::rewind(file.get());
    QByteArray text(4096, '\0');
    text.resize(int(std::fread(text.data(), 1, size_t(text.size()), file.get())));
    return text;
}

} // namespace

class TestConsole : public QObject {
    Q_OBJECT
private slots:
    void bar_grows_with_the_share_data() {
        QTest::addColumn<double>("share");
        QTest::addColumn<QString>("bar");
        QTest::newRow("none") << 0.0 << "[..........]";
        QTest::newRow("half") << 0.5 << "[#####.....]";
        QTest::newRow("all") << 1.0 << "[##########]";
        QTest::newRow("more than all") << 7.0 << "[##########]";
        QTest::newRow("less than none") << -1.0 << "[..........]";
    }
    void bar_grows_with_the_share() {
        QFETCH(double, share);
        QTEST(ConsoleProgress::bar(share, 10), "bar");
    }

    void terminal_gets_one_line_drawn_anew() {
        QByteArray const text = written([](std::FILE* stream) {
            ConsoleProgress progress(stream, true, 2);
            progress.show(0, 0.5);
            progress.passEnded(1, 10);
            progress.passEnded(2, 10);
            progress.end();
        });
        QCOMPARE(text.count('\n'), 1);
        QCOMPARE(text.count('\r'), 3);
        QVERIFY2(text.contains(" 25 % pass 1 of 2"), text.constData());
        QVERIFY2(text.contains(" 50 % pass 2 of 2"), text.constData());
        QVERIFY2(text.endsWith("100 % pass 2 of 2\n"), text.constData());
    }

    void file_gets_one_line_a_pass() {
        QByteArray const text = written([](std::FILE* stream) {
            ConsoleProgress progress(stream, 2);
            progress.show(0, 0.5);
            progress.passEnded(1, 1234);
            progress.passEnded(2, 5);
            progress.end();
        });
        QCOMPARE(text, QByteArray("pass 1 of 2: 1234 ms\npass 2 of 2: 5 ms\n"));
    }

    void report_names_every_figure() {
        RunFigures figures;
        figures.document = "/r/MarkFile/gear.mkf";
        figures.objects = 3;
        figures.vertices = 1234;
        figures.markedLength = 100.5;
        figures.jumpedLength = 20.25;
        figures.estimatedTime = 350.125;
        figures.actualTime = 350.125;
        figures.elapsedTime = 712;
        figures.passes = 2;
        figures.passesWanted = 3;
        figures.counter = 41;
        QCOMPARE(runReport(figures), QStringLiteral("document:       /r/MarkFile/gear.mkf\n"
                                                    "objects:        3\n"
                                                    "vertices:       1234\n"
                                                    "marked length:  100.500 mm\n"
                                                    "jumped length:  20.250 mm\n"
                                                    "estimated time: 350.125 ms\n"
                                                    "actual time:    350.125 ms\n"
                                                    "elapsed time:   712 ms\n"
                                                    "passes:         2 of 3\n"
                                                    "counter:        41\n"));
    }
};

QTEST_GUILESS_MAIN(TestConsole)
#include "tst_console.moc"
