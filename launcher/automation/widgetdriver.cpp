// SPDX-License-Identifier: MIT
#include "automation/widgetdriver.h"

#include "support/durablefile.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMetaEnum>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

namespace tessera {

namespace {

struct ModifierName {
    char const* prefix;
    Qt::KeyboardModifier modifier;
};
constexpr ModifierName kModifierNames[] = {
    {"Ctrl+", Qt::ControlModifier},
    {"Shift+", Qt::ShiftModifier},
    {"Alt+", Qt::AltModifier},
    {"Meta+", Qt::MetaModifier},
};

QString textOfKey(int key, Qt::KeyboardModifiers modifiers) {
    if (modifiers & ~Qt::KeyboardModifiers(Qt::ShiftModifier))
        return QString();
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return QStringLiteral("\r");
    case Qt::Key_Tab:
        return QStringLiteral("\t");
    case Qt::Key_Backspace:
        return QStringLiteral("\b");
    default:
        break;
    }
    if (key < Qt::Key_Space || key > Qt::Key_ydiaeresis)
        return QString();
    QChar const character = QChar(key);
    return modifiers & Qt::ShiftModifier ? QString(character) : QString(character).toLower();
}

/// Where a press on the widget goes: for scroll areas into the viewport, for item views onto the current cell.
struct Spot {
    QWidget* widget;
    QPoint place;
};

Spot spotOf(QWidget* widget) {
    auto* area = qobject_cast<QAbstractScrollArea*>(widget);
    if (!area)
        return {widget, widget->rect().center()};
    auto* view = qobject_cast<QAbstractItemView*>(widget);
    if (view && view->currentIndex().isValid()) {
        view->scrollTo(view->currentIndex());
        return {view->viewport(), view->visualRect(view->currentIndex()).center()};
    }
    return {area->viewport(), area->viewport()->rect().center()};
}

void sendMouse(QPointer<QWidget> const& widget, QPoint place, QEvent::Type type) {
    if (!widget)
        return;
    Qt::MouseButtons const held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, place, widget->mapTo(widget->window(), place), widget->mapToGlobal(place), Qt::LeftButton,
                      held, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

bool isBehindModal(QWidget const* widget) {
    QWidget const* modal = QApplication::activeModalWidget();
    if (!modal)
        return false;
    for (QWidget const* window = widget->window(); window; window = window->parentWidget()) {
        if (window == modal)
            return false;
    }
    return true;
}

} // namespace

KeyPress KeyPress::fromName(QString const& name) {
    KeyPress press;
    QString rest = name;
    for (bool found = true; found;) {
        found = false;
        for (ModifierName const& entry : kModifierNames) {
            if (!rest.startsWith(QLatin1String(entry.prefix), Qt::CaseInsensitive))
                continue;
            rest.remove(0, int(qstrlen(entry.prefix)));
            press.modifiers |= entry.modifier;
            found = true;
        }
    }
    if (!rest.startsWith(QLatin1String("Key_")))
        rest.prepend(QLatin1String("Key_"));
    bool known = false;
    int const key = QMetaEnum::fromType<Qt::Key>().keyToValue(rest.toLatin1().constData(), &known);
    if (known && key != Qt::Key_unknown) {
        press.key = key;
        press.text = textOfKey(key, press.modifiers);
    }
    return press;
}

QString WidgetDriver::whyNotUsable(QWidget const* widget) {
    if (!widget->isVisible())
        return QStringLiteral("it is hidden");
    if (!widget->isEnabled())
        return QStringLiteral("it is disabled");
    if (isBehindModal(widget))
        return QStringLiteral("the modal dialog \"%1\" is before it")
            .arg(QApplication::activeModalWidget()->metaObject()->className());
    return QString();
}

QString WidgetDriver::whyNotUsable(QAction const* action) {
    if (!action->isVisible())
        return QStringLiteral("it is hidden");
    if (!action->isEnabled())
        return QStringLiteral("it is disabled");
    auto const* owner = qobject_cast<QWidget const*>(action->parent());
    if (owner && isBehindModal(owner))
        return QStringLiteral("the modal dialog \"%1\" is before it")
            .arg(QApplication::activeModalWidget()->metaObject()->className());
    return QString();
}

void WidgetDriver::click(QWidget* widget) {
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        button->click();
        return;
    }
    Spot const spot = spotOf(widget);
    QPointer<QWidget> const target(spot.widget);
    sendMouse(target, spot.place, QEvent::MouseButtonPress);
    sendMouse(target, spot.place, QEvent::MouseButtonRelease);
}

void WidgetDriver::doubleClick(QWidget* widget) {
    Spot const spot = spotOf(widget);
    QPointer<QWidget> const target(spot.widget);
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick,
                              QEvent::MouseButtonRelease})
        sendMouse(target, spot.place, type);
}

void WidgetDriver::pressKey(QWidget* widget, KeyPress const& press) {
    QPointer<QWidget> const target(widget);
    for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (!target)
            return;
        QKeyEvent event(type, press.key, press.modifiers, press.text);
        QCoreApplication::sendEvent(target, &event);
    }
}

QWidget* WidgetDriver::keyReceiver() {
    for (QWidget* window : {QApplication::activePopupWidget(), QApplication::activeModalWidget()}) {
        if (window)
            return window->focusWidget() ? window->focusWidget() : window;
    }
    if (QWidget* focused = QApplication::focusWidget())
        return focused;
    if (QWidget* active = QApplication::activeWindow())
        return active;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (qobject_cast<QMainWindow*>(window) && window->isVisible())
            return window;
    }
    return nullptr;
}

QImage WidgetDriver::picture(QWidget* widget) {
    return widget->grab().toImage();
}

QImage WidgetDriver::pictureOfScreen() {
    QVector<QWidget*> windows;
    QRect area;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || window->size().isEmpty())
            continue;
        area |= window->geometry();
        // The list has no order of its own: what is a child of a window stands before it.
        if (window->parentWidget())
            windows.append(window);
        else
            windows.prepend(window);
    }
    if (QWidget* active = QApplication::activeWindow()) {
        if (windows.removeOne(active))
            active->parentWidget() ? windows.append(active) : windows.prepend(active);
    }
    QImage image(area.size(), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    image.fill(Qt::black);
    QPainter painter(&image);
    for (QWidget* window : windows) {
        QRect const place = window->geometry().translated(-area.topLeft());
        painter.drawPixmap(place.topLeft(), window->grab());
        // The frame that a window manager draws is not part of a window: a line stands for it.
        if (window->parentWidget())
            painter.drawRect(place.adjusted(0, 0, -1, -1));
    }
    return image;
}

bool WidgetDriver::writePicture(QImage const& picture, QString const& file, QString& error) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!picture.save(&buffer, "PNG")) {
        error = QStringLiteral("There is nothing to see.");
        return false;
    }
    DurableResult const written = writeFileDurably(file, bytes);
    error = written.message();
    return written.ok();
}

} // namespace tessera
