// SPDX-License-Identifier: MIT
#pragma once

/// Marks what an engine library exports. Every declaration of this folder that has code behind it carries it.
#define ENGINE_API __attribute__((visibility("default")))
