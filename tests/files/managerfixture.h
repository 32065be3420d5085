// SPDX-License-Identifier: MIT
#pragma once

#include "files/filemanager.h"
#include "tests/support/dialoganswerer.h"
#include "tests/support/temporaryroot.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

Q_DECLARE_METATYPE(FileManagerType)
Q_DECLARE_METATYPE(MarkFileType)

namespace tests {

/// The dialog's child of this name, which must be there.
template<typename Widget>
Widget* child(FileManager& dialog, char const* name) {
    Widget* found = dialog.findChild<Widget*>(QString::fromLatin1(name));
    if (!found)
        qFatal("no %s in the dialog", name);
    return found;
}

inline void press(FileManager& dialog, char const* button) {
    child<QPushButton>(dialog, button)->click();
}

/// The names in the list, from top to bottom.
inline QStringList listed(FileManager& dialog) {
    QStringList names;
    auto const* list = child<QListWidget>(dialog, "listWidget");
    for (int row = 0; row < list->count(); ++row)
        names.append(list->item(row)->text());
    return names;
}

} // namespace tests
