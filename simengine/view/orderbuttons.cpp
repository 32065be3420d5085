// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/orderbuttons.h"

#include "engine/languagemanager.h"
#include "engine/vzlistviewex.h"
#include "simengine/view/viewtheme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>

namespace sim {

namespace {

struct Button {
    const char* name;
    const char* tip;
    void (VZListViewEx::*move)();
    int direction; ///< -1 up, 1 down
    bool end;      ///< to the first or last place
};

constexpr Button kButtons[] = {
    {"moveFirst", "移到最前", &VZListViewEx::MoveObj2First, -1, true},
    {"moveUp", "上移", &VZListViewEx::MoveObjUp, -1, false},
    {"moveDown", "下移", &VZListViewEx::MoveObjDown, 1, false},
    {"moveLast", "移到最后", &VZListViewEx::MoveObj2Last, 1, true},
};

QPixmap arrow(const Button& button, const QColor& color) {
    constexpr int kSize = 24;
    QPixmap pixmap(2 * kSize, 2 * kSize);
    pixmap.setDevicePixelRatio(2);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(kSize / 2.0, kSize / 2.0);
    painter.scale(1.0, button.direction);
    // Drawn as an arrow down.
    painter.drawLine(QPointF(0, -7), QPointF(0, button.end ? 4.5 : 7));
    painter.drawPolyline(button.end ? QPolygonF({QPointF(-5, 0), QPointF(0, 5), QPointF(5, 0)})
                                    : QPolygonF({QPointF(-5.5, 1.5), QPointF(0, 7), QPointF(5.5, 1.5)}));
    if (button.end)
        painter.drawLine(QPointF(-7, 8.5), QPointF(7, 8.5));
    return pixmap;
}

QIcon arrowIcon(const Button& button) {
    QIcon icon;
    icon.addPixmap(arrow(button, QColor(theme::kRulerText)), QIcon::Normal);
    icon.addPixmap(arrow(button, QColor(theme::kRulerEdge)), QIcon::Disabled);
    return icon;
}

} // namespace

OrderButtons::OrderButtons(VZListViewEx& list)
    : QWidget(&list)
    , m_list(list) {
    setObjectName(QStringLiteral("orderButtons"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    for (const Button& button : kButtons) {
        auto* tool = new QToolButton(this);
        tool->setObjectName(QLatin1String(button.name));
        tool->setIcon(arrowIcon(button));
        tool->setIconSize(QSize(24, 24));
        tool->setAutoRaise(true);
        tool->setMinimumHeight(40);
        tool->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        tool->setFocusPolicy(Qt::NoFocus);
        connect(tool, &QToolButton::clicked, &list, button.move);
        layout->addWidget(tool);
        m_buttons.append(tool);
    }
    setTexts();
    list.viewport()->installEventFilter(this);
    place();
}

void OrderButtons::setTexts() {
    for (int i = 0; i < m_buttons.size(); ++i)
        m_buttons[i]->setToolTip(LanguageManager::GetLanText(kButtons[i].tip));
}

void OrderButtons::setUsable(bool usable) {
    for (QToolButton* button : qAsConst(m_buttons))
        button->setEnabled(usable);
}

void OrderButtons::place() {
    // The scroll bar keeps the list's whole height beside it.
    const QRect rows = m_list.viewport()->geometry();
    setGeometry(rows.left(), rows.bottom() + 1, rows.width(), kHeight);
    raise();
}

bool OrderButtons::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_list.viewport() && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        place();
    return QWidget::eventFilter(watched, event);
}

void OrderButtons::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(theme::kRuler));
    painter.fillRect(QRect(0, 0, width(), 1), QColor(theme::kRulerEdge));
}

void OrderButtons::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        setTexts();
}

} // namespace sim
