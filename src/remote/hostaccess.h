// SPDX-License-Identifier: MIT
#pragma once

#include <QHostAddress>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

namespace tessera {

/// Where the port for the plant host listens and who may connect to it: section [Host] of /ini/HostTcp.ini, key Bind
/// with one IPv4 address of this machine and key Allow with IPv4 addresses and subnets ("192.168.1.0/24") parted by
/// commas. Without the file, or with a key empty, every interface and any host. An entry that is not understood never
/// opens more than was asked for: a bad Bind leaves the loopback, a bad entry of Allow admits nobody.
class HostAccess {
public:
    /// What the file says now.
    static HostAccess FromFile();
    HostAccess() = default;
    HostAccess(QString const& bind, QString const& allow);

    QHostAddress Bind() const { return m_Bind; }
    bool Admits(QHostAddress const& host) const;
    /// One line for each entry that was not understood.
    QStringList const& Problems() const { return m_Problems; }

private:
    void ReadAllow(QString const& entry);

    QHostAddress m_Bind{QHostAddress::AnyIPv4};
    bool m_AnyHost = true;
    QVector<QPair<QHostAddress, int>> m_Allowed; ///< subnets, a single address has 32 bits
    QStringList m_Problems;
};

} // namespace tessera
