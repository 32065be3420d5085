// SPDX-License-Identifier: MIT
#include "pinyininput.h"

#include <QtVirtualKeyboard/QVirtualKeyboardInputContext>

namespace tessera {

namespace {

bool isLetter(QString const& text) {
    return text.size() == 1 && text[0].toLower() >= QLatin1Char('a') && text[0].toLower() <= QLatin1Char('z');
}

} // namespace

QList<PinyinInput::Engine::InputMode> PinyinInput::inputModes(QString const&) {
    return {Engine::InputMode::Pinyin, Engine::InputMode::Latin};
}

bool PinyinInput::setInputMode(QString const&, Engine::InputMode mode) {
    reset();
    m_mode = mode;
    return true;
}

bool PinyinInput::setTextCase(Engine::TextCase) {
    return true;
}

bool PinyinInput::isSecret() const {
    return (inputContext()->inputMethodHints() & (Qt::ImhHiddenText | Qt::ImhSensitiveData)) != 0;
}

/// False leaves a key to the keyboard, which types it as it is.
bool PinyinInput::keyEvent(Qt::Key key, QString const& text, Qt::KeyboardModifiers) {
    bool const pinyin = m_mode == Engine::InputMode::Pinyin && m_decoder.isReady() && !isSecret();
    if (pinyin && isLetter(text)) {
        m_letters += text.toLower();
        look();
        return true;
    }
    if (!isComposing())
        return false;
    switch (key) {
    case Qt::Key_Backspace:
        if (m_letters.isEmpty())
            m_chosen.chop(1);
        else
            m_letters.chop(1);
        look();
        return true;
    case Qt::Key_Space:
        choose(0);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finish(m_chosen + m_letters);
        return true;
    default:
        finish(m_chosen + (m_words.isEmpty() ? m_letters : m_words.first()));
        return false;
    }
}

void PinyinInput::look() {
    m_words = m_decoder.words(m_letters);
    inputContext()->setPreeditText(m_chosen + m_letters);
    emit selectionListChanged(Words::Type::WordCandidateList);
    emit selectionListActiveItemChanged(Words::Type::WordCandidateList, m_words.isEmpty() ? -1 : 0);
}

void PinyinInput::choose(int index) {
    if (index < 0 || index >= m_words.size()) {
        finish(m_chosen + m_letters);
        return;
    }
    int const taken = qMax(1, m_decoder.lettersOf(index));
    m_chosen += m_words[index];
    m_letters.remove(0, taken);
    if (m_letters.isEmpty())
        finish(m_chosen);
    else
        look();
}

void PinyinInput::finish(QString text) {
    m_chosen.clear();
    m_letters.clear();
    m_words.clear();
    inputContext()->commit(text);
    emit selectionListChanged(Words::Type::WordCandidateList);
    emit selectionListActiveItemChanged(Words::Type::WordCandidateList, -1);
}

QList<PinyinInput::Words::Type> PinyinInput::selectionLists() {
    return {Words::Type::WordCandidateList};
}

int PinyinInput::selectionListItemCount(Words::Type) {
    return m_words.size();
}

QVariant PinyinInput::selectionListData(Words::Type type, int index, Words::Role role) {
    if (role == Words::Role::Display && index >= 0 && index < m_words.size())
        return m_words[index];
    return QVirtualKeyboardAbstractInputMethod::selectionListData(type, index, role);
}

void PinyinInput::selectionListItemSelected(Words::Type, int index) {
    choose(index);
}

void PinyinInput::reset() {
    m_chosen.clear();
    m_letters.clear();
    m_words.clear();
    emit selectionListChanged(Words::Type::WordCandidateList);
    emit selectionListActiveItemChanged(Words::Type::WordCandidateList, -1);
}

void PinyinInput::update() {
    if (isComposing())
        finish(m_chosen + m_letters);
}

} // namespace tessera
