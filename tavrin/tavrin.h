// SPDX-License-Identifier: MIT
#pragma once

/// The one header that a host needs to draw documents. Beside it: `tavrin/records.h` to build documents in code,
/// `tavrin/diagnostics.h` to find what is wrong or doubtful in them. These are what hosts include; what lies in folders
/// is what they are made of, and may move.

#include "tavrin/dsl/view_origins.h"
#include "tavrin/engine/tavrin_engine.h"
#include "tavrin/images/image_decoder.h"
#include "tavrin/images/image_processer.h"
#include "tavrin/images/web_image.h"
#include "tavrin/images/web_image_cache.h"
#include "tavrin/images/web_image_hasher.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json_place.h"
#include "tavrin/modifiers/kel_clock_widget_kit.h"
#include "tavrin/platform/explain/explanation.h"
#include "tavrin/platform/foundation/logger.h"
#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/foundation/threads/main_queue.h"
#include "tavrin/platform/ui/environment.h"
#include "tavrin/platform/ui/progress_view.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/platform/ui/view_tree.h"
#include "tavrin/platform/ui/widget_family.h"
#include "tavrin/schema/document_schema.h"
#include "tavrin/values/model_context.h"
#include "tavrin/widget/animation_renderer.h"
#include "tavrin/widget/document.h"
#include "tavrin/widget/image_renderer.h"
#include "tavrin/widget/widget.h"
