// SPDX-License-Identifier: MIT
#include "engine/rundatagather.h"
#include "tests/remote/hostfixture.h"

#include <QtMath>
#include <random>

using namespace tests;

namespace {

/// A record as the host sends it: dx and dy in mm, an angle in degrees about the field's centre.
struct Offset {
    double dx = 0.0;
    double dy = 0.0;
    double angle = 0.0;
};

struct Vertex {
    double x = 0.0;
    double y = 0.0;
    int pen = 0;
    bool laser = false;
    bool drawn = false;
};

/// The trace of the last job, without its way from where the head was before.
std::vector<Vertex> trace() {
    std::uint64_t pass = 0;
    std::size_t from = 0;
    std::vector<sim::SimTraceRow> rows;
    std::vector<Vertex> vertices;
    while (machine().followTrace(pass, from, rows) > 0) {
        for (sim::SimTraceRow const& row : rows)
            vertices.push_back({row.x, row.y, row.pen, row.laser, row.drawn});
    }
    return vertices;
}

std::vector<Vertex> marked(std::vector<Vertex> const& rows) {
    std::vector<Vertex> only;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(only), [](Vertex const& row) { return row.drawn; });
    return only;
}

Vertex moved(Vertex vertex, Offset const& offset) {
    const double angle = qDegreesToRadians(offset.angle);
    const double x = vertex.x;
    const double y = vertex.y;
    vertex.x = x * std::cos(angle) - y * std::sin(angle) + offset.dx;
    vertex.y = x * std::sin(angle) + y * std::cos(angle) + offset.dy;
    return vertex;
}

/// As a number that reads back as the very same.
QByteArray exact(double value) {
    return QByteArray::number(value, 'g', 17);
}

QByteArray frame(std::vector<Offset> const& offsets) {
    QByteArray text = "_VZSetOffset(0";
    char mark = '%';
    for (Offset const& offset : offsets) {
        text += mark + exact(offset.dx) + ',' + exact(offset.dy) + ',' + exact(offset.angle) + ",4,5,6,7";
        mark = '#';
    }
    return text + ");";
}

} // namespace

/// Many runs ordered by a host, one after the other: each marks the drawing where its records put it.
class ExternalOrdersTest : public QObject, private HostCase {
    Q_OBJECT

private slots:
    void init() { beginHost(); }
    void cleanup() { endHost(); }

    void ordered_runs_are_marked_where_their_records_put_them();

private:
    /// Runs of the short form; the variable asks for more.
    static int runs() { return qMax(60, qEnvironmentVariableIntValue("TESSERA_RUNS")); }
    void draw();
    std::vector<Offset> nextOffsets();
    QString difference(std::vector<Vertex> const& plain, std::vector<Offset> const& offsets);

    std::mt19937 m_Random{20261121};
};

void ExternalOrdersTest::draw() {
    const QVector<DrawnRect> rects{{QRectF(-6.0, -4.0, 12.0, 8.0), 0, {}}, {QRectF(2.0, 1.0, 3.0, 2.0), 3, {}}};
    QVERIFY(window().GetActiveView()->AddDrawing(rects, {}));
}

/// Up to three records; every fifth order has none, and those of the order before stay in force.
std::vector<Offset> ExternalOrdersTest::nextOffsets() {
    std::uniform_real_distribution<double> shift(-20.0, 20.0);
    std::uniform_real_distribution<double> angle(-180.0, 180.0);
    std::vector<Offset> offsets(m_Random() % 5 == 0 ? 0 : 1 + m_Random() % 3);
    for (Offset& offset : offsets)
        offset = {shift(m_Random), shift(m_Random), m_Random() % 2 == 0 ? 0.0 : angle(m_Random)};
    return offsets;
}

/// Empty when the last job is the plain one once for each record, moved by it.
QString ExternalOrdersTest::difference(std::vector<Vertex> const& plain, std::vector<Offset> const& offsets) {
    const std::vector<Vertex> now = marked(trace());
    if (now.size() != plain.size() * offsets.size())
        return QStringLiteral("%1 rows for %2 records of %3").arg(now.size()).arg(offsets.size()).arg(plain.size());
    for (std::size_t i = 0; i < now.size(); ++i) {
        const Vertex want = moved(plain[i % plain.size()], offsets[i / plain.size()]);
        if (std::abs(now[i].x - want.x) > 1e-9 || std::abs(now[i].y - want.y) > 1e-9 || now[i].pen != want.pen ||
            now[i].laser != want.laser)
            return QStringLiteral("row %1 at %2, %3 instead of %4, %5")
                .arg(i)
                .arg(now[i].x)
                .arg(now[i].y)
                .arg(want.x)
                .arg(want.y);
    }
    return QString();
}

void ExternalOrdersTest::ordered_runs_are_marked_where_their_records_put_them() {
    startWithHost();
    draw();
    machine().setSpeed(0.0);
    QCOMPARE(ask("_VZSetOffset(0);"), runReply(kRunDoneGbk, "0"));
    const std::vector<Vertex> plain = marked(trace());
    QVERIFY(plain.size() > 8);
    std::vector<Offset> inForce{Offset()};
    std::uint64_t const jobs = machine().state().jobs;
    machine().clearJournal();
    QStringList wanted;
    for (int i = 1; i <= runs(); ++i) {
        const std::vector<Offset> offsets = nextOffsets();
        if (!offsets.empty())
            inForce = offsets;
        QCOMPARE(ask(frame(offsets)), runReply(kRunDoneGbk, "0"));
        const QString found = difference(plain, inForce);
        QVERIFY2(found.isEmpty(), qPrintable(QStringLiteral("run %1: %2").arg(i).arg(found)));
        QCOMPARE(machine().state().jobs, jobs + std::uint64_t(i));
        QVERIFY(RunDataGather::Instance()->GetRunResult());
        wanted.append(QString::fromLatin1(frame(offsets)).chopped(1));
    }
    QVERIFY(isQuiet());
    QCOMPARE(machineCalls("StartMark"), runs());
    QCOMPARE(machineCalls("StopMark"), 0);
    // One line an order, in their order.
    ExternalResponse::Instance()->OrderLog().Flush();
    QStringList recorded;
    for (char const* name : {"/日志文件/RemoteOrders.txt.1", "/日志文件/RemoteOrders.txt"}) {
        for (QString const& line :
             QString::fromUtf8(m_Root.read(QString::fromUtf8(name))).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            if (line.contains(QStringLiteral("_VZSetOffset(")))
                recorded.append(line.section(QLatin1Char('\t'), 2, 2));
        }
    }
    QCOMPARE(recorded.mid(1), wanted);
}

QTEST_MAIN(ExternalOrdersTest)
#include "tst_externalorders.moc"
