# Toolchain for the Windows products: Debian's mingw-w64, posix threads.
# LATCHKEY_ARCH chooses the bitness, x86 or x64. Programs that the build or ctest runs go through Wine.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LATCHKEY_ARCH)

if(LATCHKEY_ARCH STREQUAL "x86")
  set(triplet i686-w64-mingw32)
  set(CMAKE_SYSTEM_PROCESSOR i686)
  # The same arithmetic as on the other targets; and hosts may call the DLL with the stack aligned to 4
  # bytes only.
  set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
elseif(LATCHKEY_ARCH STREQUAL "x64")
  set(triplet x86_64-w64-mingw32)
  set(CMAKE_SYSTEM_PROCESSOR x86_64)
else()
  message(FATAL_ERROR "LATCHKEY_ARCH must be x86 or x64, not '${LATCHKEY_ARCH}'")
endif()

set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)

# Each product is one file: the compiler's run-time is linked in.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")

set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../tools/wine;${LATCHKEY_ARCH}")
