// SPDX-License-Identifier: MIT
#pragma once

#include "engine/ccscmd.h"
#include "engine/engineapi.h"

#include <QObject>
#include <memory>

/// The command server for a controlling station. Commands come as signals on the main thread; WriteTcpMsg may be called
/// from any thread.
class ENGINE_API CCSServer : public QObject {
    Q_OBJECT
public:
    /// Never null.
    static CCSServer* Instance();
    /// Sends one answer; `tag` is what came with the command. Nothing without a station.
    void WriteTcpMsg(CCSCmd cmd, int tag);
    /// Who sent the command that SendSignals tells of just now, for records: address and name of the station. Empty
    /// when no command is told. Main thread.
    QString CommandSender() const;

signals:
    /// A command has come in; `tag` goes back unchanged with its answer.
    void SendSignals(CCSCmd cmd, int tag);

private:
    CCSServer();
    ~CCSServer() override;
    friend struct CCSServerAccess;
    struct Private;
    std::unique_ptr<Private> d;
};

/// Start and stop of the command server. InitServer() is false when it could not listen; CloseServer() may be called
/// without it. Main thread.
ENGINE_API bool InitServer();
ENGINE_API void CloseServer();
