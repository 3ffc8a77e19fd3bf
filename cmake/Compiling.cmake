# Flags that every target of the project shares, and those of the library's own sources.

add_library(zrcfg_flags INTERFACE)
target_compile_options(zrcfg_flags INTERFACE -Wall -Wextra -Wconversion -Wshadow)
target_compile_definitions(zrcfg_flags INTERFACE _GNU_SOURCE _FILE_OFFSET_BITS=64)
target_include_directories(zrcfg_flags INTERFACE ${PROJECT_SOURCE_DIR}
                                                 ${PROJECT_SOURCE_DIR}/include)
if(ZRCFG_WERROR)
  target_compile_options(zrcfg_flags INTERFACE -Werror)
endif()

add_library(zrcfg_sanitizers INTERFACE)
if(ZRCFG_SANITIZE)
  target_compile_options(zrcfg_sanitizers INTERFACE -fsanitize=${ZRCFG_SANITIZE}
                                                    -fno-sanitize-recover=all
                                                    -fno-omit-frame-pointer)
  # GCC 12 sees uninitialised members inside the standard library once it is instrumented; builds
  # without sanitizers keep the warning.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(zrcfg_sanitizers INTERFACE -Wno-maybe-uninitialized)
  endif()
  target_link_options(zrcfg_sanitizers INTERFACE -fsanitize=${ZRCFG_SANITIZE})
endif()

# Only the library counts what runs, and as it is written, not as it is optimised.
option(ZRCFG_COVERAGE "Count the lines and branches of the library that run (GCC)" OFF)
add_library(zrcfg_coverage INTERFACE)
if(ZRCFG_COVERAGE)
  target_compile_options(zrcfg_coverage INTERFACE -O0 --coverage -fprofile-abs-path)
  target_link_options(zrcfg_coverage INTERFACE --coverage)
  target_sources(zrcfg_coverage INTERFACE ${PROJECT_SOURCE_DIR}/tests/coverage/exit.cpp)
endif()

# The library lives without the C++ runtime; symbols are hidden unless marked, and its calls to its
# own exported functions cannot be taken over by a client's function of the same name.
add_library(zrcfg_library_flags INTERFACE)
target_compile_options(
  zrcfg_library_flags
  INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics>
            -fvisibility=hidden -ffunction-sections -fdata-sections)
# At -Os partial inlining makes the code larger.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(zrcfg_library_flags
                         INTERFACE $<$<CONFIG:MinSizeRel>:-fno-partial-inlining>)
endif()
target_link_options(zrcfg_library_flags INTERFACE -Wl,-Bsymbolic-functions -Wl,--gc-sections
                    -Wl,--as-needed -Wl,-z,defs -Wl,-z,relro)
