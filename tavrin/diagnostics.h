// SPDX-License-Identifier: MIT
#pragma once

/// For hosts that check documents: `diagnose`, its rules, and `applyFixes`.

#include "tavrin/diagnostics/diagnose.h"
#include "tavrin/diagnostics/fixes.h"
#include "tavrin/diagnostics/rule.h"
