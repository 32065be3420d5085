// SPDX-License-Identifier: MIT
#pragma once

#include "keyboardpanel.h"

#include <QObject>

namespace tessera {

class PanelPlugin : public QObject, public KeyboardPanelPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "tessera.KeyboardPanelPlugin/1")
    Q_INTERFACES(tessera::KeyboardPanelPlugin)
public:
    std::unique_ptr<KeyboardPanel> makePanel(QString const& language, QString& error) override;
};

} // namespace tessera
