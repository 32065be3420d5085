// SPDX-License-Identifier: MIT
#pragma once

#include "shell/safetycheck.h"
#include "tests/shell/edgemodel.h"

#include <QMap>
#include <QString>
#include <optional>

namespace tests {

/// What an input does when it becomes active: S the job is stopped, P it is paused, + the alarm is noted.
struct SafetyModelRow {
    char const* name;
    unsigned int bit;
    char const* stopping; ///< doors end a job
    char const* pausing;  ///< doors hold a job
    char const* withoutJob;
};

constexpr SafetyModelRow kSafetyModel[] = {
    {"机台就绪", 1, "+S", "+S", "+"},      {"机台安全门1", 2, "S+", "P+", "+"},  {"机台安全门2", 4, "S+", "P+", "+"},
    {"机台安全门3", 8, "S+", "P+", "+"},   {"机台安全门4", 16, "S+", "P+", "+"}, {"机台安全门5", 32, "S+", "P+", "+"},
    {"安全光栅", 64, "S+", "P+", "+"},     {"急停按钮", 128, "S+", "S+", "S+"},  {"激光器报警", 256, "S+", "S+", "S+"},
    {"水冷机报警", 512, "S+", "S+", "S+"},
};

/// The alarms that refuse a start: all but ready and door 5.
constexpr unsigned int kRefusingAlarms = 2 + 4 + 8 + 16 + 64 + 128 + 256 + 512;

/// What an edge on an operating input asks for, by the dialog on the screen: none, single, several documents.
struct RunModelRow {
    char const* name;
    tessera::RunOrder orders[3];
    bool wantsNoAlarm;
};

constexpr RunModelRow kRunModel[] = {
    {"终止", {tessera::RunOrder::Stop, tessera::RunOrder::Stop, tessera::RunOrder::Stop}, false},
    {"运行", {tessera::RunOrder::OpenDialog, tessera::RunOrder::Start, tessera::RunOrder::Nothing}, true},
    {"暂停", {tessera::RunOrder::Nothing, tessera::RunOrder::Pause, tessera::RunOrder::Nothing}, false},
    {"红光预览", {tessera::RunOrder::OpenDialog, tessera::RunOrder::Preview, tessera::RunOrder::Nothing}, false},
};

/// A machine whose functions are wired one to an input.
class WiredMachine {
public:
    WiredMachine() {
        for (SafetyModelRow const& row : kSafetyModel)
            wire(row.name);
        for (RunModelRow const& row : kRunModel)
            wire(row.name);
        wire("手动");
        wire("自动");
    }
    IOFuncList& operator[](char const* name) { return m_functions[QByteArray(name)]; }
    QMap<QByteArray, IOFuncList>& functions() { return m_functions; }

private:
    void wire(char const* name) {
        IOFuncList function;
        function.Name = QString::fromUtf8(name);
        function.InputEnable = true;
        function.InputMask = function.InputValue = 1U << m_functions.size();
        m_functions.insert(name, function);
    }

    QMap<QByteArray, IOFuncList> m_functions;
};

/// All that a poll decides, as a line of text.
struct PollResult {
    QString text;
    unsigned int mask = 0;
};

/// What a poll decides, read from the tables.
class SafetyModel {
public:
    /// Without `alarmFree` a start is refused by the alarms after the poll's steps.
    PollResult poll(unsigned int input, tessera::SafetySettings const& settings, unsigned int before, int visible,
                    std::optional<bool> alarmFree) {
        PollResult result{QString(), before};
        for (SafetyModelRow const& row : kSafetyModel) {
            const int edge = m_edges.ask(machine[row.name], input);
            QString steps;
            if (edge == 1)
                steps = !settings.runActive ? row.withoutJob : settings.doorPauses ? row.pausing : row.stopping;
            if ((edge == 0 || edge == -2) && result.mask % (2 * row.bit) >= row.bit)
                steps = "-";
            for (QChar step : qAsConst(steps)) {
                result.text += step + QString::number(row.bit) + ' ';
                if (step == '+')
                    result.mask |= row.bit;
                if (step == '-')
                    result.mask -= row.bit;
            }
        }
        result.text += result.mask != 0 && result.mask != 256 ? "bad " : "good ";
        result.text += result.mask > 0 ? "red " : before > 0 ? "yellow " : "keep ";
        result.text +=
            QString::number(int(order(input, visible, alarmFree.value_or((result.mask & kRefusingAlarms) == 0))));
        m_edges.ask(machine["手动"], input);
        m_edges.ask(machine["自动"], input);
        return result;
    }
    WiredMachine machine;

private:
    tessera::RunOrder order(unsigned int input, int visible, bool alarmFree) {
        for (RunModelRow const& row : kRunModel) {
            if (m_edges.ask(machine[row.name], input) == 1)
                return row.wantsNoAlarm && !alarmFree ? tessera::RunOrder::Nothing : row.orders[visible];
        }
        return tessera::RunOrder::Nothing;
    }
    EdgeModel m_edges;
};

} // namespace tests
