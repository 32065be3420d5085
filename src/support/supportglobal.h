// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// Marks what libtessera-support.so shows to the front end and to an engine; all else stays hidden.
#define TESSERA_SUPPORT_EXPORT Q_DECL_EXPORT
