# 32-bit ARM with hardware floating point: Debian's cross compiler, its C library, and the packages
# of that architecture that scripts/arm-test unpacks into HEARTH_ARM_ROOT. Programs that the build
# runs, tests above all, run under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

set(triplet arm-linux-gnueabihf)
set(HEARTH_ARM_ROOT ${CMAKE_CURRENT_LIST_DIR}/../../build/arm-root
    CACHE PATH "Where the packages of the target are unpacked")
get_filename_component(HEARTH_ARM_ROOT ${HEARTH_ARM_ROOT} ABSOLUTE)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES HEARTH_ARM_ROOT)

set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm;-L;/usr/${triplet})

set(CMAKE_FIND_ROOT_PATH ${HEARTH_ARM_ROOT} /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# pkg-config sees the target's packages only.
set(ENV{PKG_CONFIG_DIR} "")
set(ENV{PKG_CONFIG_LIBDIR} ${HEARTH_ARM_ROOT}/usr/lib/${triplet}/pkgconfig)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${HEARTH_ARM_ROOT})
