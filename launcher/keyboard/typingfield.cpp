// SPDX-License-Identifier: MIT
#include "typingfield.h"

#include <QAbstractSpinBox>
#include <QDoubleValidator>
#include <QIntValidator>
#include <QLineEdit>
#include <QSpinBox>

namespace tessera {

namespace {

/// A field higher than this has lines, pixels.
constexpr int kOneLine = 96;

constexpr Qt::InputMethodHints kNumbers = Qt::ImhDigitsOnly | Qt::ImhFormattedNumbersOnly;
constexpr Qt::InputMethodHints kKinds = kNumbers | Qt::ImhUppercaseOnly | Qt::ImhLowercaseOnly |
                                        Qt::ImhDialableCharactersOnly | Qt::ImhEmailCharactersOnly |
                                        Qt::ImhUrlCharactersOnly | Qt::ImhLatinOnly;

void hint(QWidget* widget, bool digitsAlone) {
    Qt::InputMethodHint const wanted = digitsAlone ? Qt::ImhDigitsOnly : Qt::ImhFormattedNumbersOnly;
    Qt::InputMethodHints const hints = (widget->inputMethodHints() & ~kNumbers) | wanted;
    if (hints != widget->inputMethodHints())
        widget->setInputMethodHints(hints);
}

} // namespace

bool takesTyping(QWidget const* widget) {
    if (!widget || !widget->isEnabled() || !widget->testAttribute(Qt::WA_InputMethodEnabled))
        return false;
    // Of the fields the spin box alone says nothing of it when it is only to be read.
    auto const* box = qobject_cast<QAbstractSpinBox const*>(widget);
    return !box || !box->isReadOnly();
}

void hintNumbers(QWidget* widget) {
    if (auto const* whole = qobject_cast<QSpinBox*>(widget)) {
        hint(widget, whole->minimum() >= 0);
        return;
    }
    if (qobject_cast<QDoubleSpinBox*>(widget)) {
        hint(widget, false);
        return;
    }
    auto const* line = qobject_cast<QLineEdit*>(widget);
    if (!line || (line->inputMethodHints() & kKinds) != 0)
        return;
    if (auto const* whole = qobject_cast<QIntValidator const*>(line->validator()))
        hint(widget, whole->bottom() >= 0);
    else if (qobject_cast<QDoubleValidator const*>(line->validator()))
        hint(widget, false);
}

void hintAsTyped(QWidget* widget) {
    constexpr Qt::InputMethodHints asTyped = Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText;
    if (takesTyping(widget) && (widget->inputMethodHints() & asTyped) != asTyped)
        widget->setInputMethodHints(widget->inputMethodHints() | asTyped);
}

QRect typingArea(QWidget const* widget) {
    if (widget->height() <= kOneLine)
        return QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
    QRect const cursor = widget->inputMethodQuery(Qt::ImCursorRectangle).toRect();
    return QRect(widget->mapToGlobal(cursor.topLeft()), cursor.size());
}

} // namespace tessera
