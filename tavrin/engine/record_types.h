// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/structure.h"
#include "tavrin/images/web_image_node.h"
#include "tavrin/modifiers/appearance_modifiers.h"
#include "tavrin/modifiers/effect_modifiers.h"
#include "tavrin/modifiers/layout_modifiers.h"
#include "tavrin/modifiers/widget_url_modifier.h"
#include "tavrin/nodes/color_node.h"
#include "tavrin/nodes/link_node.h"
#include "tavrin/nodes/progress_node.h"
#include "tavrin/nodes/shape_nodes.h"
#include "tavrin/nodes/text_nodes.h"

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
