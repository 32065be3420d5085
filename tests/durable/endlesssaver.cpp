// SPDX-License-Identifier: MIT
// Saves without end until it is killed: "endlesssaver file PATH" two contents in turn, "endlesssaver settings PATH" a
// counter that goes up by one. "endlesssaver plain PATH" sets thirty keys "theirs/1" on with QSettings alone and ends.
// A counter is told on the standard output after its save was reported as done.
#include "support/durablefile.h"
#include "support/durablesettings.h"

#include <QByteArray>
#include <QSettings>
#include <QString>

#include <cstdio>
#include <cstring>

namespace {

int saveFile(const QString& path) {
    const QByteArray contents[2] = {QByteArray(300000, 'A'), QByteArray(170001, 'B')};
    for (unsigned i = 0;; ++i) {
        const tessera::DurableResult result = tessera::writeFileDurably(path, contents[i % 2]);
        if (!result) {
            std::fprintf(stderr, "%s\n", qPrintable(result.message()));
            return 1;
        }
        if (i == 0)
            std::puts("saving");
        std::fflush(stdout);
    }
}

int saveSettings(const QString& path) {
    for (int count = tessera::readSetting(path, QStringLiteral("MarkCnt"), 0).toInt() + 1;; ++count) {
        const tessera::DurableResult result = tessera::writeSettingDurably(path, QStringLiteral("MarkCnt"), count);
        if (!result) {
            std::fprintf(stderr, "%s\n", qPrintable(result.message()));
            return 1;
        }
        std::printf("%d\n", count);
        std::fflush(stdout);
    }
}

int savePlainly(const QString& path) {
    for (int i = 1; i <= 30; ++i) {
        QSettings settings(path, QSettings::IniFormat);
        settings.setValue(QStringLiteral("theirs/%1").arg(i), i);
        settings.sync();
        if (settings.status() != QSettings::NoError)
            return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 3)
        return 2;
    const QString path = QString::fromLocal8Bit(argv[2]);
    if (std::strcmp(argv[1], "plain") == 0)
        return savePlainly(path);
    return std::strcmp(argv[1], "settings") == 0 ? saveSettings(path) : saveFile(path);
}
