// SPDX-License-Identifier: MIT
#include "shell/toolbarstyle.h"

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

} // namespace

void WidenExtension(QToolBar* bar) {
    auto* style = new ToolBarStyle;
    style->setParent(bar);
    bar->setStyle(style);
}

} // namespace tessera
