# zrcfg_add_test(NAME name SOURCES file... [LIBRARIES target...] [LABELS label...])
# A GoogleTest program of which CTest runs every case on its own, through scripts/with-store, each
# with an empty store of its own.

include(GoogleTest)
if(CMAKE_CROSSCOMPILING)
  # Debian has GoogleTest for the build machine only, but its sources too.
  set(INSTALL_GTEST OFF)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
else()
  find_package(GTest REQUIRED)
endif()

set(ZRCFG_WITH_STORE ${PROJECT_SOURCE_DIR}/scripts/with-store)
# What starts a program of the build with an empty store of its own.
set(ZRCFG_LAUNCHER ${ZRCFG_WITH_STORE} --temp ${CMAKE_CROSSCOMPILING_EMULATOR})

# Test programs are compiled for a short build; what they test is compiled as it is shipped.
add_library(zrcfg_test_flags INTERFACE)
target_compile_options(zrcfg_test_flags INTERFACE -O0 -g1)

# The framework's headers are compiled once for all test programs: they are most of what a test costs.
file(WRITE ${PROJECT_BINARY_DIR}/test_headers.cpp "")
add_library(zrcfg_test_headers OBJECT ${PROJECT_BINARY_DIR}/test_headers.cpp)
target_link_libraries(zrcfg_test_headers PRIVATE zrcfg_flags zrcfg_sanitizers zrcfg_test_flags
                                                 GTest::gmock GTest::gtest)
target_precompile_headers(zrcfg_test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h> <string>
                          <vector>)

function(zrcfg_add_test)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SOURCES})
  target_link_libraries(${ARG_NAME} PRIVATE zrcfg_flags zrcfg_sanitizers zrcfg_test_flags ${ARG_LIBRARIES}
                                            GTest::gmock GTest::gtest_main)
  # Headers for C++ do not serve a program that has C sources too.
  if(NOT "${ARG_SOURCES}" MATCHES "\\.c(;|$)")
    target_precompile_headers(${ARG_NAME} REUSE_FROM zrcfg_test_headers)
  endif()
  set_target_properties(${ARG_NAME} PROPERTIES CROSSCOMPILING_EMULATOR "${ZRCFG_LAUNCHER}")
  gtest_discover_tests(
    ${ARG_NAME}
    TEST_PREFIX ${ARG_NAME}/
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 120 LABELS "${ARG_LABELS}")
endfunction()
