// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.VirtualKeyboard 2.15
import QtQuick.VirtualKeyboard.Settings 2.15
import QtQuick.VirtualKeyboard.Styles 2.15

Rectangle {
    id: root

    readonly property bool shown: keys.active
    readonly property real wantedHeight: keys.height
    readonly property bool typesNumbers: (InputContext.inputMethodHints & (Qt.ImhDigitsOnly | Qt.ImhFormattedNumbersOnly)) !== 0

    color: "black"

    InputPanel {
        id: keys
        width: root.width
    }

    // The words stand in a row of their own above the keys, where nothing is typed into.
    Binding {
        target: VirtualKeyboardSettings.wordCandidateList
        property: "alwaysVisible"
        value: InputContext.locale === "zh_CN" && !root.typesNumbers
    }

    // On a small screen the style would make words too small for a finger.
    Binding {
        target: keys.keyboard.style
        property: "selectionListHeight"
        value: Math.max(44, 85 * keys.keyboard.style.scaleHint)
    }
    Binding {
        target: keys.keyboard.style
        property: "selectionListDelegate"
        value: word
    }
    Component {
        id: word
        SelectionListItem {
            id: item
            width: Math.max(48, label.width + 24)
            Text {
                id: label
                anchors.centerIn: parent
                text: display
                color: item.ListView.isCurrentItem ? "white" : "#80c342"
                font.family: keys.keyboard.style.fontFamily
                font.pixelSize: Math.max(20, 44 * keys.keyboard.style.scaleHint)
            }
        }
    }

    Component.onCompleted: {
        VirtualKeyboardSettings.activeLocales = ["en_US", "zh_CN"]
        VirtualKeyboardSettings.locale = beginIn
    }
}
