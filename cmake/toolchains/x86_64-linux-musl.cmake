# musl on this machine's processor: Debian's own compiler with the C library, the C++ library and all
# others from the root that scripts/musl-test makes. Programs run as they are, by musl's loader in it.
set(HEARTH_MUSL_ROOT ${CMAKE_CURRENT_LIST_DIR}/../../build/musl-root
    CACHE PATH "Where everything is built for musl")
get_filename_component(HEARTH_MUSL_ROOT ${HEARTH_MUSL_ROOT} REALPATH)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES HEARTH_MUSL_ROOT)

set(CMAKE_C_COMPILER gcc-12 -specs=${HEARTH_MUSL_ROOT}/musl.specs)
set(CMAKE_CXX_COMPILER g++-12 -specs=${HEARTH_MUSL_ROOT}/musl.specs)

set(CMAKE_FIND_ROOT_PATH ${HEARTH_MUSL_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# pkg-config sees what is in the root only.
set(ENV{PKG_CONFIG_DIR} "")
set(ENV{PKG_CONFIG_LIBDIR} ${HEARTH_MUSL_ROOT}/usr/lib/pkgconfig)
