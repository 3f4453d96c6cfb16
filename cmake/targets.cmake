# The flags that every target of this project shares.
add_library(hearth_flags INTERFACE)
target_compile_features(hearth_flags INTERFACE cxx_std_17)
target_compile_options(
  hearth_flags INTERFACE -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
                         -Woverloaded-virtual -Wformat=2 -Wundef $<$<BOOL:${HEARTH_WERROR}>:-Werror>)
# 64-bit file offsets and times also where the default is 32.
target_compile_definitions(hearth_flags INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
if(HEARTH_SANITIZE)
  target_compile_options(hearth_flags INTERFACE -fsanitize=${HEARTH_SANITIZE}
                                                -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(hearth_flags INTERFACE -fsanitize=${HEARTH_SANITIZE})
endif()

# An object library of hearth's own sources: position independent, hidden unless marked HEARTH_API.
function(hearth_add_objects name)
  add_library(${name} OBJECT)
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_EXTENSIONS OFF
                                           CXX_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
  target_link_libraries(${name} PRIVATE hearth_flags)
endfunction()
