# The find_package(KxInstruments) package: exported targets, config and version files.
include(CMakePackageConfigHelpers)
set(KX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KxInstruments)
install(EXPORT KxInstrumentsTargets NAMESPACE KxInstruments:: DESTINATION ${KX_CMAKE_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/KxInstrumentsConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/KxInstrumentsConfig.cmake INSTALL_DESTINATION ${KX_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/KxInstrumentsConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KxInstrumentsConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/KxInstrumentsConfigVersion.cmake
        DESTINATION ${KX_CMAKE_DIR})
