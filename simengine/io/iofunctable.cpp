// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/io/iofunctable.h"

#include <variant>

namespace sim {

namespace {

/// A function of the machine: its key and the input that it is wired to on a standard cabinet, active high.
struct IOFuncRow {
    char const* name;
    int input;
};

constexpr IOFuncRow kFunctions[] = {
    {"运行", 0},        {"暂停", 1},        {"终止", 2},         {"红光预览", 3},
    {"手动", 4},        {"自动", 5},        {"机台就绪", 6},     {"机台安全门1", 7},
    {"机台安全门2", 8}, {"机台安全门3", 9}, {"机台安全门4", 10}, {"机台安全门5", 11},
    {"安全光栅", 12},   {"急停按钮", 13},   {"激光器报警", 14},  {"水冷机报警", 15},
};

constexpr char kTableSection[] = "Functions";
constexpr char kCountKey[] = "Count";
constexpr char kNameKey[] = "Name";
constexpr int kMaxFunctions = 256; ///< bound on what a damaged count may ask for

/// A stored field and its key.
struct FieldRow {
    char const* key;
    std::variant<bool IOFuncList::*, int IOFuncList::*, unsigned int IOFuncList::*> member;
};

constexpr FieldRow kFields[] = {
    {"Reserved", &IOFuncList::Reserved},         {"InputEnable", &IOFuncList::InputEnable},
    {"InputMask", &IOFuncList::InputMask},       {"InputValue", &IOFuncList::InputValue},
    {"OutputEnable", &IOFuncList::OutputEnable}, {"OutputMask", &IOFuncList::OutputMask},
    {"OutputValue", &IOFuncList::OutputValue},   {"DelayEnable", &IOFuncList::DelayEnable},
    {"DelayTime", &IOFuncList::DelayTime},
};

void readField(QString const& text, bool& field) {
    field = iniInt(text).value_or(field ? 1 : 0) != 0;
}

void readField(QString const& text, int& field) {
    field = iniInt(text).value_or(field);
}

// Masks stand in the file as hexadecimal words: that is how an electrician reads them.
void readField(QString const& text, unsigned int& field) {
    bool ok = false;
    unsigned int const value = text.toUInt(&ok, 0);
    field = ok ? value : field;
}

QString fieldText(bool field) {
    return QString::number(field ? 1 : 0);
}

QString fieldText(int field) {
    return QString::number(field);
}

QString fieldText(unsigned int field) {
    return QStringLiteral("0x%1").arg(field, 8, 16, QLatin1Char('0'));
}

QString sectionOf(int row) {
    return QStringLiteral("Function%1").arg(row);
}

} // namespace

QVector<IOFuncList> defaultIOFunctions() {
    QVector<IOFuncList> functions;
    for (IOFuncRow const& row : kFunctions) {
        IOFuncList function;
        function.Name = QString::fromUtf8(row.name);
        function.InputMask = 1u << row.input;
        function.InputValue = function.InputMask;
        functions.append(function);
    }
    return functions;
}

void loadIOFunctions(QVector<IOFuncList>& functions, IniFile const& file) {
    QString const countText = file.value(QLatin1String(kTableSection), QLatin1String(kCountKey)).value_or(QString());
    int const count = qBound(0, iniInt(countText).value_or(0), kMaxFunctions);
    for (int i = 0; i < count; ++i) {
        QString const section = sectionOf(i);
        QString const name = file.value(section, QLatin1String(kNameKey)).value_or(QString());
        if (name.isEmpty())
            continue;
        int at = 0;
        while (at < functions.size() && functions[at].Name != name)
            ++at;
        if (at == functions.size()) {
            functions.append(IOFuncList());
            functions[at].Name = name;
        }
        for (FieldRow const& row : kFields) {
            QString const text = file.value(section, QLatin1String(row.key)).value_or(QString());
            std::visit([&](auto member) { readField(text, functions[at].*member); }, row.member);
        }
    }
}

bool storeIOFunctions(QVector<IOFuncList> const& functions, IniDocument& document) {
    if (functions.size() > kMaxFunctions ||
        !document.setValue(QLatin1String(kTableSection), QLatin1String(kCountKey), QString::number(functions.size())))
        return false;
    for (int i = 0; i < functions.size(); ++i) {
        QString const section = sectionOf(i);
        if (!document.setValue(section, QLatin1String(kNameKey), functions[i].Name))
            return false;
        for (FieldRow const& row : kFields) {
            QString const text = std::visit([&](auto member) { return fieldText(functions[i].*member); }, row.member);
            if (!document.setValue(section, QLatin1String(row.key), text))
                return false;
        }
    }
    return true;
}

} // namespace sim
