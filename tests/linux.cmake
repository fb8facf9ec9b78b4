# What is tested on Linux alone: the stand-in service, the reference host and its pages, the module's many lives,
# and what may fail.

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

macro(wren_system_tests)

# The stand-in service, driven through its exports; its parts that no export shows are linked in as well.
file(GLOB backend_sources CONFIGURE_DEPENDS backend-sim/*.cpp)
file(GLOB c_sources CONFIGURE_DEPENDS backend-sim/*.c)
add_library(wren_backend_c_tests OBJECT ${c_sources})
target_link_libraries(wren_backend_c_tests PRIVATE wren_flags wren_sdk)
target_include_directories(wren_backend_c_tests PRIVATE ${CMAKE_SOURCE_DIR})
add_executable(wren_backend_tests ${backend_sources})
target_include_directories(wren_backend_tests PRIVATE ${CMAKE_SOURCE_DIR})
target_compile_definitions(wren_backend_tests PRIVATE WREN_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
target_link_libraries(wren_backend_tests PRIVATE
    wren_flags wren_backend_c_tests wren_test_support kes_wren_api wren_sim wren_plugin wren_service wren_sdk wren_common Boost::json
    GTest::gmock GTest::gtest_main)
target_precompile_headers(wren_backend_tests REUSE_FROM wren_test_headers)
wren_tests(wren_backend_tests)

# The reference host: its parts, run against a module that only echoes, and the program itself.
add_library(wren_echo_module MODULE host/echo/EchoModule.cpp)
target_compile_definitions(wren_echo_module PRIVATE WREN_MODULE_BUILD)
target_link_libraries(wren_echo_module PRIVATE wren_flags wren_sdk kes_wren_api)
set_target_properties(wren_echo_module PROPERTIES NO_SONAME ON)

# The real module behind one that breaks rules on demand.
add_library(wren_defective_module MODULE host/validate/module/DefectiveModule.cpp)
target_compile_definitions(wren_defective_module PRIVATE
    WREN_MODULE_BUILD WREN_REAL_MODULE="$<TARGET_FILE:kes_wren_presentation_plugin>")
target_link_libraries(wren_defective_module PRIVATE wren_flags wren_sdk ${CMAKE_DL_LIBS})
set_target_properties(wren_defective_module PROPERTIES NO_SONAME ON)
add_dependencies(wren_defective_module kes_wren_presentation_plugin)
if(WREN_SANITIZE MATCHES "undefined")
    target_compile_options(wren_defective_module PRIVATE -fno-sanitize=vptr) # for the reason that the host has
endif()

# A module that crashes, for the bundle that tells of it.
add_library(wren_crashing_module MODULE host/bundle/module/CrashingModule.cpp)
target_compile_definitions(wren_crashing_module PRIVATE WREN_MODULE_BUILD)
target_link_libraries(wren_crashing_module PRIVATE wren_flags wren_sdk)

file(GLOB host_sources CONFIGURE_DEPENDS host/serve/*.cpp host/strict/*.cpp)
if(NOT WREN_SANITIZE MATCHES "thread") # what else the host does, it does on one thread
    file(GLOB more_sources CONFIGURE_DEPENDS host/*.cpp host/bundle/*.cpp host/recording/*.cpp host/validate/*.cpp)
    list(APPEND host_sources ${more_sources})
endif()
add_executable(wren_host_tests ${host_sources})
target_link_libraries(wren_host_tests PRIVATE wren_flags wren_host_parts wren_test_support GTest::gmock GTest::gtest_main)
target_precompile_headers(wren_host_tests REUSE_FROM wren_test_headers)
target_compile_definitions(wren_host_tests PRIVATE
    WREN_HOST_PROGRAM="$<TARGET_FILE:wren-host>"
    WREN_ECHO_MODULE="$<TARGET_FILE:wren_echo_module>"
    WREN_DEFECTIVE_MODULE="$<TARGET_FILE:wren_defective_module>"
    WREN_CRASHING_MODULE="$<TARGET_FILE:wren_crashing_module>"
    WREN_BACKEND_LIBRARY="$<TARGET_FILE:kes_wren_api>")
add_dependencies(wren_host_tests wren-host wren_crashing_module wren_defective_module wren_echo_module kes_wren_api
    kes_wren_presentation_plugin)
set_target_properties(wren_host_tests PROPERTIES ENABLE_EXPORTS ON)
# Modules that break rules on purpose, very long texts and the validator's second way to the same code tell a sanitizer
# nothing new, and take it minutes.
wren_tests(wren_host_tests -*Defect*:*LongTexts*:*TheModulePassesThroughTheClass)

add_subdirectory(boundary)

# Every order of calls and every fault, against the module's exports and a backend in memory.
file(GLOB boundary_sources CONFIGURE_DEPENDS boundary/*_test.cpp)
add_executable(wren_boundary_tests ${boundary_sources})
target_link_libraries(wren_boundary_tests PRIVATE
    wren_flags wren_boundary wren_test_support GTest::gmock GTest::gtest_main)
target_precompile_headers(wren_boundary_tests REUSE_FROM wren_test_headers)
# Single calls from one thread, in every order, at every stage: the thread sanitizer has nothing to see there.
if(WREN_SANITIZE MATCHES "thread")
    wren_tests(wren_boundary_tests -MachineModel.*:BackendFaults.Every*:*LifecycleOrders.EveryOrder*)
else()
    wren_tests(wren_boundary_tests)
endif()

# The same where memory runs out: a program of its own, since it brings its own allocation, which the thread sanitizer
# has as well.
if(NOT WREN_SANITIZE MATCHES "thread")
    file(GLOB allocation_sources CONFIGURE_DEPENDS allocation/*.cpp)
    add_executable(wren_allocation_tests ${allocation_sources})
    target_link_libraries(wren_allocation_tests PRIVATE
        wren_flags wren_boundary wren_test_support GTest::gtest_main)
    wren_tests(wren_allocation_tests)

    # The log's, where no module has set it up already.
    add_executable(wren_log_allocation_tests allocation/FailingAllocation.cpp allocation/log/LogFaults_test.cpp)
    target_link_libraries(wren_log_allocation_tests PRIVATE wren_flags wren_test_support wren_common GTest::gtest_main)
    wren_tests(wren_log_allocation_tests)
endif()

# A long life; `scripts/soak` runs the whole of it.
add_executable(wren_soak soak/Soak.cpp)
target_link_libraries(wren_soak PRIVATE wren_flags wren_boundary)
add_test(NAME Soak.HundredthPart COMMAND wren_soak 100 10000 30)

# What ships has the system's defences.
if(CMAKE_BUILD_TYPE STREQUAL Release)
    add_test(NAME built_files COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/linux/check-built-file
        $<TARGET_FILE:kes_wren_presentation_plugin> $<TARGET_FILE:kes_wren_api> $<TARGET_FILE:wren-host>)
endif()

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
