// SPDX-License-Identifier: MIT
#include "remote/externalresponse.h"

#include "engine/ccsserver.h"
#include "engine/iooutputset.h"
#include "engine/markcardinstance.h"
#include "engine/systemparam.h"
#include "remote/stationanswer.h"
#include "shell/mainwindow.h"

namespace {

/// Work mode in which a controlling station commands this one.
constexpr int kWorkModeRemote = 3;

} // namespace

/// A word that the name of a command contains, and what is done with the command.
struct ExternalResponse::Command {
    char const* word;
    void (*handle)(ExternalResponse& response, CCSCmd const& cmd, int tag);
};

/// In the order in which a name is compared with them.
ExternalResponse::Command const ExternalResponse::kCommands[7] = {
    {"RunManualStart",
     [](ExternalResponse& response, CCSCmd const& cmd, int tag) { emit response.RunManualStart(cmd, tag); }},
    {"RunManualStop", [](ExternalResponse& response, CCSCmd const& cmd, int tag) { response.AnswerStop(cmd, tag); }},
    {"SetCurDoc", [](ExternalResponse& response, CCSCmd const& cmd,
                     int tag) { response.AnswerOperation(&ExternalResponse::SetCurDoc, cmd, tag); }},
    {"SyncFile", [](ExternalResponse& response, CCSCmd const& cmd,
                    int tag) { response.AnswerOperation(&ExternalResponse::SyncFile, cmd, tag); }},
    // The missing "a" is part of the command's name.
    {"StandrdBoxCalib",
     [](ExternalResponse& response, CCSCmd const& cmd, int tag) {
         response.LogUnanswered(cmd);
         emit response.StandardBoxCalib(cmd, tag);
     }},
    {"ManualBoxCalib",
     [](ExternalResponse& response, CCSCmd const& cmd, int tag) {
         response.LogUnanswered(cmd);
         emit response.ManualBoxCalib(cmd, tag);
     }},
    {"ManualHighBoxCalib",
     [](ExternalResponse& response, CCSCmd const& cmd, int tag) {
         response.LogUnanswered(cmd);
         emit response.ManualHighBoxCalib(cmd, tag);
     }},
};

ExternalResponse* ExternalResponse::m_pInstance = nullptr;

ExternalResponse* ExternalResponse::Instance() {
    static const std::unique_ptr<ExternalResponse> instance = [] {
        std::unique_ptr<ExternalResponse> made(new ExternalResponse);
        m_pInstance = made.get();
        return made;
    }();
    return m_pInstance;
}

ExternalResponse::ExternalResponse() {
    connect(&m_Thread, &ExternalMarkingThread::EnableMarkAction, this, &ExternalResponse::OnEnableMarkAction);
    connect(&m_Thread, &ExternalMarkingThread::MarkFinish, this, &ExternalResponse::OnMarkFinish);
    connect(&m_Thread, &ExternalMarkingThread::MarkStart, this, &ExternalResponse::OnMarkStart);
    SystemParam const* system = SystemParam::Instance();
    if (!system->GetSysMode() && system->GetWorkMode() == kWorkModeRemote)
        connect(CCSServer::Instance(), &CCSServer::SendSignals, this, &ExternalResponse::OnSignalsHandle);
    connect(this, &ExternalResponse::RunManualStart, this, &ExternalResponse::OnRunManualStart);
}

ExternalResponse::~ExternalResponse() = default;

void ExternalResponse::OnSignalsHandle(CCSCmd cmd, int tag) {
    for (Command const& command : kCommands) {
        if (cmd.Name.indexOf(QLatin1String(command.word)) >= 0) {
            command.handle(*this, cmd, tag);
            return;
        }
    }
    LogUnanswered(cmd);
}

void ExternalResponse::LogUnanswered(CCSCmd const& cmd) {
    m_Log.Add(tessera::StationSender(), tessera::StationOrder(cmd), QString());
}

void ExternalResponse::AnswerStop(CCSCmd const& cmd, int tag) {
    VZMarkStop();
    tessera::AnswerStation(m_Log, tessera::StationSender(), cmd, tag, true, QStringLiteral("终止运行成功"));
}

/// The window shows its busy state meanwhile, and after it what a local run needs that goes on.
void ExternalResponse::AnswerOperation(Operation operation, CCSCmd const& cmd, int tag) {
    MainWindow* window = MainWindow::Instance();
    if (window)
        window->SetMarkStatus(true);
    QString message;
    const bool ok = (this->*operation)(cmd.Args, message);
    tessera::AnswerStation(m_Log, tessera::StationSender(), cmd, tag, ok, message);
    if (window)
        window->SetMarkStatus(window->IsLocalRunOn());
}

/// A run that is ordered and has not set the card to run yet counts too, so that of two orders at the same moment one
/// runs and the other is told.
bool ExternalResponse::IsBusy() const {
    return MarkCardInstance::Instance()->GetMarkStatus() != MarkStatusStop || m_Thread.IsActive();
}

bool ExternalResponse::SetCurDoc(std::vector<QString> args, QString& message) {
    if (IsBusy()) {
        message = QStringLiteral("文档正在运行中");
        return false;
    }
    if (args.empty() || args.front().isEmpty()) {
        message = QStringLiteral("接收消息列表为空");
        return false;
    }
    MainWindow* window = MainWindow::Instance();
    const bool ok = window && window->SetCurDoc(args.front());
    message = ok ? QStringLiteral("文档切换成功") : QStringLiteral("切换文档失败");
    return ok;
}

/// Documents that were opened before one failed stay open; the rest is not tried.
bool ExternalResponse::SyncFile(std::vector<QString> args, QString& message) {
    if (IsBusy()) {
        message = QStringLiteral("文档正在运行中");
        return false;
    }
    if (args.size() % 2 != 0) {
        message = QStringLiteral("接收消息列表个数错误,个数为") + QString::number(args.size());
        return false;
    }
    MainWindow* window = MainWindow::Instance();
    if (window)
        window->CloseAllFile();
    if (args.empty())
        return true;
    for (std::size_t i = 0; i < args.size(); i += 2) {
        if (!window || !window->SyncFileData(args[i], args[i + 1])) {
            message = args[i + 1] + QStringLiteral("文档同步失败");
            return false;
        }
    }
    message = QStringLiteral("文档同步成功");
    return true;
}

void ExternalResponse::OnEnableMarkAction(bool enable) {
    emit EnableMarkAction(enable);
}

void ExternalResponse::OnMarkStart() {
    emit EnableMarkAction(false);
    MainWindow* window = MainWindow::Instance();
    if (!window)
        return;
    window->SetRedVie(false);
    IOOutputSet::Instance()->SetGreen(MarkCardInstance::Instance());
    window->SetMarkStatus(true);
}

void ExternalResponse::OnMarkFinish() {
    emit EnableMarkAction(true);
    MainWindow* window = MainWindow::Instance();
    if (!window)
        return;
    IOOutputSet::Instance()->SetYellow(MarkCardInstance::Instance());
    window->SetMarkStatus(window->IsLocalRunOn());
}

QString ExternalResponse::FormatHHMMSS3(long long milliseconds) {
    const bool negative = milliseconds < 0;
    // Unsigned, because the most negative value has no positive counterpart.
    const unsigned long long ms =
        negative ? 0ULL - static_cast<unsigned long long>(milliseconds) : static_cast<unsigned long long>(milliseconds);
    const QLatin1Char zero('0');
    const QString text = QStringLiteral("%1:%2:%3.%4")
                             .arg(ms / 3600000ULL, 2, 10, zero)
                             .arg(ms / 60000ULL % 60ULL, 2, 10, zero)
                             .arg(ms / 1000ULL % 60ULL, 2, 10, zero)
                             .arg(ms % 1000ULL, 3, 10, zero);
    return negative ? QLatin1Char('-') + text : text;
}
