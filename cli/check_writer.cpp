// SPDX-License-Identifier: MIT
#include "cli/check_writer.h"

namespace tavrin::cli {

std::unique_ptr<CheckWriter> checkWriter(CheckFormat format, const Source* model) {
    switch (format) {
        case CheckFormat::json: return jsonCheckWriter();
        case CheckFormat::sarif: return sarifCheckWriter(model);
        case CheckFormat::github: return githubCheckWriter(model);
        case CheckFormat::text: break;
    }
    return nullptr;
}

}  // namespace tavrin::cli
