// SPDX-License-Identifier: MIT
#include "ctlarguments.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

struct Reading {
    CtlArguments value;
    QJsonObject named;
    bool whole = false; ///< the parameters were given as one JSON text
};

bool splitPair(QString const& argument, QString& key, QString& value) {
    int const equals = argument.indexOf(QLatin1Char('='));
    if (equals < 1)
        return false;
    key = argument.left(equals);
    value = argument.mid(equals + 1);
    return true;
}

void readOption(Reading& reading, QStringList const& arguments, int& index) {
    QString const name = arguments.at(index);
    if (name == QLatin1String("--help")) {
        reading.value.help = true;
        return;
    }
    if (name == QLatin1String("--indent")) {
        reading.value.indented = true;
        return;
    }
    QStringList const valued{QStringLiteral("--socket"), QStringLiteral("--timeout"), QStringLiteral("--until")};
    if (!valued.contains(name)) {
        reading.value.error = QStringLiteral("There is no option \"%1\".").arg(name);
        return;
    }
    if (++index >= arguments.size()) {
        reading.value.error = QStringLiteral("%1 needs a value.").arg(name);
        return;
    }
    QString const given = arguments.at(index);
    if (name == QLatin1String("--socket")) {
        reading.value.socket = given;
    } else if (name == QLatin1String("--timeout")) {
        bool isNumber = false;
        reading.value.timeout = given.toInt(&isNumber);
        if (!isNumber || reading.value.timeout < 1)
            reading.value.error = QStringLiteral("--timeout needs milliseconds above 0, not \"%1\".").arg(given);
    } else {
        QString key;
        QString value;
        if (splitPair(given, key, value))
            reading.value.until.append({key, ctlValue(value)});
        else
            reading.value.error = QStringLiteral("--until needs MEMBER=VALUE, not \"%1\".").arg(given);
    }
}

void readParameter(Reading& reading, QString const& argument) {
    if (argument.startsWith(QLatin1Char('{')) || argument.startsWith(QLatin1Char('['))) {
        QJsonDocument const document = QJsonDocument::fromJson(argument.toUtf8());
        if (document.isNull() || reading.whole || !reading.named.isEmpty())
            reading.value.error = document.isNull()
                                      ? QStringLiteral("The parameters are not JSON: %1").arg(argument)
                                      : QStringLiteral("Give the parameters once as JSON or as KEY=VALUE.");
        reading.value.params = document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
        reading.whole = true;
        return;
    }
    QString key;
    QString value;
    if (!splitPair(argument, key, value))
        reading.value.error = QStringLiteral("A parameter is KEY=VALUE, not \"%1\".").arg(argument);
    else if (reading.whole)
        reading.value.error = QStringLiteral("Give the parameters once as JSON or as KEY=VALUE.");
    else if (reading.named.contains(key))
        reading.value.error = QStringLiteral("The parameter \"%1\" is given twice.").arg(key);
    else
        reading.named.insert(key, ctlValue(value));
}

} // namespace

QJsonValue ctlValue(QString const& text) {
    QJsonDocument const document = QJsonDocument::fromJson("[" + text.toUtf8() + "]");
    QJsonArray const values = document.array();
    return values.size() == 1 ? values.first() : QJsonValue(text);
}

CtlArguments parseCtlArguments(QStringList const& arguments, QString const& defaultSocket) {
    Reading reading;
    reading.value.socket = defaultSocket;
    for (int i = 0; i < arguments.size() && reading.value.error.isEmpty() && !reading.value.help; ++i) {
        QString const argument = arguments.at(i);
        if (argument.startsWith(QLatin1String("--")))
            readOption(reading, arguments, i);
        else if (reading.value.method.isEmpty())
            reading.value.method = argument;
        else
            readParameter(reading, argument);
    }
    if (!reading.named.isEmpty())
        reading.value.params = reading.named;
    if (reading.value.help || !reading.value.error.isEmpty())
        return reading.value;
    if (reading.value.method.isEmpty())
        reading.value.error = QStringLiteral("A method is missing.");
    else if (reading.value.socket.isEmpty())
        reading.value.error = QStringLiteral("The socket is missing: give it by --socket or in TESSERA_AUTOMATION.");
    return reading.value;
}

QString ctlHelp() {
    return QStringLiteral(
        "Usage: tessera-ctl --socket SOCKET [OPTION]... METHOD [KEY=VALUE... | JSON]\n"
        "\n"
        "Calls one method of a program that was started by tessera --automation SOCKET and prints its result as JSON.\n"
        "A value that is JSON is taken as such, any other as a text; \"KEY=\\\"5\\\"\" is the text 5.\n"
        "\n"
        "  --socket SOCKET       the program's socket; default: $TESSERA_AUTOMATION\n"
        "  --until MEMBER=VALUE  ask again until the result has this member; several must all hold\n"
        "  --timeout MS          wait at most so long, 10000 if not given\n"
        "  --indent              print over several lines\n"
        "  --help                print this text\n"
        "\n"
        "Exit code: 0 done, 1 the program answered with an error, 2 wrong arguments, 3 no connection, 4 time-out.\n"
        "\n"
        "  tessera-ctl --socket s ui.trigger action=actionMark\n"
        "  tessera-ctl --socket s ui.click object=Form_Marking/pushButtonStart\n"
        "  tessera-ctl --socket s --until status=stop card.state\n");
}
