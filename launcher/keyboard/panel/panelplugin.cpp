// SPDX-License-Identifier: MIT
#include "panelplugin.h"

#include "pinyininput.h"
#include "quickpanel.h"

#include <QtQml>

namespace tessera {

std::unique_ptr<KeyboardPanel> PanelPlugin::makePanel(QString const& language, QString& error) {
    qmlRegisterType<PinyinInput>("Tessera.Keyboard", 1, 0, "PinyinInput");
    auto panel = std::make_unique<QuickPanel>(language);
    error = panel->error();
    if (!error.isEmpty())
        return nullptr;
    return panel;
}

} // namespace tessera
