// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtQuick.VirtualKeyboard 2.15
import Tessera.Keyboard 1.0

KeyboardLayout {
    inputMode: InputEngine.InputMode.Pinyin
    keyWeight: 160

    function createInputMethod() {
        return Qt.createQmlObject("import QtQuick 2.15; import Tessera.Keyboard 1.0; PinyinInput {}", parent)
    }

    KeyboardRow {
        Repeater {
            model: ["q", "w", "e", "r", "t", "y", "u", "i", "o", "p"]
            Key { text: modelData }
        }
        BackspaceKey {}
    }
    KeyboardRow {
        FillerKey { weight: 56 }
        Repeater {
            model: ["a", "s", "d", "f", "g", "h", "j", "k", "l"]
            Key { text: modelData }
        }
        EnterKey { weight: 283 }
    }
    KeyboardRow {
        ShiftKey { weight: 156 }
        Repeater {
            model: ["z", "x", "c", "v", "b", "n", "m"]
            Key { text: modelData }
        }
        Key { text: "，"; alternativeKeys: "，、；：," }
        Key { text: "。"; alternativeKeys: "。？！." }
        ShiftKey { weight: 204 }
    }
    KeyboardRow {
        SymbolModeKey { weight: 217 }
        ChangeLanguageKey { weight: 154 }
        SpaceKey { weight: 864 }
        Key { text: "-"; alternativeKeys: "-_" }
        Key { text: "："; alternativeKeys: "：；“”（）《》" }
        HideKeyboardKey { weight: 204 }
    }
}
