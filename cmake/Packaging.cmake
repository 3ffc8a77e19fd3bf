# Installation, in components: library, log library, development files, tools, host tools.

include(CMakePackageConfigHelpers)

install(TARGETS zrcfg LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library
                              NAMELINK_COMPONENT development)
install(FILES include/zrcfg.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
set(ZRCFG_COMPONENTS library development)

# The host's log library; a device has its own.
set(ZRCFG_PC_LIBS_PRIVATE "-lzrlogmgr")
if(ZRCFG_ZRLOGMGR STREQUAL "bundled")
  install(TARGETS zrlogmgr LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT log_library)
  list(APPEND ZRCFG_COMPONENTS log_library)
endif()

# The prefix may be another one when it is installed, or the root of a device.
set(ZRCFG_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH ZRCFG_PC_TO_PREFIX /${ZRCFG_PC_DIR} /)
configure_file(cmake/zrcfg.pc.in ${PROJECT_BINARY_DIR}/zrcfg.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zrcfg.pc DESTINATION ${ZRCFG_PC_DIR}
        COMPONENT development)

set(ZRCFG_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zrcfg)
configure_package_config_file(cmake/zrcfgConfig.cmake.in ${PROJECT_BINARY_DIR}/zrcfgConfig.cmake
                              INSTALL_DESTINATION ${ZRCFG_CMAKE_DIR}
                              PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zrcfgConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zrcfgConfig.cmake
              ${PROJECT_BINARY_DIR}/zrcfgConfigVersion.cmake DESTINATION ${ZRCFG_CMAKE_DIR}
        COMPONENT development)

install(FILES man/zrcfg.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
install(FILES man/property.conf.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5 COMPONENT development)
# "man CALL" finds the page too: a page for each call that the header declares, which refers to it.
file(STRINGS include/zrcfg.h ZRCFG_PROTOTYPES REGEX "^(int|uint32_t|void) [A-Za-z0-9_]+\\(")
foreach(prototype ${ZRCFG_PROTOTYPES})
  string(REGEX REPLACE "^[a-z0-9_]+ ([A-Za-z0-9_]+)\\(.*" "\\1" call "${prototype}")
  file(WRITE ${PROJECT_BINARY_DIR}/man3/${call}.3 ".so man3/zrcfg.3\n")
endforeach()
install(DIRECTORY ${PROJECT_BINARY_DIR}/man3 DESTINATION ${CMAKE_INSTALL_MANDIR}
        COMPONENT development)

if(ZRCFG_TOOLS)
  list(APPEND ZRCFG_COMPONENTS tools)
endif()
if(ZRCFG_HOST_TOOLS)
  list(APPEND ZRCFG_COMPONENTS host_tools)
  # The launcher finds what it needs beside itself, not beside the link to it.
  set(ZRCFG_LAUNCHER_DIR ${CMAKE_INSTALL_LIBEXECDIR}/zrcfg)
  file(RELATIVE_PATH launcher /${CMAKE_INSTALL_BINDIR} /${ZRCFG_LAUNCHER_DIR}/with-store)
  file(CREATE_LINK ${launcher} ${PROJECT_BINARY_DIR}/with-store SYMBOLIC)
  install(PROGRAMS scripts/with-store DESTINATION ${ZRCFG_LAUNCHER_DIR} COMPONENT host_tools)
  install(FILES scripts/lib/hide-new-calls.pl DESTINATION ${ZRCFG_LAUNCHER_DIR}/lib
          COMPONENT host_tools)
  install(FILES ${PROJECT_BINARY_DIR}/with-store DESTINATION ${CMAKE_INSTALL_BINDIR}
          COMPONENT host_tools)
  install(FILES man/with-store.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT host_tools)
endif()
