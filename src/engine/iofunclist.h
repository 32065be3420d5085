// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// One named input/output function of the machine. The order of the fields is part of the boundary.
struct IOFuncList {
    QString Name;               ///< Chinese key, also the key of IOCheckedSys::GetFunObject
    int Reserved = 0;           ///< carried unchanged
    unsigned int LastInput = 0; ///< last masked input word, written by the edge detection
    bool InputEnable = false;
    unsigned int InputMask = 0;  ///< bit n watches input n
    unsigned int InputValue = 0; ///< level pattern of the watched bits that makes the function active
    bool OutputEnable = false;
    unsigned int OutputMask = 0;
    unsigned int OutputValue = 0;
    bool DelayEnable = false;
    int DelayTime = 0; ///< ms
};
