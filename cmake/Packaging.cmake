# Installation and the Debian package (`cpack -G DEB` in a build folder, or the `package`
# target): the `morvane` program on the PATH, the effect module it loads with its property list
# in <prefix>/lib/morvane, the frei0r modules in <prefix>/lib/frei0r-1 (where ffmpeg, MLT and
# GStreamer look by default) and the README. The run-time libraries the programs link are found
# by dpkg-shlibdeps and declared as the package's dependencies.
#
# In the Windows cross build the package is a zip (`cpack -G ZIP` in build/windows-release, made
# by scripts/build-windows.sh): a folder Morvane-<version>-win64 holding Morvane.aex and
# INSTALL.txt, which says where it goes.
include_guard(GLOBAL)

set(CPACK_PACKAGE_NAME morvane)
set(CPACK_PACKAGE_VENDOR Orbrenn)
if(WIN32)
  install(TARGETS morvane_module LIBRARY DESTINATION . RUNTIME DESTINATION .)
  install(FILES "${CMAKE_CURRENT_LIST_DIR}/INSTALL-windows.txt" DESTINATION . RENAME INSTALL.txt)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME "Morvane-${PROJECT_VERSION}-win64")
  include(CPack)
  return()
endif()

if(TARGET morvane_module AND NOT WIN32)
  install(TARGETS morvane_module LIBRARY DESTINATION lib/morvane)
  install(FILES "$<TARGET_PROPERTY:morvane_module,MORVANE_PIPL_PATH>" DESTINATION lib/morvane)
endif()
if(TARGET morvane)
  install(TARGETS morvane RUNTIME DESTINATION bin)
endif()
install(FILES "${PROJECT_SOURCE_DIR}/README.md" DESTINATION share/doc/morvane)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT Orbrenn)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Morvane: stretches every row or column of an image by its pixels' intensity")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "The Morvane video effect outside its hosts: the morvane command-line renderer for image\n"
    "files and sequences, and frei0r filter and mixer modules for ffmpeg, MLT and GStreamer.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_STRIP_FILES ON)
include(CPack)
