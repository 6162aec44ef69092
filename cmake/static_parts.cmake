# SPDX-License-Identifier: MIT
# Lets programs carry in themselves what they draw and decode with: each shared library takes every start a tenth of a
# millisecond, and Cairo's brings in nine of the X window system's that nothing here calls. Those who use the installed
# package are not concerned. Cairo is carried under the Mozilla Public License, one of its two; libraries that are under
# the LGPL alone stay shared. Modules of other programs link the shared ones: the archives are not made for them.
set(tavrin_carried_packages)

# Puts `libraries` in front of the shared ones of a target, which the linker then finds no need for. `package` is the
# Debian package of the first; where one is missing nothing changes.
function(tavrin_carry target package)
  set(files)
  foreach(library ${ARGN})
    find_library(tavrin_${library} ${library})
    if(NOT tavrin_${library})
      return()
    endif()
    list(APPEND files $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${tavrin_${library}}>)
  endforeach()
  get_target_property(shared PkgConfig::${target} INTERFACE_LINK_LIBRARIES)
  set_target_properties(PkgConfig::${target} PROPERTIES INTERFACE_LINK_LIBRARIES "${files};${shared}")
  set(tavrin_carried_packages ${tavrin_carried_packages} ${package} PARENT_SCOPE)
endfunction()

add_link_options(LINKER:--as-needed)
tavrin_carry(cairo libcairo2-dev libcairo.a libpixman-1.a libpng16.so libfontconfig.so libfreetype.so libz.so)
if(tavrin_libpixman-1.a)
  list(APPEND tavrin_carried_packages libpixman-1-dev)
endif()
tavrin_carry(libdeflate libdeflate-dev libdeflate.a)
tavrin_carry(jpeg libjpeg62-turbo-dev libjpeg.a)
tavrin_carry(webp libwebp-dev libwebpdemux.a libwebp.a)
tavrin_carry(gif libgif-dev libgif.a)
