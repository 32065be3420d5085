// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace tessera {

/// Whether the keyboard on the screen is used: --keyboard.
enum class KeyboardMode {
    Auto, ///< when there is something to point with and nothing to type on
    On,
    Off
};

/// The kernel's list of input devices.
constexpr char kInputDevicesFile[] = "/proc/bus/input/devices";

/// The list names a device with the keys of a whole keyboard. Power buttons, remote controls and the like are none.
bool listsKeyboard(QByteArray const& devices);
/// The list names a touch panel, a mouse or the like.
bool listsPointer(QByteArray const& devices);
/// Whether the keyboard on the screen is to be used on a machine with this list; an empty one, as where the devices are
/// those of another machine, has nobody who could touch it.
bool wantsKeyboard(KeyboardMode mode, QByteArray const& devices);

} // namespace tessera
