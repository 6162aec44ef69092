// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/structure.h"
#include "tavrin/images/web_image_node.h"
#include "tavrin/modifiers/aspect_ratio_modifier.h"
#include "tavrin/modifiers/background_modifier.h"
#include "tavrin/modifiers/border_modifier.h"
#include "tavrin/modifiers/clip_shape_modifier.h"
#include "tavrin/modifiers/clipped_modifier.h"
#include "tavrin/modifiers/clock_hand_rotation_effect_modifier.h"
#include "tavrin/modifiers/corner_radius_modifier.h"
#include "tavrin/modifiers/foreground_color_modifier.h"
#include "tavrin/modifiers/frame_modifier.h"
#include "tavrin/modifiers/line_limit_modifier.h"
#include "tavrin/modifiers/offset_modifier.h"
#include "tavrin/modifiers/opacity_modifier.h"
#include "tavrin/modifiers/overlay_modifier.h"
#include "tavrin/modifiers/padding_modifier.h"
#include "tavrin/modifiers/rotation_effect_modifier.h"
#include "tavrin/modifiers/scale_effect_modifier.h"
#include "tavrin/modifiers/widget_url_modifier.h"
#include "tavrin/modifiers/z_index_modifier.h"
#include "tavrin/nodes/color_node.h"
#include "tavrin/nodes/link_node.h"
#include "tavrin/nodes/progress_node.h"
#include "tavrin/nodes/shape_nodes.h"
#include "tavrin/nodes/text_node.h"
#include "tavrin/nodes/timer_node.h"

// One line for each record type: this is all that a new one needs besides its own file. The registries, the schema and
// the reference read these lists.

namespace tavrin {

template <class... Types>
struct TypeList {};

using NodeRecords = TypeList<VStackNode,            //
                             HStackNode,            //
                             ZStackNode,            //
                             SpacerNode,            //
                             EmptyViewNode,         //
                             RefNode,               //
                             TextNode,              //
                             ColorNode,             //
                             CircleNode,            //
                             RectangleNode,         //
                             RoundedRectangleNode,  //
                             CapsuleNode,           //
                             WebImageNode,          //
                             TimerNode,             //
                             LinkNode,              //
                             ProgressNode>;

using ModifierRecords = TypeList<FrameModifier,                    //
                                 PaddingModifier,                  //
                                 OffsetModifier,                   //
                                 AspectRatioModifier,              //
                                 LineLimitModifier,                //
                                 ForegroundColorModifier,          //
                                 BackgroundModifier,               //
                                 OverlayModifier,                  //
                                 BorderModifier,                   //
                                 ClipShapeModifier,                //
                                 ClippedModifier,                  //
                                 CornerRadiusModifier,             //
                                 OpacityModifier,                  //
                                 ZIndexModifier,                   //
                                 ScaleEffectModifier,              //
                                 RotationEffectModifier,           //
                                 ClockHandRotationEffectModifier,  //
                                 WidgetURLModifier>;

/// Records without a "type", which stand inside others.
using PartRecords = TypeList<ProgressAttachment>;

}  // namespace tavrin
