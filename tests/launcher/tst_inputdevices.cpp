// SPDX-License-Identifier: MIT
#include "inputdevices.h"

#include <QTest>

using namespace tessera;

namespace {

constexpr char kPowerButton[] = R"(I: Bus=0019 Vendor=0000 Product=0001 Version=0000
N: Name="Power Button"
P: Phys=PNP0C0C/button/input0
H: Handlers=kbd event0
B: PROP=0
B: EV=3
B: KEY=8000 10000000000000 0
)";
constexpr char kKeyboard[] = R"(I: Bus=0003 Vendor=046d Product=c31c Version=0110
N: Name="Logitech USB Keyboard"
H: Handlers=sysrq kbd event2 leds
B: PROP=0
B: EV=120013
B: KEY=1000000000007 ff9f207ac14057ff febeffdfffefffff fffffffffffffffe
B: MSC=10
B: LED=7
)";
constexpr char kKeyboard32[] = R"(N: Name="USB Keyboard"
H: Handlers=sysrq kbd event1
B: PROP=0
B: EV=120013
B: KEY=10000 7 ff9f207a c14057ff febeffdf ffefffff ffffffff fffffffe
)";
constexpr char kRemote[] = R"(N: Name="gpio_ir_recv"
H: Handlers=kbd event3
B: PROP=20
B: EV=100013
B: KEY=fff 0 0 4200108fc326 217604100000000 0 494000019a00 9e168000000000 100000ffc
)";
constexpr char kTouchPanel[] = R"(I: Bus=0018 Vendor=0416 Product=1001 Version=0000
N: Name="Goodix Capacitive TouchScreen"
H: Handlers=event4
B: PROP=2
B: EV=b
B: KEY=400 0 0 0 2000000000000000 0
B: ABS=260800000000003
)";
constexpr char kMouse[] = R"(N: Name="USB Optical Mouse"
H: Handlers=mouse0 event5
B: PROP=0
B: EV=17
B: KEY=70000 0 0 0 0
B: REL=903
)";

} // namespace

/// The decision for or against the keyboard on the screen, from the kernel's list of devices.
class TestInputDevices : public QObject {
    Q_OBJECT

private slots:
    void decision_data() {
        QTest::addColumn<QByteArrayList>("devices");
        QTest::addColumn<bool>("keyboard");
        QTest::addColumn<bool>("pointer");
        QTest::addColumn<bool>("shown");
        auto const row = [](char const* name, QByteArrayList const& devices, bool keyboard, bool pointer, bool shown) {
            QTest::newRow(name) << devices << keyboard << pointer << shown;
        };
        row("no device", {}, false, false, false);
        row("power button", {kPowerButton}, false, false, false);
        row("touch panel", {kPowerButton, kTouchPanel}, false, true, true);
        row("mouse", {kPowerButton, kMouse}, false, true, true);
        row("remote control beside the panel", {kRemote, kTouchPanel}, false, true, true);
        row("keyboard", {kPowerButton, kKeyboard}, true, false, false);
        row("keyboard and panel", {kTouchPanel, kKeyboard}, true, true, false);
        row("panel and keyboard", {kKeyboard, kTouchPanel, kPowerButton}, true, true, false);
        row("keyboard on a 32 bit board", {kTouchPanel, kKeyboard32}, true, true, false);
        row("garbage", {"KEY B: ", "B: KEY=zzz zz\nB: PROP=\nH: Handlers="}, false, false, false);
    }
    void decision() {
        QFETCH(QByteArrayList, devices);
        QFETCH(bool, keyboard);
        QFETCH(bool, pointer);
        QFETCH(bool, shown);
        QByteArray const list = devices.join('\n');
        QCOMPARE(listsKeyboard(list), keyboard);
        QCOMPARE(listsPointer(list), pointer);
        QCOMPARE(wantsKeyboard(KeyboardMode::Auto, list), shown);
        QVERIFY(wantsKeyboard(KeyboardMode::On, list));
        QVERIFY(!wantsKeyboard(KeyboardMode::Off, list));
    }

    void keys_of_two_devices_do_not_make_one_keyboard() {
        QByteArray const list = "H: Handlers=mouse0\nB: KEY=ffff0000\n\nB: KEY=fffe\n";
        QVERIFY(!listsKeyboard(list));
        QVERIFY(wantsKeyboard(KeyboardMode::Auto, list));
    }

    void a_last_device_without_an_empty_line_counts() { QVERIFY(listsKeyboard(QByteArray(kKeyboard).trimmed())); }
};

QTEST_APPLESS_MAIN(TestInputDevices)
#include "tst_inputdevices.moc"
