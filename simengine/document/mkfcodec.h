// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/document.h"

#include <QByteArray>
#include <optional>

namespace sim {

/// The `.mkf` document file, described byte for byte in docs/file-formats.md. All functions: any thread.
constexpr quint32 kMkfVersion = 1;

/// Files larger than this are neither written nor read.
constexpr qint64 kMaxMkfBytes = qint64(1) << 30;

/// The file's bytes; nothing when they would be more than `most`.
std::optional<QByteArray> encodeMkf(const DocumentContent& content, qint64 most = kMaxMkfBytes);

/// What the file holds, or nothing and the reason in `error`. A file is taken whole or not at all.
std::optional<DocumentContent> decodeMkf(const QByteArray& bytes, QString* error);

/// The pens as in the file's section, which also serves to compare tables bit for bit.
QByteArray encodePens(const LayerParamEx& pens);

/// Saves the document under its file name so that after a power cut it is the old file or the new one, and marks it as
/// saved. False and a reason when it could not be written.
bool saveDocument(Document& document, QString* error);

/// Replaces the document's content by the file of its name. False and a reason when the file is missing, damaged or of
/// a newer program; the document then stays as it was.
bool loadDocument(Document& document, QString* error);

} // namespace sim
