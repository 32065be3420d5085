// SPDX-License-Identifier: MIT
#pragma once

#include "support/timeoutscale.h"

#include <QTest>

// Every Qt test reads this first: the five seconds that the toolkit waits for a condition are a time-out like any
// other, and have the one factor of all. A sanitized test on a busy machine waits longer before it fails.
#undef QTRY_VERIFY
#define QTRY_VERIFY(expr) QTRY_VERIFY_WITH_TIMEOUT((expr), tests::scaled(5000))
#undef QTRY_VERIFY2
#define QTRY_VERIFY2(expr, messageExpression)                                                                          \
    QTRY_VERIFY2_WITH_TIMEOUT((expr), (messageExpression), tests::scaled(5000))
#undef QTRY_COMPARE
#define QTRY_COMPARE(expr, expected) QTRY_COMPARE_WITH_TIMEOUT((expr), expected, tests::scaled(5000))
