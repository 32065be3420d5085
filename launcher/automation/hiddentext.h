// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QVariant>

namespace tessera {

/// Lines that show dots in place of what is typed, as those for passwords. What they hold does not leave the program.
/// Main thread.
class HiddenText {
public:
    /// The property's value as it may be told: of a line that hides its text, what it shows.
    static QVariant read(QObject const* object, char const* property);
    /// True for the property by which a line that hides its text would show it.
    static bool isGuard(QObject const* object, char const* property);
};

} // namespace tessera
