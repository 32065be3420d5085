// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace sim {

constexpr int kRockchip = 0;
constexpr int kRaspberryPi = 1;

/// The board by `setting` (TESSERA_BOARD: "0" or "1") or, without a number there, by the device tree's model text.
/// Anything unknown, a desktop computer too, counts as the Rockchip board.
int boardType(QString const& setting, QByteArray const& model);

} // namespace sim
