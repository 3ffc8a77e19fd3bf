# Installation: library, header, host log library, pkg-config file and CMake package.

include(CMakePackageConfigHelpers)

# One export set: a client links zrcfg::zrcfg, which brings the host's log library with it.
set(ZRCFG_INSTALLED zrcfg)
set(ZRCFG_PC_LIBS_PRIVATE "-lzrlogmgr")
if(ZRCFG_ZRLOGMGR STREQUAL "bundled")
  list(APPEND ZRCFG_INSTALLED zrlogmgr)
endif()
install(TARGETS ${ZRCFG_INSTALLED} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES include/zrcfg.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

configure_file(cmake/zrcfg.pc.in ${PROJECT_BINARY_DIR}/zrcfg.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zrcfg.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(ZRCFG_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zrcfg)
configure_package_config_file(cmake/zrcfgConfig.cmake.in ${PROJECT_BINARY_DIR}/zrcfgConfig.cmake
                              INSTALL_DESTINATION ${ZRCFG_CMAKE_DIR}
                              PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zrcfgConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zrcfgConfig.cmake
              ${PROJECT_BINARY_DIR}/zrcfgConfigVersion.cmake DESTINATION ${ZRCFG_CMAKE_DIR})
