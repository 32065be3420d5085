// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"

#include <QXmlStreamReader>

namespace sim {

/// False for bytes with a tag of more than 1000 attributes or a document type of more than 64 KiB: the reader of XML
/// compares each attribute with all before it, and nobody can stop it while it does.
bool areSvgTagsBounded(const QByteArray& bytes);

/// Passes over the element at whose start the reader stands, with all that is in it. The budget fails when that is
/// nested too deeply: the reader keeps each element that is open.
void skipSvgElement(QXmlStreamReader& in, ImportBudget& budget);

} // namespace sim
