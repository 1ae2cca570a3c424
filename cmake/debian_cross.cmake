# Toolchain for Linux on another architecture: Debian's cross compiler, with libraries that tools/cross_root unpacks.
# LATCHKEY_DEBIAN_ARCH chooses the architecture, arm64 or s390x. Programs that the build or ctest runs go through QEMU.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LATCHKEY_DEBIAN_ARCH)

if(LATCHKEY_DEBIAN_ARCH STREQUAL "arm64")
  set(CMAKE_SYSTEM_PROCESSOR aarch64)
elseif(LATCHKEY_DEBIAN_ARCH STREQUAL "s390x")
  set(CMAKE_SYSTEM_PROCESSOR s390x)
else()
  message(FATAL_ERROR "LATCHKEY_DEBIAN_ARCH must be arm64 or s390x, not '${LATCHKEY_DEBIAN_ARCH}'")
endif()
set(triplet ${CMAKE_SYSTEM_PROCESSOR}-linux-gnu)

set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)

cmake_path(SET root NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/cross/${LATCHKEY_DEBIAN_ARCH})
if(NOT EXISTS ${root}/complete)
  message(FATAL_ERROR "${root} is missing: run tools/cross_root ${LATCHKEY_DEBIAN_ARCH}")
endif()
# For libraries that other libraries need, and for absolute paths in linker scripts.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,-rpath-link,${root}/usr/lib/${triplet} -Wl,--sysroot=${root}")
endforeach()

set(CMAKE_FIND_ROOT_PATH ${root} /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${root})
set(ENV{PKG_CONFIG_LIBDIR} ${root}/usr/lib/${triplet}/pkgconfig)
set(ENV{PKG_CONFIG_ALLOW_SYSTEM_CFLAGS} 1)  # keep -I/usr/include: the cross compiler lacks it

set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-${CMAKE_SYSTEM_PROCESSOR};-L;${root}")
