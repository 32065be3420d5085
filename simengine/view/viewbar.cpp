// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/viewbar.h"

#include "engine/languagemanager.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/viewbaricons.h"

#include <QActionGroup>
#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

namespace sim {

namespace {

constexpr int kButton = 40; ///< px, for a finger
constexpr int kIcon = 24;

/// Strengths that the menu offers, px.
constexpr int kStrengths[] = {5, 10, 15, 25};

struct Switch {
    const char* name;
    const char* text;
    bool SnapSettings::*value;
};

constexpr Switch kSwitches[] = {
    {"snapObjects", "吸附到对象", &SnapSettings::objects},
    {"snapGuides", "对齐其他对象", &SnapSettings::guides},
    {"snapGrid", "吸附到网格", &SnapSettings::grid},
};

} // namespace

ViewBar::ViewBar(CanvasWidget& canvas, QWidget* parent)
    : QFrame(parent)
    , m_canvas(canvas) {
    setObjectName(QStringLiteral("viewBar"));
    setStyleSheet(QStringLiteral("#viewBar { background: rgba(255, 255, 255, 225); border: 1px solid #cbd3db; "
                                 "border-radius: 8px; }"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(3, 3, 3, 3);
    row->setSpacing(2);
    m_snap = addButton("viewSnap", true);
    m_menu = addButton("viewSnapMenu", false);
    m_ratio = addButton("viewKeepRatio", true);
    m_axis = addButton("viewAxisLock", true);
    m_playback = addButton("viewPlayback", false);
    m_snap->setIcon(viewBarIcon(ViewBarIcon::Snap, kIcon));
    m_menu->setIcon(viewBarIcon(ViewBarIcon::Menu, kIcon));
    m_ratio->setIcon(viewBarIcon(ViewBarIcon::Ratio, kIcon));
    m_axis->setIcon(viewBarIcon(ViewBarIcon::Axis, kIcon));
    m_playback->setIcon(viewBarIcon(ViewBarIcon::Playback, kIcon));
    m_ratio->setChecked(m_canvas.keepsRatio());
    connect(m_snap, &QToolButton::clicked, this, [this](bool on) {
        SnapSettings settings = m_canvas.snap().settings();
        settings.on = on;
        change(settings);
    });
    connect(m_menu, &QToolButton::clicked, this, &ViewBar::openMenu);
    connect(m_ratio, &QToolButton::clicked, this, [this](bool on) { m_canvas.setKeepsRatio(on); });
    connect(m_axis, &QToolButton::clicked, this, [this](bool on) { m_canvas.setLocksAxis(on); });
    connect(m_playback, &QToolButton::clicked, this, &ViewBar::playbackAsked);
    setTexts();
}

QToolButton* ViewBar::addButton(const char* name, bool checkable) {
    auto* button = new QToolButton(this);
    button->setObjectName(QString::fromLatin1(name));
    button->setCheckable(checkable);
    button->setAutoRaise(true);
    button->setIconSize(QSize(kIcon, kIcon));
    button->setFixedSize(kButton, kButton);
    // The keys go to the drawing.
    button->setFocusPolicy(Qt::NoFocus);
    layout()->addWidget(button);
    return button;
}

void ViewBar::setTexts() {
    m_snap->setToolTip(LanguageManager::GetLanText("吸附"));
    m_menu->setToolTip(LanguageManager::GetLanText("吸附设置"));
    m_ratio->setToolTip(LanguageManager::GetLanText("等比缩放"));
    m_axis->setToolTip(LanguageManager::GetLanText("锁定方向"));
    m_playback->setToolTip(LanguageManager::GetLanText("加工回放"));
}

// Another document may have changed what all share.
void ViewBar::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    m_canvas.snap().setSettings(loadSnapSettings());
    showSettings();
    setTexts();
}

void ViewBar::showSettings() {
    m_snap->setChecked(m_canvas.snap().settings().on);
}

void ViewBar::change(const SnapSettings& settings) {
    m_canvas.snap().setSettings(settings);
    m_canvas.snap().clear();
    m_canvas.update();
    saveSnapSettings(settings);
    showSettings();
}

void ViewBar::openMenu() {
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("viewSnapSettings"));
    const SnapSettings now = m_canvas.snap().settings();
    for (const Switch& entry : kSwitches) {
        QAction* action = menu.addAction(LanguageManager::GetLanText(entry.text));
        action->setObjectName(QString::fromLatin1(entry.name));
        action->setCheckable(true);
        action->setChecked(now.*entry.value);
        connect(action, &QAction::triggered, this, [this, &entry](bool on) {
            SnapSettings settings = m_canvas.snap().settings();
            settings.*entry.value = on;
            settings.on = settings.on || on;
            change(settings);
        });
    }
    menu.addSeparator();
    auto* strengths = new QActionGroup(&menu);
    for (const int pixels : kStrengths) {
        QAction* action =
            menu.addAction(QStringLiteral("%1 %2 px").arg(LanguageManager::GetLanText("吸附距离")).arg(pixels));
        action->setObjectName(QStringLiteral("snapPixels%1").arg(pixels));
        action->setCheckable(true);
        action->setChecked(now.pixels == pixels);
        strengths->addAction(action);
        connect(action, &QAction::triggered, this, [this, pixels] {
            SnapSettings settings = m_canvas.snap().settings();
            settings.pixels = pixels;
            change(settings);
        });
    }
    menu.exec(m_menu->mapToGlobal(QPoint(0, -menu.sizeHint().height())));
}

} // namespace sim
