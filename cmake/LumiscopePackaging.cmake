# The installed tree: programs, the control library with its headers and CMake
# package, and the Debian package CPack makes of it. The data files (sample
# configuration, menu entry, icon, AppStream data, man pages) are installed by
# data/.
include(CMakePackageConfigHelpers)

set(LUMISCOPE_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/lumiscope)
set(LUMISCOPE_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/Lumiscope)

foreach(program lumiscope lumiscope-host lumiscope-config vire-call lumiscope-plot-demo
                lumiscope-devserver lumiscope-archiver)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endforeach()

if(TARGET lumiscope_control_shared)
  install(TARGETS lumiscope_control_shared EXPORT LumiscopeTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(FILES ${PROJECT_SOURCE_DIR}/src/control/lumiscope.h DESTINATION ${LUMISCOPE_INSTALL_INCLUDEDIR}/control)
  install(FILES ${PROJECT_SOURCE_DIR}/src/app/embedding/host_middleware.h
          DESTINATION ${LUMISCOPE_INSTALL_INCLUDEDIR}/embedding)
  install(EXPORT LumiscopeTargets NAMESPACE Lumiscope:: DESTINATION ${LUMISCOPE_INSTALL_CMAKEDIR})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/LumiscopeConfig.cmake.in
    ${PROJECT_BINARY_DIR}/cmake/LumiscopeConfig.cmake
    INSTALL_DESTINATION ${LUMISCOPE_INSTALL_CMAKEDIR}
    PATH_VARS LUMISCOPE_INSTALL_INCLUDEDIR LUMISCOPE_INSTALL_CONFIG_DIR LUMISCOPE_INSTALL_DATADIR)
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/cmake/LumiscopeConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/cmake/LumiscopeConfig.cmake ${PROJECT_BINARY_DIR}/cmake/LumiscopeConfigVersion.cmake
          DESTINATION ${LUMISCOPE_INSTALL_CMAKEDIR})
  # The example host, for a user to copy and build against the installed tree
  # (under the package's name, as Debian keeps documentation).
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/lumiscope/examples)
endif()

# ---- The Debian package: cpack -G DEB in the build directory.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lumiscope)
set(CPACK_PACKAGE_VENDOR "Lumiscope developers")
set(CPACK_PACKAGE_CONTACT "Lumiscope developers <lumiscope@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION "The stand-alone viewer, the Lumiscope control that host programs place on
their windows (with its CMake package and Qt Designer plugin), the
configuration and middleware tools and the network servers, with a sample
configuration that runs against a built-in simulated accelerator.")
set(CPACK_PACKAGE_INSTALL_DIRECTORY lumiscope)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# What the libraries do not tell: Qt's platform plugins (a window on X11 or
# Wayland, or off-screen) and the image plugins the snapshots are saved with.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qt6-base-dev, qt6-tools-dev, designer-qt6")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_SOURCE_IGNORE_FILES "/build/;/\\\\.git/")
include(CPack)
