// SPDX-License-Identifier: MIT
#include "automation/hiddentext.h"

#include <QLineEdit>

namespace tessera {

namespace {

/// The line that hides its text, or null.
QLineEdit const* hidingLine(QObject const* object) {
    auto const* line = qobject_cast<QLineEdit const*>(object);
    return line && line->echoMode() != QLineEdit::Normal ? line : nullptr;
}

} // namespace

QVariant HiddenText::read(QObject const* object, char const* property) {
    if (QLineEdit const* line = hidingLine(object)) {
        QLatin1String const name(property);
        if (name == QLatin1String("text"))
            return line->displayText();
        if (name == QLatin1String("selectedText"))
            return line->displayText().mid(line->selectionStart(), line->selectionLength());
    }
    return object->property(property);
}

bool HiddenText::isGuard(QObject const* object, char const* property) {
    return hidingLine(object) && QLatin1String(property) == QLatin1String("echoMode");
}

} // namespace tessera
