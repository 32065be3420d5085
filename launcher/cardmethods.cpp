// SPDX-License-Identifier: MIT
#include "cardmethods.h"

#include "machinecontrol.h"
#include "simengine/simcontrol.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonDocument>

namespace tessera {

namespace {

/// Size at which an answer takes up no further call: well below what a client may leave unread, so that it can ask on
/// before it has read. The rest comes with the next question.
constexpr int kJournalPage = 1024 * 1024;
/// No call is shorter in an answer.
constexpr int kShortestCall = 40;

constexpr char const* kStatusNames[] = {"run", "pause", "stop"};
constexpr char const* kTypeNames[] = {"laser", "red", "border"};
constexpr char const* kActivityNames[] = {"idle", "running", "paused", "waiting"};

template<int Count>
QJsonValue nameOf(char const* const (&names)[Count], int index) {
    return index >= 0 && index < Count ? QJsonValue(QLatin1String(names[index])) : QJsonValue(index);
}

/// The values of head.set and of its answer.
struct HeadValue {
    char const* name;
    double sim::SimHeadDistortion::*value;
};
constexpr HeadValue kHeadValues[] = {
    {"scaleX", &sim::SimHeadDistortion::scaleX},
    {"scaleY", &sim::SimHeadDistortion::scaleY},
    {"rotation", &sim::SimHeadDistortion::rotation},
    {"barrel", &sim::SimHeadDistortion::barrel},
    {"trapezoidX", &sim::SimHeadDistortion::trapezoidX},
    {"trapezoidY", &sim::SimHeadDistortion::trapezoidY},
    {"noise", &sim::SimHeadDistortion::noise},
    {"seed", &sim::SimHeadDistortion::seed},
    {"offsetX", &sim::SimHeadDistortion::offsetX},
    {"offsetY", &sim::SimHeadDistortion::offsetY},
    {"skew", &sim::SimHeadDistortion::skew},
    {"pilotScaleX", &sim::SimHeadDistortion::pilotScaleX},
    {"pilotScaleY", &sim::SimHeadDistortion::pilotScaleY},
    {"pilotOffsetX", &sim::SimHeadDistortion::pilotOffsetX},
    {"pilotOffsetY", &sim::SimHeadDistortion::pilotOffsetY},
};

/// head.set takes every value of the head and nothing else.
RpcParameters headParameters() {
    RpcParameters parameters{};
    std::size_t i = 0;
    for (HeadValue const& entry : kHeadValues)
        parameters[i++] = {entry.name, RpcType::Number, false};
    return parameters;
}
static_assert(std::size(kHeadValues) <= std::size_t(kMaxRpcParameters), "a parameter for each value");

/// How what was not done is answered: the same for all methods of the head.
RpcReply refusal(sim::SimOutcome outcome, std::string const& error) {
    int const code = outcome == sim::SimOutcome::BadValue    ? RpcInvalidParams
                     : outcome == sim::SimOutcome::FileError ? RpcFileError
                                                             : RpcMachineRefused;
    return RpcReply::failure(code, QString::fromStdString(error));
}

QString fileParam(QJsonObject const& params) {
    return QFileInfo(params.value(QLatin1String("file")).toString()).absoluteFilePath();
}

RpcReply fileReply(QString const& file, std::string const& error) {
    if (!error.empty())
        return RpcReply::failure(RpcFileError, QString::fromStdString(error));
    return RpcReply::value(QJsonObject{{QStringLiteral("file"), file}});
}

QJsonValue toJson(sim::SimValue const& value) {
    if (auto const* whole = std::get_if<std::int64_t>(&value))
        return double(*whole);
    if (auto const* real = std::get_if<double>(&value))
        return *real;
    return QString::fromStdString(std::get<std::string>(value));
}

QJsonObject toJson(sim::SimCall const& call) {
    QJsonArray arguments;
    for (sim::SimValue const& value : call.args)
        arguments.append(toJson(value));
    return {{QStringLiteral("seq"), double(call.sequence)},
            {QStringLiteral("ms"), call.ms},
            {QStringLiteral("name"), QString::fromStdString(call.name)},
            {QStringLiteral("args"), arguments}};
}

QJsonObject toJson(sim::SimHeadDistortion const& distortion) {
    QJsonObject values;
    for (HeadValue const& entry : kHeadValues)
        values.insert(QLatin1String(entry.name), distortion.*entry.value);
    return values;
}

} // namespace

bool CardMethods::call(QString const& method, QJsonValue const& params, RpcReply& reply) {
    if (m_machine.isSimulated())
        return RpcMethodTable::call(method, params, reply);
    if (!methodNames().contains(method))
        return false;
    reply = RpcReply::failure(RpcNoSimulator, QStringLiteral("the engine is not a simulated machine"));
    return true;
}

std::array<CardMethods::Row, 14> const& CardMethods::methods() {
    static constexpr RpcParameter kFile{"file", RpcType::Text, true};
    static std::array<Row, 14> const rows{{
        {"card.state", {}, &CardMethods::state},
        {"card.setInput", {{{"bit", RpcType::Index, true}, {"value", RpcType::Level, true}}}, &CardMethods::setInput},
        {"card.setInputs", {{{"word", RpcType::Word, true}}}, &CardMethods::setInputs},
        {"card.journal", {{{"since", RpcType::Count, false}}}, &CardMethods::journal},
        {"card.clearJournal", {}, &CardMethods::clearJournal},
        {"card.trace", {{kFile, {"commanded", RpcType::Switch, false}}}, &CardMethods::trace},
        {"card.fault", {{{"name", RpcType::Text, true}, {"on", RpcType::Switch, true}}}, &CardMethods::fault},
        {"card.faults", {}, &CardMethods::faults},
        {"card.runTimes",
         {{{"document", RpcType::Text, false}, {"limit", RpcType::Count, false}}},
         &CardMethods::runTimes},
        {"card.device", {{{"name", RpcType::Text, false}, {"value", RpcType::Number, false}}}, &CardMethods::device},
        {"card.flash",
         {{kFile, {"address", RpcType::Word, false}, {"size", RpcType::Word, false}}},
         &CardMethods::flash},
        {"head.set", headParameters(), &CardMethods::setHead},
        {"head.get", {}, &CardMethods::getHead},
        {"head.measure", {{kFile}}, &CardMethods::measureHead},
    }};
    return rows;
}

RpcReply CardMethods::state(QJsonObject const&) {
    sim::SimCardState const state = m_machine.sim()->state();
    return RpcReply::value(QJsonObject{{QStringLiteral("open"), state.open},
                                       {QStringLiteral("activity"), nameOf(kActivityNames, int(state.activity))},
                                       {QStringLiteral("status"), nameOf(kStatusNames, state.status)},
                                       {QStringLiteral("type"), nameOf(kTypeNames, state.type)},
                                       {QStringLiteral("waitCode"), state.waitCode},
                                       {QStringLiteral("inputs"), double(state.inputs)},
                                       {QStringLiteral("outputs"), double(state.outputs)},
                                       {QStringLiteral("errorOutput"), state.errorOutput},
                                       {QStringLiteral("waveNumber"), state.waveNumber},
                                       {QStringLiteral("encoder"), state.encoder},
                                       {QStringLiteral("x"), state.x},
                                       {QStringLiteral("y"), state.y},
                                       {QStringLiteral("spotX"), state.spotX},
                                       {QStringLiteral("spotY"), state.spotY},
                                       {QStringLiteral("laser"), state.laser},
                                       {QStringLiteral("pen"), state.pen},
                                       {QStringLiteral("runTime"), state.runTimeMs},
                                       {QStringLiteral("jobs"), double(state.jobs)},
                                       {QStringLiteral("speed"), state.speed},
                                       {QStringLiteral("markInfo"), double(state.markInfo)},
                                       {QStringLiteral("scanState"), double(state.scanState)},
                                       {QStringLiteral("alarms"), double(state.alarmWord)}});
}

RpcReply CardMethods::setInput(QJsonObject const& params) {
    int const bit = params.value(QLatin1String("bit")).toInt();
    if (!m_machine.sim()->setInput(bit, params.value(QLatin1String("value")).toBool()))
        return RpcReply::failure(RpcInvalidParams, QStringLiteral("\"bit\" is 0 to 31, not %1").arg(bit));
    return RpcReply::value(double(m_machine.sim()->state().inputs));
}

RpcReply CardMethods::setInputs(QJsonObject const& params) {
    m_machine.sim()->setInputs(std::uint32_t(params.value(QLatin1String("word")).toDouble()));
    return RpcReply::value(double(m_machine.sim()->state().inputs));
}

RpcReply CardMethods::journal(QJsonObject const& params) {
    double const since = params.value(QLatin1String("since")).toDouble();
    QJsonArray calls;
    int size = 0;
    for (sim::SimCall const& call : m_machine.sim()->journal(std::uint64_t(since), kJournalPage / kShortestCall)) {
        QJsonObject const entry = toJson(call);
        size += QJsonDocument(entry).toJson(QJsonDocument::Compact).size() + 1;
        if (size > kJournalPage && !calls.isEmpty())
            break;
        calls.append(entry);
    }
    return RpcReply::value(calls);
}

RpcReply CardMethods::clearJournal(QJsonObject const&) {
    m_machine.sim()->clearJournal();
    return RpcReply::value(true);
}

RpcReply CardMethods::trace(QJsonObject const& params) {
    QString const file = fileParam(params);
    std::string error;
    m_machine.sim()->writeTrace(file.toStdString(), error, params.value(QLatin1String("commanded")).toBool());
    return fileReply(file, error);
}

RpcReply CardMethods::fault(QJsonObject const& params) {
    QString const name = params.value(QLatin1String("name")).toString();
    if (m_machine.sim()->setFault(name.toStdString(), params.value(QLatin1String("on")).toBool()))
        return RpcReply::value(true);
    QJsonArray names;
    for (std::string const& known : m_machine.sim()->faultNames())
        names.append(QString::fromStdString(known));
    return RpcReply::failure(RpcInvalidParams, QStringLiteral("no fault \"%1\"").arg(name),
                             QJsonObject{{QStringLiteral("candidates"), names}});
}

RpcReply CardMethods::faults(QJsonObject const&) {
    QJsonObject states;
    for (std::string const& name : m_machine.sim()->faultNames())
        states.insert(QString::fromStdString(name), m_machine.sim()->faultIsOn(name));
    return RpcReply::value(states);
}

RpcReply CardMethods::runTimes(QJsonObject const& params) {
    constexpr int kUsual = 20;
    std::string const document = params.value(QLatin1String("document")).toString().toStdString();
    auto const limit = std::size_t(params.value(QLatin1String("limit")).toInt(kUsual));
    QJsonArray runs;
    for (sim::SimRunTime const& run : m_machine.sim()->runTimes(document, limit)) {
        QJsonObject object{
            {QStringLiteral("document"), QString::fromStdString(run.document)},
            {QStringLiteral("when"), QDateTime::fromMSecsSinceEpoch(run.whenMs, Qt::UTC).toString(Qt::ISODateWithMs)},
            {QStringLiteral("actual"), run.actualMs},
            {QStringLiteral("wall"), run.wallMs},
            {QStringLiteral("whole"), run.whole},
            {QStringLiteral("selectedOnly"), run.selectedOnly}};
        if (run.estimateMs >= 0.0)
            object.insert(QStringLiteral("estimate"), run.estimateMs);
        runs.append(object);
    }
    return RpcReply::value(runs);
}

RpcReply CardMethods::setHead(QJsonObject const& params) {
    sim::SimHeadDistortion distortion;
    std::string error;
    if (!m_machine.sim()->head(distortion, error))
        return refusal(sim::SimOutcome::NotThere, error);
    for (HeadValue const& entry : kHeadValues) {
        QJsonValue const value = params.value(QLatin1String(entry.name));
        if (!value.isUndefined())
            distortion.*entry.value = value.toDouble();
    }
    sim::SimOutcome const outcome = m_machine.sim()->setHead(distortion, error);
    return outcome == sim::SimOutcome::Done ? RpcReply::value(toJson(distortion)) : refusal(outcome, error);
}

RpcReply CardMethods::getHead(QJsonObject const&) {
    sim::SimHeadDistortion distortion;
    std::string error;
    if (!m_machine.sim()->head(distortion, error))
        return refusal(sim::SimOutcome::NotThere, error);
    QJsonObject values = toJson(distortion);
    values.insert(QStringLiteral("gridCorrection"), m_machine.sim()->state().gridCorrection);
    return RpcReply::value(values);
}

/// All devices, or the one named; with a value that one is set first.
RpcReply CardMethods::device(QJsonObject const& params) {
    QString const name = params.value(QLatin1String("name")).toString();
    if (params.contains(QLatin1String("value"))) {
        std::string error;
        sim::SimOutcome const outcome =
            m_machine.sim()->setDevice(name.toStdString(), params.value(QLatin1String("value")).toDouble(), error);
        if (outcome != sim::SimOutcome::Done)
            return refusal(outcome, error);
    }
    QJsonObject values;
    for (sim::SimDevice const& device : m_machine.sim()->devices()) {
        if (name.isEmpty() || name == QString::fromStdString(device.name))
            values.insert(QString::fromStdString(device.name), device.value);
    }
    if (values.isEmpty())
        return RpcReply::failure(RpcMachineRefused, QStringLiteral("the machine has no \"%1\"").arg(name));
    return RpcReply::value(values);
}

RpcReply CardMethods::flash(QJsonObject const& params) {
    if (params.contains(QLatin1String("address")) && !params.contains(QLatin1String("size")))
        return RpcReply::failure(RpcInvalidParams, QStringLiteral("\"address\" needs a \"size\""));
    QString const file = fileParam(params);
    auto const word = [&params](char const* key) {
        return static_cast<std::uint32_t>(params.value(QLatin1String(key)).toDouble());
    };
    std::string error;
    sim::SimOutcome const outcome =
        m_machine.sim()->writeFlash(file.toStdString(), word("address"), word("size"), error);
    return outcome == sim::SimOutcome::Done ? fileReply(file, {}) : refusal(outcome, error);
}

RpcReply CardMethods::measureHead(QJsonObject const& params) {
    QString const file = fileParam(params);
    std::string error;
    sim::SimOutcome const outcome = m_machine.sim()->measureHead(file.toStdString(), error);
    return outcome == sim::SimOutcome::Done ? fileReply(file, {}) : refusal(outcome, error);
}

} // namespace tessera
