// SPDX-License-Identifier: MIT
#pragma once

/// For hosts that build or read documents in code: the records of all nodes and modifiers, `DSLRoot`, and what decodes
/// and encodes them.

#include "tavrin/dsl/dsl_root.h"
#include "tavrin/engine/json_decoder.h"
#include "tavrin/engine/record_types.h"
