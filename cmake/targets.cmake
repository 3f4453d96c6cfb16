# The flags that every target of this project shares.
add_library(hearth_flags INTERFACE)
target_compile_features(hearth_flags INTERFACE cxx_std_17)
target_compile_options(
  hearth_flags INTERFACE -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
                         -Woverloaded-virtual -Wformat=2 -Wundef $<$<BOOL:${HEARTH_WERROR}>:-Werror>)
# 64-bit file offsets and times also where the default is 32.
target_compile_definitions(hearth_flags INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
# Not every C library can name the frames of a stack; log/backtrace.cc does it in its place.
if(Backtrace_FOUND)
  target_compile_definitions(hearth_flags INTERFACE HEARTH_HAS_BACKTRACE)
endif()
if(HEARTH_SANITIZE)
  target_compile_options(hearth_flags INTERFACE -fsanitize=${HEARTH_SANITIZE}
                                                -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(hearth_flags INTERFACE -fsanitize=${HEARTH_SANITIZE})
endif()

# An object library of hearth's own sources, or an archive (STATIC): position independent, hidden
# unless marked HEARTH_API.
function(hearth_add_objects name)
  cmake_parse_arguments(arg "STATIC" "" "" ${ARGN})
  if(arg_STATIC)
    add_library(${name} STATIC)
  else()
    add_library(${name} OBJECT)
  endif()
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_EXTENSIONS OFF
                                           CXX_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
  # Sections of their own let the linker drop what nobody calls. Unwind tables give a backtrace its
  # frames, also on ARM where C++ code without exceptions has none by default.
  target_compile_options(${name} PRIVATE -ffunction-sections -fdata-sections -funwind-tables)
  # These objects hold ordinary code as well, and tests and tools link that.
  if(HEARTH_LTO AND hearth_library_type STREQUAL "SHARED")
    target_compile_options(${name} PRIVATE -flto -ffat-lto-objects)
    target_link_options(${name} INTERFACE -fno-lto)
  endif()
  target_link_libraries(${name} PRIVATE hearth_flags)
endfunction()

# How the library is put together: from the objects of every room, as a shared library or an archive.
# json-c belongs to the public face. PCRE2 is private, so only programs that link the archive need it;
# an installed hearth names both as hearth-config.cmake finds them.
function(hearth_link_library name)
  foreach(room hearth_base hearth_objects hearth_schema)
    if(TARGET ${room})
      target_sources(${name} PRIVATE $<TARGET_OBJECTS:${room}>)
    endif()
  endforeach()
  target_link_libraries(
    ${name} PUBLIC $<BUILD_INTERFACE:PkgConfig::JSONC> $<INSTALL_INTERFACE:hearth::json-c>
                   Threads::Threads)
  if(TARGET hearth_schema)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:PkgConfig::PCRE2>
                                          $<INSTALL_INTERFACE:hearth::pcre2-8>)
  else()
    target_link_libraries(${name} PRIVATE ${HEARTH_VALIDATOR_TARGET})
  endif()
  if(Backtrace_FOUND)
    target_link_libraries(${name} PRIVATE ${Backtrace_LIBRARIES})
  endif()
  if(hearth_library_type STREQUAL "SHARED")
    hearth_limit_exports(${name})
    target_link_options(${name} PRIVATE $<$<BOOL:${HEARTH_LTO}>:-flto=auto>)
  endif()
endfunction()

# Exactly the public names come out of the shared library, everything it needs is there, its tables
# are read-only once it is loaded, and it tells its version though nothing refers to that text.
function(hearth_limit_exports name)
  set(map ${PROJECT_SOURCE_DIR}/cmake/hearth.map)
  set_target_properties(${name} PROPERTIES LINK_DEPENDS ${map})
  target_link_options(
    ${name} PRIVATE LINKER:--version-script=${map} LINKER:--gc-sections LINKER:--as-needed
    LINKER:-z,relro,-z,now LINKER:--undefined=hearth_version_text)
  # A sanitizer's run-time library comes with the program, not with the library.
  if(NOT HEARTH_SANITIZE)
    target_link_options(${name} PRIVATE LINKER:--no-undefined)
  endif()
endfunction()
