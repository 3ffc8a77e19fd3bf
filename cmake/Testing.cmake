# zrcfg_add_test(NAME name SOURCES file... [LIBRARIES target...] [LABELS label...])
# A GoogleTest program of which CTest runs every case on its own, through scripts/with-store, each
# with an empty store of its own.

include(GoogleTest)
find_package(GTest REQUIRED)

set(ZRCFG_WITH_STORE ${PROJECT_SOURCE_DIR}/scripts/with-store)

function(zrcfg_add_test)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SOURCES})
  target_link_libraries(${ARG_NAME} PRIVATE zrcfg_flags zrcfg_sanitizers ${ARG_LIBRARIES}
                                            GTest::gmock GTest::gtest_main)
  set_target_properties(${ARG_NAME} PROPERTIES CROSSCOMPILING_EMULATOR
                                               "${ZRCFG_WITH_STORE};--temp")
  gtest_discover_tests(
    ${ARG_NAME}
    TEST_PREFIX ${ARG_NAME}/
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 120 LABELS "${ARG_LABELS}")
endfunction()
