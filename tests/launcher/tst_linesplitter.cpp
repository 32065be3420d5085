// SPDX-License-Identifier: MIT
#include "automation/linesplitter.h"

#include <QtTest>

using tessera::LineSplitter;

class TestLineSplitter : public QObject {
    Q_OBJECT

    static QByteArray drain(LineSplitter& lines) {
        QByteArray all;
        while (lines.hasLine()) {
            LineSplitter::Line const line = lines.takeLine();
            all += line.tooLong ? QByteArray("<too long>") : "(" + line.text + ")";
        }
        return all;
    }

private slots:
    void lines_come_however_the_bytes_are_cut_data() {
        QTest::addColumn<int>("chunk");
        for (int chunk = 1; chunk <= 9; ++chunk)
            QTest::addRow("%d bytes", chunk) << chunk;
    }
    void lines_come_however_the_bytes_are_cut() {
        QFETCH(int, chunk);
        QByteArray const bytes = "one\n\n  \r\ntwo\r\n12345678\n123456789\nlast\npart";
        LineSplitter lines(8);
        for (int i = 0; i < bytes.size(); i += chunk)
            lines.append(bytes.mid(i, chunk));
        QCOMPARE(drain(lines), QByteArray("(one)(two\r)(12345678)<too long>(last)"));
        lines.append("ial\n");
        QCOMPARE(drain(lines), QByteArray("(partial)"));
    }

    void too_long_line_is_told_once_and_before_its_end() {
        LineSplitter lines(4);
        lines.append("12345");
        QCOMPARE(drain(lines), QByteArray("<too long>"));
        for (int i = 0; i < 1000; ++i)
            lines.append(QByteArray(1000, 'x'));
        QCOMPARE(drain(lines), QByteArray());
        lines.append("x\nok\n");
        QCOMPARE(drain(lines), QByteArray("(ok)"));
    }
};

QTEST_GUILESS_MAIN(TestLineSplitter)
#include "tst_linesplitter.moc"
