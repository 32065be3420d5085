// SPDX-License-Identifier: MIT
#pragma once

#include "contentlift.h"
#include "keyboardpanel.h"

#include <QObject>
#include <QPluginLoader>

namespace tessera {

/// Brings up the keyboard on the screen when a field is touched that can be typed into, keeps the field in sight, and
/// takes the keyboard away when the operator goes on to something else. Main thread; one object, which ends before the
/// application.
class TouchKeyboard : public QObject {
    Q_OBJECT
public:
    /// Before the application object: makes the toolkit use this keyboard.
    static void prepareToolkit();

    /// `language` tells the language in which the keyboard begins, when it is first shown; `plugin` is the file of the
    /// panel, which is loaded then.
    TouchKeyboard(QString const& plugin, std::function<QString()> language);
    ~TouchKeyboard() override;

    /// What the keyboard covers of the screen; empty while it is hidden.
    QRect area() const { return m_panel ? m_panel->area() : QRect(); }
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// The keyboard cannot be shown. Told once.
    void failed(QString const& reason);

private:
    void show();
    bool loadPanel();
    void focusMoved(QWidget* now);
    void keepFieldClear();

    QPluginLoader m_loader;
    std::function<QString()> m_language;
    std::unique_ptr<KeyboardPanel> m_panel;
    ContentLift m_lift;
    bool m_failed = false;
};

} // namespace tessera
