# Cross-compiles for 64-bit Windows with Debian's MinGW-w64 toolchain
# (packages mingw-w64 and binutils-mingw-w64-x86-64).
#
# The "posix" thread model is preferred: its libstdc++ has std::thread and
# std::mutex, which the simulated host uses. The "win32" flavour is accepted
# when it is the only one installed; the module itself starts no threads.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(MORVANE_MINGW_TRIPLE x86_64-w64-mingw32)

find_program(MORVANE_MINGW_CXX
  NAMES ${MORVANE_MINGW_TRIPLE}-g++-posix ${MORVANE_MINGW_TRIPLE}-g++ ${MORVANE_MINGW_TRIPLE}-g++-win32
  REQUIRED)
find_program(MORVANE_MINGW_CC
  NAMES ${MORVANE_MINGW_TRIPLE}-gcc-posix ${MORVANE_MINGW_TRIPLE}-gcc ${MORVANE_MINGW_TRIPLE}-gcc-win32)
find_program(MORVANE_MINGW_WINDRES NAMES ${MORVANE_MINGW_TRIPLE}-windres REQUIRED)

set(CMAKE_CXX_COMPILER "${MORVANE_MINGW_CXX}")
if(MORVANE_MINGW_CC)
  set(CMAKE_C_COMPILER "${MORVANE_MINGW_CC}")
endif()
set(CMAKE_RC_COMPILER "${MORVANE_MINGW_WINDRES}")

set(CMAKE_FIND_ROOT_PATH /usr/${MORVANE_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Everything the Windows binaries need from the compiler's run-time (libgcc,
# libstdc++, winpthread) is linked in, so they load with system DLLs alone.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")

# Wine runs the cross-built programs when a test needs to (CTest uses this).
find_program(MORVANE_WINE NAMES wine64 wine PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(MORVANE_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${MORVANE_WINE}")
endif()
