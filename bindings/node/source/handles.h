// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include <napi.h>

#include "bindings/node/source/widgets.h"

namespace tavrin::addon {

/// How a value ends that no script holds any longer.
template <class Value>
void end(std::unique_ptr<Value>) noexcept {}
inline void end(std::unique_ptr<HeldWidget> widget) noexcept { putAside(std::move(widget)); }

/// A value that a script holds and cannot look into. `bytes` is about what it keeps in memory, which the script's
/// garbage collector would else not know of.
template <class Value>
Napi::Value hold(Napi::Env env, Value value, std::size_t bytes) {
    const auto size = static_cast<std::int64_t>(bytes);
    auto held = std::make_unique<Value>(std::move(value));
    const auto handle = Napi::External<Value>::New(env, held.get(), [size](Napi::Env ending, Value* dead) {
        end(std::unique_ptr<Value>(dead));
        std::int64_t left = 0;  // a thread of scripts that ends is told nothing any more
        static_cast<void>(napi_adjust_external_memory(ending, -size, &left));
    });
    static_cast<void>(held.release());
    Napi::MemoryManagement::AdjustExternalMemory(env, size);
    return handle;
}

template <class Value>
const Value& held(const Napi::Value& handle) {
    return *handle.As<Napi::External<Value>>().Data();
}

}  // namespace tavrin::addon
