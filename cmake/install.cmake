# What a front-end needs to build against the library, and what it runs with.
include(CMakePackageConfigHelpers)

install(TARGETS qvtcapi EXPORT qvtcapi-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES include/qvtcapi/qvtcapi.h include/qvtcapi/update.h include/qvtcapi/factory_defaults.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qvtcapi)

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
