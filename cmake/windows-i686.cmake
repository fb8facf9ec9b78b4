# 32-bit Windows by the cross compiler of Debian's packages. WREN_WINDOWS_LIBRARIES is the folder that
# scripts/windows/build-libraries prints.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)

set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

if(NOT DEFINED WREN_WINDOWS_LIBRARIES)
    set(WREN_WINDOWS_LIBRARIES $ENV{WREN_WINDOWS_LIBRARIES} CACHE PATH "What the module is linked with")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WREN_WINDOWS_LIBRARIES)
set(CMAKE_FIND_ROOT_PATH ${WREN_WINDOWS_LIBRARIES} /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Neither a library nor the compiler's own run time may be needed where the module is installed.
set(Boost_USE_STATIC_LIBS ON)
set(Boost_USE_STATIC_RUNTIME ON)
set(OPENSSL_USE_STATIC_LIBS ON)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)
add_compile_options(-ffile-prefix-map=${WREN_WINDOWS_LIBRARIES}/=) # as for our own sources
# Without the rest, the system's header takes in the old sockets, which the web library's do not go with.
add_compile_definitions(_WIN32_WINNT=0x0601 UNICODE _UNICODE WIN32_LEAN_AND_MEAN)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/windows/run-under-wine)
