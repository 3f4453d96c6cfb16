# The flags that every target of this project shares.
add_library(hearth_flags INTERFACE)
target_compile_features(hearth_flags INTERFACE cxx_std_17)
target_compile_options(
  hearth_flags INTERFACE -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
                         -Woverloaded-virtual -Wformat=2 -Wundef $<$<BOOL:${HEARTH_WERROR}>:-Werror>)
# 64-bit file offsets and times also where the default is 32.
target_compile_definitions(hearth_flags INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
# Not every C library can name the frames of a stack; a crash is then reported without them.
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
  target_link_libraries(${name} PRIVATE hearth_flags)
endfunction()

# How the shared library is linked: exactly the public names come out, everything it needs is there,
# and its tables are read-only once it is loaded.
function(hearth_link_library name)
  set(map ${PROJECT_SOURCE_DIR}/cmake/hearth.map)
  set_target_properties(${name} PROPERTIES LINK_DEPENDS ${map})
  target_link_options(${name} PRIVATE LINKER:--version-script=${map} LINKER:--gc-sections
                      LINKER:--as-needed LINKER:-z,relro,-z,now)
  # A sanitizer's run-time library comes with the program, not with the library.
  if(NOT HEARTH_SANITIZE)
    target_link_options(${name} PRIVATE LINKER:--no-undefined)
  endif()
endfunction()
