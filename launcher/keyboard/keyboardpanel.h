// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>
#include <QtPlugin>
#include <functional>
#include <memory>

namespace tessera {

/// The keyboard on the screen. It comes up and goes with the toolkit's input method. Main thread.
class KeyboardPanel {
public:
    virtual ~KeyboardPanel() = default;
    /// What it covers of the screen, pixels; empty while it is hidden.
    virtual QRect area() const = 0;
    /// Called after each change of area().
    virtual void setListener(std::function<void()> listener) = 0;
};

/// What the keyboard's plug-in gives. It is a plug-in so that a machine with a keyboard of its own does not carry it.
class KeyboardPanelPlugin {
public:
    virtual ~KeyboardPanelPlugin() = default;
    /// A panel that begins in `language`, zh_CN or en; null with the reason in `error`.
    virtual std::unique_ptr<KeyboardPanel> makePanel(QString const& language, QString& error) = 0;
};

} // namespace tessera

Q_DECLARE_INTERFACE(tessera::KeyboardPanelPlugin, "tessera.KeyboardPanelPlugin/1")
