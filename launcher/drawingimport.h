// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tessera {

/// Makes documents out of drawings. Main thread, with the main window built.
class DrawingImport {
public:
    /// Imports a vector file into a new document below the root and stores it; gives the document's path, or an empty
    /// one with a sentence in `error`. `report` gets the lines that tell what was added, changed and left out. An
    /// existing document is never changed; one with the very same content is named again.
    static QString import(QString const& drawing, QString& report, QString& error);
};

} // namespace tessera
