# Finds libuci: UCI_FOUND and the imported target UCI::uci.

find_path(UCI_INCLUDE_DIR uci.h)
find_library(UCI_LIBRARY uci)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(UCI REQUIRED_VARS UCI_LIBRARY UCI_INCLUDE_DIR)

if(UCI_FOUND AND NOT TARGET UCI::uci)
  add_library(UCI::uci UNKNOWN IMPORTED)
  set_target_properties(UCI::uci PROPERTIES IMPORTED_LOCATION ${UCI_LIBRARY}
                                            INTERFACE_INCLUDE_DIRECTORIES ${UCI_INCLUDE_DIR})
endif()
mark_as_advanced(UCI_INCLUDE_DIR UCI_LIBRARY)
