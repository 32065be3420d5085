// SPDX-License-Identifier: MIT
#include "codefixture.h"
#include "codereader.h"

#include "simengine/document/codesymbol.h"

#include <QTest>
#include <cmath>

using namespace sim;
using codes::spec;

namespace {

constexpr double kPixelsPerMm = 24.0;

/// What a reader finds in what is marked of the code.
codereader::Found readBack(const CodeSpec& spec) {
    const MadeCode made = makeCode(spec);
    if (!made.ok())
        return {};
    const double spot = made.module / (spec.marking == CodeMarking::Lines ? spec.linesPerModule : 1);
    const double margin = (spec.invert ? 4 : usualQuietZone(spec.symbology) + 2) * made.module;
    return codereader::read(codereader::marked(*samples::object(made.shape), spot, margin, kPixelsPerMm, spec.invert));
}

const char* kindName(Symbology symbology) {
    const char* names[] = {"CODE-128", "EAN-13", "EAN-8", "QR-Code", "DataMatrix"};
    return names[int(symbology)];
}

struct Content {
    const char* name;
    Symbology symbology;
    const char* text;
    const char* read; ///< null: as the text
};

const Content kContents[] = {
    {"code 128 letters", Symbology::Code128, "Tessera-128/aB", nullptr},
    {"code 128 digits", Symbology::Code128, "00123456789012", nullptr},
    {"ean 13 with check digit", Symbology::Ean13, "4006381333931", nullptr},
    {"ean 13 without check digit", Symbology::Ean13, "690123456789", "6901234567892"},
    {"ean 8 with check digit", Symbology::Ean8, "73513537", nullptr},
    {"ean 8 without check digit", Symbology::Ean8, "5512345", "55123457"},
    {"qr text", Symbology::Qr, "https://example.org/a?b=1&c={x}", nullptr},
    {"qr chinese", Symbology::Qr, "激光打标 SN-0001", nullptr},
    {"qr lines", Symbology::Qr, "line 1\nline 2", nullptr},
    {"data matrix text", Symbology::DataMatrix, "P/N 4711-0815 rev.C", nullptr},
    {"data matrix digits", Symbology::DataMatrix, "123456789012345678901234567890", nullptr},
};

} // namespace

/// Codes from what was entered to what a reader makes of what is marked.
class CodeTest : public QObject {
    Q_OBJECT

private slots:
    void what_is_marked_is_read_again_data() {
        QTest::addColumn<int>("content");
        QTest::addColumn<int>("marking");
        QTest::addColumn<bool>("invert");
        const char* ways[] = {"outline", "lines", "dots"};
        for (int i = 0; i < int(std::size(kContents)); ++i) {
            for (int way = 0; way < (isMatrix(kContents[i].symbology) ? 3 : 2); ++way) {
                for (bool invert : {false, true})
                    QTest::addRow("%s, %s%s", kContents[i].name, ways[way], invert ? ", inverted" : "")
                        << i << way << invert;
            }
        }
    }
    void what_is_marked_is_read_again() {
        QFETCH(int, content);
        QFETCH(int, marking);
        QFETCH(bool, invert);
        const Content& row = kContents[content];
        CodeSpec asked = spec(row.symbology, QString::fromUtf8(row.text), CodeMarking(marking));
        asked.invert = invert;
        const codereader::Found found = readBack(asked);
        QCOMPARE(found.kind, QString(kindName(row.symbology)));
        QCOMPARE(found.text, QString::fromUtf8(row.read ? row.read : row.text));
    }

    void every_qr_error_level_is_read() {
        int columns = 0;
        for (int level = 1; level <= kQrErrorLevels; ++level) {
            CodeSpec asked = spec(Symbology::Qr, QStringLiteral("0123456789 ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789"));
            asked.errorLevel = level;
            QCOMPARE(readBack(asked).text, asked.text);
            const int now = makeCode(asked).columns;
            QVERIFY(now >= columns);
            columns = now;
        }
        QVERIFY(columns > 29);
    }

    void a_chosen_size_is_kept() {
        CodeSpec qr = spec(Symbology::Qr, QStringLiteral("A"));
        qr.size = 10;
        QCOMPARE(makeCode(qr).columns, 57);
        QCOMPARE(readBack(qr).text, QStringLiteral("A"));
        CodeSpec matrix = spec(Symbology::DataMatrix, QStringLiteral("A"));
        matrix.size = 7; // 22 x 22
        QCOMPARE(makeCode(matrix).columns, 22);
        QCOMPARE(makeCode(matrix).rows, 22);
        QCOMPARE(readBack(matrix).text, QStringLiteral("A"));
        matrix.size = 25; // the first of the oblong ones: 8 x 18
        QCOMPARE(makeCode(matrix).columns, 18);
        QCOMPARE(makeCode(matrix).rows, 8);
    }

    /// The modules of "123456" as the standard of Data Matrix prints them in its example of encoding.
    void data_matrix_of_the_published_example() {
        const char* rows[] = {"1010101010", "1100101101", "1100000100", "1100011101", "1100001000",
                              "1000001111", "1110110000", "1111011001", "1001110100", "1111111111"};
        CodeSymbol symbol;
        QCOMPARE(
            int(encodeSymbol(spec(Symbology::DataMatrix, QStringLiteral("123456")), QStringLiteral("123456"), symbol)),
            int(CodeFault::None));
        QCOMPARE(symbol.columns, 10);
        QCOMPARE(symbol.rows, 10);
        for (int row = 0; row < 10; ++row) {
            QString drawn;
            for (int column = 0; column < 10; ++column)
                drawn += symbol.isDark(column, row) ? '1' : '0';
            QCOMPARE(drawn, QString(rows[row]));
        }
    }

    void sizes_follow_the_module_or_the_fitted_width() {
        CodeSpec asked = spec(Symbology::Ean13, QStringLiteral("4006381333931"));
        asked.module = 0.33;
        asked.barHeight = 22.85;
        const MadeCode made = makeCode(asked);
        QCOMPARE(made.columns, 95);
        QVERIFY(std::abs(made.size.width() - 95 * 0.33) < 1e-9);
        QCOMPARE(made.size.height(), 22.85);
        const Box box = samples::object(made.shape)->bounds();
        QVERIFY(std::abs(box.minX) < 1e-9 && std::abs(box.minY) < 1e-9);
        QVERIFY(std::abs(box.maxX - 95 * 0.33) < 1e-9 && std::abs(box.maxY - 22.85) < 1e-9);
        asked.fitted = true;
        asked.width = 58.5; // 95 modules and twice 11
        QVERIFY(std::abs(makeCode(asked).module - 0.5) < 1e-12);
        asked.invert = true;
        const Box inverted = samples::object(makeCode(asked).shape)->bounds();
        QVERIFY(std::abs(inverted.width() - 58.5) < 1e-9);
        QVERIFY(std::abs(inverted.minX + 5.5) < 1e-9);
    }

    void neighbouring_modules_share_one_outline() {
        // the solid border of a Data Matrix is one contour with all that touches it along an edge
        const MadeCode made = makeCode(spec(Symbology::DataMatrix, QStringLiteral("123456")));
        CodeSymbol symbol;
        encodeSymbol(made.shape.spec, QStringLiteral("123456"), symbol);
        int edges = 0;
        double perimeter = 0.0;
        for (int row = 0; row < symbol.rows; ++row) {
            for (int column = 0; column < symbol.columns; ++column) {
                const bool dark = symbol.isDark(column, row);
                const bool right = column + 1 < symbol.columns && symbol.isDark(column + 1, row);
                const bool below = row + 1 < symbol.rows && symbol.isDark(column, row + 1);
                edges += (dark != right) + (dark != below) + (column == 0 && dark) + (row == 0 && dark);
            }
        }
        for (const FlatLine& line : samples::object(made.shape)->flattened())
            perimeter += polylineLength(line.points);
        QVERIFY2(std::abs(perimeter - edges * made.module) < 1e-9,
                 qPrintable(QStringLiteral("%1 of %2").arg(perimeter).arg(edges * made.module)));
    }

    void dots_stand_in_the_middle_of_the_modules() {
        CodeSpec asked = spec(Symbology::DataMatrix, QStringLiteral("123456"), CodeMarking::Dots);
        asked.module = 0.25;
        const MadeCode made = makeCode(asked);
        CodeSymbol symbol;
        encodeSymbol(asked, asked.text, symbol);
        QVERIFY(made.shape.outline.verbs.isEmpty());
        int dark = 0;
        for (int row = 0; row < symbol.rows; ++row) {
            for (int column = 0; column < symbol.columns; ++column) {
                if (!symbol.isDark(column, row))
                    continue;
                QVERIFY(dark < made.shape.dots.size());
                QCOMPARE(made.shape.dots.at(dark++), QPointF((column + 0.5) * 0.25, (9.5 - row) * 0.25));
            }
        }
        QCOMPARE(made.shape.dots.size(), dark);
    }

    void lines_fill_each_module() {
        CodeSpec asked = spec(Symbology::Code128, QStringLiteral("A1"), CodeMarking::Lines);
        asked.linesPerModule = 4;
        CodeSymbol symbol;
        encodeSymbol(asked, asked.text, symbol);
        const auto dark = int(std::count(symbol.modules.begin(), symbol.modules.end(), true));
        QCOMPARE(makeCode(asked).shape.outline.contourCount(), 4 * dark);
    }

    void what_no_code_can_be_is_refused_data() {
        QTest::addColumn<int>("symbology");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("fault");
        QTest::addColumn<QString>("detail");
        const auto row = [](const char* name, Symbology s, const QString& text, CodeFault fault, const char* detail) {
            QTest::newRow(name) << int(s) << text << int(fault) << QString::fromUtf8(detail);
        };
        row("empty", Symbology::Qr, {}, CodeFault::Empty, "");
        row("letters in an ean", Symbology::Ean13, "40063813339a1", CodeFault::BadCharacter, "a");
        row("ean too short", Symbology::Ean13, "40063813", CodeFault::BadLength, "8");
        row("ean 8 too long", Symbology::Ean8, "735135371", CodeFault::BadLength, "9");
        row("wrong check digit", Symbology::Ean13, "4006381333932", CodeFault::CheckDigit, "4006381333932 (1)");
        row("wrong check digit of 8", Symbology::Ean8, "73513538", CodeFault::CheckDigit, "73513538 (7)");
        row("chinese in code 128", Symbology::Code128, QStringLiteral("A中"), CodeFault::BadCharacter, "中");
        row("control character", Symbology::DataMatrix, QStringLiteral("A\x01"), CodeFault::BadCharacter, "U+0001");
        row("half a pair", Symbology::Qr, QString(QChar(0xd800)), CodeFault::BadCharacter, "U+D800");
        row("beyond every code", Symbology::Qr, QString(7090, '1'), CodeFault::TooLong, nullptr);
        row("beyond every text", Symbology::Qr, QString(kMostCodeCharacters + 1, '1'), CodeFault::TooLong, nullptr);
    }
    void what_no_code_can_be_is_refused() {
        QFETCH(int, symbology);
        QFETCH(QString, text);
        QFETCH(int, fault);
        QFETCH(QString, detail);
        const MadeCode made = makeCode(spec(Symbology(symbology), text));
        QCOMPARE(int(made.fault), fault);
        if (!detail.isNull())
            QCOMPARE(made.detail, detail);
        QVERIFY(*faultText(made.fault));
    }

    void content_beyond_a_chosen_size_is_refused() {
        CodeSpec asked = spec(Symbology::Qr, QString(200, 'x'));
        asked.size = 1;
        QCOMPARE(int(makeCode(asked).fault), int(CodeFault::TooLong));
        asked = spec(Symbology::DataMatrix, QString(200, 'x'));
        asked.size = 1;
        QCOMPARE(int(makeCode(asked).fault), int(CodeFault::TooLong));
    }

    void options_outside_their_limits_are_refused_data() {
        QTest::addColumn<int>("index");
        for (const char* name :
             {"dots of bars", "level of bars", "size of bars", "level 5", "version 41", "data matrix size 31",
              "quiet zone", "no lines", "module", "width", "height", "module below the least when fitted"})
            QTest::newRow(name) << m_rows++;
    }
    void options_outside_their_limits_are_refused() {
        QFETCH(int, index);
        CodeSpec asked = spec(index < 3    ? Symbology::Code128
                              : index == 5 ? Symbology::DataMatrix
                                           : Symbology::Qr,
                              QStringLiteral("A"));
        QVERIFY(makeCode(asked).ok());
        const std::function<void()> spoil[] = {[&] { asked.marking = CodeMarking::Dots; },
                                               [&] { asked.errorLevel = 1; },
                                               [&] { asked.size = 1; },
                                               [&] { asked.errorLevel = 5; },
                                               [&] { asked.size = 41; },
                                               [&] { asked.size = 31; },
                                               [&] { asked.quietZone = 41; },
                                               [&] { asked.linesPerModule = 0; },
                                               [&] { asked.module = 0.0; },
                                               [&] { asked.width = std::nan(""); },
                                               [&] { asked.barHeight = 1e6; },
                                               [&] {
                                                   asked.fitted = true;
                                                   asked.width = 0.1;
                                               }};
        spoil[index]();
        const CodeFault fault = makeCode(asked).fault;
        QCOMPARE(int(fault), int(index < 8 ? CodeFault::BadOption : CodeFault::BadSize));
    }

private:
    int m_rows = 0;
};

QTEST_GUILESS_MAIN(CodeTest)
#include "tst_code.moc"
