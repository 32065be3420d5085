// SPDX-License-Identifier: MIT
#include "common/toolicon.h"

#include <QPainter>
#include <QPixmap>

namespace toolmodules {

namespace {

constexpr QRgb kLine = 0xff31445a; ///< of the icons of the tool bars
constexpr double kWidth = 1.8;
constexpr double kUnits = 24.0;

} // namespace

QIcon toolIcon(const std::function<void(QPainter&)>& draw) {
    QIcon icon;
    for (const int side : {24, 48}) {
        QPixmap picture(side, side);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side / kUnits, side / kUnits);
        painter.setPen(QPen(QColor(kLine), kWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        draw(painter);
        painter.end();
        icon.addPixmap(picture);
    }
    return icon;
}

} // namespace toolmodules
