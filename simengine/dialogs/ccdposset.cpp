// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/ccdposset.h"

#include "simengine/dialogs/ccdposwindow.h"

#include <QPointer>

namespace {

/// The open window; it deletes itself when it is closed.
QPointer<sim::CcdPosWindow>& window() {
    static QPointer<sim::CcdPosWindow> open;
    return open;
}

} // namespace

void CCDPosSet::ShowCCDPosSet(QWidget* parent) {
    if (!window())
        window() = new sim::CcdPosWindow(parent);
    window()->show();
    window()->raise();
    window()->activateWindow();
}

bool CCDPosSet::IsVisible() {
    return window() && window()->isVisible();
}
