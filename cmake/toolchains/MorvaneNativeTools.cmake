# Programs a cross build needs for the build machine itself.
#
# The property-list generator runs during the build, so it must be a native
# program. A nested native configure of this same project builds it (and, for
# the Windows checks, the native module and render-case driver whose output the
# Windows build is compared with). A prebuilt native generator can be named
# instead with MORVANE_NATIVE_PIPL_GENERATOR.
#
# Defines the target morvane_native_tools, which brings the native programs up
# to date, and (as internal cache entries, visible in every directory):
#   MORVANE_NATIVE_PIPL_GENERATOR_PATH  the native generator to run
#   MORVANE_NATIVE_BINARY_DIR           the nested build folder (empty with a prebuilt generator)
include_guard(GLOBAL)

set(MORVANE_NATIVE_PIPL_GENERATOR "" CACHE FILEPATH
    "Prebuilt native morvane_pipl_generator for cross builds (empty: build one)")

if(MORVANE_NATIVE_PIPL_GENERATOR)
  set(MORVANE_NATIVE_PIPL_GENERATOR_PATH "${MORVANE_NATIVE_PIPL_GENERATOR}" CACHE INTERNAL "")
  set(MORVANE_NATIVE_BINARY_DIR "" CACHE INTERNAL "")
  add_custom_target(morvane_native_tools)
  return()
endif()

include(ExternalProject)

set(MORVANE_NATIVE_BINARY_DIR "${CMAKE_BINARY_DIR}/native" CACHE INTERNAL "")
set(MORVANE_NATIVE_PIPL_GENERATOR_PATH "${MORVANE_NATIVE_BINARY_DIR}/host/morvane_pipl_generator"
    CACHE INTERNAL "")

set(native_targets morvane_pipl_generator)
set(native_byproducts "${MORVANE_NATIVE_PIPL_GENERATOR_PATH}")
if(MORVANE_BUILD_WINDOWS_CHECKS)
  list(APPEND native_targets morvane_module morvane_render_cases)
  list(APPEND native_byproducts
    "${MORVANE_NATIVE_BINARY_DIR}/module/Morvane.so"
    "${MORVANE_NATIVE_BINARY_DIR}/tests/windows/morvane_render_cases")
endif()

set(native_build_type "${CMAKE_BUILD_TYPE}")
if(NOT native_build_type)
  set(native_build_type Release)
endif()

# The nested configure must not inherit the cross compiler: it is given no
# toolchain file and the build machine's default compilers.
ExternalProject_Add(morvane_native_tools
  SOURCE_DIR "${PROJECT_SOURCE_DIR}"
  BINARY_DIR "${MORVANE_NATIVE_BINARY_DIR}"
  CMAKE_GENERATOR "${CMAKE_GENERATOR}"
  CMAKE_ARGS
    -DCMAKE_BUILD_TYPE=${native_build_type}
    -DMORVANE_WERROR=${MORVANE_WERROR}
    -DMORVANE_BUILD_TESTS=OFF
    -DMORVANE_BUILD_TOOLS=OFF
    -DMORVANE_BUILD_BENCH=OFF
    -DMORVANE_BUILD_WINDOWS_CHECKS=${MORVANE_BUILD_WINDOWS_CHECKS}
  BUILD_COMMAND "${CMAKE_COMMAND}" --build "${MORVANE_NATIVE_BINARY_DIR}" --target ${native_targets}
  BUILD_ALWAYS ON
  BUILD_BYPRODUCTS ${native_byproducts}
  INSTALL_COMMAND ""
  STEP_TARGETS build)
