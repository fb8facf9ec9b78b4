# What is tested of the Windows build alone. Its programs run under Wine.

# Tests that need a process in which no other has run, by their programs: the stand-in stays once it is loaded.
set(alone_in_wren_host_tests BackendControls.NeedALoadedLibrary)

# Tests that another of the suite repeats: "validate" does the same.
set(repeated_of_wren_host_tests Validate.TheModulePassesThroughTheClass)

# Programs that run in two, one beside the other, as they take longest.
set(halved wren_host_tests wren_boundary_tests)

# wren_tests(PROGRAM [FILTER]): the program's tests are one of the suite's, as starting each by itself would take longer
# than the test. The filter is for sanitizers.
function(wren_tests program)
    set(alone ${alone_in_${program}})
    set(repeated ${repeated_of_${program}})
    string(REPLACE ";" ":" filter "${repeated}")
    foreach(test IN LISTS alone)
        add_test(NAME ${test} COMMAND ${program} --gtest_brief=1 --gtest_filter=${test})
        string(APPEND filter :${test})
    endforeach()
    if(filter)
        set(filter --gtest_filter=-${filter})
    endif()
    if(NOT program IN_LIST halved)
        add_test(NAME ${program} COMMAND ${program} --gtest_brief=1 ${filter})
        return()
    endif()
    foreach(part 0 1)
        add_test(NAME ${program}.${part} COMMAND ${program} --gtest_brief=1 ${filter})
        set_tests_properties(${program}.${part} PROPERTIES COST 50
            ENVIRONMENT "GTEST_TOTAL_SHARDS=2;GTEST_SHARD_INDEX=${part}")
    endforeach()
endfunction()

# wren_built_file(LIBRARY BYTES DESCRIPTION [EVENT]): holds the built file to what ships; it has BYTES at most.
function(wren_built_file library bytes)
    get_target_property(folder ${library} SOURCE_DIR)
    file(GLOB list ${folder}/*.def)
    add_test(NAME built_file.${library} COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/windows/check-built-file
        $<TARGET_FILE:${library}> ${list} ${bytes})
    add_test(NAME resources.${library} COMMAND wren_file_resources $<TARGET_FILE:${library}> ${PROJECT_VERSION} ${ARGN})
endfunction()

macro(wren_system_tests)

# The parts of the module that these hold are not imported from it.
foreach(program wren_unit_tests wren_shim_tests)
    target_compile_definitions(${program} PRIVATE WREN_MODULE_BUILD)
endforeach()

# What the built files hold: exports, imports, flags, resources; and how large they may be.
add_executable(wren_file_resources windows/FileResources.c)
target_link_libraries(wren_file_resources PRIVATE wren_flags version)
wren_built_file(kes_wren_presentation_plugin 2980000 "Wren Gate presentation plugin" 0x45010001)
wren_built_file(kes_wren_api 1700000 "Stand-in for the Wren Gate backend service")

# A library with exception handlers, finished like those that ship.
add_library(wren_handlers SHARED windows/Handlers.c windows/handlers.def)
set_target_properties(wren_handlers PROPERTIES PREFIX "")
target_link_libraries(wren_handlers PRIVATE wren_flags)
target_compile_options(wren_handlers PRIVATE -g1)
wren_windows_library(wren_handlers DESCRIPTION "Exception handlers")
add_test(NAME built_file.wren_handlers COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/windows/check-built-file
    $<TARGET_FILE:wren_handlers> ${CMAKE_CURRENT_SOURCE_DIR}/windows/handlers.def 100000)

# What is packed for Windows.
foreach(check zips installer)
    add_test(NAME package.${check} COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/package/check-${check} ${CMAKE_BINARY_DIR})
endforeach()

add_test(NAME built_file.module_life
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/windows/check-module-life $<TARGET_FILE:kes_wren_presentation_plugin>)

# How the tests run here, and how they are packed for another machine.
add_test(NAME run_under_wine COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/windows/check-run-under-wine $<TARGET_FILE:wren-host>)
add_test(NAME real_windows_report COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/windows/check-real-windows-report)

add_subdirectory(windows/msvc)

wren_replays(${CMAKE_CURRENT_SOURCE_DIR}/sessions/samples)

# A module whose class has GCC's own table.
add_library(wren_other_table MODULE windows/OtherTable.cpp)
target_compile_definitions(wren_other_table PRIVATE WREN_MODULE_BUILD)
target_link_libraries(wren_other_table PRIVATE wren_flags wren_sdk)
foreach(command info validate)
    add_test(NAME ${command}.other-table COMMAND wren-host ${command} $<TARGET_FILE:wren_other_table>)
    set_tests_properties(${command}.other-table PROPERTIES PASS_REGULAR_EXPRESSION
        "wren-host: .*the module's class has the table of another compiler, with two slots for its destructor: use --interface c")
endforeach()

# The module against the rules between host and module.
add_test(NAME validate COMMAND wren-host validate --seed 1)
add_test(NAME validate.record COMMAND wren-host validate --seed 1 --interface c --include record.)

endmacro()
