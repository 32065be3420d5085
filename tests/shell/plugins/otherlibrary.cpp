// SPDX-License-Identifier: MIT
#include <QtGlobal>

/// A library that is no custom window.
extern "C" Q_DECL_EXPORT int SomethingElse() {
    return 1;
}
