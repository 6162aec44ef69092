# SPDX-License-Identifier: MIT
# Flags of this project's own targets; a host that links the library does not inherit them.
add_library(tavrin_warnings INTERFACE)
target_compile_options(
  tavrin_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            # A constructor's parameter may have its member's name, and a variable one of another source.
            $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,$<$<NOT:$<BOOL:${CMAKE_UNITY_BUILD}>>:-Wshadow>>
            -Wconversion
            -Wsign-conversion
            -Wnon-virtual-dtor
            -Wold-style-cast
            -Woverloaded-virtual
            -Werror
            # g++ 12 sees copies of 2^63 bytes in "text" + std::string at -O3.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
            # The same arithmetic in every build: pictures are the same bytes whatever the compiler's mood.
            -ffp-contract=off)
