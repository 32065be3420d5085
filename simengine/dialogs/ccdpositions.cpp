// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/dialogs/ccdpositions.h"

#include "simengine/params/inifile.h"
#include "support/approot.h"

namespace sim {

namespace {

constexpr int kMaxPositions = 1000; ///< bound on what a damaged count may ask for

QString sectionOf(int index) {
    return QStringLiteral("Position%1").arg(index);
}

} // namespace

QVector<CcdPosition> loadCcdPositions() {
    IniFile const file(tessera::rootPath(QLatin1String(kCcdPositionFile)));
    auto const read = [&file](QString const& section, char const* key) {
        return file.value(section, QLatin1String(key)).value_or(QString());
    };
    int const count = qBound(0, iniInt(read(QStringLiteral("Positions"), "Count")).value_or(0), kMaxPositions);
    QVector<CcdPosition> positions;
    for (int i = 0; i < count; ++i) {
        QString const section = sectionOf(i);
        positions.append({read(section, "Name"), iniDouble(read(section, "X")).value_or(0.0),
                          iniDouble(read(section, "Y")).value_or(0.0)});
    }
    return positions;
}

bool saveCcdPositions(QVector<CcdPosition> const& positions) {
    IniFile file(tessera::rootPath(QLatin1String(kCcdPositionFile)));
    return positions.size() <= kMaxPositions && file.change([&positions](IniDocument& document) {
        bool done =
            document.setValue(QStringLiteral("Positions"), QStringLiteral("Count"), QString::number(positions.size()));
        for (int i = 0; i < positions.size(); ++i) {
            QString const section = sectionOf(i);
            done &= document.setValue(section, QStringLiteral("Name"), positions[i].name);
            done &= document.setValue(section, QStringLiteral("X"), iniNumber(positions[i].x));
            done &= document.setValue(section, QStringLiteral("Y"), iniNumber(positions[i].y));
        }
        return done;
    });
}

} // namespace sim
