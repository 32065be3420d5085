// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/userfonts.h"

#include <QDateTime>
#include <QDir>
#include <QFontDatabase>
#include <QHash>

namespace sim {

namespace {

struct KnownFont {
    QDateTime modified;
    qint64 size = -1;
    int id = -1; ///< of the font database, -1 for a file that it does not take
};

QHash<QString, KnownFont>& knownFonts() {
    static QHash<QString, KnownFont> fonts;
    return fonts;
}

} // namespace

void registerNewFonts(const QString& folder) {
    const QFileInfoList files =
        QDir(folder).entryInfoList({QStringLiteral("*.ttf"), QStringLiteral("*.TTF")}, QDir::Files, QDir::Name);
    for (const QFileInfo& file : files) {
        KnownFont& font = knownFonts()[file.absoluteFilePath()];
        if (font.modified == file.lastModified() && font.size == file.size())
            continue;
        if (font.id >= 0)
            QFontDatabase::removeApplicationFont(font.id);
        font = {file.lastModified(), file.size(), QFontDatabase::addApplicationFont(file.absoluteFilePath())};
    }
}

} // namespace sim
