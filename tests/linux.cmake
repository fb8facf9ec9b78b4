# What is tested on Linux alone: the pages, the documentation, what is packed, and the module's many lives.

# wren_tests(PROGRAM [FILTER]): each test of the program is one of the suite's, in a process of its own. A process that a
# sanitizer watches is slow to start: there they run one after the other, in two, but for what the filter leaves out.
function(wren_tests program)
    if(NOT WREN_SANITIZE)
        gtest_discover_tests(${program} DISCOVERY_TIMEOUT 120) # a busy machine starts slowly
        return()
    endif()
    set(filter)
    if(ARGN)
        set(filter --gtest_filter=${ARGN})
    endif()
    foreach(part 0 1)
        add_test(NAME ${program}.${part} COMMAND ${program} --gtest_brief=1 ${filter})
        set_tests_properties(${program}.${part} PROPERTIES COST 50
            ENVIRONMENT "GTEST_TOTAL_SHARDS=2;GTEST_SHARD_INDEX=${part}")
    endforeach()
endfunction()

# Locales of hosts that follow their user. Nothing of it needs the system to have them.
find_program(WREN_LOCALEDEF localedef REQUIRED)
set(locales_folder ${CMAKE_CURRENT_BINARY_DIR}/locales)
set(locales)
foreach(locale tr_TR.ISO-8859-9 fr_FR.ISO-8859-1 ja_JP.EUC-JP)
    string(REPLACE "." ";" parts ${locale})
    list(GET parts 0 language)
    list(GET parts 1 encoding)
    add_custom_command(OUTPUT ${locales_folder}/${locale}/LC_CTYPE
        COMMAND ${CMAKE_COMMAND} -E make_directory ${locales_folder}
        COMMAND ${WREN_LOCALEDEF} --no-archive -i ${language} -f ${encoding} ${locales_folder}/${locale})
    list(APPEND locales ${locales_folder}/${locale}/LC_CTYPE)
endforeach()
add_custom_target(wren_locales ALL DEPENDS ${locales})

macro(wren_system_tests)

foreach(program wren_unit_tests wren_module_tests)
    target_compile_definitions(${program} PRIVATE WREN_LOCALES_FOLDER="${locales_folder}")
    add_dependencies(${program} wren_locales)
endforeach()

# What ships has the system's defences.
if(CMAKE_BUILD_TYPE STREQUAL Release)
    add_test(NAME built_files COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/linux/check-built-file
        $<TARGET_FILE:kes_wren_presentation_plugin> $<TARGET_FILE:kes_wren_api> $<TARGET_FILE:wren-host>)
endif()

# Nothing that is built, tests included, takes a library from the current folder.
add_test(NAME built_files.search_path COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/linux/check-search-path
    ${CMAKE_LIBRARY_OUTPUT_DIRECTORY} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})

# What is installed and packed, of a build that ships.
if(CMAKE_BUILD_TYPE STREQUAL Release)
    foreach(check install debs documents)
        add_test(NAME package.${check} COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/package/check-${check} ${CMAKE_BINARY_DIR})
        set_tests_properties(package.${check} PROPERTIES RESOURCE_LOCK package
            ENVIRONMENT "CC=${CMAKE_C_COMPILER};CXX=${CMAKE_CXX_COMPILER}")
    endforeach()
endif()

# What hosts and backend libraries rely on is as it was approved. Other builds have symbols of their own.
if(CMAKE_BUILD_TYPE STREQUAL Release)
    add_test(NAME sdk.contract COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/sdk/check-contract ${CMAKE_BINARY_DIR})
endif()

# The pages, in a real browser, and the journeys through the host. They hold no C++, so the presets with a sanitizer
# would learn little from them.
if(NOT WREN_SANITIZE)
    find_program(WREN_NODE node REQUIRED)
    add_test(NAME page COMMAND ${WREN_NODE} --test --test-concurrency=2 WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/page)
    set_tests_properties(page PROPERTIES TIMEOUT 2400 COST 300 ENVIRONMENT "WREN_HOST_PROGRAM=$<TARGET_FILE:wren-host>")
endif()

# The documentation: what it shows is what the programs print, and the headers are documented. The sanitizers' builds
# print the same.
if(NOT WREN_SANITIZE)
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
    add_test(NAME docs COMMAND ${Python3_EXECUTABLE} -B -m unittest discover --start-directory
        ${CMAKE_CURRENT_SOURCE_DIR}/docs --pattern *_test.py)
    set_tests_properties(docs PROPERTIES TIMEOUT 300 ENVIRONMENT "WREN_HOST_PROGRAM=$<TARGET_FILE:wren-host>")

    add_executable(wren_docs_host ${CMAKE_SOURCE_DIR}/docs/examples/host.c)
    set_target_properties(wren_docs_host PROPERTIES C_STANDARD 11 C_STANDARD_REQUIRED ON C_EXTENSIONS OFF)
    target_link_libraries(wren_docs_host PRIVATE wren_flags wren_sdk ${CMAKE_DL_LIBS})
    add_dependencies(wren_docs_host kes_wren_presentation_plugin)
    add_test(NAME docs.host COMMAND wren_docs_host $<TARGET_FILE:kes_wren_presentation_plugin>)
endif()

endmacro()
