// SPDX-License-Identifier: MIT
#pragma once

#include "pinyindecoder.h"

#include <QtVirtualKeyboard/QVirtualKeyboardAbstractInputMethod>

namespace tessera {

/// Typing Chinese by pinyin on the keyboard on the screen: letters are gathered, the words for them offered above the
/// keys. Space takes the first word, Enter the letters as they are. In fields for passwords letters are letters.
class PinyinInput : public QVirtualKeyboardAbstractInputMethod {
    Q_OBJECT
public:
    using Engine = QVirtualKeyboardInputEngine;
    using Words = QVirtualKeyboardSelectionListModel;

    using QVirtualKeyboardAbstractInputMethod::QVirtualKeyboardAbstractInputMethod;

    QList<Engine::InputMode> inputModes(QString const& locale) override;
    bool setInputMode(QString const& locale, Engine::InputMode mode) override;
    bool setTextCase(Engine::TextCase textCase) override;
    bool keyEvent(Qt::Key key, QString const& text, Qt::KeyboardModifiers modifiers) override;
    QList<Words::Type> selectionLists() override;
    int selectionListItemCount(Words::Type type) override;
    QVariant selectionListData(Words::Type type, int index, Words::Role role) override;
    void selectionListItemSelected(Words::Type type, int index) override;
    void reset() override;
    void update() override;

private:
    bool isComposing() const { return !m_letters.isEmpty() || !m_chosen.isEmpty(); }
    bool isSecret() const;
    void look();
    void choose(int index);
    void finish(QString text);

    PinyinDecoder m_decoder;
    Engine::InputMode m_mode = Engine::InputMode::Pinyin;
    QString m_chosen;  ///< words taken for the letters before
    QString m_letters; ///< that no word has been taken for
    QStringList m_words;
};

} // namespace tessera
