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

function(zrcfg_add_test)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SOURCES})
  target_link_libraries(${ARG_NAME} PRIVATE zrcfg_flags zrcfg_sanitizers ${ARG_LIBRARIES}
                                            GTest::gmock GTest::gtest_main)
  set_target_properties(${ARG_NAME} PROPERTIES CROSSCOMPILING_EMULATOR "${ZRCFG_LAUNCHER}")
  gtest_discover_tests(
    ${ARG_NAME}
    TEST_PREFIX ${ARG_NAME}/
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 120 LABELS "${ARG_LABELS}")
endfunction()
