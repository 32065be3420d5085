// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/cardlink.h"
#include "simengine/view/marktoolaccess.h"
#include "simengine/view/playbackwindow.h"
#include "simengine/view/qrulerview_p.h"

#include <algorithm>

void QRulerView::Private::openPlayback() {
    if (playback) {
        playback->raise();
        playback->activateWindow();
        return;
    }
    sim::PlaybackWindow::Source source;
    source.plan = [this](bool selectedOnly) {
        return sim::currentPlan(session.state(), MarkShapeContainerAccess::options(*container, selectedOnly),
                                sim::penTable(*session.document().pens(), kLayerCount, {}));
    };
    source.colors = [this] { return session.penColors(); };
    source.document = [this] { return session.document().fileName(); };
    source.field = [this] { return canvas->fieldMm(); };
    auto* window = new sim::PlaybackWindow(std::move(source), false, q.window());
    playback = window;
    window->show();
}
