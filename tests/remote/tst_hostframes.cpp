// SPDX-License-Identifier: MIT
#include "remote/hostframes.h"

#include <QtTest>

using tessera::HostFrames;

namespace {

QStringList takeAll(HostFrames& frames) {
    QStringList all;
    for (QString frame; frames.Next(frame);)
        all.append(frame);
    return all;
}

QStringList framesOf(QByteArray const& read) {
    HostFrames frames;
    frames.Append(HostFrames::Text(read));
    return takeAll(frames);
}

} // namespace

class TestHostFrames : public QObject {
    Q_OBJECT

private slots:
    void a_frame_ends_at_its_semicolon_data() {
        QTest::addColumn<QByteArray>("read");
        QTest::addColumn<QStringList>("frames");
        QTest::addColumn<QString>("rest");
        QTest::newRow("nothing") << QByteArray() << QStringList() << QString();
        QTest::newRow("one") << QByteArray("_VZTest(a);") << QStringList{"_VZTest(a)"} << QString();
        QTest::newRow("two") << QByteArray("_VZMarkStop();_VZTest(a);") << QStringList{"_VZMarkStop()", "_VZTest(a)"}
                             << QString();
        QTest::newRow("empty frames") << QByteArray(";;a;") << QStringList{"", "", "a"} << QString();
        QTest::newRow("incomplete") << QByteArray("_VZMarkSt") << QStringList() << QString("_VZMarkSt");
        QTest::newRow("complete and incomplete") << QByteArray("a;b") << QStringList{"a"} << QString("b");
        QTest::newRow("line ends belong to the frame")
            << QByteArray("a;\r\nb;") << QStringList{"a", "\r\nb"} << QString();
    }
    void a_frame_ends_at_its_semicolon() {
        QFETCH(QByteArray, read);
        HostFrames frames;
        frames.Append(HostFrames::Text(read));
        QTEST(takeAll(frames), "frames");
        QTEST(frames.Rest(), "rest");
    }

    void a_frame_may_come_in_pieces_split_anywhere() {
        const QByteArray frame("_VZSetOffset(2%1.5,0.25,0,0,0,0,0#3,1,0,0,0,0,0);");
        for (int at = 0; at <= frame.size(); ++at) {
            HostFrames frames;
            frames.Append(HostFrames::Text(frame.left(at)));
            QStringList all = takeAll(frames);
            frames.Append(HostFrames::Text(frame.mid(at)));
            all += takeAll(frames);
            QCOMPARE(all, QStringList{QString::fromLatin1(frame.chopped(1))});
            QCOMPARE(frames.Rest(), QString());
        }
    }

    void a_read_is_lost_from_its_first_zero_byte_on() {
        QCOMPARE(HostFrames::Text(QByteArray("ab\0cd;", 6)), QString("ab"));
        QCOMPARE(HostFrames::Text(QByteArray("\0;", 2)), QString());
        HostFrames frames;
        frames.Append(HostFrames::Text(QByteArray("_VZMark\0lost;", 13)));
        frames.Append(HostFrames::Text("Stop();"));
        QCOMPARE(takeAll(frames), QStringList{"_VZMarkStop()"});
    }

    void each_byte_is_one_character() {
        QByteArray all;
        for (int byte = 1; byte < 256; ++byte) {
            if (byte != ';')
                all.append(char(byte));
        }
        const QString text = framesOf(all + ';').value(0);
        QCOMPARE(text.size(), 254);
        for (int i = 0; i < text.size(); ++i)
            QCOMPARE(int(text.at(i).unicode()), int(uchar(all.at(i))));
    }

    void frames_that_nobody_took_stay_in_order() {
        HostFrames frames;
        QVERIFY(!frames.HasFrame());
        frames.Append(QStringLiteral("a;b;"));
        QVERIFY(frames.HasFrame());
        QString frame;
        QVERIFY(frames.Next(frame));
        frames.Append(QStringLiteral("c;d"));
        QCOMPARE(takeAll(frames), (QStringList{"b", "c"}));
        QCOMPARE(frames.Rest(), QString("d"));
    }

    void a_mebibyte_may_wait_and_one_more_is_dropped() {
        HostFrames frames;
        frames.Append(QString(HostFrames::kLongestRest, QLatin1Char('x')));
        QVERIFY(!frames.HasFrame());
        QCOMPARE(frames.DropOverlong(), 0);
        frames.Append(QStringLiteral("y"));
        QVERIFY(!frames.HasFrame());
        QCOMPARE(frames.DropOverlong(), HostFrames::kLongestRest + 1);
        QCOMPARE(frames.Rest(), QString());
        frames.Append(QStringLiteral("_VZMarkStop();"));
        QCOMPARE(takeAll(frames), QStringList{"_VZMarkStop()"});
    }

    void a_frame_of_more_than_a_mebibyte_is_taken_when_it_is_complete() {
        HostFrames frames;
        const QString text(2 * HostFrames::kLongestRest, QLatin1Char('x'));
        frames.Append(text + QStringLiteral(";tail"));
        QCOMPARE(takeAll(frames), QStringList{text});
        QCOMPARE(frames.DropOverlong(), 0);
        QCOMPARE(frames.Rest(), QString("tail"));
    }

    /// Looking from the start for every byte would take minutes here.
    void a_mebibyte_byte_by_byte_is_looked_through_once() {
        HostFrames frames;
        for (int i = 0; i < HostFrames::kLongestRest; ++i) {
            frames.Append(QStringLiteral("x"));
            QVERIFY(!frames.HasFrame());
        }
        frames.Append(QStringLiteral(";"));
        QString frame;
        QVERIFY(frames.Next(frame));
        QCOMPARE(frame.size(), HostFrames::kLongestRest);
    }
};

QTEST_APPLESS_MAIN(TestHostFrames)
#include "tst_hostframes.moc"
