// SPDX-License-Identifier: MIT
#include "inputdevices.h"

#include <QList>
#include <algorithm>

namespace tessera {

namespace {

/// Keys 1 to 31, Escape to S. A device that has all of them has the other letters too; the kernel prints the words of
/// the key bits with the lowest last, 32 or 64 bits wide as it is itself.
constexpr quint64 kKeyboardKeys = 0xFFFFFFFEu;
/// The device is looked at where it is touched.
constexpr quint64 kDirectProperty = 0x2;

/// The value of a line such as "B: KEY=10000 7 ff", its last word; 0 when there is none.
quint64 lowestWord(QList<QByteArray> const& device, char const* name) {
    for (QByteArray const& line : device) {
        if (line.startsWith(name))
            return line.mid(int(qstrlen(name))).trimmed().split(' ').last().toULongLong(nullptr, 16);
    }
    return 0;
}

bool isKeyboard(QList<QByteArray> const& device) {
    return (lowestWord(device, "B: KEY=") & kKeyboardKeys) == kKeyboardKeys;
}

bool isPointer(QList<QByteArray> const& device) {
    if ((lowestWord(device, "B: PROP=") & kDirectProperty) != 0)
        return true;
    return std::any_of(device.begin(), device.end(), [](QByteArray const& line) {
        return line.startsWith("H: Handlers=") && line.mid(12).prepend(' ').contains(" mouse");
    });
}

template<typename Test>
bool anyDevice(QByteArray const& devices, Test test) {
    QList<QByteArray> device;
    for (QByteArray const& line : (devices + "\n\n").split('\n')) {
        if (!line.trimmed().isEmpty()) {
            device.append(line);
            continue;
        }
        if (test(device))
            return true;
        device.clear();
    }
    return false;
}

} // namespace

bool listsKeyboard(QByteArray const& devices) {
    return anyDevice(devices, isKeyboard);
}

bool listsPointer(QByteArray const& devices) {
    return anyDevice(devices, isPointer);
}

bool wantsKeyboard(KeyboardMode mode, QByteArray const& devices) {
    if (mode != KeyboardMode::Auto)
        return mode == KeyboardMode::On;
    return listsPointer(devices) && !listsKeyboard(devices);
}

} // namespace tessera
