// SPDX-License-Identifier: MIT
#pragma once

#include "hostarguments.h"
#include "lineclient.h"

#include <QJsonObject>

/// Orders of a controlling station over the command server (docs/protocols.md).
class StationLink {
public:
    explicit StationLink(LineClient& client)
        : m_client(client) {}

    /// Connects, proves the key and has the server prove it, puts the documents that go with the order and carries it
    /// out. The text is the machine's answer.
    HostResult run(HostArguments const& arguments);

    /// The key of a file: its first line without blanks at the end; empty when there is none of at least 32 bytes.
    static QByteArray readKey(QString const& file);
    /// What proves the key.
    static QByteArray proof(QByteArray const& key, QByteArray const& serverNonce, QByteArray const& ownNonce,
                            QString const& station);
    static QByteArray serverProof(QByteArray const& key, QByteArray const& serverNonce, QByteArray const& ownNonce);

private:
    HostResult prove(QByteArray const& key, QString const& station);
    HostResult put(QString const& name, QString const& file);
    HostResult order(HostArguments const& arguments);
    HostResult send(QJsonObject const& message);
    /// The next message of this type; a refusal or a fault of the server is a result that is not done.
    HostResult receive(QString const& type, QJsonObject& message);

    LineClient& m_client;
};
