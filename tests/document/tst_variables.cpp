// SPDX-License-Identifier: MIT
#include "simengine/document/variablehistory.h"
#include "simengine/document/variablestore.h"
#include "support/logtexts.h"
#include "support/temporaryroot.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QTextCodec>
#include <thread>

using namespace sim;

namespace {

const QDateTime kNow(QDate(2026, 3, 9), QTime(7, 5, 3));

SerialNumber serial(const QString& name, qint64 value = 1) {
    SerialNumber s;
    s.name = name;
    s.value = value;
    return s;
}

CsvSource source(const QString& name, const QString& file) {
    CsvSource s;
    s.name = name;
    s.file = file;
    return s;
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QString valueOf(const VariableSet& set, const QString& pattern, VariableProblem* problem = nullptr,
                const QDateTime& now = kNow) {
    VariableValues values(set, now);
    VariableProblem own;
    const QString text = values.text(pattern, own);
    if (problem)
        *problem = own;
    return own.ok() ? text : QStringLiteral("!%1").arg(int(own.fault));
}

/// Text in which braces that stand for themselves are doubled.
QString escapedForTemplate(QString text) {
    text.replace(QLatin1Char('{'), QLatin1String("{{"));
    return text.replace(QLatin1Char('}'), QLatin1String("}}"));
}

} // namespace

/// Templates, and what serial numbers, dates, shifts and CSV columns come to.
class VariablesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<tests::TemporaryRoot> m_root;

    QString documents(const QString& file) const { return m_root->path() + QStringLiteral("/MarkFile/") + file; }

private slots:
    void init() { m_root = std::make_unique<tests::TemporaryRoot>(); }
    void cleanup() { m_root.reset(); }

    void templates_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << "plain: text"
                               << "plain: text";
        QTest::newRow("braces") << "{{\"a\":{{}}}}"
                                << "{\"a\":{}}";
        QTest::newRow("serial") << "SN-{serial:A}!"
                                << "SN-000042!";
        QTest::newRow("one serial twice") << "{serial:A}/{serial:A}"
                                          << "000042/000042";
        QTest::newRow("date with colons") << "{date:HH:mm:ss}"
                                          << "07:05:03";
        QTest::newRow("later date") << "{date+30:yyyy-MM-dd}"
                                    << "2026-04-08";
        QTest::newRow("earlier date") << "{date-9:yyMMdd}"
                                      << "260228";
        QTest::newRow("shift") << "{shift}"
                               << "A";
        QTest::newRow("day of the shift") << "{shiftdate:dd}"
                                          << "09";
        QTest::newRow("expiry of the shift's day") << "{shiftdate+365:yyyy}"
                                                   << "2027";
        QTest::newRow("beside a brace") << "{{{serial:A}}}"
                                        << "{000042}";
    }
    void templates() {
        QFETCH(QString, pattern);
        VariableSet set;
        set.serials = {serial("A", 42)};
        set.shifts = {{QTime(6, 0), "A"}, {QTime(14, 0), "B"}, {QTime(22, 0), "C"}};
        QTEST(valueOf(set, pattern), "text");
    }

    void escaped_text_comes_back() {
        const QString text = QStringLiteral("{a}{{b}} }{");
        QCOMPARE(valueOf({}, escapedForTemplate(text)), text);
    }

    void wrong_templates_are_refused_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<int>("fault");
        const auto row = [](const char* pattern, VariableFault fault = VariableFault::BadTemplate) {
            QTest::newRow(pattern) << pattern << int(fault);
        };
        for (const char* wrong : {"{", "}", "a}b", "{serial:A", "{serial:}", "{serial}", "{}", "{unknown:A}", "{csv:A}",
                                  "{csv:A:}", "{date:}", "{date}", "{date+:dd}", "{date+99999:dd}", "{date:yyy}",
                                  "{date:dd'x}", "{date:Q}", "{shift:A}", "{a{b}}"})
            row(wrong);
        row("{serial:missing}", VariableFault::NoSerial);
        row("{csv:missing:#1}", VariableFault::NoSource);
        row("{shift}", VariableFault::NoShift);
        row("{shiftdate:dd}", VariableFault::NoShift);
    }
    void wrong_templates_are_refused() {
        QFETCH(QString, pattern);
        QFETCH(int, fault);
        VariableSet set;
        set.serials = {serial("A")};
        VariableProblem problem;
        valueOf(set, pattern, &problem);
        QCOMPARE(int(problem.fault), fault);
        QVERIFY(!variableMessage(problem).isEmpty());
    }

    void dates_data() {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QString>("text");
        const QDate monday(2026, 3, 9);
        QTest::newRow("years") << "yyyy yy y" << monday << "2026 26 6";
        QTest::newRow("unpadded") << "M/d H:m:s" << monday << "3/9 7:5:3";
        QTest::newRow("padded") << "MM/dd HH:mm:ss" << monday << "03/09 07:05:03";
        QTest::newRow("day of the year") << "DDD" << monday << "068";
        QTest::newRow("week") << "GGGG-WW-E" << monday << "2026-11-1";
        QTest::newRow("single week") << "W" << QDate(2026, 1, 5) << "2";
        // the ISO standard's own example: 29 December 2008 lies in week 1 of 2009
        QTest::newRow("week of the next year") << "GGGG-WW-E GG" << QDate(2008, 12, 29) << "2009-01-1 09";
        QTest::newRow("week of the last year") << "GGGG-WW yyyy" << QDate(2027, 1, 3) << "2026-53 2027";
        QTest::newRow("quoted") << "'day' dd 'o''clock' ''" << monday << "day 09 o'clock '";
        QTest::newRow("other characters") << "年yyyy.MM" << monday << "年2026.03";
    }
    void dates() {
        QFETCH(QString, format);
        QFETCH(QDate, date);
        const auto text = formatDate(QDateTime(date, kNow.time()), format);
        QVERIFY(text);
        QTEST(*text, "text");
    }

    void shifts_go_through_the_night_data() {
        QTest::addColumn<QTime>("time");
        QTest::addColumn<int>("shift");
        QTest::addColumn<int>("daysBack");
        QTest::newRow("before the first") << QTime(5, 59, 59) << 0 << 1;
        QTest::newRow("first") << QTime(6, 0) << 2 << 0;
        QTest::newRow("second") << QTime(21, 59) << 1 << 0;
        QTest::newRow("night") << QTime(22, 0) << 0 << 0;
    }
    void shifts_go_through_the_night() {
        QFETCH(QTime, time);
        QFETCH(int, daysBack);
        const QVector<Shift> shifts = {{QTime(22, 0), "C"}, {QTime(14, 0), "B"}, {QTime(6, 0), "A"}};
        QDate began;
        QTEST(shiftAt(shifts, QDateTime(kNow.date(), time), &began), "shift");
        QCOMPARE(began, kNow.date().addDays(-daysBack));
        QCOMPARE(shiftAt({}, kNow), -1);
    }

    void serial_numbers_count_data() {
        QTest::addColumn<int>("radix");
        QTest::addColumn<int>("digits");
        QTest::addColumn<int>("step");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<int>("repeat");
        QTest::addColumn<bool>("restart");
        QTest::addColumn<QString>("texts");
        QTest::newRow("plain") << 10 << 3 << 1 << 8 << 999 << 1 << false << "008 009 010 011";
        QTest::newRow("hexadecimal") << 16 << 2 << 1 << 14 << 255 << 1 << false << "0E 0F 10 11";
        QTest::newRow("all letters") << 36 << 0 << 1 << 34 << 99 << 1 << false << "Y Z 10 11";
        QTest::newRow("steps") << 10 << 4 << 5 << 0 << 9999 << 1 << false << "0000 0005 0010";
        QTest::newRow("down") << 10 << 2 << -1 << 2 << 0 << 1 << false << "02 01 00 !3 !3";
        QTest::newRow("repeated") << 10 << 1 << 1 << 1 << 3 << 2 << false << "1 1 2 2 3 3 !3";
        QTest::newRow("stops at the end") << 10 << 1 << 2 << 5 << 8 << 1 << false << "5 7 !3";
        QTest::newRow("begins again") << 10 << 1 << 2 << 5 << 8 << 1 << true << "5 7 5 7";
        QTest::newRow("one value") << 10 << 1 << 1 << 4 << 4 << 1 << true << "4 4";
    }
    void serial_numbers_count() {
        QFETCH(int, radix);
        QFETCH(int, digits);
        QFETCH(int, step);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(int, repeat);
        QFETCH(bool, restart);
        QFETCH(QString, texts);
        SerialNumber s = serial("A", first);
        s.radix = radix;
        s.digits = digits;
        s.step = step;
        s.first = first;
        s.last = last;
        s.repeat = repeat;
        s.atEnd = restart ? CounterEnd::Restart : CounterEnd::Stop;
        QVERIFY2(!serialFault(s), serialFault(s));
        for (const QString& text : texts.split(' ')) {
            VariableSet set;
            set.serials = {s};
            QCOMPARE(valueOf(set, "{serial:A}"), text);
            s = s.advanced(kNow.date());
        }
    }

    void daily_serial_numbers_begin_again_with_the_day() {
        SerialNumber s = serial("A", 7);
        s.daily = true;
        s.last = 8;
        s.repeat = 2;
        const QDate day = kNow.date();
        s = s.advanced(day).advanced(day).advanced(day).advanced(day);
        QVERIFY(s.on(day).ended);
        QCOMPARE(s.on(day.addDays(1)).value, qint64(1));
        QVERIFY(!s.on(day.addDays(1)).ended);
        QCOMPARE(s.advanced(day.addDays(1)).value, qint64(1));
        QCOMPARE(s.advanced(day.addDays(1)).marks, 1);
        // a clock that was set back repeats nothing
        QVERIFY(s.on(day.addDays(-1)).ended);
        QCOMPARE(s.advanced(day.addDays(-1)).day, day);
    }

    void unsound_definitions_are_refused_data() {
        QTest::addColumn<int>("index");
        int index = 0;
        for (const char* name :
             {"empty name", "name with a colon", "name with a brace", "blank at the end", "step 0", "first after last",
              "value outside", "radix 37", "digits 19", "too few digits", "repeat 0", "marks of a repeat"})
            QTest::newRow(name) << index++;
    }
    void unsound_definitions_are_refused() {
        QFETCH(int, index);
        SerialNumber s = serial("A");
        QVERIFY(!serialFault(s));
        const std::function<void()> spoil[] = {
            [&] { s.name.clear(); }, [&] { s.name = "a:b"; },    [&] { s.name = "a}"; },     [&] { s.name = "a "; },
            [&] { s.step = 0; },     [&] { s.first = 2000000; }, [&] { s.value = 1000000; }, [&] { s.radix = 37; },
            [&] { s.digits = 19; },  [&] { s.digits = 5; },      [&] { s.repeat = 0; },      [&] { s.marks = 1; }};
        spoil[index]();
        QVERIFY(serialFault(s));
    }

    void csv_columns_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("text");
        const QByteArray plain = "part,batch\nP1,B1\nP2,B2\n";
        QTest::newRow("by name") << plain << "{csv:S:batch}" << 1 << "B1";
        QTest::newRow("by number") << plain << "{csv:S:#1}" << 2 << "P2";
        QTest::newRow("two columns of one row") << plain << "{csv:S:part}-{csv:S:batch}" << 2 << "P2-B2";
        QTest::newRow("no line end at the end") << QByteArray("a\n1\n2") << "{csv:S:a}" << 2 << "2";
        QTest::newRow("line ends of two characters") << QByteArray("a,b\r\n1,2\r\n") << "{csv:S:b}" << 1 << "2";
        QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbfnr,b\n7,8\n") << "{csv:S:nr}" << 1 << "7";
        QTest::newRow("quotation") << QByteArray("a,b\n\"x,\"\"y\"\"\nz\",2\n") << "{csv:S:a}" << 1 << "x,\"y\"\nz";
        QTest::newRow("blank lines") << QByteArray("a\n\n1\n  \n2\n\n") << "{csv:S:a}" << 2 << "2";
        QTest::newRow("empty field") << QByteArray("a,b\n,2\n") << "[{csv:S:a}]" << 1 << "[]";
        QTest::newRow("chinese") << QByteArray("名称\n零件\n") << "{csv:S:名称}" << 1 << "零件";
        QTest::newRow("column name with a colon") << QByteArray("a:b\n5\n") << "{csv:S:a:b}" << 1 << "5";
    }
    void csv_columns() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, pattern);
        QFETCH(int, row);
        writeFile(documents("sub/list.csv"), bytes);
        VariableSet set;
        set.sources = {source("S", "sub/list.csv")};
        set.sources[0].row = row;
        QTEST(valueOf(set, pattern), "text");
    }

    void csv_separators_and_coding() {
        QTextCodec* gbk = QTextCodec::codecForName("GBK");
        writeFile(documents("g.csv"), gbk->fromUnicode(QStringLiteral("名称;值\n激光;1\n")));
        writeFile(documents("t.csv"), "1\t2\n3\t4\n");
        VariableSet set;
        set.sources = {source("G", "g.csv"), source("T", "t.csv")};
        set.sources[0].separator = ';';
        set.sources[0].coding = CsvCoding::Gbk;
        set.sources[1].separator = '\t';
        set.sources[1].header = false;
        QCOMPARE(valueOf(set, "{csv:G:名称}{csv:G:值}"), QStringLiteral("激光1"));
        QCOMPARE(valueOf(set, "{csv:T:#2}"), QStringLiteral("2"));
        set.sources[0].coding = CsvCoding::Utf8;
        VariableProblem problem;
        valueOf(set, "{csv:G:#1}", &problem);
        QCOMPARE(int(problem.fault), int(VariableFault::BadFile));
    }

    void csv_files_that_cannot_be_used_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<int>("fault");
        const auto row = [](const char* name, const char* file, const QByteArray& bytes, const char* pattern,
                            VariableFault fault) { QTest::newRow(name) << file << bytes << pattern << int(fault); };
        row("missing file", "none.csv", "a\n1\n", "{csv:S:a}", VariableFault::NoFile);
        row("link out of the folder", "out.csv", "a\n1\n", "{csv:S:a}", VariableFault::NoFile);
        row("missing column", "list.csv", "a\n1\n", "{csv:S:b}", VariableFault::NoColumn);
        row("column number beyond", "list.csv", "a\n1\n", "{csv:S:#2}", VariableFault::NoColumn);
        row("column number 0", "list.csv", "a\n1\n", "{csv:S:#0}", VariableFault::NoColumn);
        row("short row", "list.csv", "a,b\n1\n", "{csv:S:b}", VariableFault::NoColumn);
        row("no rows", "list.csv", "a\n", "{csv:S:a}", VariableFault::SourceEnded);
        row("empty file", "list.csv", "", "{csv:S:#1}", VariableFault::SourceEnded);
        row("open quotation", "list.csv", "a\n\"1\n", "{csv:S:a}", VariableFault::BadFile);
        row("text behind a quotation", "list.csv", "a\n\"1\"2\n", "{csv:S:a}", VariableFault::BadFile);
        row("no UTF-8", "list.csv", "a\n\xff\xfe\n", "{csv:S:a}", VariableFault::BadFile);
    }
    void csv_files_that_cannot_be_used() {
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, pattern);
        writeFile(documents("list.csv"), bytes);
        writeFile(m_root->path() + "/secret.csv", bytes);
        QVERIFY(QFile::link(m_root->path() + "/secret.csv", documents("out.csv")));
        VariableSet set;
        set.sources = {source("S", file)};
        VariableProblem problem;
        valueOf(set, pattern, &problem);
        QTEST(int(problem.fault), "fault");
    }

    void a_file_that_could_not_be_read_is_not_read_anew_for_the_next_column() {
        VariableSet set;
        set.sources = {source("S", "late.csv")};
        VariableValues values(set, kNow);
        VariableProblem problem;
        values.text("{csv:S:a}", problem);
        QCOMPARE(int(problem.fault), int(VariableFault::NoFile));
        writeFile(documents("late.csv"), "a\n1\n");
        QCOMPARE(values.text("{csv:S:#1}", problem), QString());
        QCOMPARE(int(problem.fault), int(VariableFault::NoFile));
        QVERIFY(values.used().isEmpty());
        QCOMPARE(valueOf(set, "{csv:S:a}"), QStringLiteral("1"));
    }

    void rows_end_or_begin_again() {
        writeFile(documents("list.csv"), "a\n1\n2\n");
        VariableSet set;
        set.sources = {source("S", "list.csv")};
        set.sources[0].row = 3;
        QCOMPARE(valueOf(set, "{csv:S:a}"), QStringLiteral("!5"));
        set.sources[0].atEnd = CounterEnd::Restart;
        VariableValues values(set, kNow);
        VariableProblem problem;
        QCOMPARE(values.text("{csv:S:a}", problem), QStringLiteral("1"));
        QCOMPARE(values.used().sources.first().after.row, 2);
    }

    void files_outside_the_folder_cannot_be_named() {
        for (const char* file : {"", "/etc/passwd", "../x.csv", "a/../x.csv", "a//x.csv", "./x.csv"})
            QVERIFY2(sourceFault(source("S", file)), file);
        QVERIFY(!sourceFault(source("S", "a/b 零件.csv")));
    }

    void the_store_keeps_everything() {
        VariableSet set;
        SerialNumber s = serial(QStringLiteral("批号 \"1\""), 77);
        s.first = 99;
        s.last = 3;
        s.step = -2;
        s.digits = 12;
        s.radix = 36;
        s.repeat = 5;
        s.marks = 4;
        s.atEnd = CounterEnd::Restart;
        s.daily = true;
        s.ended = true;
        s.day = kNow.date();
        CsvSource c = source("parts", QStringLiteral("表/零件 1.csv"));
        c.separator = '\t';
        c.coding = CsvCoding::Gbk;
        c.header = false;
        c.atEnd = CounterEnd::Restart;
        c.row = 4711;
        set.serials = {serial("A"), s};
        set.sources = {c};
        set.shifts = {{QTime(6, 30), " N"}, {QTime(14, 0), "B"}};
        QVERIFY(VariableStore::instance().save(set, {}));
        VariableProblem problem;
        QVERIFY(VariableStore::instance().set(&problem) == set);
        QVERIFY(problem.ok());
        QVERIFY(VariableStore::instance().save({}, set));
        QVERIFY(VariableStore::instance().set(&problem) == VariableSet());
    }

    void a_damaged_file_is_told_and_marks_nothing() {
        VariableSet set;
        set.serials = {serial("A")};
        QVERIFY(VariableStore::instance().save(set, {}));
        const QString path = m_root->path() + "/ini/Variables.ini";
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll().replace("Radix=10", "Radix=99");
        file.close();
        QFile::remove(path);
        writeFile(path, bytes);
        VariableProblem problem;
        QVERIFY(VariableStore::instance().set(&problem) == VariableSet());
        QCOMPARE(int(problem.fault), int(VariableFault::BadDefinitions));
    }

    void a_damaged_file_is_replaced_only_when_that_is_meant() {
        VariableStore& store = VariableStore::instance();
        const QByteArray damaged = "[Serials]\nCount=1\n[Serial0]\nName=A\nValue=4711\n";
        QVERIFY(m_root->write(QStringLiteral("/ini/Variables.ini"), damaged));
        VariableSet set;
        set.serials = {serial("A")};
        VariableProblem problem;
        QVERIFY(!store.save(set, {}, VariableStore::Damaged::Stays, &problem));
        QCOMPARE(int(problem.fault), int(VariableFault::BadDefinitions));
        problem = {};
        QVERIFY(!store.beginPass(&problem));
        QCOMPARE(int(problem.fault), int(VariableFault::BadDefinitions));
        QVERIFY(!store.endPass({}, true));
        QCOMPARE(m_root->read(QStringLiteral("/ini/Variables.ini")), damaged);
        const QDir folder(m_root->path(QStringLiteral("/ini")));
        QCOMPARE(folder.entryList(QDir::Files), QStringList{QStringLiteral("Variables.ini")});

        QVERIFY(store.save(set, {}, VariableStore::Damaged::IsReplaced, &problem));
        QVERIFY(problem.ok());
        QVERIFY(store.set() == set);
        const QStringList kept = folder.entryList({QStringLiteral("Variables.ini.damaged-*")}, QDir::Files);
        QCOMPARE(kept.size(), 1);
        QVERIFY(
            QRegularExpression(QStringLiteral("^Variables\\.ini\\.damaged-\\d{8}-\\d{6}$")).match(kept[0]).hasMatch());
        QCOMPARE(m_root->read(QStringLiteral("/ini/") + kept[0]), damaged);
        QVERIFY(tests::logTexts("error").last().contains(kept[0]));
    }

    void unsound_or_equal_names_are_not_saved() {
        VariableSet set;
        set.serials = {serial("A"), serial("A")};
        QVERIFY(!VariableStore::instance().save(set, {}));
        set.serials = {serial("A:B")};
        QVERIFY(!VariableStore::instance().save(set, {}));
        set.serials.clear();
        set.shifts = {{QTime(6, 0), "A"}, {QTime(6, 0), "B"}};
        QVERIFY(!VariableStore::instance().save(set, {}));
    }

    void a_pass_moves_only_what_it_used() {
        VariableStore& store = VariableStore::instance();
        writeFile(documents("list.csv"), "a\n1\n2\n");
        VariableSet set;
        set.serials = {serial("A", 5), serial("B", 9)};
        set.sources = {source("S", "list.csv")};
        QVERIFY(store.save(set, {}));
        VariableValues values(store.set(), kNow);
        VariableProblem problem;
        values.text("{serial:A}{csv:S:a}", problem);
        QVERIFY(problem.ok() && store.beginPass());
        QVERIFY(!store.wasInterrupted());
        QVERIFY(store.endPass(values.used(), true));
        QCOMPARE(store.set().serial("A")->value, qint64(6));
        QCOMPARE(store.set().serial("B")->value, qint64(9));
        QCOMPARE(store.set().source("S")->row, 2);
        VariableValues stopped(store.set(), kNow);
        stopped.text("{serial:A}", problem);
        QVERIFY(store.beginPass() && store.endPass(stopped.used(), false));
        QCOMPARE(store.set().serial("A")->value, qint64(6));
    }

    void an_edit_during_a_pass_neither_sets_back_nor_is_lost() {
        VariableStore& store = VariableStore::instance();
        VariableSet set;
        set.serials = {serial("A", 5), serial("B", 5)};
        QVERIFY(store.save(set, {}));
        const VariableSet opened = store.set();
        VariableValues values(opened, kNow);
        VariableProblem problem;
        values.text("{serial:A}{serial:B}", problem);
        // the operator renumbers B and gives A other digits while the pass is being marked
        VariableSet wanted = opened;
        wanted.serials[0].digits = 8;
        wanted.serials[1].value = 100;
        QVERIFY(store.save(wanted, opened));
        QVERIFY(store.endPass(values.used(), true));
        QCOMPARE(store.set().serial("A")->value, qint64(6));
        QCOMPARE(store.set().serial("A")->digits, 8);
        QCOMPARE(store.set().serial("B")->value, qint64(100));
        // and one whose dialog was open over the pass does not set A back
        wanted.serials[0].digits = 9;
        QVERIFY(store.save(wanted, opened));
        QCOMPARE(store.set().serial("A")->value, qint64(6));
        QCOMPARE(store.set().serial("A")->digits, 9);
    }

    void counters_of_many_threads_lose_nothing() {
        VariableStore& store = VariableStore::instance();
        VariableSet set;
        for (int i = 0; i < 4; ++i)
            set.serials.append(serial(QStringLiteral("T%1").arg(i)));
        QVERIFY(store.save(set, {}));
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&store, i] {
                for (int round = 0; round < 10; ++round) {
                    VariableValues values(store.set(), kNow);
                    VariableProblem problem;
                    values.text(QStringLiteral("{serial:T%1}").arg(i), problem);
                    store.endPass(values.used(), true);
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        for (const SerialNumber& s : store.set().serials)
            QCOMPARE(s.value, qint64(11));
    }

    void marked_codes_are_found_until_they_are_too_old() {
        using namespace markedcodes;
        QVERIFY(!findSince({"A"}, kNow.addDays(-30)).earlier);
        QVERIFY(add({"A", QStringLiteral("零件")}, kNow, kNow.addDays(-30)));
        const auto found = findSince({"B", QStringLiteral("零件")}, kNow.addDays(-1)).earlier;
        QVERIFY(found);
        QCOMPARE(found->code, QStringLiteral("零件"));
        QCOMPARE(found->time, kNow);
        QVERIFY(!findSince({"a"}, kNow.addDays(-1)).earlier);
        QVERIFY(!findSince({"A"}, kNow.addSecs(1)).earlier);
        QVERIFY(add({"C"}, kNow.addDays(40), kNow.addDays(10)));
        QVERIFY(!findSince({"A"}, kNow.addDays(-100)).earlier);
        QVERIFY(findSince({"A"}, kNow).fault.isEmpty());
    }

    void codes_that_cannot_be_looked_up_are_not_called_new() {
        using namespace markedcodes;
        QVERIFY(findSince({"A"}, kNow).fault.isEmpty()); // nothing was ever marked
        QVERIFY(m_root->write(QStringLiteral("/ini/MarkedCodes.db"), QByteArray(4096, 'x')));
        const Search search = findSince({"A"}, kNow);
        QVERIFY(!search.earlier);
        QVERIFY2(search.fault.contains(QStringLiteral("MarkedCodes.db")), qPrintable(search.fault));
        QVERIFY(findSince({}, kNow).fault.isEmpty());
    }

    void a_csv_file_is_read_again_when_it_has_changed() {
        const QString path = documents("a.csv");
        CsvSource a = source("A", "a.csv");
        a.header = false;
        const auto first = [&a] {
            VariableProblem problem;
            return readCsvRow(a, problem).fields.value(0);
        };
        const auto change = [&path](const QByteArray& bytes, qint64 secondsAgo) {
            writeFile(path, bytes);
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadWrite));
            const QDateTime time = QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch() - secondsAgo);
            QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
        };
        change("one", 0);
        QCOMPARE(first(), QString("one"));
        change("two", 0); // within the time that the file system tells apart, perhaps
        QCOMPARE(first(), QString("two"));
        change("abc", 1000);
        QCOMPARE(first(), QString("abc"));
        change("xyz", 1000); // nothing tells that it is another one: it was not read again
        QCOMPARE(first(), QString("abc"));
        change("xyz", 999);
        QCOMPARE(first(), QString("xyz"));
        change("longer", 999);
        QCOMPARE(first(), QString("longer"));
        QVERIFY(QFile::remove(path));
        QCOMPARE(first(), QString());
    }
};

QTEST_GUILESS_MAIN(VariablesTest)
#include "tst_variables.moc"
