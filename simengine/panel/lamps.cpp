// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/lamps.h"

#include "simengine/panel/paneltheme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace sim {

namespace {

constexpr int kColumns = 8;
constexpr int kRows = kPanelLines / kColumns;

void drawLamp(QPainter& painter, const QPointF& at, double radius, QRgb color, bool on) {
    if (on) {
        QColor glow = QColor::fromRgb(color);
        glow.setAlpha(70);
        painter.setPen(Qt::NoPen);
        painter.setBrush(glow);
        painter.drawEllipse(at, radius + 3.5, radius + 3.5);
    }
    painter.setPen(QPen(QColor::fromRgb(on ? color : paneltheme::kSwitchOff), 1.2));
    painter.setBrush(QColor::fromRgb(on ? color : paneltheme::kLampOff));
    painter.drawEllipse(at, radius, radius);
}

} // namespace

OutputLamps::OutputLamps(QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("outputLamps"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void OutputLamps::setWord(std::uint32_t word) {
    if (m_word == word)
        return;
    m_word = word;
    update();
}

QPointF OutputLamps::lampAt(int bit) const {
    const double column = width() / static_cast<double>(kColumns);
    const double row = height() / static_cast<double>(kRows);
    return {(bit % kColumns) * column + 14.0, (bit / kColumns + 0.5) * row};
}

void OutputLamps::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont number = font();
    number.setPixelSize(13);
    painter.setFont(number);
    for (int bit = 0; bit < kPanelLines; ++bit) {
        const QPointF at = lampAt(bit);
        const bool on = m_word >> bit & 1u;
        drawLamp(painter, at, 7.0, paneltheme::kLampOn, on);
        painter.setPen(QColor::fromRgb(on ? paneltheme::kText : paneltheme::kSoftText));
        painter.drawText(QRectF(at.x() + 13, at.y() - 10, 24, 20), Qt::AlignVCenter | Qt::AlignLeft,
                         QString::number(bit));
    }
}

bool OutputLamps::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int column = help->x() * kColumns / qMax(1, width());
    const int row = help->y() * kRows / qMax(1, height());
    const int bit = qBound(0, row, kRows - 1) * kColumns + qBound(0, column, kColumns - 1);
    QToolTip::showText(help->globalPos(), m_names[static_cast<std::size_t>(bit)].join(QStringLiteral(", ")), this);
    return true;
}

StackLight::StackLight(QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("stackLight"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StackLight::setLamps(bool red, bool yellow, bool green) {
    if (m_red == red && m_yellow == yellow && m_green == green)
        return;
    m_red = red;
    m_yellow = yellow;
    m_green = green;
    update();
}

void StackLight::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor::fromRgb(paneltheme::kEdge), 1.0));
    painter.setBrush(QColor::fromRgb(paneltheme::kTraceField));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
    const double middle = height() / 2.0;
    drawLamp(painter, {width() / 2.0 - 34, middle}, 10, paneltheme::kRed, m_red);
    drawLamp(painter, {width() / 2.0, middle}, 10, paneltheme::kYellow, m_yellow);
    drawLamp(painter, {width() / 2.0 + 34, middle}, 10, paneltheme::kGreen, m_green);
}

} // namespace sim
