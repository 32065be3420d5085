// SPDX-License-Identifier: MIT
#pragma once

#include "hostarguments.h"
#include "lineclient.h"

/// Orders of a plant host over the text protocol (docs/protocols.md).
class TextPort {
public:
    explicit TextPort(LineClient& client)
        : m_client(client) {}

    /// Connects and carries the order out. The text is what is to be printed: values or the machine's answer.
    HostResult run(HostArguments const& arguments);

    /// The frame of an order, with its semicolon.
    static QByteArray frame(HostArguments const& arguments);
    /// What a machine's GBK bytes say.
    static QString text(QByteArray const& gbk);

private:
    HostResult answer(QByteArray const& prefix);
    HostResult whatComes();

    LineClient& m_client;
};
