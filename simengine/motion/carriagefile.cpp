// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/motion/carriagefile.h"

#include "engine/marklog.h"
#include "simengine/motion/cardaxes.h"
#include "simengine/params/inifile.h"
#include "support/approot.h"

#include <array>
#include <optional>

namespace sim {

namespace {

QString path() {
    return tessera::rootPath(QLatin1String(kCarriageFile));
}

QString section(int motor) {
    return QStringLiteral("Motor%1").arg(motor + 1);
}

std::optional<double> number(IniFile const& file, int motor, char const* key) {
    return iniDouble(file.value(section(motor), QLatin1String(key)).value_or(QString()));
}

} // namespace

void storeCarriages() {
    std::array<AxisSample, kAxisCount> samples;
    for (int motor = 0; motor < kAxisCount; ++motor)
        simulatedAxes().sample(motor, samples[static_cast<std::size_t>(motor)]);
    IniFile file(path());
    bool const written = file.change([&samples](IniDocument& document) {
        for (int motor = 0; motor < kAxisCount; ++motor) {
            AxisSample const& sample = samples[static_cast<std::size_t>(motor)];
            document.setValue(section(motor), QStringLiteral("Place"), iniNumber(sample.place));
            document.setValue(section(motor), QStringLiteral("Counter"), iniNumber(sample.position));
        }
        return true;
    });
    if (!written)
        MarkLog::Instance()->ShowNote_Error(path());
}

void restoreCarriages() {
    IniFile const file(path());
    for (int motor = 0; motor < kAxisCount; ++motor) {
        if (std::optional<double> const place = number(file, motor, "Place"))
            simulatedAxes().putAt(motor, *place);
    }
}

void restoreCounter(int motor, double counter) {
    if (motor < 0)
        return;
    IniFile const file(path());
    std::optional<double> const place = number(file, motor, "Place");
    std::optional<double> const shown = number(file, motor, "Counter");
    AxisGroup& axes = simulatedAxes();
    if (place && shown) {
        // A counter that runs against the machine's direction counts the other way.
        double const direction = axes.isReversed(motor) ? -1.0 : 1.0;
        axes.putAt(motor, *place + direction * (counter - *shown));
    }
    axes.setPosition(motor, counter);
}

} // namespace sim
