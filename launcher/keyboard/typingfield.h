// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

class QWidget;

namespace tessera {

/// The operator can type into the widget as it is now.
bool takesTyping(QWidget const* widget);

/// Gives a field for numbers the hints that bring up the number pad: a spin box, or a line edit whose validator is one
/// of whole or real numbers. The pad has a sign and a decimal point where the field's range has need of them. Fields
/// with hints of their own for what is typed keep them, and so do all others.
void hintNumbers(QWidget* widget);

/// Keeps the keyboard from beginning a field with a capital, and from gathering letters to a word of a dictionary that
/// the machine may have: names of documents and users are taken as they are typed, letter by letter.
void hintAsTyped(QWidget* widget);

/// What the operator must see while typing, on the screen, pixels: the field, of a high one the line of the cursor.
QRect typingArea(QWidget const* widget);

} // namespace tessera
