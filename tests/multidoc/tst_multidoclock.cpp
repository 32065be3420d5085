// SPDX-License-Identifier: MIT
#include "tests/multidoc/multidocfixture.h"

#include <algorithm>
#include <iterator>

using namespace tests;

namespace {

constexpr char const* kLocked[] = {"pushButtonAdd",      "pushButtonDel",  "pushButtonMoveUp",
                                   "pushButtonMoveDown", "pushButtonEdit", "pushButtonRun"};

} // namespace

/// What a run keeps locked in the window of the projects.
class MultiDocLockTest : public QObject, private MultiDocFixture {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void new_texts_during_a_run_unlock_nothing();

private:
    static bool all(bool enabled) {
        return std::all_of(std::begin(kLocked), std::end(kLocked),
                           [=](char const* name) { return part<QPushButton>(name)->isEnabled() == enabled; });
    }
};

void MultiDocLockTest::new_texts_during_a_run_unlock_nothing() {
    dialog().SetCurMultiMarkFile(QStringLiteral("plates"));
    QVERIFY(all(true));
    dialog().StartMark();
    QTRY_COMPARE(int(dialog().GetMarkStatus()), int(MultiMarkWaiting));
    dialog().SetUIText();
    dialog().UpDateWindowText();
    QVERIFY(all(false));
    QVERIFY(part<QPushButton>("pushButtonStop")->isEnabled());
    press("pushButtonStop");
    QVERIFY(all(true));
    QTRY_COMPARE(int(dialog().GetMarkStatus()), int(MultiMarkIdle));
    dialog().SetUIText();
    QVERIFY(all(true));
}

QTEST_MAIN(MultiDocLockTest)
#include "tst_multidoclock.moc"
