// SPDX-License-Identifier: MIT
#include "shell/toolbarstyle.h"

#include <QMenu>
#include <QProxyStyle>
#include <QToolBar>

namespace tessera {

namespace {

constexpr int kExtensionExtent = 40;

class ToolBarStyle : public QProxyStyle {
public:
    ToolBarStyle()
        : QProxyStyle(QStringLiteral("fusion")) {}
    int pixelMetric(PixelMetric metric, QStyleOption const* option, QWidget const* widget) const override {
        return metric == PM_ToolBarExtensionExtent ? kExtensionExtent
                                                   : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

constexpr int kMenuIconExtent = 22;

/// A style sheet cannot tell the size of a menu's pictures.
class MenuStyle : public QProxyStyle {
public:
    MenuStyle()
        : QProxyStyle(QStringLiteral("fusion")) {}
    int pixelMetric(PixelMetric metric, QStyleOption const* option, QWidget const* widget) const override {
        return metric == PM_SmallIconSize ? kMenuIconExtent : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

void EnlargePictures(QMenu* menu) {
    auto* style = new MenuStyle;
    style->setParent(menu);
    menu->setStyle(style);
}

void WidenExtension(QToolBar* bar) {
    auto* style = new ToolBarStyle;
    style->setParent(bar);
    bar->setStyle(style);
}

} // namespace tessera
