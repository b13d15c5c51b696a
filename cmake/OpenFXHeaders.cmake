# The OpenFX API headers (release 1.5.1), fetched from the standard's public repository. Only the
# headers are used: nothing of the repository is built. A machine that cannot reach it points
# FETCHCONTENT_SOURCE_DIR_OPENFX at a copy; where none is given and an offline copy of the
# headers archive is found (MORVANE_THIRD_PARTY_DIR, or a folder listed in third-party-dirs.txt),
# it is unpacked in the build folder and used instead.
# Sets MORVANE_OPENFX_INCLUDE_DIR.
include_guard(GLOBAL)
include(FetchContent)

set(MORVANE_OPENFX_TAG OFX_Release_1.5.1)
if(NOT FETCHCONTENT_SOURCE_DIR_OPENFX)
  set(archive_name "openfx-${MORVANE_OPENFX_TAG}-include.tar.gz")
  file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/third-party-dirs.txt" listed REGEX "^[^#]")
  set(dirs "$ENV{MORVANE_THIRD_PARTY_DIR}")
  foreach(dir IN LISTS listed)
    cmake_path(ABSOLUTE_PATH dir BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" NORMALIZE)
    list(APPEND dirs "${dir}")
  endforeach()
  foreach(dir IN LISTS dirs)
    if(dir AND EXISTS "${dir}/${archive_name}")
      set(unpacked "${CMAKE_BINARY_DIR}/_deps/openfx-offline")
      if(NOT EXISTS "${unpacked}/include/ofxImageEffect.h")
        file(ARCHIVE_EXTRACT INPUT "${dir}/${archive_name}" DESTINATION "${unpacked}")
      endif()
      set(FETCHCONTENT_SOURCE_DIR_OPENFX "${unpacked}" CACHE PATH "OpenFX headers (offline copy)")
      break()
    endif()
  endforeach()
endif()

FetchContent_Declare(openfx
  GIT_REPOSITORY https://github.com/AcademySoftwareFoundation/openfx.git
  GIT_TAG ${MORVANE_OPENFX_TAG}
  GIT_SHALLOW TRUE)
FetchContent_GetProperties(openfx)
if(NOT openfx_POPULATED)
  FetchContent_Populate(openfx)
endif()
set(MORVANE_OPENFX_INCLUDE_DIR "${openfx_SOURCE_DIR}/include")
