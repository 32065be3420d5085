// SPDX-License-Identifier: MIT
#include "maintenance/notice.h"

namespace tessera {

int ShowNotice(QWidget* parent, QMessageBox::Icon icon, QString const& title, QString const& text,
               QMessageBox::StandardButtons buttons) {
    QMessageBox box(icon, title, text, buttons, parent);
    box.setTextFormat(Qt::PlainText);
    return box.exec();
}

} // namespace tessera
