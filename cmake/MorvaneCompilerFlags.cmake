# Project-wide compiler settings.
#
# Outputs are compared bit for bit, so floating point must be rounded exactly as
# written in the sources: no fused multiply-add contraction and no fast-math, in
# every build type and whatever instruction set a later target adds.
option(MORVANE_WERROR "Treat warnings as errors" OFF)

if(MSVC)
  # Visual Studio 2022's /fp:precise never contracts a * b + c into a fused
  # multiply-add (that needs /fp:contract), and allows no reassociation.
  add_compile_options(/fp:precise /W4 /permissive- /utf-8)
  if(MORVANE_WERROR)
    add_compile_options(/WX)
  endif()
else()
  add_compile_options(-ffp-contract=off -fno-fast-math)
  add_compile_options(-Wall -Wextra -Wpedantic -Wno-multichar)
  if(MORVANE_WERROR)
    add_compile_options(-Werror)
  endif()
endif()

set(MORVANE_SANITIZE "" CACHE STRING "Sanitizers to build with: address,undefined or thread")
if(MORVANE_SANITIZE)
  add_compile_options(-fsanitize=${MORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${MORVANE_SANITIZE})
endif()
