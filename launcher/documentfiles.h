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
    /// The name by which the operator's dialogs know the document of an absolute path: the bare name for a file of
    /// folder() that is named in small letters, so that it is not opened a second time and is there again after a
    /// restart; others keep their path.
    static QString openName(QString const& path);
    /// Where the import of `drawing` with the document content `content` goes: "<folder>/<base>.mkf" in small letters,
    /// or
    /// "<base>_2.mkf" and so on when that holds something else. A document that already holds `content` is named again.
    /// `content` empty fits no existing document.
    static QString importTarget(QString const& drawing, QByteArray const& content);
};

} // namespace tessera
