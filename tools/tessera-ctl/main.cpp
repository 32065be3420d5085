// SPDX-License-Identifier: MIT
#include "ctlarguments.h"
#include "ctlclient.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <cstdio>

namespace {

void printJson(QJsonValue const& value, bool indented, std::FILE* stream) {
    // The document class writes objects and arrays only; what stands inside a one-element array is the value.
    QByteArray text;
    if (value.isObject() || value.isArray()) {
        QJsonDocument const document =
            value.isObject() ? QJsonDocument(value.toObject()) : QJsonDocument(value.toArray());
        text = document.toJson(indented ? QJsonDocument::Indented : QJsonDocument::Compact).trimmed();
    } else {
        text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
        text = text.mid(1, text.size() - 2);
    }
    std::fprintf(stream, "%s\n", text.constData());
}

void complain(QString const& sentence) {
    std::fprintf(stderr, "tessera-ctl: %s\n", sentence.toLocal8Bit().constData());
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    CtlArguments const arguments =
        parseCtlArguments(application.arguments().mid(1), qEnvironmentVariable("TESSERA_AUTOMATION"));
    if (arguments.help) {
        std::fputs(ctlHelp().toLocal8Bit().constData(), stdout);
        return int(CtlOutcome::Done);
    }
    if (!arguments.error.isEmpty()) {
        complain(arguments.error + QStringLiteral(" See --help."));
        return int(CtlOutcome::WrongArguments);
    }
    CtlClient client(arguments.timeout);
    QJsonValue answer;
    CtlOutcome outcome = client.connectTo(arguments.socket);
    if (outcome == CtlOutcome::Done)
        outcome = client.callUntil(arguments, answer);
    switch (outcome) {
    case CtlOutcome::Done:
        printJson(answer, arguments.indented, stdout);
        break;
    case CtlOutcome::ErrorAnswer:
        printJson(answer, arguments.indented, stderr);
        break;
    case CtlOutcome::NoConnection:
        complain(QStringLiteral("No connection to \"%1\": %2.").arg(arguments.socket, client.problem()));
        break;
    case CtlOutcome::TimeOut:
        complain(QStringLiteral("No answer as wanted within %1 ms.").arg(arguments.timeout));
        break;
    case CtlOutcome::WrongArguments:
        break;
    }
    return int(outcome);
}
