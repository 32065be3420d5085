// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/bytestream.h"

#include <QString>

namespace tests {

/// A pseudo terminal in raw mode: what is written here is read from the device slavePath() and the other way round, as
/// at the far end of a serial line. Fails the running test when the machine has none to give.
class PtyPair : public ByteStream {
public:
    PtyPair();
    ~PtyPair();

    /// The serial device for the program under test.
    const QString& slavePath() const { return m_slavePath; }

    /// The slave is held open here too, so that the line lives on while nobody has it open. After this the end is seen
    /// (waitForEnd()) when the last user closes the device.
    void releaseSlave();

    /// As when the plug is pulled: the device hangs up for whoever has it open.
    void hangUp();

private:
    int m_slave = -1;
    QString m_slavePath;
};

} // namespace tests
