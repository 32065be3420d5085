// SPDX-License-Identifier: MIT
#include "hostarguments.h"

#include <cmath>

namespace {

constexpr int kNumbers = 5; ///< of a record
constexpr int kLargestPort = 65535;

/// The arguments one after the other, with the options taken out wherever they stand.
class Reader {
public:
    explicit Reader(QStringList const& arguments)
        : m_given(arguments) {}

    HostArguments read() {
        readOptions();
        if (!value.help && value.error.isEmpty())
            readCommand();
        return value;
    }

private:
    bool complain(QString const& sentence) {
        if (value.error.isEmpty())
            value.error = sentence;
        return false;
    }

    void readOptions() {
        bool isText = false;
        for (int i = 0; i < m_given.size() && value.error.isEmpty(); ++i) {
            QString const argument = m_given.at(i);
            // Numbers below 0 and what stands behind "--" are no options.
            if (isText || !argument.startsWith(QLatin1String("--")))
                m_words.append(argument);
            else if (argument == QLatin1String("--"))
                isText = true;
            else
                readOption(argument, i);
        }
    }

    void readOption(QString const& name, int& index) {
        if (name == QLatin1String("--help")) {
            value.help = true;
        } else if (name == QLatin1String("--verbose")) {
            value.verbose = true;
        } else if (name == QLatin1String("--host")) {
            readValue(name, index, value.host);
        } else if (name == QLatin1String("--key-file")) {
            readValue(name, index, value.keyFile);
        } else if (name == QLatin1String("--name")) {
            readValue(name, index, value.station);
        } else if (name == QLatin1String("--port")) {
            readNumber(name, index, kLargestPort, value.port);
        } else if (name == QLatin1String("--timeout")) {
            readNumber(name, index, 24 * 3600 * 1000, value.timeout);
        } else {
            complain(QStringLiteral("There is no option \"%1\".").arg(name));
        }
    }

    bool readValue(QString const& name, int& index, QString& into) {
        if (++index >= m_given.size() || m_given.at(index).isEmpty())
            return complain(QStringLiteral("%1 needs a value.").arg(name));
        into = m_given.at(index);
        return true;
    }

    void readNumber(QString const& name, int& index, int largest, int& into) {
        QString text;
        if (!readValue(name, index, text))
            return;
        bool isNumber = false;
        into = text.toInt(&isNumber);
        if (!isNumber || into < 1 || into > largest)
            complain(QStringLiteral("%1 needs a number from 1 to %2, not \"%3\".").arg(name).arg(largest).arg(text));
    }

    bool takeWord(QString const& what, QString& into) {
        if (m_words.isEmpty())
            return complain(what + QStringLiteral(" is missing."));
        into = m_words.takeFirst();
        return true;
    }

    bool takeNumber(QString const& what, int& into) {
        QString text;
        if (!takeWord(what, text))
            return false;
        bool isNumber = false;
        into = text.toInt(&isNumber);
        return isNumber || complain(QStringLiteral("%1 is a whole number, not \"%2\".").arg(what, text));
    }

    void readCommand() {
        if (!takeWord(QStringLiteral("The command"), value.command))
            return;
        if (value.command == QLatin1String("layers"))
            takeNumber(QStringLiteral("The document"), value.document) &&
                takeNumber(QStringLiteral("The layer"), value.layer);
        else if (value.command == QLatin1String("run"))
            takeNumber(QStringLiteral("The document"), value.document) && readRecords();
        else if (value.command == QLatin1String("test"))
            takeWord(QStringLiteral("The text"), value.text) && checkTest();
        else if (value.command == QLatin1String("raw"))
            takeWord(QStringLiteral("The frame"), value.text);
        else if (value.command == QLatin1String("station"))
            readStation();
        else if (value.command != QLatin1String("stop"))
            complain(QStringLiteral("There is no command \"%1\".").arg(value.command));
        if (!m_words.isEmpty())
            complain(QStringLiteral("\"%1\" is too much.").arg(m_words.first()));
    }

    bool checkTest() {
        return !value.text.contains(QLatin1Char(';')) ||
               complain(QStringLiteral("A semicolon would end the frame: \"%1\".").arg(value.text));
    }

    bool readRecords() {
        while (!m_words.isEmpty()) {
            QString const word = m_words.takeFirst();
            QStringList const fields = word.split(QLatin1Char(','));
            QVector<double> record;
            for (QString const& field : fields) {
                bool isNumber = false;
                record.append(field.toDouble(&isNumber));
                if (!isNumber || !std::isfinite(record.last()))
                    return complain(QStringLiteral("\"%1\" in \"%2\" is no number.").arg(field, word));
            }
            if (record.size() > kNumbers)
                return complain(QStringLiteral("\"%1\" has more than %2 numbers.").arg(word).arg(kNumbers));
            record.resize(kNumbers);
            value.records.append(record);
        }
        return true;
    }

    void readStation() {
        if (value.keyFile.isEmpty())
            complain(QStringLiteral("The key is missing: give its file by --key-file."));
        if (!takeWord(QStringLiteral("The station's order"), value.order))
            return;
        if (value.order == QLatin1String("start"))
            readStart();
        else if (value.order == QLatin1String("setcurdoc"))
            readNamed(QStringLiteral("SetCurDoc"));
        else if (value.order == QLatin1String("sync"))
            readSync();
        else if (value.order == QLatin1String("stop"))
            value.order = QStringLiteral("RunManualStop");
        else if (value.order == QLatin1String("command"))
            takeWord(QStringLiteral("The command's name"), value.order) && takeRest();
        else
            complain(QStringLiteral("A station has no order \"%1\".").arg(value.order));
    }

    /// The kind of the run and whether it repeats, both 0 when not given.
    void readStart() {
        value.order = QStringLiteral("RunManualStart");
        int type = 0;
        int option = 0;
        if (!m_words.isEmpty() && !takeNumber(QStringLiteral("The kind of the run"), type))
            return;
        if (!m_words.isEmpty() && !takeNumber(QStringLiteral("The option"), option))
            return;
        value.orderArguments = QStringList{QString::number(type), QString::number(option)};
    }

    void readNamed(QString const& order) {
        value.order = order;
        QString name;
        if (takeWord(QStringLiteral("The document"), name))
            value.orderArguments.append(name);
    }

    bool takeRest() {
        value.orderArguments = m_words;
        m_words.clear();
        return true;
    }

    void readSync() {
        value.order = QStringLiteral("SyncFile");
        while (!m_words.isEmpty()) {
            QString const word = m_words.takeFirst();
            int const equals = word.indexOf(QLatin1Char('='));
            if (equals < 1 || equals + 1 == word.size()) {
                complain(QStringLiteral("A document is NAME=SOURCE, not \"%1\".").arg(word));
                return;
            }
            QString const name = word.left(equals);
            QString source = word.mid(equals + 1);
            if (source.startsWith(QLatin1Char('@'))) {
                value.upload.append({name, source.mid(1)});
                source = QStringLiteral("upload:") + name;
            }
            value.orderArguments << source << name;
        }
    }

    QStringList const m_given;
    QStringList m_words;
    HostArguments value;
};

} // namespace

HostArguments parseHostArguments(QStringList const& arguments) {
    return Reader(arguments).read();
}

QString hostHelp() {
    return QStringLiteral(
        "Usage: tessera-host [OPTION]... COMMAND\n"
        "\n"
        "Orders of a plant host, over the text protocol:\n"
        "  layers DOC LAYER       print the values of a layer of an open document, both from 0\n"
        "  run DOC [RECORD]...    run a document and wait for its end; RECORD is DX,DY,ANGLE in mm and degrees\n"
        "  stop                   stop whatever runs\n"
        "  test TEXT              leave a text in the machine's debug output; there is no answer\n"
        "  raw FRAME              send a frame as it is and print what comes within a second\n"
        "\n"
        "Orders of a controlling station, over the command server:\n"
        "  station start [KIND [OPTION]]     run the active document: 0 laser, 1 red light, 2 border; OPTION 1 "
        "repeats\n"
        "  station stop                      stop whatever runs\n"
        "  station setcurdoc NAME            make an open document the active one\n"
        "  station sync [NAME=SOURCE]...     open these documents and no others; SOURCE is @FILE of this computer, or\n"
        "                                    a document of the machine; without any all are closed\n"
        "  station command NAME [ARG]...     any other command\n"
        "\n"
        "  --host ADDRESS     the machine, 127.0.0.1 if not given\n"
        "  --port NUMBER      5000 if not given, 7660 for a station\n"
        "  --timeout MS       wait at most so long for the answer; if not given 10000, and without end for a run\n"
        "  --key-file FILE    the key that station and machine share, in the first line of the file\n"
        "  --name NAME        the station's name in the machine's log, tessera-host if not given\n"
        "  --verbose          print what is sent and received\n"
        "  --help             print this text\n"
        "  --                 what follows is no option\n"
        "\n"
        "Exit code: 0 done, 1 the machine refused or failed, 2 wrong arguments, 3 no connection, 4 time-out.\n"
        "\n"
        "One host has the machine's text port at a time, and the newest takes it from the one before.\n");
}
