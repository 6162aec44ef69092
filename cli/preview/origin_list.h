#pragma once

#include <string>

#include "tavrin/dsl/view_origins.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin::cli {

/// The views of a tree in the order in which `tavrin layout` prints them, each with the way to what it comes from in
/// the document: `{"views": [{"view": …, "origin": …}, …]}`.
[[nodiscard]] std::string originList(const AnyView& root, const ViewOrigins& origins);

}  // namespace tavrin::cli
