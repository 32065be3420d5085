// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QString>

/// Modal notice to the operator.
class ENGINE_API msgBox {
public:
    /// Shows title and text and blocks until acknowledged. `buttons`: 1 OK alone, 2 OK and cancel. Gives 1 for OK and 0
    /// otherwise. Main thread.
    static int show(QString const& title, QString const& text, int buttons);
};
