# What every target is compiled with: warnings as errors, the sanitizer or coverage of the preset, and in what ships the
# system's defences.

set(WREN_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")
option(WREN_COVERAGE "Count executed lines" OFF)
option(WREN_FUZZ "Build the fuzz targets beside the tests; needs clang" OFF)

add_library(wren_flags INTERFACE)
target_compile_options(wren_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Werror
    # Where sources are compiled together, the names of one are seen by the next.
    $<$<NOT:$<BOOL:${CMAKE_UNITY_BUILD}>>:-Wshadow>
    # Members of other compilers' classes are called as functions that take `this` in a register.
    $<$<BOOL:${WIN32}>:-Wno-attributes>
    # Which mutex guards what: common2/util/ThreadSafety.h.
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)

# What is built names its sources as the tree does, wherever the tree lies.
add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)

if(WREN_SANITIZE)
    add_compile_options(-fsanitize=${WREN_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${WREN_SANITIZE})
    if(WREN_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
    if(WREN_SANITIZE MATCHES "address" AND CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        # A class of the SDK has its table in each library that uses it, which this compiler's runtime takes for a clash.
        add_compile_options(-fsanitize-address-use-odr-indicator)
    endif()
endif()

if(WREN_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
    set(unguided -fno-sanitize=fuzzer-no-link) # what is fuzzed is the module; counts in anything else lead nowhere
endif()

# wren_beside_the_module(TARGET...): what stands around the module needs no speed in a sanitizer's build, and is most of what
# such a build compiles.
function(wren_beside_the_module)
    if(WREN_SANITIZE)
        foreach(target IN LISTS ARGN)
            target_compile_options(${target} PRIVATE -O0 ${unguided})
        endforeach()
    endif()
endfunction()

if(WREN_COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic) # threads count, too
    add_link_options(--coverage)
endif()

# Tests hold the built files to these: tests/linux/check-built-file, tests/windows/check-built-file.
if(CMAKE_BUILD_TYPE STREQUAL Release)
    add_compile_options(-fstack-protector-strong)
    if(WIN32)
        # The debug symbols go into a file of their own. They name sources alike whether ccache, which knows relative paths,
        # has compiled them or not.
        cmake_path(RELATIVE_PATH CMAKE_SOURCE_DIR BASE_DIRECTORY ${CMAKE_BINARY_DIR} OUTPUT_VARIABLE up)
        # Functions stay in one piece: scripts/windows/build-libraries says why.
        add_compile_options(-fno-reorder-blocks-and-partition -g1 -ffile-prefix-map=${CMAKE_BINARY_DIR}/= -ffile-prefix-map=${up}/=)
        add_link_options(-fstack-protector-strong LINKER:--dynamicbase,--nxcompat
            # Windows 7 is 6.1. The same sources give the same bytes, whatever the day.
            LINKER:--major-os-version=6,--minor-os-version=1,--major-subsystem-version=6,--minor-subsystem-version=1
            LINKER:--no-insert-timestamp,--gc-sections)
    else()
        add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
        add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)
    endif()
endif()

find_program(WREN_CCACHE ccache)
if(WREN_CCACHE)
    # Precompiled headers are hashed by ccache only when their times may be ignored. A second checkout finds what the
    # first one built.
    set(launcher ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${WREN_CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()
