// SPDX-License-Identifier: MIT
#include "tavrin/engine/json_decoder.h"

#include "tavrin/engine/registries.h"

namespace tavrin {

JSONDecoder::JSONDecoder(DecodingOptions options) : options_(options) { options_.registries = &recordRegistries(); }

const JSONDecoder& DSLJSONDecoder() {
    static const JSONDecoder decoder(DecodingOptions{.convertsNonConformingFloats = true});
    return decoder;
}

const JSONEncoder& DSLJSONEncoder() {
    static const JSONEncoder encoder;
    return encoder;
}

}  // namespace tavrin
