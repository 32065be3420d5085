// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/layerdata.h"

#include <QByteArray>
#include <optional>

namespace sim {

/// A stored default pen is shorter than this, bytes.
constexpr qint64 kMaxDefaultPenBytes = 4096;

/// The bytes of "/ini/DefaultPen.dat", described in docs/file-formats.md.
QByteArray encodeDefaultPen(const LayerData& pen);

/// The pen, or nothing when the bytes are not a whole, undamaged file of this format.
std::optional<LayerData> decodeDefaultPen(const QByteArray& bytes);

} // namespace sim
