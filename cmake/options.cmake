# What can be chosen. Without an option only the library is built. Sanitizers and warnings apply to
# hearth's own targets only.
if(PROJECT_IS_TOP_LEVEL)
  option(BUILD_SHARED_LIBS "Build libhearth.so, else libhearth.a" ON)
endif()
# A project that adds hearth's folder gets the shared library unless it says otherwise.
if(NOT DEFINED BUILD_SHARED_LIBS OR BUILD_SHARED_LIBS)
  set(hearth_library_type SHARED)
else()
  set(hearth_library_type STATIC)
endif()
option(HEARTH_INSTALL "Install the library and what is built with it" ${PROJECT_IS_TOP_LEVEL})
option(HEARTH_BUILD_TESTS "Build the tests (needs GoogleTest)" OFF)
option(HEARTH_BUILD_EXAMPLES "Build the example programs" OFF)
option(HEARTH_BUILD_TOOLS "Build the hearth command (needs CLI11)" OFF)
option(HEARTH_BUILD_BENCH "Build the benchmarks (needs Google Benchmark and the peers)" OFF)
option(HEARTH_BUILD_FUZZ "Build the fuzz targets (needs clang)" OFF)
option(HEARTH_WERROR "Treat warnings as errors" OFF)

set(HEARTH_SANITIZE "" CACHE STRING "Sanitizers to build with: address,undefined or thread")

set(HEARTH_VALIDATOR "builtin" CACHE STRING
    "JSON Schema validator: builtin, or platform to link HEARTH_PLATFORM_VALIDATOR in its place")
set_property(CACHE HEARTH_VALIDATOR PROPERTY STRINGS builtin platform)
set(HEARTH_PLATFORM_VALIDATOR "" CACHE STRING
    "Library that has json_validate_instance and json_validate_instance_from_file")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

# Who asks for the smallest code gets a libhearth.so that is optimised as a whole, 4 % smaller, where
# the compiler and the linker can do it. Clang's comes out no smaller.
set(hearth_lto_default OFF)
if(CMAKE_BUILD_TYPE STREQUAL "MinSizeRel" AND hearth_library_type STREQUAL "SHARED"
   AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT CMAKE_INTERPROCEDURAL_OPTIMIZATION)
  include(CheckIPOSupported)
  check_ipo_supported(RESULT hearth_lto_default LANGUAGES CXX)
endif()
option(HEARTH_LTO "Optimise libhearth.so as a whole when it is linked (GCC)" ${hearth_lto_default})
