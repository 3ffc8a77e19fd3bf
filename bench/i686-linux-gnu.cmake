# Toolchain for counting the instructions of a 32-bit build on the machine that builds it.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER i686-linux-gnu-g++)
set(CMAKE_FIND_ROOT_PATH /usr/i686-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-static-libstdc++ -static-libgcc -Wl,--dynamic-linker=/usr/i686-linux-gnu/lib/ld-linux.so.2 \
-Wl,-rpath,/usr/i686-linux-gnu/lib")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-Wl,-rpath,/usr/i686-linux-gnu/lib")
