# Debian packages of the installed components, made by cpack in a build whose prefix is /usr.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zrcfg)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The zrcfg maintainers")
set(CPACK_PACKAGE_CONTACT "The zrcfg maintainers <zrcfg@localhost>"
    CACHE STRING "Maintainer of the packages, NAME <ADDRESS>")
# Each package has a title of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${ZRCFG_COMPONENTS})

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/platform)
set(ZRCFG_DEBIAN_VERSION ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

# zrcfg_debian_package(COMPONENT NAME SECTION TITLE TEXT [DEPENDENCY...]); shared libraries outside the
# project are found by dpkg-shlibdeps.
function(zrcfg_debian_package component name section title text)
  string(TOUPPER ${component} key)
  list(JOIN ARGN ", " depends)
  foreach(setting "NAME;${name}" "SECTION;${section}" "DEPENDS;${depends}" "SHLIBDEPS;ON")
    list(GET setting 0 what)
    list(GET setting 1 value)
    set(CPACK_DEBIAN_${key}_PACKAGE_${what} "${value}" PARENT_SCOPE)
  endforeach()
  # The first line of a package's description is its title.
  set(CPACK_DEBIAN_${key}_DESCRIPTION "${title}\n${text}" PARENT_SCOPE)
endfunction()

set(library_package libzrcfg${ZRCFG_SOVERSION})
set(this_library "${library_package} (= ${ZRCFG_DEBIAN_VERSION})")
set(log_dependency)
if(ZRCFG_ZRLOGMGR STREQUAL "bundled")
  set(log_dependency "libzrlogmgr")
endif()
set(about "zrcfg keeps the TR-069 parameter tree of a home gateway in small files\n\
below /var, shared by any number of processes without a daemon.\n.\n")
zrcfg_debian_package(library ${library_package} libs "TR-069 configuration store (library)"
                     "${about}This package has the shared library." ${log_dependency})
zrcfg_debian_package(log_library libzrlogmgr libs "log library of a home gateway (stand-in)"
                     "${about}This package stands in for a gateway's log library on other machines:\n\
it prints the store's diagnostics when ZRLOG_LEVEL is 7.")
zrcfg_debian_package(development libzrcfg-dev libdevel "TR-069 configuration store (development)"
                     "${about}This package has the header, pkg-config file, CMake package and manual\n\
pages for programs that use the library." "${this_library}")
zrcfg_debian_package(tools zrcfg-tools utils "TR-069 configuration store (command line)"
                     "${about}This package has the command line zrcfg." "${this_library}")
zrcfg_debian_package(host_tools zrcfg-mkstore devel "TR-069 configuration store (store builder)"
                     "${about}This package has the builder, which compiles data model documents into\n\
stores, the launcher with-store, and an example.")
set(CPACK_DEBIAN_HOST_TOOLS_PACKAGE_RECOMMENDS "zrcfg-tools, bubblewrap | proot")

# The symbols that programs may need, and the version from which on the library has them.
file(STRINGS tests/package/exported_symbols.txt symbols)
list(TRANSFORM symbols PREPEND " ")
list(TRANSFORM symbols APPEND "@Base 0.1.0")
list(JOIN symbols "\n" symbols)
set(debian_dir ${PROJECT_BINARY_DIR}/debian)
file(WRITE ${debian_dir}/symbols
     "libzrcfg.so.${ZRCFG_SOVERSION} ${library_package} #MINVER#\n${symbols}\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${debian_dir}/symbols)

file(READ LICENSE license)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]*)" _ "${license}")
set(ZRCFG_COPYRIGHT ${CMAKE_MATCH_1})
string(REGEX REPLACE "^.*Copyright [^\n]*\n+" "" license "${license}")
string(STRIP "${license}" license)
string(REPLACE "\n\n" "\n.\n" license "${license}")
string(REPLACE "\n" "\n " ZRCFG_LICENSE "${license}")
configure_file(cmake/packaging/copyright.in ${debian_dir}/copyright @ONLY)
# With SOURCE_DATE_EPOCH the time is that.
string(TIMESTAMP ZRCFG_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/packaging/changelog.in ${debian_dir}/changelog @ONLY)

set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/packaging/Documents.cmake)
set(CPACK_ZRCFG_SOURCE_DIR ${PROJECT_SOURCE_DIR})
set(CPACK_ZRCFG_DEBIAN_DIR ${debian_dir})
include(CPack)
