// SPDX-License-Identifier: MIT
#include "remote/hostaccess.h"

#include "engine/profinifile.h"

#include <QRegularExpression>
#include <algorithm>

namespace tessera {

namespace {

constexpr char kSection[] = "Host";
constexpr int kAddressBits = 32;

/// Four decimal numbers; the short forms that the operating system also takes ("10.1") are mistyped more often than
/// meant.
bool readAddress(QString const& text, QHostAddress& address) {
    static const QRegularExpression form(QStringLiteral("\\A\\d{1,3}(\\.\\d{1,3}){3}\\z"));
    return form.match(text).hasMatch() && address.setAddress(text);
}

bool readSubnet(QString const& text, QPair<QHostAddress, int>& subnet) {
    int const slash = text.indexOf(QLatin1Char('/'));
    if (!readAddress(slash < 0 ? text : text.left(slash), subnet.first))
        return false;
    bool isNumber = true;
    subnet.second = slash < 0 ? kAddressBits : text.mid(slash + 1).toInt(&isNumber);
    return isNumber && subnet.second >= 0 && subnet.second <= kAddressBits;
}

} // namespace

HostAccess HostAccess::FromFile() {
    ProfIniFile const file(QStringLiteral("ini/HostTcp.ini"));
    return {file.Read(QLatin1String(kSection), QStringLiteral("Bind"), QString()),
            file.Read(QLatin1String(kSection), QStringLiteral("Allow"), QString())};
}

HostAccess::HostAccess(QString const& bind, QString const& allow) {
    QString const wanted = bind.trimmed();
    if (!wanted.isEmpty() && !readAddress(wanted, m_Bind)) {
        m_Bind = QHostAddress(QHostAddress::LocalHost);
        m_Problems.append(
            QStringLiteral("HostTcp.ini: Bind: \"%1\" is no IPv4 address, only this machine itself can connect")
                .arg(wanted));
    }
    if (allow.trimmed().isEmpty())
        return;
    m_AnyHost = false;
    for (QString const& entry : allow.split(QLatin1Char(',')))
        ReadAllow(entry.trimmed());
}

void HostAccess::ReadAllow(QString const& entry) {
    QPair<QHostAddress, int> subnet;
    if (readSubnet(entry, subnet))
        m_Allowed.append(subnet);
    else
        m_Problems.append(
            QStringLiteral("HostTcp.ini: Allow: \"%1\" is no IPv4 address or subnet and admits nobody").arg(entry));
}

bool HostAccess::Admits(QHostAddress const& host) const {
    return m_AnyHost ||
           std::any_of(m_Allowed.begin(), m_Allowed.end(),
                       [&host](QPair<QHostAddress, int> const& subnet) { return host.isInSubnet(subnet); });
}

} // namespace tessera
