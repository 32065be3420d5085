// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/cmtype.h"

#include "simengine/params/boardtype.h"

#include <QFile>

namespace sim {

int boardType(QString const& setting, QByteArray const& model) {
    bool ok = false;
    int const number = setting.trimmed().toInt(&ok);
    if (ok)
        return number == kRaspberryPi ? kRaspberryPi : kRockchip;
    return model.contains("Raspberry Pi") ? kRaspberryPi : kRockchip;
}

} // namespace sim

int GetCMType() {
    static QByteArray const model = [] {
        QFile file(QStringLiteral("/proc/device-tree/model"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    return sim::boardType(qEnvironmentVariable("TESSERA_BOARD"), model);
}
