// SPDX-License-Identifier: MIT
#pragma once

#include "engine/layerdata.h"

namespace tests {

/// A box of the panel, its field and its limits.
struct BoxRow {
    char const* name;
    char const* label;
    char const* text;
    char const* unit; ///< null: none is shown
    int decimals;
    double minimum;
    double maximum;
    double LayerData::*real;
    int LayerData::*whole;
};

inline constexpr BoxRow kPenBoxes[] = {
    {"doubleSpinBoxMarkCnt", "labelMarkCnt", "工作次数", "", 0, 0, 99999999, nullptr, &LayerData::MarkCnt},
    {"doubleSpinBoxMarkSpeed", "labelMarkSpeed", "工作速度", "mm/s", 2, 0, 100000, &LayerData::MarkSpeed, nullptr},
    {"doubleSpinBoxRedSpeed", "labelRedSpeed", "RedSpeed", "mm/s", 2, 0, 100000, &LayerData::RedSpeed, nullptr},
    {"doubleSpinBoxJunpSpeed", "labelJunpSpeed", "跳转速度", "mm/s", 2, 0, 100000, &LayerData::JumpSpeed, nullptr},
    {"doubleSpinBoxPower", "labelPower", "功率百分比", "%", 2, 0, 100, &LayerData::Power, nullptr},
    {"doubleSpinBoxWaveNumber", "labelWaveNumber", "波形号", "", 0, 0, 100, nullptr, &LayerData::WaveNumber},
    {"doubleSpinBoxFre", "labelFre", "频率", "Hz", 2, 0, 1e7, &LayerData::Fre, nullptr},
    {"doubleSpinBoxPWM", "labelPWM", "占空比", "%", 2, 0, 100, &LayerData::PWM, nullptr},
    {"doubleSpinBoxOpenLaserDelay", "labelOpenLaserDelay", "开光延时", "µs", 0, -100000, 100000, nullptr,
     &LayerData::OpenLaserDelay},
    {"doubleSpinBoxCloseLaserDelay", "labelCloseLaserDelay", "关光延时", "µs", 0, -10000, 10000, nullptr,
     &LayerData::CloseLaserDelay},
    {"doubleSpinBoxEndDelay", "labelEndDelay", "结束延时", "µs", 0, -10000, 10000, nullptr, &LayerData::EndDelay},
    {"doubleSpinBoxTurnDelay", "labelTurnDelay", "拐角延时", "µs", 0, -10000, 10000, nullptr, &LayerData::TurnDelay},
};

inline double valueOf(LayerData const& pen, BoxRow const& row) {
    return row.real ? pen.*row.real : pen.*row.whole;
}

inline void setValue(LayerData& pen, BoxRow const& row, double value) {
    if (row.real)
        pen.*row.real = value;
    else
        pen.*row.whole = static_cast<int>(value);
}

/// A value that the box can show and that no pen has as delivered.
inline double otherValue(BoxRow const& row) {
    return row.decimals == 0 ? 17.0 : 23.25;
}

} // namespace tests
