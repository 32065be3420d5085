// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

class QAction;

namespace tessera {

/// A key with its modifiers.
struct KeyPress {
    int key = 0; ///< Qt::Key; 0 when the name was none
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    QString text; ///< what the key types

    /// Reads a Qt::Key name, "F6" or "Key_F6", with "Ctrl+", "Shift+", "Alt+" or "Meta+" before it.
    static KeyPress fromName(QString const& name);
};

/// Operates widgets as an operator would. Main thread.
class WidgetDriver {
public:
    /// Why an operator could not press the widget now, empty when he can: disabled, hidden or behind a modal dialog.
    static QString whyNotUsable(QWidget const* widget);
    static QString whyNotUsable(QAction const* action);
    /// Presses and releases the left button in the middle of the widget; in an item view on the current cell.
    static void click(QWidget* widget);
    static void doubleClick(QWidget* widget);
    static void pressKey(QWidget* widget, KeyPress const& press);
    /// The widget that a key press reaches: the focused one, else the active or the modal window, else the main window.
    static QWidget* keyReceiver();
    /// Picture of one widget.
    static QImage picture(QWidget* widget);
    /// Picture of all visible windows in their places and order.
    static QImage pictureOfScreen();
    /// Writes a picture as PNG; false with `error` when it is empty or the file cannot be written.
    static bool writePicture(QImage const& picture, QString const& file, QString& error);
};

} // namespace tessera
