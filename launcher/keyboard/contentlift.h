// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QWidget>

namespace tessera {

/// How far up a field has to go to be clear of the keyboard, pixels; 0 when it is. `field` is where it would be without
/// any shift. It is not pushed beyond the upper edge of the screen.
int liftFor(QRect const& field, QRect const& keyboard, QRect const& screen);

/// Moves the window of a field up while the keyboard would cover the field, and back. A dialog moves as a whole; of a
/// window that fills the screen the contents move inside it, since a window manager holds such a window in its place.
class ContentLift : public QObject {
    Q_OBJECT
public:
    ~ContentLift() override { restore(); }

    /// The field is typed into while the keyboard takes `keyboard` of the screen.
    void keepClear(QWidget* field, QRect const& keyboard);
    /// Puts the window back to where it was before.
    void restore();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take(QWidget* window);
    int shift() const;
    void shiftTo(int shift);

    QPointer<QWidget> m_window;
    bool m_inside = false; ///< the contents move and not the window
    QPoint m_place;        ///< of a window that is moved, without shift
    int m_shift = 0;       ///< of contents that move
};

} // namespace tessera
