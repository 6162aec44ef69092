// SPDX-License-Identifier: MIT
#include "tavrin/engine/json_decoder.h"

namespace tavrin {

const JSONDecoder& DSLJSONDecoder() {
    static const JSONDecoder decoder(DecodingOptions{.convertsNonConformingFloats = true});
    return decoder;
}

const JSONEncoder& DSLJSONEncoder() {
    static const JSONEncoder encoder;
    return encoder;
}

}  // namespace tavrin
