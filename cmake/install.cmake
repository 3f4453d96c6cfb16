# What is installed: the library and its link, the headers, the files by which CMake and pkg-config
# find them, and the pages. Components are the Debian packages: runtime, development, tools.
include(CMakePackageConfigHelpers)

set(hearth_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/hearth)

install(TARGETS hearth EXPORT hearth-targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
                COMPONENT runtime NAMELINK_COMPONENT development)
install(DIRECTORY include/hearth DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

install(EXPORT hearth-targets NAMESPACE hearth:: DESTINATION ${hearth_package_dir}
        COMPONENT development)
configure_package_config_file(cmake/hearth-config.cmake.in hearth-config.cmake
                              INSTALL_DESTINATION ${hearth_package_dir})
write_basic_package_version_file(hearth-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/hearth-config.cmake
              ${PROJECT_BINARY_DIR}/hearth-config-version.cmake
        DESTINATION ${hearth_package_dir} COMPONENT development)

# It names no private packages: the library is a shared one, and pkg-config would refuse to answer
# where the development files of PCRE2 are not installed.
cmake_path(APPEND pc_includedir "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
cmake_path(APPEND pc_libdir "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
configure_file(cmake/hearth.pc.in hearth.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/hearth.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)

install(FILES docs/man/libhearth.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
install(FILES docs/man/hearth-files.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5
        COMPONENT development)
