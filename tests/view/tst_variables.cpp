// SPDX-License-Identifier: MIT
// Serial numbers, dates and CSV columns of a document that is open and marked.
#include "engine/cardfunctions.h"
#include "engine/markcardinstance.h"
#include "engine/markshapecontainer.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "simengine/card/cardcore.h"
#include "simengine/document/codemaker.h"
#include "simengine/document/edits.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/document/mkfcodec.h"
#include "simengine/document/textmaker.h"
#include "simengine/document/variablestore.h"
#include "simengine/view/variablepass.h"
#include "support/logtexts.h"
#include "viewfixture.h"

#include <atomic>
#include <csignal>
#include <future>
#include <mutex>
#include <sys/resource.h>

using namespace sim;
using tests::ViewFixture;

namespace {

/// What the card library told the operator.
struct Told {
    std::mutex mutex;
    QStringList texts;
};

Told& told() {
    static Told all;
    return all;
}

void hear(const char* text, int) {
    const std::lock_guard<std::mutex> lock(told().mutex);
    told().texts << QString::fromUtf8(text);
}

QStringList takeTold() {
    const std::lock_guard<std::mutex> lock(told().mutex);
    return std::exchange(told().texts, {});
}

TextSpec variableText(const QString& pattern) {
    TextSpec spec;
    spec.text = pattern;
    spec.variables = true;
    spec.family = QStringLiteral("rowmans");
    return spec;
}

CodeSpec variableCode(const QString& pattern, Symbology symbology = Symbology::DataMatrix) {
    CodeSpec spec;
    spec.text = pattern;
    spec.variables = true;
    spec.symbology = symbology;
    spec.marking = CodeMarking::Lines;
    return spec;
}

VariableStore& store() {
    return VariableStore::instance();
}

} // namespace

class tst_Variables : public QObject {
    Q_OBJECT

private:
    static IMarkCardBase* card() { return MarkCardInstance::Instance(); }

    static void define(qint64 value, const std::function<void(SerialNumber&)>& more = {}) {
        VariableSet set;
        SerialNumber serial;
        serial.name = QStringLiteral("A");
        serial.value = value;
        serial.digits = 6;
        if (more)
            more(serial);
        set.serials = {serial};
        QVERIFY(store().save(set, {}));
    }
    static qint64 valueOfA() { return store().set().serial("A")->value; }
    static QString shown(ViewFixture& f, int index) {
        const Shape& shape = f.state()->at(index)->shape();
        const auto* text = std::get_if<TextShape>(&shape);
        return text ? text->shown : std::get<CodeShape>(shape).shown;
    }
    static bool run(ViewFixture& f, MarkType type = MarkTypeLaser, bool selectedOnly = false) {
        card()->SetMarkType(type);
        card()->SetMarkStaus(MarkStatusRun);
        return f.view.GetMarkTools()->StartMark(selectedOnly, false, f.view.GetLayerParams());
    }
    /// The places of the last job's strokes.
    static QVector<QPointF> markedPlaces() {
        QVector<QPointF> places;
        const TraceSnapshot rows = simulatedCard().trace().snapshot();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (rows[i].laser)
                places << QPointF(rows[i].at.x, rows[i].at.y);
        }
        return places;
    }

private slots:
    void init() {
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard());
        simulatedCard().setSpeed(0.0);
        VZ_SetFuncMessageDisp(&hear, nullptr);
        takeTold();
    }
    void cleanup() {
        card()->CloseCard();
        MarkCardInstance::SetMarkCardInstance(nullptr);
        VZ_SetFuncMessageDisp(nullptr, nullptr);
        simulatedCard().setSpeed(1.0);
        SystemParam::Instance()->SetBufLoop(false);
        SystemParam::Instance()->SetCheckCodeTextDays(30);
        SystemParam::Instance()->SetForceCheckCodeText(false);
    }

    void each_pass_marks_the_next_number() {
        ViewFixture f;
        define(41);
        QVERIFY(f.session().addText(variableText("N{serial:A}"), {0, 0}));
        QCOMPARE(shown(f, 0), QStringLiteral("N000041"));
        card()->OpenCard();
        QVector<QVector<QPointF>> marked;
        for (int pass = 0; pass < 3; ++pass) {
            QVERIFY(run(f));
            marked << markedPlaces();
            QCOMPARE(valueOfA(), qint64(42 + pass));
        }
        QVERIFY(marked[0] != marked[1] && marked[1] != marked[2]);
        // what was marked is the text itself
        TextSpec plain = variableText("N000043");
        plain.variables = false;
        DocumentState expected;
        ObjectData data;
        data.shape = makeText(plain).shape;
        expected.objects = std::make_shared<const ObjectList>(ObjectList{MarkObject::make(data)});
        Job const job = buildJob(expected, {});
        QVector<QPointF> places;
        for (const Stroke& stroke : job.strokes) {
            for (std::size_t i = 1; i < stroke.points.size(); ++i)
                places << QPointF(stroke.points[i].x, stroke.points[i].y);
        }
        QCOMPARE(marked[2], places);
    }

    void the_view_shows_the_next_number_and_stays_saved() {
        ViewFixture f;
        define(7);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        f.session().addCode(variableCode("{serial:A}"), {20, 0});
        Document& document = f.session().document();
        document.setFileName(f.root.path("/a.mkf"));
        QString error;
        QVERIFY2(saveDocument(document, &error), qPrintable(error));
        card()->OpenCard();
        QVERIFY(run(f));
        QTRY_COMPARE(shown(f, 0), QStringLiteral("000008"));
        QCOMPARE(shown(f, 1), QStringLiteral("000008"));
        QVERIFY(!document.isModified());
        // a document that is opened shows the present values too, whatever it was saved with
        ViewFixture other;
        define(500);
        QVERIFY(saveDocument(document, &error));
        other.session().document().setFileName(document.fileName());
        QVERIFY(loadDocument(other.session().document(), &error));
        QCOMPARE(shown(other, 1), QStringLiteral("000500"));
        QVERIFY(!other.session().document().isModified());
    }

    void steps_back_and_forth_show_present_values() {
        ViewFixture f;
        define(1);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        f.session().document().edit([](const DocumentState& s) { return edits::move(s, 5, 0); });
        card()->OpenCard();
        QVERIFY(run(f));
        QTRY_COMPARE(shown(f, 0), QStringLiteral("000002"));
        QVERIFY(f.session().document().undo());
        QCOMPARE(shown(f, 0), QStringLiteral("000002"));
        QCOMPARE(f.state()->at(0)->transform().dx(), 0.0);
        QVERIFY(f.session().document().redo());
        QCOMPARE(shown(f, 0), QStringLiteral("000002"));
    }

    void texts_and_codes_of_one_number_are_equal_within_a_pass() {
        ViewFixture f;
        define(9);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        f.session().addCode(variableCode("{serial:A}"), {20, 0});
        f.session().document().selectAll();
        f.session().document().edit(edits::group);
        card()->OpenCard();
        QVERIFY(run(f));
        QCOMPARE(valueOfA(), qint64(10));
        const auto groupShows = [&] {
            const auto& group = std::get<GroupShape>(f.state()->at(0)->shape());
            return std::get<TextShape>(group.children[0]->shape()).shown +
                   std::get<CodeShape>(group.children[1]->shape()).shown;
        };
        QTRY_COMPARE(groupShows(), QStringLiteral("000010000010"));
    }

    void previews_and_estimates_leave_the_number_alone_data() {
        QTest::addColumn<int>("type");
        QTest::newRow("red light") << int(MarkTypeRedPreview);
        QTest::newRow("border") << int(MarkTypeBorderPreview);
    }
    void previews_and_estimates_leave_the_number_alone() {
        QFETCH(int, type);
        ViewFixture f;
        define(3);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        card()->OpenCard();
        QVERIFY(run(f, MarkType(type)));
        statisticsOf(*f.state());
        QCOMPARE(valueOfA(), qint64(3));
        QVERIFY(!store().wasInterrupted());
    }

    void what_is_not_marked_does_not_count() {
        ViewFixture f;
        define(3);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        f.addRect(0, 20, 5, 5);
        f.session().document().select({1});
        card()->OpenCard();
        QVERIFY(run(f, MarkTypeLaser, true));
        QCOMPARE(valueOfA(), qint64(3));
        f.session().document().select({0});
        f.view.SetSelectObjWorkType(0);
        QVERIFY(run(f));
        QCOMPARE(valueOfA(), qint64(3));
    }

    void a_stopped_pass_marks_its_number_again() {
        ViewFixture f;
        define(3);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        card()->OpenCard();
        simulatedCard().setSpeed(0.05);
        auto pass = std::async(std::launch::async, [&] { return run(f); });
        QTRY_VERIFY(simulatedCard().head().activity == Activity::Running);
        card()->SetMarkStaus(MarkStatusStop);
        QVERIFY(pass.get());
        QCOMPARE(valueOfA(), qint64(3));
        QVERIFY(!store().wasInterrupted());
        simulatedCard().setSpeed(0.0);
    }

    void the_buffer_loop_repeats_one_number_and_counts_once() {
        ViewFixture f;
        define(3);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        card()->OpenCard();
        SystemParam::Instance()->SetBufLoop(true);
        simulatedCard().setSpeed(1000.0);
        card()->SetMarkType(MarkTypeLaser);
        card()->SetMarkStaus(MarkStatusRun);
        auto job = std::async(std::launch::async,
                              [&] { return f.view.GetMarkTools()->StartMark(false, true, f.view.GetLayerParams()); });
        const auto first = simulatedCard().trace().pass();
        QTRY_VERIFY(simulatedCard().trace().pass() > first + 2);
        QCOMPARE(valueOfA(), qint64(3));
        card()->SetMarkStaus(MarkStatusStop);
        QVERIFY(job.get());
        QCOMPARE(valueOfA(), qint64(4));
    }

    void bad_data_marks_nothing_and_is_told_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<int>("symbology"); // -1: a text
        QTest::addColumn<QString>("text");
        QTest::newRow("missing file") << "{csv:S:a}" << -1 << "CSV文件不可用: S, list.csv";
        QTest::newRow("missing row") << "{csv:S:a}" << int(Symbology::Qr) << "CSV数据已用完: S, list.csv [3]";
        QTest::newRow("missing column") << "{csv:S:b}" << -1 << "CSV文件没有该列: S, list.csv [1]: b";
        QTest::newRow("wrong check digit") << "{csv:S:a}" << int(Symbology::Ean13)
                                           << "变量内容不能作为条码: 4006381333932: EAN校验位错误: 4006381333932 (1)";
        QTest::newRow("not encodable") << "{csv:S:a}" << int(Symbology::Code128)
                                       << "变量内容不能作为条码: 零: 条码不能编码这些字符: 零";
        QTest::newRow("no glyph") << "{csv:S:a}" << -1 << "变量内容不能作为文字: 零: 字体中没有这些字符: 零";
        QTest::newRow("number used up") << "{serial:A}" << -1 << "序列号已用完: A (000003)";
        QTest::newRow("no such number") << "{serial:B}" << -1 << "没有该序列号: B";
    }
    void bad_data_marks_nothing_and_is_told() {
        QFETCH(QString, pattern);
        QFETCH(int, symbology);
        QFETCH(QString, text);
        ViewFixture f;
        const QString row = QTest::currentDataTag();
        VariableSet good;
        CsvSource source;
        source.name = "S";
        source.file = "list.csv";
        good.sources = {source};
        SerialNumber serial;
        serial.name = "A";
        serial.value = 3;
        good.serials = {serial, serial};
        good.serials[1].name = "B";
        QVERIFY(store().save(good, {}));
        QVERIFY(f.root.write("/MarkFile/list.csv", "a,b\n4006381333931,1\n2\n"));
        f.addRect(30, 0, 5, 5);
        if (symbology < 0)
            QVERIFY(f.session().addText(variableText(pattern), {0, 0}));
        else
            QVERIFY(f.session().addCode(variableCode(pattern, Symbology(symbology)), {0, 0}));
        // and now the data goes bad
        VariableSet bad = good;
        if (row == "missing file")
            QVERIFY(QFile::remove(f.root.path("/MarkFile/list.csv")));
        else if (row == "missing row")
            bad.sources[0].row = 3;
        else if (row == "missing column")
            QVERIFY(f.root.write("/MarkFile/list.csv", "a\n1\n"));
        else if (row == "wrong check digit")
            QVERIFY(f.root.write("/MarkFile/list.csv", "a\n4006381333932\n"));
        else if (row == "number used up")
            bad.serials[0].ended = true;
        else if (row == "no such number")
            bad.serials.removeLast();
        else
            QVERIFY(f.root.write("/MarkFile/list.csv", "a\n零\n"));
        if (!(bad == good))
            QVERIFY(store().save(bad, good));
        card()->OpenCard();
        const std::uint64_t jobs = simulatedCard().runner().jobs();
        QVERIFY(!run(f));
        QCOMPARE(simulatedCard().runner().jobs(), jobs);
        QCOMPARE(takeTold(), QStringList{text});
        QVERIFY(store().set() == bad);
    }

    void codes_that_were_marked_before_are_noted_or_refused() {
        ViewFixture f;
        define(3);
        f.session().addCode(variableCode("{serial:A}"), {0, 0});
        card()->OpenCard();
        QVERIFY(run(f));
        define(3); // the operator set the number back
        QVERIFY(run(f));
        define(3);
        SystemParam::Instance()->SetForceCheckCodeText(true);
        QVERIFY(!run(f));
        const QStringList texts = takeTold();
        QCOMPARE(texts.size(), 1);
        QVERIFY2(texts[0].startsWith(QStringLiteral("条码内容重复: 000003 (")), qPrintable(texts[0]));
        QCOMPARE(valueOfA(), qint64(3));
        QVERIFY(run(f, MarkTypeRedPreview));
        SystemParam::Instance()->SetCheckCodeTextDays(0);
        QVERIFY(run(f));
        QCOMPARE(valueOfA(), qint64(4));
    }

    void codes_that_cannot_be_looked_up_are_noted_or_refused() {
        ViewFixture f;
        define(3);
        f.session().addCode(variableCode("{serial:A}"), {0, 0});
        card()->OpenCard();
        QVERIFY(f.root.write("/ini/MarkedCodes.db", QByteArray(4096, 'x')));
        QVERIFY(run(f));
        const QString text = QStringLiteral("不能检查条码内容是否重复: ");
        QCOMPARE(tests::logTexts("error").filter(text).size(), 1);
        const qint64 next = valueOfA();
        takeTold();
        SystemParam::Instance()->SetForceCheckCodeText(true);
        const std::uint64_t jobs = simulatedCard().runner().jobs();
        QVERIFY(!run(f));
        QCOMPARE(simulatedCard().runner().jobs(), jobs);
        QCOMPARE(valueOfA(), next);
        const QStringList texts = takeTold();
        QVERIFY2(texts.size() == 1 && texts[0].startsWith(text), qPrintable(texts.join(';')));
        QVERIFY(QFile::remove(f.root.path("/ini/MarkedCodes.db")));
        QVERIFY(run(f));
    }

    void repeated_values_and_fixed_codes_may_be_marked_again() {
        ViewFixture f;
        define(3, [](SerialNumber& serial) { serial.repeat = 2; });
        f.session().addCode(variableCode("{serial:A}"), {0, 0});
        f.session().addCode(variableCode("{date:yyyy}"), {30, 0});
        card()->OpenCard();
        SystemParam::Instance()->SetForceCheckCodeText(true);
        for (int pass = 0; pass < 4; ++pass)
            QVERIFY(run(f));
        QCOMPARE(valueOfA(), qint64(5));
        QVERIFY(takeTold().isEmpty());
    }

    void letters_of_fonts_are_laid_out_beside_the_window() {
        ViewFixture f;
        define(1);
        TextSpec spec = variableText("序 {serial:A}");
        spec.family = QStringLiteral("WenQuanYi Micro Hei");
        spec.singleLine = false;
        QVERIFY(f.session().addText(spec, {0, 0}));
        card()->OpenCard();
        std::atomic<bool> done{false};
        auto passes = std::async(std::launch::async, [&] {
            bool all = true;
            for (int pass = 0; pass < 20; ++pass)
                all = run(f) && all;
            done.store(true);
            return all;
        });
        // the operator enters other texts meanwhile
        TextSpec other = spec;
        other.variables = false;
        for (int round = 0; !done.load(); ++round) {
            other.text = QStringLiteral("字 %1").arg(round % 1000);
            QVERIFY(makeText(other).ok());
        }
        QVERIFY(passes.get());
        QCOMPARE(valueOfA(), qint64(21));
        QTRY_COMPARE(shown(f, 0), QStringLiteral("序 000021"));
    }

    void a_power_failure_within_a_pass_is_told_and_repeats_the_number() {
        ViewFixture f;
        define(3);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        // as the file stands when the machine is switched off while the laser marks
        const QByteArray bytes = f.root.read("/ini/Variables.ini");
        QVERIFY(bytes.contains("Open=0"));
        QVERIFY(f.root.write("/ini/Variables.ini", QByteArray(bytes).replace("Open=0", "Open=1")));
        QVERIFY(store().wasInterrupted());
        card()->OpenCard();
        QVERIFY(run(f));
        QCOMPARE(takeTold(), QStringList{QStringLiteral("上次打标中断电,请检查最后的工件: A")});
        QCOMPARE(valueOfA(), qint64(4));
        QVERIFY(run(f));
        QVERIFY(takeTold().isEmpty());
    }

    void counters_that_cannot_be_written_mark_nothing() {
        ViewFixture f;
        define(3);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        card()->OpenCard();
        // a disk that takes no more bytes
        const auto former = std::signal(SIGXFSZ, SIG_IGN);
        rlimit size{};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &size), 0);
        const rlimit full{16, size.rlim_max};
        const std::uint64_t jobs = simulatedCard().runner().jobs();
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &full), 0);
        const bool ran = run(f);
        ::setrlimit(RLIMIT_FSIZE, &size);
        std::signal(SIGXFSZ, former);
        QVERIFY(!ran);
        QCOMPARE(simulatedCard().runner().jobs(), jobs);
        QCOMPARE(takeTold(), QStringList{QStringLiteral("变量当前值不能保存")});
        QCOMPARE(valueOfA(), qint64(3));
    }

    void a_damaged_file_of_variables_marks_nothing() {
        ViewFixture f;
        define(3);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        card()->OpenCard();
        QVERIFY(f.root.write("/ini/Variables.ini", "[Serials]\nCount=1\n"));
        QVERIFY(!run(f));
        QCOMPARE(takeTold(), QStringList{QStringLiteral("变量定义文件损坏: ") + f.root.path("/ini/Variables.ini")});
    }

    void a_file_that_is_damaged_while_the_job_is_built_is_told_as_such() {
        ViewFixture f;
        define(3);
        f.session().addText(variableText("{serial:A}"), {0, 0});
        VariablePass pass(f.state(), false, true);
        QVERIFY(pass.problem().ok() && pass.counts());
        QVERIFY(f.root.write("/ini/Variables.ini", "[Serials]\nCount=1\n"));
        QVERIFY(!pass.begin());
        QCOMPARE(variableMessage(pass.problem()),
                 QStringLiteral("变量定义文件损坏: ") + f.root.path("/ini/Variables.ini"));
    }
};

QTEST_MAIN(tst_Variables)
#include "tst_variables.moc"
