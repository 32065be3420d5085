// SPDX-License-Identifier: MIT
#include "touchkeyboard.h"

#include "typingfield.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QInputMethod>
#include <QMouseEvent>
#include <QWindow>

namespace tessera {

namespace {

void setUnlessSet(char const* variable, char const* value) {
    if (!qEnvironmentVariableIsSet(variable))
        qputenv(variable, value);
}

/// The field that a touch of `widget` leads into: of a spin box the line is touched, and the box has the focus.
QWidget* fieldOf(QWidget* widget) {
    return widget->focusProxy() ? widget->focusProxy() : widget;
}

/// An editor that a table or list has opened, by a touch of the cell and not of the editor.
bool isCellEditor(QWidget const* widget) {
    QWidget const* viewport = widget->parentWidget();
    auto const* view = viewport ? qobject_cast<QAbstractItemView const*>(viewport->parentWidget()) : nullptr;
    return view && view->viewport() == viewport;
}

} // namespace

void TouchKeyboard::prepareToolkit() {
    qputenv("QT_IM_MODULE", "qtvirtualkeyboard");
    // The toolkit's own window for it is as large as the screen, and black where nothing composes the windows.
    qputenv("QT_VIRTUALKEYBOARD_DESKTOP_DISABLE", "1");
    // The boards have no graphics driver worth the name, and a keyboard is no work for one.
    setUnlessSet("QT_QUICK_BACKEND", "software");
    // It is told of a dictionary for English that nobody has asked for.
    setUnlessSet("QT_LOGGING_RULES", "qt.virtualkeyboard.hunspell=false");
}

TouchKeyboard::TouchKeyboard(QString const& plugin, std::function<QString()> language)
    : m_loader(plugin)
    , m_language(std::move(language)) {
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusMoved(now); });
}

TouchKeyboard::~TouchKeyboard() {
    qApp->removeEventFilter(this);
    disconnect(qApp, nullptr, this, nullptr);
}

bool TouchKeyboard::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWidgetType())
        return false;
    auto* widget = static_cast<QWidget*>(watched);
    if (event->type() == QEvent::FocusIn) {
        hintNumbers(widget);
        hintAsTyped(widget);
        if (isCellEditor(widget) && takesTyping(widget))
            QMetaObject::invokeMethod(this, &TouchKeyboard::show, Qt::QueuedConnection);
    } else if (event->type() == QEvent::MouseButtonRelease) {
        bool const left = static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
        if (left && takesTyping(widget) && takesTyping(fieldOf(widget)))
            QMetaObject::invokeMethod(this, &TouchKeyboard::show, Qt::QueuedConnection);
    }
    return false;
}

void TouchKeyboard::show() {
    QWidget* field = QApplication::focusWidget();
    if (!takesTyping(field) || !loadPanel())
        return;
    QGuiApplication::inputMethod()->show();
    keepFieldClear();
}

bool TouchKeyboard::loadPanel() {
    if (m_panel || m_failed)
        return m_panel != nullptr;
    QString error;
    if (auto* plugin = qobject_cast<KeyboardPanelPlugin*>(m_loader.instance()))
        m_panel = plugin->makePanel(m_language(), error);
    else
        error = m_loader.errorString();
    m_failed = !m_panel;
    if (m_failed) {
        emit failed(error);
        return false;
    }
    m_panel->setListener([this] { keepFieldClear(); });
    // It came to be after the field had got the focus, which it was not told of.
    if (QWindow* window = QGuiApplication::focusWindow())
        emit window->focusObjectChanged(QGuiApplication::focusObject());
    return true;
}

void TouchKeyboard::focusMoved(QWidget* now) {
    if (!m_panel)
        return;
    if (takesTyping(now))
        keepFieldClear();
    else
        QGuiApplication::inputMethod()->hide();
}

void TouchKeyboard::keepFieldClear() {
    QWidget* field = QApplication::focusWidget();
    if (area().isEmpty() || !takesTyping(field))
        m_lift.restore();
    else
        m_lift.keepClear(field, area());
}

} // namespace tessera
