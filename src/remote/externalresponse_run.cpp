// SPDX-License-Identifier: MIT
#include "remote/externalresponse.h"

#include "engine/imarkcardbase.h"
#include "engine/layerparamex.h"
#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "engine/rundatagather.h"
#include "multidoc/multidocmark.h"
#include "remote/laserfrequency.h"
#include "remote/stationanswer.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"

#include <QStringList>

namespace {

/// Arguments of a command to run.
enum RunArgument { RunMarkType, RunOption, RunArgumentCount };

/// Power, frequency, pulse width and speed of a pen, as controlling stations read them.
QStringList penReport(LayerData const& pen, MarkCardType type) {
    const double frequency = tessera::FrequencyInHertz(pen, type);
    const double pulse = 1.0 / frequency * 1e6 * pen.PWM / 100.0;
    return {QString::number(pen.Power, 'f', 3), QString::number(frequency, 'g', 6), QString::number(pulse, 'f', 3),
            QString::number(pen.MarkSpeed, 'f', 3)};
}

} // namespace

/// The checks of a command to run, in their order; empty when it may run.
QString ExternalResponse::CheckStart(CCSCmd const& cmd) const {
    if (cmd.Args.size() < RunArgumentCount)
        return QStringLiteral("数据格式错误");
    MainWindow* window = MainWindow::Instance();
    if (!window || !window->CheckAlarmStatus())
        return QStringLiteral("安全报警");
    if (IsBusy())
        return QStringLiteral("文档正在运行中");
    QRulerView* view = window->GetCurDoc();
    if (!view)
        return QStringLiteral("无打开的文档");
    return view->GetMarkTools()->GetMarkTools().isEmpty() ? QStringLiteral("流程为空") : QString();
}

/// What a run that was started says is its own answer.
void ExternalResponse::OnRunManualStart(CCSCmd cmd, int tag) {
    const QString refusal = CheckStart(cmd);
    if (!refusal.isEmpty()) {
        tessera::AnswerStation(m_Log, tessera::StationSender(), std::move(cmd), tag, false, refusal);
        return;
    }
    m_Thread.m_bOption = cmd.Args[RunOption].toInt() == 1;
    m_Thread.m_nMarkType = cmd.Args[RunMarkType].toInt();
    m_Thread.m_bNotify = true;
    m_Thread.m_Cmd = std::move(cmd);
    m_Thread.m_nTag = tag;
    m_Thread.m_Sender = tessera::StationSender();
    m_Thread.RunTrigger();
}

void ExternalResponse::VZMarkStop() {
    ++m_nStops;
    IMarkCardBase* card = MarkCardInstance::Instance();
    card->SetMarkStaus(MarkStatusStop);
    card->StopMark();
    if (Form_Marking* dialog = Form_Marking::Instance())
        dialog->StopMark();
    if (MultiDocMark* project = MultiDocMark::Instance())
        project->StopMark();
    m_Thread.StopTrigger();
}

void ExternalResponse::StopRun() {
    ++m_nStops;
    m_Thread.OrderStop();
}

void ExternalResponse::StopRunAndWait() {
    m_Thread.OrderStop();
    m_Thread.Wait();
}

void ExternalResponse::OpenOrders() {
    m_Calls.Open();
}

void ExternalResponse::CloseOrders() {
    m_Calls.Close();
    StopRunAndWait();
    m_Log.Close();
}

/// Checks and starts on the main thread, where every order starts: none comes between the checks and the start, and no
/// document goes while it is made ready. Empty when the run has begun.
QString ExternalResponse::StartOffsetRun(Activate const& activate, QString const& unknown,
                                         QVector<CCDBufdata> const& offsets) {
    MainWindow* window = MainWindow::Instance();
    if (!window || !window->CheckAlarmStatus())
        return QStringLiteral("安全报警");
    if (IsBusy())
        return QStringLiteral("文档正在运行中");
    if (!activate(*window))
        return unknown;
    QRulerView* view = window->GetCurDoc();
    if (view && !offsets.isEmpty()) {
        MarkShapeContainer* tools = view->GetMarkTools();
        tools->ClearCCDBuf();
        for (CCDBufdata const& offset : offsets)
            tools->AddCCDBuf(offset);
    }
    m_Thread.m_bOption = false;
    m_Thread.m_nMarkType = MarkTypeLaser;
    m_Thread.m_bNotify = false;
    m_Thread.RunTrigger();
    return QString();
}

/// The run is told apart from one that may begin before this thread looks at the result.
bool ExternalResponse::RunWithOffsets(Activate const& activate, QString const& unknown,
                                      QVector<CCDBufdata> const& offsets, QString& message,
                                      std::optional<unsigned int> stops) {
    std::shared_ptr<tessera::RemoteRun> run;
    // So it stays when the program ends before anybody on the main thread looks at the order, and after a stop.
    message = QStringLiteral("文档执行失败");
    const bool handled = m_Calls.Run([&] {
        if (stops && *stops != m_nStops)
            return;
        message = StartOffsetRun(activate, unknown, offsets);
        if (message.isEmpty())
            run = m_Thread.Run();
    });
    if (!handled || !run)
        return false;
    const bool ok = run->Wait();
    message = ok ? QStringLiteral("文档执行成功") : QStringLiteral("文档执行失败");
    return ok;
}

void ExternalResponse::RunWithOffsets(Activate const& activate, QString const& unknown,
                                      QVector<CCDBufdata> const& offsets) {
    QString refusal = QStringLiteral("文档执行失败");
    m_Calls.Run([&] { refusal = StartOffsetRun(activate, unknown, offsets); });
    if (!refusal.isEmpty())
        emit MarkFinish(false, refusal);
}

bool ExternalResponse::VZSetOffset(int doc, QVector<CCDBufdata> offsets, QString& message) {
    return RunWithOffsets([doc](MainWindow& window) { return window.SetCurDoc(doc); }, QStringLiteral("文档号超出范围"),
                          offsets, message);
}

bool ExternalResponse::VZSetOffset(int doc, QVector<CCDBufdata> offsets, QString& message, unsigned int stops) {
    return RunWithOffsets([doc](MainWindow& window) { return window.SetCurDoc(doc); }, QStringLiteral("文档号超出范围"),
                          offsets, message, stops);
}

bool ExternalResponse::VZSetOffset(QString name, QVector<CCDBufdata> offsets, QString& message) {
    return RunWithOffsets([name](MainWindow& window) { return window.SetCurDoc(name); }, QStringLiteral("该文档不存在"),
                          offsets, message);
}

void ExternalResponse::VZSetOffset(int doc, QVector<CCDBufdata> offsets) {
    RunWithOffsets([doc](MainWindow& window) { return window.SetCurDoc(doc); }, QStringLiteral("文档号超出范围"),
                   offsets);
}

void ExternalResponse::VZSetOffset(QString name, QVector<CCDBufdata> offsets) {
    RunWithOffsets([name](MainWindow& window) { return window.SetCurDoc(name); }, QStringLiteral("该文档不存在"),
                   offsets);
}

bool ExternalResponse::VZGetLayerParas(int doc, int layer, LayerData& out) {
    bool found = false;
    m_Calls.Run([&] {
        MainWindow const* window = MainWindow::Instance();
        if (!window || doc < 0 || layer < 0 || layer >= kLayerCount)
            return;
        const QVector<QRulerView*> docs = window->GetDocs();
        if (doc >= docs.size())
            return;
        LayerParamEx const* layers = docs.at(doc)->GetLayerParams();
        out = layers->GetLayerData().at(layer);
        found = true;
    });
    return found;
}

bool ExternalResponse::VZGetSendRunData(QString& out) {
    MainWindow* window = MainWindow::Instance();
    if (!window || !window->GetCurDoc()) {
        out = QStringLiteral("当前文档为空");
        return false;
    }
    RunDataGather const* data = RunDataGather::Instance();
    out += data->GetRunResult() ? QStringLiteral("0,") : QStringLiteral("1,");
    const QVector<LayerData> layers = data->GetLayerList();
    if (layers.isEmpty())
        return true;
    QStringList report = penReport(layers.last(), MarkingMParam_VZ::Instance()->GetMarkCardType());
    report.append(QString::number(data->GetRunTime()));
    out += report.join(QLatin1Char(','));
    return true;
}
