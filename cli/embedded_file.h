// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

/// `name()` is what a file held when the program was built. The file is a string literal; the macro stands outside of
/// every namespace.
#define TAVRIN_EMBEDDED_FILE(name, file)                                                                       \
    __asm__(".section .rodata\n.global tavrin_embedded_" #name "\ntavrin_embedded_" #name ":\n.incbin \"" file \
            "\"\n.global tavrin_embedded_" #name "_end\ntavrin_embedded_" #name "_end:\n.byte 0\n.previous");  \
    extern "C" const char tavrin_embedded_##name[];                                                            \
    extern "C" const char tavrin_embedded_##name##_end[];                                                      \
    static std::string_view name() {                                                                           \
        return {tavrin_embedded_##name,                                                                        \
                static_cast<std::size_t>(tavrin_embedded_##name##_end - tavrin_embedded_##name)};              \
    }
