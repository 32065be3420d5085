// SPDX-License-Identifier: MIT
#include "multidoc/triggerrule.h"

namespace tessera {

bool Fires(TrigerDoc const& doc, unsigned int last, unsigned int input) {
    const unsigned int now = input & doc.m_nMask;
    return now == (doc.m_nMask & doc.m_nValue) && now != (last & doc.m_nMask);
}

int FirstThatFires(QVector<TrigerDoc*> const& docs, unsigned int last, unsigned int input) {
    for (int i = 0; i < docs.size(); ++i) {
        if (Fires(*docs.at(i), last, input))
            return i;
    }
    return -1;
}

void TriggerRule::InputChange(unsigned int input, QVector<TrigerDoc*> const& docs, TriggerPort& port) {
    if (input == m_nLast || !port.isSafe() || port.settledInput() != input)
        return;
    port.note(QString::asprintf("MultDocMark Triger File Input:Last->%X,Input->%X", m_nLast, input));
    if (!port.isIdle())
        Trigger(input, docs, port);
    m_nLast = input;
}

void TriggerRule::Trigger(unsigned int input, QVector<TrigerDoc*> const& docs, TriggerPort& port) const {
    const int index = FirstThatFires(docs, m_nLast, input);
    if (index < 0)
        return;
    TrigerDoc const& doc = *docs.at(index);
    if (!port.isOpen(doc.m_FileName))
        return;
    // The words are written as signed numbers: plants read this line with a parser of their own.
    const auto number = [](unsigned int word) { return static_cast<int>(word); };
    port.note(QString::asprintf("MultDocMark Triger File: %d,%d,%d,%d,%d,%d,%d,%d,", index, number(input & doc.m_nMask),
                                number(m_nLast & doc.m_nMask), number(doc.m_nMask & doc.m_nValue), number(m_nLast),
                                number(input), number(doc.m_nMask), number(doc.m_nValue)) +
              doc.m_FileName);
    port.queueDocument(doc);
}

} // namespace tessera
