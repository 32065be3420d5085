// SPDX-License-Identifier: MIT
#include "remote/hostcommand.h"

#include <QtTest>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using namespace tessera;

Q_DECLARE_METATYPE(MarkCardType)

namespace {

QString text(char const* utf8) {
    return QString::fromUtf8(utf8);
}

/// Names of the orders, in the order found.
QString ordersIn(char const* frame) {
    QStringList names;
    for (HostOrder order : HostOrders(QString::fromLatin1(frame)))
        names.append(HostPrefix(order));
    return names.join(QLatin1Char(' '));
}

QString field(int number, MarkCardType laser, LayerData const& layer) {
    return HostLayerValues(layer, laser).split(QLatin1Char(',')).value(number - 1);
}

} // namespace

class TestHostCommand : public QObject {
    Q_OBJECT

private slots:
    void a_prefix_is_found_anywhere_and_in_a_fixed_order_data() {
        QTest::addColumn<QByteArray>("frame");
        QTest::addColumn<QString>("orders");
        QTest::newRow("test") << QByteArray("_VZTest(a)") << "_VZTest(";
        QTest::newRow("with text around") << QByteArray("\r\n xx_VZMarkStop()yy") << "_VZMarkStop(";
        QTest::newRow("stop before test") << QByteArray("_VZMarkStop()_VZTest(a)") << "_VZTest( _VZMarkStop(";
        QTest::newRow("all backwards") << QByteArray("_VZMarkStop(_VZGetLayerParas(_VZSetOffset(_VZTest(")
                                       << "_VZTest( _VZSetOffset( _VZGetLayerParas( _VZMarkStop(";
        QTest::newRow("twice the same is one") << QByteArray("_VZTest(a)_VZTest(b)") << "_VZTest(";
        QTest::newRow("case") << QByteArray("_vzTest(a)_VZTEST(") << "";
        QTest::newRow("without bracket") << QByteArray("_VZMarkStop") << "";
        QTest::newRow("none") << QByteArray("hello") << "";
        QTest::newRow("empty") << QByteArray() << "";
    }
    void a_prefix_is_found_anywhere_and_in_a_fixed_order() {
        QFETCH(QByteArray, frame);
        QTEST(ordersIn(frame.constData()), "orders");
    }

    void a_stop_has_no_arguments() {
        QVERIFY(IsHostStop("_VZMarkStop()"));
        QVERIFY(IsHostStop("ab_VZMarkStop()cd"));
        QVERIFY(!IsHostStop("_VZMarkStop(1)"));
        QVERIFY(!IsHostStop("_VZMarkStop( )"));
        QVERIFY(!IsHostStop("_VZMarkStop("));
    }

    void a_reply_is_the_prefix_a_status_and_a_text() {
        QCOMPARE(HostReply(HostOrder::MarkStop, true, kHostStopped), text("_VZMarkStop(0,终止运行成功);"));
        QCOMPARE(HostReply(HostOrder::SetOffset, false, kHostBusy), text("_VZSetOffset(1,文档正在运行中);"));
        QCOMPARE(HostReply(HostOrder::GetLayerParas, false, QString()), text("_VZGetLayerParas(1,);"));
    }

    void a_run_names_its_document_data() {
        QTest::addColumn<QString>("frame");
        QTest::addColumn<int>("document");
        QTest::newRow("plain") << "_VZSetOffset(3)" << 3;
        QTest::newRow("negative") << "_VZSetOffset(-1)" << -1;
        QTest::newRow("no number") << "_VZSetOffset(a)" << 0;
        QTest::newRow("fraction") << "_VZSetOffset(1.5)" << 0;
        QTest::newRow("too large") << "_VZSetOffset(99999999999)" << 0;
        QTest::newRow("hexadecimal") << "_VZSetOffset(0x10)" << 0;
        QTest::newRow("blanks") << "_VZSetOffset( 2 )" << 2;
        QTest::newRow("several commas") << "_VZSetOffset(2,3)" << 0;
        QTest::newRow("empty before the records") << "_VZSetOffset(%1,2,3,4,5,6,7)" << 0;
        QTest::newRow("first pair of brackets counts") << "_VZTest(5)_VZSetOffset(2)" << 5;
    }
    void a_run_names_its_document() {
        QFETCH(QString, frame);
        const HostOffsets wanted = ReadHostOffsets(frame);
        QVERIFY(!wanted.fault);
        QTEST(wanted.document, "document");
    }

    void a_run_without_records_has_none() { QVERIFY(ReadHostOffsets("_VZSetOffset(0)").records.isEmpty()); }

    void a_record_is_five_numbers_in_a_record_of_the_engine() {
        const HostOffsets wanted = ReadHostOffsets("_VZSetOffset(2%1.5,0.25,-3e-1,4,x,6,7#3,1,0,0,0,0,0)");
        QVERIFY(!wanted.fault);
        QCOMPARE(wanted.document, 2);
        QCOMPARE(wanted.records.size(), 2);
        CCDBufdata const& first = wanted.records.at(0);
        QCOMPARE(first.Kind, 0);
        QVERIFY(first.Values == (std::array<double, 7>{1.5, 0.25, -0.3, 4.0, 0.0, 0.0, 0.0}));
        QVERIFY(first.Valid);
        QVERIFY(!first.Used);
        QVERIFY(first.Extra.empty());
        QVERIFY(wanted.records.at(1).Values == (std::array<double, 7>{3.0, 1.0, 0.0, 0.0, 0.0, 0.0, 0.0}));
    }

    void a_field_that_is_no_finite_number_is_zero() {
        const HostOffsets wanted = ReadHostOffsets("_VZSetOffset(0%nan,inf,-inf,1e999,,6,7)");
        QVERIFY(!wanted.fault);
        QVERIFY(wanted.records.at(0).Values == (std::array<double, 7>{}));
    }

    void what_stands_behind_a_second_percent_sign_does_not_count() {
        const HostOffsets wanted = ReadHostOffsets("_VZSetOffset(1%1,2,3,4,5,6,7%nonsense%)");
        QVERIFY(!wanted.fault);
        QCOMPARE(wanted.records.size(), 1);
    }

    void a_run_with_bad_arguments_is_refused_data() {
        QTest::addColumn<QString>("frame");
        QTest::addColumn<QString>("fault");
        QTest::newRow("no arguments") << "_VZSetOffset()" << text("数据格式错误");
        QTest::newRow("not closed") << "_VZSetOffset(1" << text("数据格式错误");
        QTest::newRow("closed before opened") << ")_VZSetOffset(1)" << text("数据格式错误");
        QTest::newRow("closed at once, then again") << "_VZSetOffset()1)" << text("数据格式错误");
        QTest::newRow("empty record") << "_VZSetOffset(0%)" << text("有效数据长度错误");
        QTest::newRow("six fields") << "_VZSetOffset(0%1,2,3,4,5,6)" << text("有效数据长度错误");
        QTest::newRow("eight fields") << "_VZSetOffset(0%1,2,3,4,5,6,7,8)" << text("有效数据长度错误");
        QTest::newRow("eight fields behind a good record")
            << "_VZSetOffset(0%1,2,3,4,5,6,7#1,2,3,4,5,6,7,8)" << text("有效数据长度错误");
        QTest::newRow("empty record at the end") << "_VZSetOffset(0%1,2,3,4,5,6,7#)" << text("有效数据长度错误");
    }
    void a_run_with_bad_arguments_is_refused() {
        QFETCH(QString, frame);
        const HostOffsets wanted = ReadHostOffsets(frame);
        QVERIFY(wanted.fault);
        QTEST(text(wanted.fault), "fault");
        QVERIFY(wanted.records.isEmpty());
    }

    void a_layer_is_named_by_document_and_number_data() {
        QTest::addColumn<QString>("frame");
        QTest::addColumn<int>("document");
        QTest::addColumn<unsigned int>("layer");
        QTest::newRow("plain") << "_VZGetLayerParas(1,19)" << 1 << 19U;
        QTest::newRow("more arguments") << "_VZGetLayerParas(1,2,3)" << 1 << 2U;
        QTest::newRow("no numbers") << "_VZGetLayerParas(a,b)" << 0 << 0U;
        QTest::newRow("negative layer is no number") << "_VZGetLayerParas(-1,-1)" << -1 << 0U;
        QTest::newRow("large layer") << "_VZGetLayerParas(0,4294967295)" << 0 << 4294967295U;
        QTest::newRow("larger is no number") << "_VZGetLayerParas(0,4294967296)" << 0 << 0U;
        QTest::newRow("nothing but a comma") << "_VZGetLayerParas(,)" << 0 << 0U;
    }
    void a_layer_is_named_by_document_and_number() {
        QFETCH(QString, frame);
        const HostLayer wanted = ReadHostLayer(frame);
        QVERIFY(!wanted.fault);
        QTEST(wanted.document, "document");
        QTEST(wanted.layer, "layer");
    }

    void a_layer_with_bad_arguments_is_refused() {
        QCOMPARE(text(ReadHostLayer("_VZGetLayerParas()").fault), text("数据格式错误"));
        QCOMPARE(text(ReadHostLayer("_VZGetLayerParas(0,0").fault), text("数据格式错误"));
        QCOMPARE(text(ReadHostLayer("_VZGetLayerParas(0)").fault), text("有效数据长度错误"));
    }

    void the_values_of_a_layer_stand_in_their_order() {
        LayerData layer;
        layer.MarkCnt = 1;
        layer.MarkSpeed = 2.5;
        layer.RedSpeed = 3.25;
        layer.Power = 4.125;
        layer.WaveNumber = 5;
        layer.Fre = 6;
        layer.PWM = 7.5;
        layer.OpenLaserDelay = -8;
        layer.CloseLaserDelay = 9;
        layer.EndDelay = 999;
        layer.TurnDelay = 10;
        layer.JumpSpeed = 11.5;
        layer.MaxJumpDelay = 12;
        layer.MarkDelay = 13;
        layer.MinJumpDelay = 14;
        layer.PointTime = 15999;
        layer.MinJumpDelayDist = 16.5;
        layer.MaxJumpDelayDist = 17.5;
        layer.UseDefault = true;
        QCOMPARE(HostLayerValues(layer, MarkCardYAG),
                 QString("1,2.5,3.25,4.125,5,6,7.5,-8,9,10,11.5,12,13,14,15,16.5,17.5,1"));
    }

    void the_frequency_of_three_laser_types_is_told_in_hertz_data() {
        QTest::addColumn<MarkCardType>("laser");
        QTest::addColumn<QString>("frequency");
        QTest::newRow("0") << MarkCardFilber << "20000";
        QTest::newRow("1") << MarkCardYLR << "20";
        QTest::newRow("2") << MarkCardYAG << "20";
        QTest::newRow("3") << MarkCardSPI << "20000";
        QTest::newRow("4") << MarkCardEP << "20000";
        QTest::newRow("5") << MarkCardYLM << "20";
    }
    void the_frequency_of_three_laser_types_is_told_in_hertz() {
        QFETCH(MarkCardType, laser);
        LayerData layer;
        layer.Fre = 20;
        QTEST(field(6, laser, layer), "frequency");
    }

    void numbers_have_six_digits_data() {
        QTest::addColumn<double>("speed");
        QTest::addColumn<QString>("told");
        QTest::newRow("whole") << 500.0 << "500";
        QTest::newRow("six digits") << 123456.0 << "123456";
        QTest::newRow("seven digits") << 1234567.0 << "1.23457e+06";
        QTest::newRow("third") << 1.0 / 3.0 << "0.333333";
        QTest::newRow("small") << 0.00001234 << "1.234e-05";
        QTest::newRow("negative") << -2.5 << "-2.5";
        QTest::newRow("zero") << 0.0 << "0";
    }
    void numbers_have_six_digits() {
        QFETCH(double, speed);
        LayerData layer;
        layer.MarkSpeed = speed;
        QTEST(field(2, MarkCardFilber, layer), "told");
    }

    void every_number_is_written_as_the_toolkit_writes_it() {
        std::mt19937_64 random(20261);
        LayerData layer;
        for (int i = 0; i < 200000; ++i) {
            // All bit patterns, and numbers as they are set.
            const quint64 bits = random();
            double value = 0;
            static_assert(sizeof value == sizeof bits);
            if (i % 2)
                std::memcpy(&value, &bits, sizeof value);
            else
                value = double(qint64(bits) % 100000000) / double(1 + bits % 10);
            layer.MarkSpeed = value;
            const QString told = field(2, MarkCardFilber, layer);
            if (!std::isnan(value))
                QCOMPARE(told, QString::number(value, 'g', 6));
        }
    }

    void the_time_on_a_point_is_told_in_whole_milliseconds_data() {
        QTest::addColumn<int>("us");
        QTest::addColumn<QString>("told");
        QTest::newRow("exact") << 1000 << "1";
        QTest::newRow("below one") << 999 << "0";
        QTest::newRow("cut, not rounded") << 1999 << "1";
        QTest::newRow("largest") << std::numeric_limits<int>::max() << "2147483";
    }
    void the_time_on_a_point_is_told_in_whole_milliseconds() {
        QFETCH(int, us);
        LayerData layer;
        layer.PointTime = us;
        QTEST(field(15, MarkCardFilber, layer), "told");
    }
};

QTEST_APPLESS_MAIN(TestHostCommand)
#include "tst_hostcommand.moc"
