// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tessera {

/// The persistent count of passes: key "MarkCnt" of /ini/Marking.ini. Main thread.
class RunCounter {
public:
    RunCounter();
    /// The count as last set, whether it could be stored or not; 0 without a file.
    int Value() const { return m_nValue; }
    /// Sets and stores the count; it is on the disk when the call returns true. A failed store is repeated by the next.
    bool Set(int value);
    /// Why the last store failed, empty when it did not.
    QString const& Error() const { return m_Error; }

private:
    int m_nValue = 0;
    QString m_Error;
};

} // namespace tessera
