// SPDX-License-Identifier: MIT
#include "hostarguments.h"
#include "lineclient.h"
#include "stationlink.h"
#include "textport.h"

#include <QCoreApplication>
#include <cstdio>

namespace {

void print(QString const& text, std::FILE* stream) {
    if (!text.isEmpty())
        std::fprintf(stream, "%s\n", text.toLocal8Bit().constData());
}

void complain(QString const& sentence) {
    print(QStringLiteral("tessera-host: ") + sentence, stderr);
}

void show(bool sent, QByteArray const& message) {
    print((sent ? QStringLiteral("> ") : QStringLiteral("< ")) + TextPort::text(message.trimmed()), stderr);
}

void showLine(bool sent, QByteArray const& message) {
    print((sent ? QStringLiteral("> ") : QStringLiteral("< ")) + QString::fromUtf8(message.trimmed()), stderr);
}

void tell(HostArguments const& arguments, LineClient const& client, HostResult const& result) {
    switch (result.outcome) {
    case HostOutcome::Done:
        print(result.text, stdout);
        break;
    case HostOutcome::Refused:
        print(result.text, stderr);
        break;
    case HostOutcome::WrongArguments:
        complain(result.text);
        break;
    case HostOutcome::NoConnection:
        complain(QStringLiteral("No connection to %1: %2")
                     .arg(arguments.host, result.text.isEmpty() ? client.problem() : result.text));
        break;
    case HostOutcome::TimeOut:
        complain(QStringLiteral("No answer in time."));
        break;
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    HostArguments const arguments = parseHostArguments(application.arguments().mid(1));
    if (arguments.help) {
        std::fputs(hostHelp().toLocal8Bit().constData(), stdout);
        return int(HostOutcome::Done);
    }
    if (!arguments.error.isEmpty()) {
        complain(arguments.error + QStringLiteral(" See --help."));
        return int(HostOutcome::WrongArguments);
    }
    bool const isStation = arguments.command == QLatin1String("station");
    std::function<void(bool, QByteArray const&)> const printer = isStation ? showLine : show;
    LineClient client(isStation ? '\n' : ';', arguments.verbose ? printer : nullptr);
    HostResult const result = isStation ? StationLink(client).run(arguments) : TextPort(client).run(arguments);
    tell(arguments, client, result);
    return int(result.outcome);
}
