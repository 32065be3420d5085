// SPDX-License-Identifier: MIT
#include "e2e/svglengths.h"
#include "e2e/tesseraprogram.h"

#include <QFile>
#include <QtTest>
#include <algorithm>
#include <cmath>

namespace {

constexpr double kTolerance = 0.001; ///< share of a length
/// A coordinate of the trace is written to a thousandth of a micrometre; what flattening takes from a tiny circle is
/// below this, mm.
constexpr double kSmallest = 0.002;

QByteArray contentOf(QString const& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Lengths of the contours of a trace, shortest first: a row with the laser off ends one contour and begins the next.
QVector<double> traceContourLengths(QByteArray const& csv) {
    QVector<double> lengths;
    double x = 0;
    double y = 0;
    bool inContour = false;
    for (QByteArray const& line : csv.trimmed().split('\n').mid(1)) {
        QByteArrayList const fields = line.split(',');
        double const nextX = fields.at(1).toDouble();
        double const nextY = fields.at(2).toDouble();
        bool const laser = fields.at(3) == "1";
        if (laser && !inContour)
            lengths.append(0.0);
        if (laser)
            lengths.last() += std::hypot(nextX - x, nextY - y);
        inContour = laser;
        x = nextX;
        y = nextY;
    }
    std::sort(lengths.begin(), lengths.end());
    return lengths;
}

double sum(QVector<double> const& lengths) {
    double all = 0;
    for (double length : lengths)
        all += length;
    return all;
}

} // namespace

class TestTrace : public QObject {
    Q_OBJECT
private slots:
    void checking_code_knows_simple_lengths() {
        QByteArray const svg =
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20mm\" height=\"20mm\" viewBox=\"0 0 10 10\">"
            "<line x1=\"0\" y1=\"0\" x2=\"3\" y2=\"4\"/>"
            "<g transform=\"scale(2 1)\"><rect width=\"1\" height=\"1\"/></g>"
            "<circle r=\"1\"/><path d=\"M 0 0 h 1 v 1 z m 5 5 a 1 1 0 0 1 2 0\"/></svg>";
        QVector<double> const lengths = svgContourLengths(svg);
        QVector<double> const expected{2 * M_PI, 2 * (2 + std::sqrt(2.0)), 10.0, 12.0, 4 * M_PI};
        QCOMPARE(lengths.size(), expected.size());
        for (int i = 0; i < lengths.size(); ++i)
            QVERIFY2(std::fabs(lengths.at(i) - expected.at(i)) < 0.001, qPrintable(QString::number(lengths.at(i))));
    }

    void every_contour_of_the_drawing_is_marked_in_its_length_data() {
        QTest::addColumn<QString>("drawing");
        QTest::newRow("gear plate") << "gear-plate.svg";
        QTest::newRow("name plate") << "name-plate.svg";
    }
    void every_contour_of_the_drawing_is_marked_in_its_length() {
        QFETCH(QString, drawing);
        ProgramRoot root;
        TesseraProgram program(root);
        program.start({"--sim-speed", "0", "--import", sampleFile(drawing), "--mark", "1", "--trace",
                       root.beside("t.csv"), "--quit"});
        QVERIFY(program.waitEnd());
        QVERIFY2(program.exitCode() == 0, program.errors().constData());
        QVector<double> const drawn = svgContourLengths(contentOf(sampleFile(drawing)));
        QVector<double> const marked = traceContourLengths(contentOf(root.beside("t.csv")));
        QVERIFY(drawn.size() > 20);
        QCOMPARE(marked.size(), drawn.size());
        for (int i = 0; i < drawn.size(); ++i) {
            double const off = std::fabs(marked.at(i) - drawn.at(i));
            QVERIFY2(off <= std::max(kTolerance * drawn.at(i), kSmallest),
                     qPrintable(QStringLiteral("contour %1: %2 mm marked, %3 mm drawn")
                                    .arg(i)
                                    .arg(marked.at(i), 0, 'f', 6)
                                    .arg(drawn.at(i), 0, 'f', 6)));
        }
        QVERIFY2(std::fabs(sum(marked) - sum(drawn)) <= kTolerance * sum(drawn),
                 qPrintable(QStringLiteral("%1 mm marked, %2 mm drawn").arg(sum(marked)).arg(sum(drawn))));
    }

    void drawing_at_another_speed_gives_the_same_marks() {
        QVector<QVector<double>> lengths;
        for (char const* speed : {"0", "200"}) {
            ProgramRoot root;
            TesseraProgram program(root);
            program.start({"--sim-speed", speed, "--import", sampleFile("name-plate.svg"), "--mark", "1", "--trace",
                           root.beside("t.csv"), "--quit"});
            QVERIFY(program.waitEnd());
            QVERIFY2(program.exitCode() == 0, program.errors().constData());
            lengths.append(traceContourLengths(contentOf(root.beside("t.csv"))));
        }
        QCOMPARE(lengths.at(0), lengths.at(1));
    }
};

QTEST_GUILESS_MAIN(TestTrace)
#include "tst_trace.moc"
