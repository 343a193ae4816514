# Installation like any Linux library and program: the hosts in bin/, the platform libraries,
# the views and the loads module in lib/ (found by the programs through a run path relative to
# their own place), the platform's headers in include/vorta/, the catalogs in share/vorta/, an
# exported CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(_platform vp_framework vp_diag vp_toler vp_stream vp_text vp_objbase vp_host vp_assembly
              vp_grid vp_dialog)
install(TARGETS ${_platform} vorta_platform EXPORT VortaTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vorta)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/platform/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vorta
        FILES_MATCHING PATTERN "*.h")
install(EXPORT VortaTargets NAMESPACE Vorta:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Vorta)
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/VortaConfig.cmake.in
  ${CMAKE_BINARY_DIR}/VortaConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Vorta
  PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/VortaConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/VortaConfig.cmake ${CMAKE_BINARY_DIR}/VortaConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Vorta)
configure_file(${CMAKE_SOURCE_DIR}/cmake/vorta-platform.pc.in
               ${CMAKE_BINARY_DIR}/vorta-platform.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/vorta-platform.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

foreach(_target opterecenje vorta_ui)
  if(TARGET ${_target})
    install(TARGETS ${_target} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  endif()
endforeach()
foreach(_program vorta-cli vorta)
  if(TARGET ${_program})
    install(TARGETS ${_program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endforeach()
