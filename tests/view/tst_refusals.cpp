// SPDX-License-Identifier: MIT
// Edits that cannot be, and what the log tells of them.
#include "simengine/document/limits.h"
#include "support/logtexts.h"
#include "viewfixture.h"

using namespace sim;
using tests::ViewFixture;

namespace {

TextSpec textOf(double height) {
    TextSpec spec;
    spec.text = QStringLiteral("ABC");
    spec.family = QStringLiteral("rowmans");
    spec.height = height;
    return spec;
}

CodeSpec codeOf(double module) {
    CodeSpec spec;
    spec.text = QStringLiteral("ABC");
    spec.symbology = Symbology::DataMatrix;
    spec.module = module;
    return spec;
}

QStringList told() {
    return tests::logTexts("operator").filter(QStringLiteral("不能修改对象"));
}

/// So close to the end of the coordinates that there is no room for more.
const QPointF kCorner(kMaxCoordinate - 100.0, 0.0);

} // namespace

class tst_Refusals : public QObject {
    Q_OBJECT

private slots:
    void a_text_that_would_leave_the_field_is_told() {
        ViewFixture f;
        QVERIFY(f.session().addText(textOf(5.0), kCorner));
        const auto before = f.state()->objects;
        QVERIFY(!f.session().changeText(0, textOf(5.0))); // nothing new is nothing to tell
        QVERIFY(told().isEmpty());
        QVERIFY(!f.session().changeText(0, textOf(500.0)));
        QCOMPARE(told().size(), 1);
        QVERIFY2(told()[0].contains(QStringLiteral("coordinate limit")), qPrintable(told()[0]));
        QCOMPARE(f.state()->objects, before);
        QVERIFY(f.session().changeText(0, textOf(6.0)));
        QCOMPARE(told().size(), 1);
    }

    void a_code_that_would_leave_the_field_is_told() {
        ViewFixture f;
        QVERIFY(f.session().addCode(codeOf(0.5), kCorner));
        const auto before = f.state()->objects;
        QVERIFY(!f.session().changeCode(0, codeOf(0.5)));
        QVERIFY(told().isEmpty());
        QVERIFY(!f.session().changeCode(0, codeOf(50.0)));
        QCOMPARE(told().size(), 1);
        QCOMPARE(f.state()->objects, before);
    }
};

QTEST_MAIN(tst_Refusals)
#include "tst_refusals.moc"
