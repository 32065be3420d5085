// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonValue>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

/// What tessera-ctl was asked for.
struct CtlArguments {
    bool help = false;
    QString socket;
    QString method;
    /// Object or array; undefined without parameters.
    QJsonValue params = QJsonValue(QJsonValue::Undefined);
    /// Members that the result must have before the program ends; empty: ask once.
    QVector<QPair<QString, QJsonValue>> until;
    int timeout = 10000; ///< ms, for the connection, each answer and all repeats of --until together
    bool indented = false;
    QString error; ///< one sentence, empty when the arguments were understood
};

/// Reads the arguments without the program's name. `defaultSocket` counts when none is given.
CtlArguments parseCtlArguments(QStringList const& arguments, QString const& defaultSocket);

/// The value of a "key=value" argument: JSON when it is such, a text otherwise.
QJsonValue ctlValue(QString const& text);

QString ctlHelp();
