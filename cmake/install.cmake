# What is installed, in four components: library (the shared library), development (headers, the files
# by which CMake and pkg-config find hearth, manual pages), tools (the hearth command) and doc (pages,
# examples with their sample data). An archive is needed by builds only: it belongs to development.
include(CMakePackageConfigHelpers)

set(hearth_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/hearth)

install(TARGETS hearth EXPORT hearth-targets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
                COMPONENT library NAMELINK_COMPONENT development)
install(DIRECTORY include/hearth DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

install(EXPORT hearth-targets NAMESPACE hearth:: DESTINATION ${hearth_package_dir}
        COMPONENT development)
# Only who links an archive links what it needs inside.
set(hearth_needs_pcre2 FALSE)
if(hearth_library_type STREQUAL "STATIC" AND HEARTH_VALIDATOR STREQUAL "builtin")
  set(hearth_needs_pcre2 TRUE)
  set(pc_static_requires ", libpcre2-8")
  set(pc_static_libs " -pthread")
endif()
configure_package_config_file(cmake/hearth-config.cmake.in hearth-config.cmake
                              INSTALL_DESTINATION ${hearth_package_dir}
                              PATH_VARS CMAKE_INSTALL_BINDIR CMAKE_INSTALL_DOCDIR)
write_basic_package_version_file(hearth-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/hearth-config.cmake
              ${PROJECT_BINARY_DIR}/hearth-config-version.cmake
        DESTINATION ${hearth_package_dir} COMPONENT development)

cmake_path(APPEND pc_includedir "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
cmake_path(APPEND pc_libdir "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
configure_file(cmake/hearth.pc.in hearth.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/hearth.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)

# A manual page carries the day of its build; SOURCE_DATE_EPOCH sets it.
string(TIMESTAMP build_day "%B %d, %Y" UTC)
string(REPLACE " 0" " " build_day "${build_day}")
function(hearth_install_page page component)
  file(READ docs/man/${page} text)
  string(REGEX REPLACE "^\\.Dd [^\n]*" ".Dd ${build_day}" text "${text}")
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/man/${page} CONTENT "${text}" @ONLY)
  string(REGEX MATCH "[0-9]$" section ${page})
  install(FILES ${PROJECT_BINARY_DIR}/man/${page}
          DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
endfunction()
hearth_install_page(libhearth.3 development)
hearth_install_page(hearth-files.5 development)

if(TARGET hearth_command)
  install(TARGETS hearth_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
  hearth_install_page(hearth.1 tools)
  install(FILES tools/hearth.bash
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME hearth
          COMPONENT tools)
  install(FILES tools/hearth.zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
          RENAME _hearth COMPONENT tools)
  install(FILES tools/hearth.fish
          DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tools)
endif()

install(FILES README.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT doc
        FILES_MATCHING PATTERN *.md PATTERN *.svg PATTERN *.png PATTERN man EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(FILES packaging/hearth.logrotate DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT doc)

# Takes out what the last installation put in. A project that has hearth inside has its own way.
if(PROJECT_IS_TOP_LEVEL)
  add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake
                    WORKING_DIRECTORY ${PROJECT_BINARY_DIR})
endif()
