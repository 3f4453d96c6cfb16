# Headers, library and its development link.
install(TARGETS hearth EXPORT hearth-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/hearth DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
