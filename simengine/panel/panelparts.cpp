// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/panelparts.h"

#include <QGridLayout>
#include <QPushButton>
#include <QVariant>

namespace sim {

namespace {
constexpr int kHeight = 40; ///< px
} // namespace

QPushButton* panelButton(const QString& name, QWidget* parent) {
    auto* button = new QPushButton(parent);
    button->setObjectName(name);
    button->setMinimumHeight(kHeight);
    button->setAutoDefault(false);
    return button;
}

GridPage::GridPage(const QString& name, QWidget* parent)
    : QScrollArea(parent)
    , m_inside(new QWidget(this))
    , m_grid(new QGridLayout(m_inside)) {
    setObjectName(name);
    m_inside->setObjectName(name + QStringLiteral("Inside"));
    m_inside->setProperty("page", true);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_grid->setContentsMargins(0, 0, 4, 0);
    m_grid->setSpacing(4);
    setWidget(m_inside);
}

} // namespace sim
