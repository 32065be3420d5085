// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace tessera {

/// Names of documents below the application root. No window needed.
class DocumentFiles {
public:
    /// The folder of the documents, absolute.
    static QString folder();
    /// The document that --open means: an existing path as it is, else the document of that name, with or without
    /// ".mkf", in folder(). Empty when there is none.
    static QString existing(QString const& given);
    /// Where the import of `drawing` with the document content `content` goes: "<folder>/<base>.mkf", or "<base>_2.mkf"
    /// and so on when that holds something else. A document that already holds `content` is named again. `content`
    /// empty fits no existing document.
    static QString importTarget(QString const& drawing, QByteArray const& content);
};

} // namespace tessera
