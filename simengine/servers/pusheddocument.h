// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/document.h"

#include <QString>
#include <optional>

namespace sim {

/// The content that the first string of a pushed document stands for, as docs/protocols.md tells: "data:" and base64,
/// "upload:" and the name it was put under, else a document of this machine. Nothing and the reason when there is no
/// such content or it is damaged. Main thread.
std::optional<DocumentContent> pushedContent(QString const& first, QString& error);

/// The file of a pushed document's name: a bare name or the path of a ".mkf" file, in the documents folder in both
/// cases. Nothing and the reason otherwise. Any thread.
std::optional<QString> pushedPath(QString const& name, QString& error);

} // namespace sim
