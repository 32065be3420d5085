// SPDX-License-Identifier: MIT
#pragma once

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

/// What tessera-host was asked for.
struct HostArguments {
    bool help = false;
    bool verbose = false; ///< what goes over the wire is printed too
    QString host = QStringLiteral("127.0.0.1");
    int port = 0;    ///< 0: the channel's own default
    int timeout = 0; ///< ms; 0: as long as a run takes, else 10 s

    // The text protocol
    QString command; ///< "layers", "run", "stop", "test", "raw", or "station"
    int document = 0;
    int layer = 0;
    QVector<QVector<double>> records; ///< of a run: dx, dy, angle and what follows, five numbers each
    QString text;                     ///< of "test" and "raw"

    // The command server
    QString order; ///< "start", "stop", "setcurdoc", "sync" or the name of any other command
    QString keyFile;
    QString station = QStringLiteral("tessera-host");
    QStringList orderArguments;              ///< as they go over the wire
    QVector<QPair<QString, QString>> upload; ///< name and local file of what goes before a "sync"

    QString error; ///< one sentence, empty when the arguments were understood
};

/// Reads the arguments without the program's name.
HostArguments parseHostArguments(QStringList const& arguments);

QString hostHelp();
