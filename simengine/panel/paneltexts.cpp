// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/paneltexts.h"

#include "engine/languagemanager.h"

#include <string>

namespace sim {

namespace {

struct FaultName {
    const char* name;
    const char* key;
};

constexpr FaultName kFaultNames[] = {
    {"card_open_fails", "打开卡失败"},
    {"job_fails", "任务失败"},
    {"flash_fails", "Flash写入失败"},
    {"stop_hangs", "停止无响应"},
    {"card_alarm", "激光器报警"},
    {"outputs_stuck", "输出卡死"},
    {"laser_no_ready", "激光器不就绪"},
    {"laser_no_emission", "激光器不出光"},
    {"io_timeout", "IO超时"},
    {"data_underrun", "数据断流"},
    {"wait_input", "等待输入"},
    {"wait_motion", "等待运动模块"},
    {"wait_encoder", "等待编码器"},
    {"wait_mirror", "等待振镜"},
    {"scan_loop", "振镜闭环异常"},
    {"scan_feedback_x", "X反馈异常"},
    {"scan_feedback_y", "Y反馈异常"},
    {"scan_alarm_x", "X振镜报警"},
    {"scan_alarm_y", "Y振镜报警"},
    {"scan_no_feedback_x", "X无反馈"},
    {"scan_no_feedback_y", "Y无反馈"},
    {"scan_init", "振镜初始化中"},
    {"scan_overcurrent", "振镜过流"},
    {"scan_power", "振镜电源异常"},
    {"scan_position_x", "X位置超差"},
    {"scan_position_y", "Y位置超差"},
    {"scan_link", "振镜通信断开"},
    {"scan_open_loop", "开环振镜"},
    {"encoder_stopped", "编码器停转"},
    {"splitter_link", "分光器断线"},
    {"splitter_stuck", "分光振镜卡死"},
    {"laser_temperature", "温度超标"},
    {"laser_pd", "PD报警"},
};

/// Faults of one motor, behind "axis" and its number.
constexpr FaultName kAxisFaultNames[] = {
    {"_driver", "驱动报警"},         {"_positive_limit", "正限位卡死"}, {"_negative_limit", "负限位卡死"},
    {"_home_stuck", "原点开关卡死"}, {"_home_dead", "原点开关失效"},    {"_slip", "联轴器打滑"},
};

constexpr FaultName kDeviceNames[] = {
    {"belt_speed", "皮带速度(mm/s)"}, {"belt_pulses", "皮带编码器(脉冲/mm)"}, {"encoder", "编码器计数"},
    {"splitter_card", "分光卡号"},    {"splitter_mirror", "分光振镜位置"},    {"splitter_path", "当前光路"},
    {"flash_first", "Flash首地址"},   {"flash_end", "Flash末地址"},           {"flash_written", "Flash已写字节"},
};

const char* waitKey(int code) {
    switch (code) {
    case 1:
        return "等待输入";
    case 2:
        return "等待运动模块";
    case 3:
        return "等待编码器";
    case 4:
        return "等待振镜";
    default:
        return "等待";
    }
}

template<typename Enabled, typename Mask>
std::array<QStringList, kPanelLines> namesOf(const QVector<IOFuncList>& functions, Enabled enabled, Mask mask) {
    std::array<QStringList, kPanelLines> names;
    for (const IOFuncList& function : functions) {
        if (!enabled(function))
            continue;
        for (int bit = 0; bit < kPanelLines; ++bit) {
            if (mask(function) >> bit & 1u)
                names[static_cast<std::size_t>(bit)] << LanguageManager::GetLanText(function.Name);
        }
    }
    return names;
}

} // namespace

std::array<QStringList, kPanelLines> inputNames(const QVector<IOFuncList>& functions) {
    return namesOf(
        functions, [](const IOFuncList& f) { return f.InputEnable; }, [](const IOFuncList& f) { return f.InputMask; });
}

std::array<QStringList, kPanelLines> outputNames(const QVector<IOFuncList>& functions) {
    return namesOf(
        functions, [](const IOFuncList& f) { return f.OutputEnable; },
        [](const IOFuncList& f) { return f.OutputMask; });
}

QString activityText(const SimCardState& state) {
    if (!state.open)
        return LanguageManager::GetLanText("卡未打开");
    switch (state.activity) {
    case SimActivity::Running:
        return LanguageManager::GetLanText("运行中");
    case SimActivity::Paused:
        return LanguageManager::GetLanText("已暂停");
    case SimActivity::Waiting:
        return LanguageManager::GetLanText(waitKey(state.waitCode));
    case SimActivity::Idle:
        break;
    }
    return LanguageManager::GetLanText("空闲");
}

QString faultText(const std::string& name) {
    for (const FaultName& fault : kFaultNames) {
        if (name == fault.name)
            return LanguageManager::GetLanText(fault.key);
    }
    const int motor = faultMotor(name);
    for (const FaultName& fault : kAxisFaultNames) {
        if (motor > 0 && name == "axis" + std::to_string(motor) + fault.name)
            return LanguageManager::GetLanText("电机") + QString::number(motor) + ' ' +
                   LanguageManager::GetLanText(fault.key);
    }
    return QString::fromStdString(name);
}

QString deviceText(const std::string& name) {
    for (const FaultName& device : kDeviceNames) {
        if (name == device.name)
            return LanguageManager::GetLanText(device.key);
    }
    return QString::fromStdString(name);
}

int faultMotor(const std::string& name) {
    constexpr char kPrefix[] = "axis";
    constexpr std::size_t kDigit = sizeof kPrefix - 1;
    const bool named = name.compare(0, kDigit, kPrefix) == 0 && name.size() > kDigit + 1 && name[kDigit + 1] == '_';
    return named && name[kDigit] >= '1' && name[kDigit] <= '9' ? name[kDigit] - '0' : 0;
}

QString outcomeText(SimOutcome outcome, const char* nothing) {
    switch (outcome) {
    case SimOutcome::BadValue:
        return LanguageManager::GetLanText("数值超出范围");
    case SimOutcome::NoFigures:
        return LanguageManager::GetLanText(nothing);
    case SimOutcome::FileError:
        return LanguageManager::GetLanText("文件写入失败,请检查磁盘空间");
    case SimOutcome::TooLarge:
        return LanguageManager::GetLanText("数据量过大");
    case SimOutcome::NotThere:
        return LanguageManager::GetLanText("模拟机台没有此部件");
    case SimOutcome::Done:
        break;
    }
    return QString();
}

QString exportText(SimOutcome outcome) {
    switch (outcome) {
    case SimOutcome::BadValue:
        return LanguageManager::GetLanText("轨迹文件的扩展名须为.svg、.png或.csv");
    case SimOutcome::TooLarge:
        return LanguageManager::GetLanText("轨迹点数过多,无法导出为图形,请导出为.csv");
    default:
        return outcomeText(outcome, "");
    }
}

QString timeText(double ms) {
    return ms < 1000.0 ? QStringLiteral("%1 ms").arg(ms, 0, 'f', 1)
                       : QStringLiteral("%1 s").arg(ms / 1000.0, 0, 'f', 3);
}

} // namespace sim
