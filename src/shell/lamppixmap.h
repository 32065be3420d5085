// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QString>

namespace tessera {

/// The lamp picture ":/Icon/Res/<name>.png" in the size of the status bar, 16 by 16.
inline QPixmap LampPixmap(char const* name) {
    return QPixmap(QStringLiteral(":/Icon/Res/%1.png").arg(QLatin1String(name)))
        .scaled(16, 16, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace tessera
