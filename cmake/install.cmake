# Installs the library, its headers (under include/tvobase) and the program, and what find_package(TvoBase) and
# pkg-config tvobase need. Everything finds its neighbours by relative paths, so that the tree may be moved.
include(CMakePackageConfigHelpers)

install(TARGETS TvoBase EXPORT TvoBaseTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tvobase)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/TvoBase)
install(EXPORT TvoBaseTargets NAMESPACE TvoBase:: DESTINATION ${package_dir})
configure_package_config_file(cmake/TvoBaseConfig.cmake.in ${PROJECT_BINARY_DIR}/TvoBaseConfig.cmake
  INSTALL_DESTINATION ${package_dir})
# Below 1.0 every minor version may break hosts.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TvoBaseConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TvoBaseConfig.cmake ${PROJECT_BINARY_DIR}/TvoBaseConfigVersion.cmake
  DESTINATION ${package_dir})

set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkgconfig "/${pkgconfig_dir}" "/")
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
configure_file(cmake/tvobase.pc.in ${PROJECT_BINARY_DIR}/tvobase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tvobase.pc DESTINATION ${pkgconfig_dir})

if(TARGET tvo)
  file(RELATIVE_PATH lib_from_bin "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(tvo PROPERTIES INSTALL_RPATH "$ORIGIN/${lib_from_bin}")
  install(TARGETS tvo DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
# Opened by the program at run time
if(TARGET tvo_qt)
  set_target_properties(tvo_qt PROPERTIES INSTALL_RPATH "$ORIGIN/..")
  install(TARGETS tvo_qt LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/tvobase)
endif()
