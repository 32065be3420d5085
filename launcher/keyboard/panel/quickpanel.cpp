// SPDX-License-Identifier: MIT
#include "quickpanel.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlError>
#include <QQuickItem>
#include <QScreen>
#include <cmath>

namespace tessera {

namespace {

/// Most of the screen's height that the keys take; what is typed and the dialog round it must find room above.
constexpr double kMostHeight = 0.45;
/// Height of the keys over their width, by the keyboard's style.
constexpr double kAspect = 800.0 / 2560.0;

} // namespace

QuickPanel::QuickPanel(QString const& language) {
    m_view.setTitle(QStringLiteral("Tessera keyboard"));
    m_view.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus |
                    Qt::X11BypassWindowManagerHint);
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.resize(place().size());
    m_view.rootContext()->setContextProperty(QStringLiteral("beginIn"),
                                             language == QLatin1String("en") ? QStringLiteral("en_US") : language);
    m_view.setSource(QUrl(QStringLiteral("qrc:/tessera/keyboard/panel.qml")));
    if (QQuickItem* root = m_view.rootObject()) {
        connect(root, SIGNAL(shownChanged()), this, SLOT(follow()));
        connect(root, SIGNAL(wantedHeightChanged()), this, SLOT(follow()));
    }
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &QuickPanel::follow);
}

QuickPanel::~QuickPanel() {
    disconnect(qGuiApp, nullptr, this, nullptr);
    m_listener = nullptr;
}

QString QuickPanel::error() const {
    if (m_view.rootObject())
        return QString();
    QStringList lines;
    for (QQmlError const& error : m_view.errors())
        lines.append(error.toString());
    return lines.join(QStringLiteral("; "));
}

QRect QuickPanel::area() const {
    return m_view.isVisible() ? m_view.geometry() : QRect();
}

QRect QuickPanel::place() const {
    QWindow const* typedInto = QGuiApplication::focusWindow();
    QRect const screen = (typedInto ? typedInto->screen() : QGuiApplication::primaryScreen())->geometry();
    int const width = std::min(screen.width(), int(screen.height() * kMostHeight / kAspect));
    QQuickItem const* root = m_view.rootObject();
    double const wanted = root ? root->property("wantedHeight").toDouble() : 0.0;
    int const height = wanted > 0.0 ? int(std::ceil(wanted)) : int(std::ceil(width * kAspect));
    return QRect(screen.left() + (screen.width() - width) / 2, screen.bottom() + 1 - height, width, height);
}

void QuickPanel::follow() {
    QRect const before = area();
    bool const shown = m_view.rootObject()->property("shown").toBool();
    if (shown) {
        QWindow* typedInto = QGuiApplication::focusWindow();
        if (typedInto && typedInto != &m_view)
            m_view.setTransientParent(typedInto);
        m_view.setGeometry(place());
        m_view.show();
        m_view.raise();
    } else {
        m_view.hide();
    }
    if (area() != before && m_listener)
        m_listener();
}

} // namespace tessera
