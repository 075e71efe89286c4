# What a front-end needs to build against the library, and what its author reads.
include(CMakePackageConfigHelpers)

install(TARGETS qvtcapi EXPORT qvtcapi-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/qvtcapi DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

# Relative, so that the package may be moved.
file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(packaging/qvtcapi.pc.in packaging/qvtcapi.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/packaging/qvtcapi.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qvtcapi)
install(EXPORT qvtcapi-targets NAMESPACE qvtcapi:: DESTINATION ${package_dir})
configure_package_config_file(packaging/qvtcapi-config.cmake.in packaging/qvtcapi-config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(packaging/qvtcapi-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/packaging/qvtcapi-config.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/packaging/qvtcapi-config-version.cmake DESTINATION ${package_dir})

# The disposable terminal is a part of the sources.
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}
    FILES_MATCHING PATTERN "*.md" PATTERN disposable-terminal.md EXCLUDE)
install(FILES CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES examples/front_end.c DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
