// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/panelstyle.h"

#include "simengine/panel/paneltheme.h"

namespace sim {

QString panelStyle() {
    const auto name = [](QRgb color) { return QColor::fromRgb(color).name(); };
    QString style = QStringLiteral(R"(
#simulatorPanel, #headWindow { background: @window; }
#simulatorPanel QWidget { color: @text; font-size: 14px; }
#simulatorPanel QFrame[card="true"] { background: @card; border: 1px solid @edge; border-radius: 8px; }
#simulatorPanel QLabel { border: none; background: transparent; }
#simulatorPanel QLabel[title="true"] { color: @soft; font-size: 12px; font-weight: bold; }
#simulatorPanel QLabel#position { font-family: monospace; }
#simulatorPanel QLabel#activity { border-radius: 6px; font-weight: bold; padding: 0 8px; background: @edge; }
#simulatorPanel QLabel#activity[look="running"] { background: @green; color: white; }
#simulatorPanel QLabel#activity[look="held"] { background: @yellow; color: #20262d; }
#simulatorPanel QPushButton { background: @edge; border: none; border-radius: 6px; padding: 0 12px; min-height: 40px; }
#simulatorPanel QPushButton:hover { background: @off; }
#simulatorPanel QPushButton:checked { background: @on; color: white; }
#simulatorPanel QScrollArea QPushButton { font-size: 13px; padding: 0 4px; }
#simulatorPanel QScrollArea QPushButton:checked { background: @red; color: white; }
#simulatorPanel QScrollArea, #simulatorPanel QWidget[page="true"] { background: transparent; }
#simulatorPanel QDoubleSpinBox { background: @card; border: 1px solid @edge; border-radius: 6px; padding: 0 6px;
    min-height: 38px; }
#simulatorPanel QDoubleSpinBox::up-button, #simulatorPanel QDoubleSpinBox::down-button { background: @soft;
    border: none; width: 32px; }
#simulatorPanel QDoubleSpinBox::up-button { border-top-right-radius: 6px; }
#simulatorPanel QDoubleSpinBox::down-button { border-bottom-right-radius: 6px; }
#simulatorPanel QLabel#message[bad="true"] { color: @red; }
#simulatorPanel QToolTip { color: #20262d; }
#simulatorPanel QScrollBar:vertical { background: transparent; width: 12px; margin: 0; }
#simulatorPanel QScrollBar::handle:vertical { background: @off; border-radius: 5px; min-height: 40px; }
#simulatorPanel QScrollBar::add-line, #simulatorPanel QScrollBar::sub-line { height: 0; }
)");
    return style.replace(QLatin1String("@window"), name(paneltheme::kWindow))
        .replace(QLatin1String("@text"), name(paneltheme::kText))
        .replace(QLatin1String("@soft"), name(paneltheme::kSoftText))
        .replace(QLatin1String("@card"), name(paneltheme::kCard))
        .replace(QLatin1String("@edge"), name(paneltheme::kEdge))
        .replace(QLatin1String("@green"), name(paneltheme::kGreen))
        .replace(QLatin1String("@yellow"), name(paneltheme::kYellow))
        .replace(QLatin1String("@red"), name(paneltheme::kRed))
        .replace(QLatin1String("@off"), name(paneltheme::kSwitchOff))
        .replace(QLatin1String("@on"), name(paneltheme::kSwitchOn));
}

} // namespace sim
