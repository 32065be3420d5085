// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>
#include <QString>
#include <vector>

/// Command record of the command server. An answer is the received record with its arguments replaced by
/// status ("0" good, "1" bad) and text. The order of the fields is part of the boundary.
struct CCSCmd {
    int Id = 0;                ///< carried unchanged
    QString Name;              ///< command name
    int First = 0;             ///< carried unchanged
    int Second = 0;            ///< carried unchanged
    std::vector<QString> Args; ///< arguments, or status and text of an answer
};
Q_DECLARE_METATYPE(CCSCmd)
