// SPDX-License-Identifier: MIT
#pragma once

#include "keyboardpanel.h"

#include <QObject>
#include <QQuickView>

namespace tessera {

/// The toolkit's keyboard in a window of its own at the lower edge of the screen. The window takes no focus, stands
/// above all others and belongs to the one that is typed into, so that a modal dialog does not lock it out.
class QuickPanel : public QObject, public KeyboardPanel {
    Q_OBJECT
public:
    explicit QuickPanel(QString const& language);
    ~QuickPanel() override;

    /// What kept the keyboard from being made; empty when it is there.
    QString error() const;
    QRect area() const override;
    void setListener(std::function<void()> listener) override { m_listener = std::move(listener); }

private slots:
    void follow();

private:
    QRect place() const;

    std::function<void()> m_listener;
    QQuickView m_view;
};

} // namespace tessera
