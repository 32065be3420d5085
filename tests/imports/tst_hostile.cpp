// SPDX-License-Identifier: MIT
#include "dxftext.h"
#include "importfixture.h"
#include "simengine/importers/importers.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace sim;

namespace {

using Make = std::function<QByteArray()>;

/// What an import of its own process came to.
struct Outcome {
    bool ended = false; ///< by itself, without a fault
    bool ok = false;
    QString error;
    int objects = 0;
    double seconds = 0.0; ///< of processor time
    double mebibytes = 0.0;
};

/// Imports the file in a process of its own, so that its memory can be told.
Outcome importApart(const QString& file) {
    int ends[2];
    if (::pipe(ends) != 0)
        return {};
    const pid_t child = ::fork();
    if (child == 0) {
        const ImportResult result = importDrawing(file);
        const QByteArray text = QByteArray::number(result.ok() ? 1 : 0) + "\n" +
                                QByteArray::number(int(result.objects.size())) + "\n" + result.error.toUtf8();
        const bool written = ::write(ends[1], text.constData(), size_t(text.size())) == text.size();
        ::_exit(written ? 0 : 1);
    }
    ::close(ends[1]);
    QByteArray text;
    char buffer[4096];
    for (ssize_t n = 0; (n = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, int(n));
    ::close(ends[0]);
    int status = 0;
    rusage used{};
    ::wait4(child, &status, 0, &used);
    Outcome outcome;
    const QList<QByteArray> lines = text.split('\n');
    outcome.ended = WIFEXITED(status) && WEXITSTATUS(status) == 0 && lines.size() >= 3;
    outcome.ok = outcome.ended && lines[0] == "1";
    outcome.objects = outcome.ended ? lines[1].toInt() : 0;
    outcome.error = outcome.ended ? QString::fromUtf8(lines.mid(2).join('\n')) : QString();
    const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) * 1e-6; };
    outcome.seconds = seconds(used.ru_utime) + seconds(used.ru_stime);
    outcome.mebibytes = double(used.ru_maxrss) / 1024.0;
    return outcome;
}

/// Writes the file in a process of its own: what it takes to make it would count as the import's memory otherwise.
bool writeApart(const QString& path, const Make& make) {
    const pid_t child = ::fork();
    if (child == 0) {
        QFile file(path);
        ::_exit(file.open(QIODevice::WriteOnly) && file.write(make()) > 0 && file.flush() ? 0 : 1);
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

QByteArray svg(const QByteArray& body) {
    return "<svg xmlns='http://www.w3.org/2000/svg' width='100mm' height='100mm' viewBox='0 0 100 100'>" + body +
           "</svg>";
}

QByteArray doubling(int levels) {
    QByteArray body = "<defs><rect id='r0' width='1' height='1'/>";
    for (int i = 1; i <= levels; ++i) {
        const QByteArray before = "<use href='#r" + QByteArray::number(i - 1) + "'/>";
        body += "<g id='r" + QByteArray::number(i) + "'>" + before + before + "</g>";
    }
    return svg(body + "</defs><use href='#r" + QByteArray::number(levels) + "'/>");
}

QByteArray laughs() {
    QByteArray text = "<!DOCTYPE svg [<!ENTITY a0 'aaaaaaaaaa'>";
    for (int i = 1; i < 12; ++i)
        text += "<!ENTITY a" + QByteArray::number(i) + " '" +
                QByteArray("&a" + QByteArray::number(i - 1) + ";").repeated(10) + "'>";
    return text + "]><svg width='9' height='9'><text x='1' y='1'>&a11;</text></svg>";
}

QByteArray nestedBlocks(int levels, int times) {
    QByteArray blocks = "0,BLOCK;8,0;2,N0;10,0;20,0;0,CIRCLE;8,0;10,0;20,0;40,1;0,ENDBLK;8,0;";
    for (int i = 1; i < levels; ++i) {
        blocks += "0,BLOCK;8,0;2,N" + QByteArray::number(i) + ";10,0;20,0;";
        blocks += QByteArray("0,INSERT;8,0;2,N" + QByteArray::number(i - 1) + ";10,1;20,0;").repeated(times);
        blocks += "0,ENDBLK;8,0;";
    }
    return dxf::file("0,INSERT;8,0;2,N" + QByteArray::number(levels - 1) + ";10,0;20,0;", blocks);
}

} // namespace

Q_DECLARE_METATYPE(Make)

/// Files that are damaged, or made to exhaust the machine: each ends in a message, or with what can be had of it,
/// within five seconds and 512 MiB. Memory and processor time are those of a process of its own.
class HostileTest : public QObject {
    Q_OBJECT

private slots:
    void file_ends_within_its_bounds_data();
    void file_ends_within_its_bounds();
    void cut_files_give_a_message_or_a_drawing_data();
    void cut_files_give_a_message_or_a_drawing();
};

void HostileTest::file_ends_within_its_bounds_data() {
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<Make>("make");
    QTest::addColumn<bool>("refused");
    const auto row = [](const char* name, const char* suffix, bool refused, Make make) {
        QTest::addRow("%s: %s", suffix, name) << QString(suffix) << make << refused;
    };
    row("deep", "svg", true, [] { return svg(QByteArray("<g>").repeated(1000000)); });
    row("deep spans", "svg", true, [] { return svg("<text x='1' y='1'>" + QByteArray("<tspan>").repeated(500000)); });
    row("doubled references", "svg", true, [] { return doubling(40); });
    row("a million references", "svg", true, [] {
        return svg("<defs><rect id='r' width='1' height='1'/></defs>" +
                   QByteArray("<use href='#r'/>").repeated(900000));
    });
    row("entities in entities", "svg", true, laughs);
    row("more bytes than are taken", "svg", true, [] { return svg(QByteArray(80 << 20, ' ')); });
    row("many tiny elements", "svg", true, [] { return svg(QByteArray("<g/>").repeated(15000000)); });
    row("many lines", "svg", true,
        [] { return svg(QByteArray("<line x1='1' y1='2' x2='3' y2='4' stroke='red'/>").repeated(1200000)); });
    row("huge numbers", "svg", false,
        [] { return svg("<path d='M1e300 1e300L-1e300 5'/><rect width='1e200' height='1e308'/><circle r='9e999'/>"); });
    row("digits without end", "svg", false,
        [] { return svg("<path d='M0 0L" + QByteArray(60000000, '9') + " 5' stroke='red'/>"); });
    row("nan", "svg", false, [] { return svg("<path d='M0 0Lnan 5'/><rect width='nan' height='inf'/>"); });
    row("points without end", "svg", true,
        [] { return svg("<path fill='none' stroke='red' d='M0 0" + QByteArray("h1").repeated(30000000) + "'/>"); });
    row("arcs without end", "svg", true,
        [] { return svg("<path stroke='red' d='M0 0" + QByteArray("a1 1 0 0 1 2 2").repeated(3000000) + "'/>"); });
    row("many rules and elements", "svg", true, [] {
        QByteArray sheet;
        for (int i = 0; i < 20000; ++i)
            sheet += ".c" + QByteArray::number(i) + " g{fill:red}";
        return svg("<style>" + sheet + "</style>" + QByteArray("<g><rect width='1' height='1'/></g>").repeated(100000));
    });
    row("clips of combs", "svg", true, [] {
        const auto comb = [](const char* way, const char* back) {
            return "M0 0" + (QByteArray(way) + back).repeated(15000) + "z";
        };
        return svg("<clipPath id='c'><path d='" + comb("l50 .001", "l-50 .001") + "'/></clipPath>" +
                   QByteArray("<path clip-path='url(#c)' d='" + comb("l.001 50", "l.001 -50") + "'/>").repeated(20));
    });
    row("texts without end", "svg", true,
        [] { return svg(QByteArray("<text x='1' y='9'>The quick brown fox</text>").repeated(200000)); });
    row("kinds without end", "svg", false, [] {
        QByteArray body;
        for (int i = 0; i < 200000; ++i)
            body += "<k" + QByteArray::number(i) + "/>";
        return svg(body);
    });
    row("declarations times selectors", "svg", false, [] {
        return svg("<style>" + QByteArray("a,").repeated(19999) + "a{" + QByteArray("fill:red;").repeated(100000) +
                   "}</style><rect width='9' height='9'/>");
    });
    row("selectors without end", "svg", false,
        [] { return svg("<style>" + QByteArray(15000000, ',') + "{fill:red}</style><rect width='9' height='9'/>"); });
    row("comments that are not closed", "svg", false,
        [] { return svg("<style>" + QByteArray("/* ").repeated(5000000) + "</style><rect width='9' height='9'/>"); });
    row("at-rules without end", "svg", false, [] {
        return svg("<style>" + QByteArray("@a;").repeated(5000000) + "a{}</style><rect width='9' height='9'/>");
    });
    row("a sheet without end", "svg", false, [] {
        return svg("<style>" + QByteArray("a{fill:red}").repeated(5500000) + "</style><rect width='9' height='9'/>");
    });
    row("class names without end", "svg", true, [] {
        QByteArray sheet;
        for (int i = 0; i < 20000; ++i)
            sheet += ".c" + QByteArray::number(i) + "{fill:red}";
        return svg("<style>" + sheet + "</style><rect width='9' height='9' class='" +
                   QByteArray("c c").repeated(7000000) + "'/>");
    });
    row("one style for many references", "svg", false, [] {
        return svg("<defs><rect id='r' width='9' height='9' style='" + QByteArray("fill:red;").repeated(3500000) +
                   "'/></defs>" + QByteArray("<use href='#r'/>").repeated(20000));
    });
    row("a text without end", "svg", false,
        [] { return svg("<text x='1' y='9'>" + QByteArray(20000000, 'A') + "</text>"); });
    row("spans without end", "svg", false,
        [] { return svg("<text x='1' y='9'>" + QByteArray("<tspan x='1' y='9'/>").repeated(1500000) + "</text>"); });
    row("places of letters without end", "svg", false,
        [] { return svg("<text y='9' x='" + QByteArray("1 ").repeated(25000000) + "'>A</text>"); });
    row("a long text again and again", "svg", true, [] {
        return svg("<defs><text id='t' x='1' y='9'>" + QByteArray("The quick brown fox ").repeated(400) +
                   "</text></defs>" + QByteArray("<use href='#t'/>").repeated(5000));
    });
    row("edge far beyond the field", "svg", false, [] {
        return svg("<g transform='scale(2e11)'><svg width='10' height='10'><path d='M-1-1L5 5' stroke='red'/></svg></g>"
                   "<svg width='3e12' height='9'><path d='M-1 5H50' stroke='red'/></svg>");
    });
    row("a clip of curves as large as the field", "svg", true, [] {
        return svg("<clipPath id='c'><path d='M-90000 0" +
                   QByteArray("C90000 90000-90000 90000 90000 0S-90000-90000-90000 0").repeated(3000) +
                   "'/></clipPath><path d='M0 0H9' stroke='red' clip-path='url(#c)'/>");
    });
    row("curves as large as the field that are cut", "svg", true, [] {
        return svg("<svg width='50' height='50'><path stroke='red' d='M-90000 0" +
                   QByteArray("C90000 90000-90000 90000 90000 0S-90000-90000-90000 0").repeated(3000) + "'/></svg>");
    });
    row("deep data of no use", "svg", true, [] { return svg("<metadata>" + QByteArray("<a>").repeated(20000000)); });
    row("deep data in a text", "svg", true,
        [] { return svg("<text x='1' y='9'><k>" + QByteArray("<a>").repeated(20000000)); });
    row("attributes without end", "svg", true, [] {
        QByteArray body = "<g";
        for (int i = 0; i < 3000000; ++i)
            body += " a" + QByteArray::number(i) + "=''";
        return svg(body + "/>");
    });
    row("many elements of many attributes", "svg", true, [] {
        QByteArray body = "<g";
        for (int i = 0; i < 990; ++i)
            body += " a" + QByteArray::number(i) + "=''";
        return svg((body + "/>").repeated(6000));
    });
    row("attributes by the document type", "svg", true, [] {
        QByteArray list = "<!DOCTYPE svg [<!ATTLIST g";
        for (int i = 0; i < 2000000; ++i)
            list += " a" + QByteArray::number(i) + " CDATA '1'";
        return list + ">]>" + svg(QByteArray("<g/>").repeated(1000));
    });
    row("bytes", "svg", true, [] { return QByteArray(50000000, '\x9f'); });
    row("utf-16 without its mark", "svg", true, [] {
        const QString text = QString::fromLatin1(svg("<rect width='9' height='9'/>"));
        return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2).mid(1);
    });

    row("binary", "dxf", true, [] { return "AutoCAD Binary DXF\r\n\x1a" + QByteArray(1000000, '\0'); });
    row("bytes", "dxf", true, [] { return QByteArray(50000000, '\x9f'); });
    row("zeros", "dxf", true, [] { return QByteArray(50000000, '\0'); });
    row("empty lines", "dxf", true, [] { return QByteArray(100000000, '\n'); });
    row("one long line", "dxf", true, [] { return QByteArray(100000000, '0'); });
    row("long texts", "dxf", false,
        [] { return dxf::file("0,TEXT;8,0;10,0;20,0;40,1;1," + QByteArray(3000000, 'A') + ";"); });
    row("paragraphs without end", "dxf", false, [] {
        return dxf::file("0,MTEXT;8,0;10,0;20,0;40,1;" +
                         QByteArray("3," + QByteArray(250, 'A') + ";").repeated(100000) + "1,B;");
    });
    row("a million inserts", "dxf", true, [] {
        return dxf::file(QByteArray("0,INSERT;8,0;2,B;10,0;20,0;").repeated(1000000),
                         "0,BLOCK;8,0;2,B;10,0;20,0;0,CIRCLE;8,0;10,0;20,0;40,1;0,ENDBLK;8,0;");
    });
    row("array without end", "dxf", true, [] {
        return dxf::file("0,INSERT;8,0;2,B;10,0;20,0;70,2000000000;71,2000000000;44,1;45,1;",
                         "0,BLOCK;8,0;2,B;10,0;20,0;0,LINE;8,0;10,0;20,0;11,1;21,1;0,ENDBLK;8,0;");
    });
    row("blocks in blocks", "dxf", true, [] { return nestedBlocks(60, 2); });
    row("deep blocks", "dxf", true, [] { return nestedBlocks(5000, 1); });
    row("vertices by number", "dxf", true, [] { return dxf::file("0,LWPOLYLINE;8,0;90,2147483647;10,0;20,0;"); });
    row("knots by number", "dxf", true, [] { return dxf::file("0,SPLINE;8,0;71,3;72,2147483647;73,536870913;"); });
    row("curves as large as the field", "dxf", true, [] {
        return dxf::file(QByteArray("0,SPLINE;8,0;71,3;72,8;73,4;40,0;40,0;40,0;40,0;40,1;40,1;40,1;40,1;10,-900000;"
                                    "20,-900000;10,900000;20,900000;10,-900000;20,900000;10,900000;20,-900000;")
                             .repeated(5000));
    });
    const QByteArray comment = "999," + QByteArray(900, 'x') + ";";
    row("control points by number", "dxf", false,
        [comment] { return dxf::file("0,SPLINE;8,0;71,3;73,25000000;10,0;20,0;" + comment.repeated(120000)); });
    row("points of a leader by number", "dxf", false,
        [comment] { return dxf::file("0,LEADER;8,0;76,25000000;10,0;20,0;" + comment.repeated(120000)); });
    row("vertices without end", "dxf", true,
        [] { return dxf::file("0,LWPOLYLINE;8,0;" + QByteArray("10,1;20,2;").repeated(6500000)); });
    row("bulges without end", "dxf", true,
        [] { return dxf::file("0,LWPOLYLINE;8,0;" + QByteArray("10,1;20,2;42,99999;10,9;20,2;").repeated(2000000)); });
    row("knots without end", "dxf", true,
        [] { return dxf::file("0,SPLINE;8,0;71,3;" + QByteArray("40,1;10,2;20,2;41,2;").repeated(3000000)); });
    row("edges without end", "dxf", true,
        [] { return dxf::file("0,HATCH;8,0;91,1;92,1;" + QByteArray("72,1;").repeated(10000000)); });
    row("spline of an edge without end", "dxf", true,
        [] { return dxf::file("0,HATCH;8,0;91,1;92,1;72,4;94,3;" + QByteArray("40,1;").repeated(12000000)); });
    row("one block of everything", "dxf", false, [] {
        return dxf::file("0,POINT;8,0;10,0;20,0;", "0,BLOCK;8,0;2,B;10,0;20,0;" +
                                                       QByteArray("0,LINE;8,0;10,0;20,0;11,1;21,1;").repeated(1100000) +
                                                       "0,ENDBLK;8,0;");
    });
    row("arcs in a block", "dxf", true, [] {
        return dxf::file("0,POINT;8,0;10,0;20,0;",
                         "0,BLOCK;8,0;2,B;10,0;20,0;" +
                             QByteArray("0,LWPOLYLINE;8,0;10,0;20,0;42,9;10,3;20,0;42,9;10,9;20,0;").repeated(900000) +
                             "0,ENDBLK;8,0;");
    });
    row("all layers another", "dxf", true, [] {
        QByteArray body;
        for (int i = 0; i < 1900000; ++i)
            body += "0,POINT;8,L" + QByteArray::number(i) + ";10,0;20,0;";
        return dxf::file(body);
    });
    row("paragraphs to be wrapped", "dxf", false, [] {
        return dxf::file(QByteArray("0,MTEXT;8,0;10,0;20,0;40,1;41,9000000;" +
                                    QByteArray("3," + QByteArray("i ").repeated(124) + ";").repeated(40) + "1,B;")
                             .repeated(8));
    });
    row("codes without their end", "dxf", false, [] {
        return dxf::file(QByteArray("0,MTEXT;8,0;10,0;20,0;40,1;" +
                                    QByteArray("3," + QByteArray("\\H").repeated(490) + ";").repeated(100) + "1,B;")
                             .repeated(200));
    });
    row("blank paragraph inserted again and again", "dxf", true, [] {
        return dxf::file(QByteArray("0,INSERT;8,0;2,B;10,0;20,0;").repeated(900000),
                         "0,BLOCK;8,0;2,B;10,0;20,0;0,MTEXT;8,0;10,0;20,0;40,1;" +
                             QByteArray("3," + QByteArray("\\~").repeated(120) + ";").repeated(80) +
                             "1,B;0,ENDBLK;8,0;");
    });
    row("paragraphs of an outline font", "dxf", true, [] {
        return dxf::file(QByteArray("0,MTEXT;8,0;10,0;20,0;40,1;" +
                                    QByteArray("3," + QByteArray("\xe4\xb8\xad").repeated(80) + "\\P;").repeated(100) +
                                    "1,B;")
                             .repeated(2000));
    });
    row("degree without end", "dxf", false,
        [] { return dxf::file("0,SPLINE;8,0;71,2147483647;72,4;73,2;40,0;40,0;40,1;40,1;10,0;20,0;10,1;20,1;"); });
    row("huge numbers", "dxf", false, [] {
        return dxf::file("0,LINE;8,0;10,1e308;20,-1e308;11,1e999;21,9;0,CIRCLE;8,0;10,0;20,0;40,1e300;0,ARC;8,0;10,0;"
                         "20,0;40,1;50,1e300;51,-1e300;0,ELLIPSE;8,0;10,0;20,0;11,1;21,0;40,1e200;41,0;42,1e308;");
    });
    row("nan", "dxf", false, [] { return dxf::file("0,LINE;8,0;10,nan;20,inf;11,-nan;21,1;0,POINT;8,0;10,1;20,2;"); });
    row("many lines", "dxf", true,
        [] { return dxf::file(QByteArray("0,LINE;8,0;10,0;20,0;11,1;21,1;").repeated(2500000)); });
    row("layers without end", "dxf", false, [] {
        QByteArray body;
        for (int i = 0; i < 300000; ++i)
            body += "0,POINT;8,L" + QByteArray::number(i) + ";10,0;20,0;";
        return dxf::file(body);
    });

    row("bytes", "plt", true, [] { return QByteArray(50000000, '\x9f'); });
    row("escapes", "plt", true, [] { return QByteArray(100000000, '\x1b'); });
    row("huge numbers", "plt", false,
        [] { return QByteArray("IN;SP1;PD99999999999999999999,1e5,PU;CI1e9;AA0,0,1e300;"); });
    row("points without end", "plt", true, [] { return "IN;SP1;PD" + QByteArray("1,2,").repeated(20000000); });
    row("circles without end", "plt", true, [] { return "IN;SP1;" + QByteArray("CI9;").repeated(20000000); });
    row("labels without end", "plt", true, [] { return "IN;SP1;" + QByteArray("LBABCDEFGH\x03").repeated(5000000); });
    row("one label", "plt", false, [] { return "IN;SP1;LB" + QByteArray(100000000, 'A'); });
    row("circles in a polygon", "plt", true, [] { return "IN;SP1;PM0;" + QByteArray("CI1;").repeated(20000000); });
    row("numbers without end", "plt", false, [] { return "IN;SP1;SC" + QByteArray("1,").repeated(50000000); });
    row("curves without end", "plt", true, [] { return "IN;SP1;PD;BZ" + QByteArray("1,2,").repeated(25000000); });
    row("signs without sense", "plt", false, [] { return "IN;SP1;" + QByteArray(100000000, '@'); });
    row("blank labels", "plt", true,
        [] { return "IN;SP1;" + QByteArray("LB" + QByteArray(9990, ' ') + "\x03").repeated(10000); });
    row("polygons edged again and again", "plt", true, [] {
        return "IN;SP1;PM0;PD" + QByteArray("1,2,3,4,").repeated(20000) + ";PM2;" + QByteArray("EP;").repeated(100000);
    });
    row("scales without sense", "plt", false,
        [] { return QByteArray("IN;IP0,0,1,1;SC0,99999999999,0,.0000001;SP1;PD1,1,9,9;SC;PD1,1;RO90;PD5,5;"); });
    row("unknown commands", "plt", true, [] { return QByteArray("ZZ1,2;").repeated(15000000); });
}

void HostileTest::file_ends_within_its_bounds() {
    QFETCH(QString, suffix);
    QFETCH(Make, make);
    QFETCH(bool, refused);
    QTemporaryDir dir;
    const QString path = dir.filePath("hostile." + suffix);
    QVERIFY(writeApart(path, make));
    const Outcome outcome = importApart(path);
    const QString shown = QString("%1 s, %2 MiB, %3").arg(outcome.seconds).arg(outcome.mebibytes).arg(outcome.error);
    qInfo("%s", qPrintable(shown));
    QVERIFY2(outcome.ended, qPrintable(shown));
    QVERIFY2(outcome.ok || (!outcome.error.isEmpty() && outcome.objects == 0), qPrintable(shown));
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    // slower and larger by themselves: what is taken otherwise may be refused here
    QVERIFY2(!outcome.ok || !refused, qPrintable(shown));
#else
    QVERIFY2(outcome.ok != refused, qPrintable(shown));
    QVERIFY2(outcome.seconds < 5.0, qPrintable(shown));
    QVERIFY2(outcome.mebibytes < 512.0, qPrintable(shown));
#endif
}

void HostileTest::cut_files_give_a_message_or_a_drawing_data() {
    QTest::addColumn<QString>("file");
    for (const char* name : {"cover-plate.dxf", "rating-label.plt", "name-plate.svg"})
        QTest::newRow(name) << qEnvironmentVariable("TESSERA_SOURCE_DIR") + "/samples/" + name;
}

void HostileTest::cut_files_give_a_message_or_a_drawing() {
    QFETCH(QString, file);
    QFile source(file);
    QVERIFY(source.open(QIODevice::ReadOnly));
    const QByteArray whole = source.readAll();
    QTemporaryDir dir;
    const QString path = dir.filePath("cut." + file.mid(file.lastIndexOf('.') + 1));
    const bool markedEnd = !file.endsWith(".plt");
    for (int length = 0; length < whole.size(); length += 37) {
        QFile cut(path);
        QVERIFY(cut.open(QIODevice::WriteOnly));
        cut.write(whole.left(length));
        cut.close();
        const ImportResult result = importDrawing(path);
        QVERIFY2(result.ok() || result.objects.empty(), qPrintable(QString::number(length)));
        QVERIFY(result.ok() || !result.error.isEmpty());
        // a file whose end is marked is taken whole or not at all
        QVERIFY2(!markedEnd || !result.ok() || length > whole.size() - 4, qPrintable(QString::number(length)));
    }
}

QTEST_MAIN(HostileTest)
#include "tst_hostile.moc"
