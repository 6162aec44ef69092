#pragma once

#include <cairo.h>

#include "tavrin/platform/text/handles.h"

namespace tavrin::text {

/// Scales an ARGB32 picture: each pixel is the average of the area it covers, in premultiplied colours. Larger pictures
/// are interpolated.
Handle<cairo_surface_t, cairo_surface_destroy> areaAverage(cairo_surface_t* picture, int width, int height);

}  // namespace tavrin::text
