// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/class_cardpara.h"

#include <QString>
#include <variant>

namespace sim {

class IniFile;
class IniDocument;

constexpr char kCardParaFile[] = "/ini/MotionParam.ini";
constexpr char kCardSection[] = "Motion";
constexpr char kAxisSection[] = "Axis"; ///< followed by the axis index from 0

/// A field of a record and its key in the file.
template<typename Record>
struct RecordField {
    char const* key;
    std::variant<bool Record::*, int Record::*, double Record::*, QString Record::*> member;
};

constexpr RecordField<Class_CardPara> kCardFields[] = {
    {"EnableMotion", &Class_CardPara::EnableMotion}, {"AxisCount", &Class_CardPara::AxisCount},
    {"MaxSpeed", &Class_CardPara::MaxSpeed},         {"MaxAcc", &Class_CardPara::MaxAcc},
    {"DefaultSpeed", &Class_CardPara::DefaultSpeed}, {"DefaultAcc", &Class_CardPara::DefaultAcc},
    {"DefaultDelay", &Class_CardPara::DefaultDelay}, {"HomeDoneSignal", &Class_CardPara::HomeDoneSignal},
    {"HomeDoneBit", &Class_CardPara::HomeDoneBit},   {"HomeDoneTime", &Class_CardPara::HomeDoneTime},
    {"HomeDoneHigh", &Class_CardPara::HomeDoneHigh}, {"HomeAtStart", &Class_CardPara::HomeAtStart},
};

constexpr RecordField<AxisPara> kAxisFields[] = {
    {"Name", &AxisPara::Name},
    {"MotorNo", &AxisPara::MotorNo},
    {"AxisMode", &AxisPara::AxisMode},
    {"FeedbackMode", &AxisPara::FeedbackMode},
    {"PulsePerRev", &AxisPara::PulsePerRev},
    {"Screw", &AxisPara::Screw},
    {"Radius", &AxisPara::Radius},
    {"Reduce", &AxisPara::Reduce},
    {"HomeType", &AxisPara::HomeType},
    {"HomeHighSpeed", &AxisPara::HomeHighSpeed},
    {"HomeHighAcc", &AxisPara::HomeHighAcc},
    {"HomeLowSpeed", &AxisPara::HomeLowSpeed},
    {"HomeLowAcc", &AxisPara::HomeLowAcc},
    {"HomeCount", &AxisPara::HomeCount},
    {"HomeBackDist", &AxisPara::HomeBackDist},
    {"LimitEnable", &AxisPara::LimitEnable},
    {"LimitReverse", &AxisPara::LimitReverse},
    {"PulseReverse", &AxisPara::PulseReverse},
    {"DriverAlarmEnable", &AxisPara::DriverAlarmEnable},
    {"DriverReverse", &AxisPara::DriverReverse},
    {"JogReverse", &AxisPara::JogReverse},
    {"JogHighSpeed", &AxisPara::JogHighSpeed},
    {"JogHighAcc", &AxisPara::JogHighAcc},
    {"JogLowSpeed", &AxisPara::JogLowSpeed},
    {"JogLowAcc", &AxisPara::JogLowAcc},
    {"SoftLimitEnable", &AxisPara::SoftLimitEnable},
    {"SoftLimitMin", &AxisPara::SoftLimitMin},
    {"SoftLimitMax", &AxisPara::SoftLimitMax},
};

constexpr RecordField<AxisHomePlan> kHomeFields[] = {
    {"HomeEnable", &AxisHomePlan::Enable},
    {"HomeWait", &AxisHomePlan::Wait},
    {"HomeOrder", &AxisHomePlan::Order},
};

/// Reads all fields; a missing or unusable one keeps its value.
void loadCardPara(Class_CardPara& para, IniFile const& file);
void storeCardPara(Class_CardPara const& para, IniDocument& document);

} // namespace sim
