#pragma once

#include <functional>
#include <map>
#include <string>

#include "tavrin/dsl/node.h"

namespace tavrin {

/// The named nodes of a document.
using NodeDictionary = std::map<std::string, Node, std::less<>>;

}  // namespace tavrin
