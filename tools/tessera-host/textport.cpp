// SPDX-License-Identifier: MIT
#include "textport.h"

#include <QStringList>
#include <QTextCodec>

namespace {

constexpr int kDefaultPort = 5000;
constexpr int kPatienceMs = 10000;
constexpr int kRawMs = 1000;
constexpr char kEnd = ';';

/// The values of a layer in the order of the answer.
constexpr char const* kLayerValues[] = {
    "mark count",
    "mark speed, mm/s",
    "red-light speed, mm/s",
    "power, %",
    "wave number",
    "frequency, Hz",
    "duty cycle, %",
    "laser-on delay, us",
    "laser-off delay, us",
    "corner delay, us",
    "jump speed, mm/s",
    "longest jump delay, us",
    "mark delay, us",
    "shortest jump delay, us",
    "time on a point, ms",
    "distance of the shortest jump delay, mm",
    "distance of the longest jump delay, mm",
    "uses the default parameters",
};

QString layerTable(QString const& values) {
    QStringList const list = values.split(QLatin1Char(','));
    if (list.size() != int(std::size(kLayerValues)))
        return values;
    QStringList lines;
    for (int i = 0; i < list.size(); ++i)
        lines.append(list.at(i).leftJustified(12) + QLatin1String(kLayerValues[i]));
    return lines.join(QLatin1Char('\n'));
}

QByteArray record(QVector<double> const& numbers) {
    QByteArray fields;
    for (double number : numbers)
        fields += QByteArray::number(number, 'g', 15) + ',';
    return fields + "0,0";
}

} // namespace

QString TextPort::text(QByteArray const& gbk) {
    QTextCodec const* codec = QTextCodec::codecForName("GBK");
    return codec ? codec->toUnicode(gbk) : QString::fromLatin1(gbk);
}

QByteArray TextPort::frame(HostArguments const& arguments) {
    QByteArray const document = QByteArray::number(arguments.document);
    if (arguments.command == QLatin1String("layers"))
        return "_VZGetLayerParas(" + document + ',' + QByteArray::number(arguments.layer) + ");";
    if (arguments.command == QLatin1String("stop"))
        return "_VZMarkStop();";
    if (arguments.command == QLatin1String("test"))
        return "_VZTest(" + arguments.text.toUtf8() + ");";
    if (arguments.command == QLatin1String("raw"))
        return arguments.text.toUtf8() + (arguments.text.endsWith(QLatin1Char(kEnd)) ? "" : ";");
    QByteArray records;
    for (QVector<double> const& numbers : arguments.records)
        records += (records.isEmpty() ? '%' : '#') + record(numbers);
    return "_VZSetOffset(" + document + records + ");";
}

HostResult TextPort::run(HostArguments const& arguments) {
    bool const isRun = arguments.command == QLatin1String("run");
    int const port = arguments.port > 0 ? arguments.port : kDefaultPort;
    HostOutcome outcome =
        m_client.connectTo(arguments.host, port, arguments.timeout > 0 ? arguments.timeout : kPatienceMs);
    QByteArray const message = frame(arguments);
    if (outcome == HostOutcome::Done)
        outcome = m_client.send(message);
    if (outcome != HostOutcome::Done)
        return {outcome, {}};
    if (arguments.command == QLatin1String("test"))
        return {};
    if (arguments.command == QLatin1String("raw"))
        return whatComes();
    if (isRun && arguments.timeout == 0)
        m_client.setTimeout(0);
    HostResult result = answer(message.left(message.indexOf('(') + 1));
    if (result.outcome == HostOutcome::Done && arguments.command == QLatin1String("layers"))
        result.text = layerTable(result.text);
    return result;
}

/// An answer that a run of another host has left for whoever comes next is passed over.
HostResult TextPort::answer(QByteArray const& prefix) {
    QByteArray message;
    do {
        HostOutcome const outcome = m_client.receive(message);
        if (outcome != HostOutcome::Done)
            return {outcome, {}};
    } while (!message.startsWith(prefix) || !message.endsWith(");"));
    QString const inside = text(message.mid(prefix.size(), message.size() - prefix.size() - 2));
    bool const good = inside.startsWith(QLatin1String("0,"));
    return {good ? HostOutcome::Done : HostOutcome::Refused, inside.mid(2)};
}

HostResult TextPort::whatComes() {
    m_client.setTimeout(kRawMs);
    QStringList lines;
    QByteArray message;
    while (m_client.receive(message) == HostOutcome::Done)
        lines.append(text(message));
    return {HostOutcome::Done, lines.join(QLatin1Char('\n'))};
}
