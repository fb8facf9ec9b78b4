# What stands around the module, and what may fail, on both systems: the stand-in service, the reference host, every order
# of calls and every fault, memory that runs out, and a long life.

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
    wren_flags wren_backend_c_tests wren_test_support kes_wren_api wren_sim wren_plugin wren_sdk wren_common Boost::json
    GTest::gmock GTest::gtest_main)
target_precompile_headers(wren_backend_tests REUSE_FROM wren_test_headers)
wren_tests(wren_backend_tests)

# The reference host: its parts, and the program itself, run against modules of the tests' own: one that only echoes, one
# that breaks rules on demand with the real module behind it, and one that crashes.
set(echo_module host/echo/EchoModule)
set(defective_module host/validate/module/DefectiveModule)
set(crashing_module host/bundle/module/CrashingModule)
wren_sources(module_system ${CMAKE_CURRENT_SOURCE_DIR}/host/module-system)
foreach(kind echo defective crashing)
    set(module wren_${kind}_module)
    add_library(${module} MODULE ${${kind}_module}.cpp ${module_system})
    target_compile_definitions(${module} PRIVATE WREN_MODULE_BUILD)
    target_include_directories(${module} PRIVATE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${module} PRIVATE wren_flags wren_sdk ${CMAKE_DL_LIBS})
    if(WIN32)
        target_sources(${module} PRIVATE ${${kind}_module}.def)
        # Libraries that a module needs are looked for beside it.
        set_target_properties(${module} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    else()
        set_target_properties(${module} PROPERTIES NO_SONAME ON)
    endif()
endforeach()
foreach(kind echo defective) # which make objects
    target_sources(wren_${kind}_module PRIVATE ${CMAKE_SOURCE_DIR}/presentation-plugin/Plugin.cpp)
endforeach()
target_link_libraries(wren_echo_module PRIVATE kes_wren_api)
add_dependencies(wren_defective_module kes_wren_presentation_plugin)
if(WREN_SANITIZE MATCHES "undefined")
    target_compile_options(wren_defective_module PRIVATE -fno-sanitize=vptr) # for the reason that the host has
endif()

set(host_folders host/serve host/strict)
if(NOT WREN_SANITIZE MATCHES "thread") # what else the host does, it does on one thread
    list(APPEND host_folders host/bundle host/recording host/validate)
endif()
list(TRANSFORM host_folders PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
if(WREN_SANITIZE MATCHES "thread")
    wren_sources(host_sources ${host_folders})
    list(APPEND host_sources host/Paths.cpp host/Paths_linux.cpp host/Process.cpp host/Process_linux.cpp)
else()
    wren_sources(host_sources ${host_folders} ${CMAKE_CURRENT_SOURCE_DIR}/host)
endif()
add_executable(wren_host_tests ${host_sources} ${module_system})
# The system's headers take names of their own from the other sources.
set_source_files_properties(host/PrivateFiles_win.cpp host/Process_win.cpp host/ExportedSymbols_test_win.cpp PROPERTIES
    SKIP_UNITY_BUILD_INCLUSION ON)
target_link_libraries(wren_host_tests PRIVATE wren_flags wren_host_parts wren_test_support GTest::gmock GTest::gtest_main)
target_precompile_headers(wren_host_tests REUSE_FROM wren_test_headers)
# The Windows programs may be taken elsewhere together, so that they find one another by their places.
if(WIN32)
    target_compile_definitions(wren_host_tests PRIVATE
        WREN_HOST_PROGRAM="$<TARGET_FILE_NAME:wren-host>"
        WREN_ECHO_MODULE="$<TARGET_FILE_NAME:wren_echo_module>"
        WREN_DEFECTIVE_MODULE="$<TARGET_FILE_NAME:wren_defective_module>"
        WREN_CRASHING_MODULE="$<TARGET_FILE_NAME:wren_crashing_module>"
        WREN_BACKEND_LIBRARY="$<TARGET_FILE_NAME:kes_wren_api>")
    target_compile_definitions(wren_defective_module PRIVATE
        WREN_REAL_MODULE="$<TARGET_FILE_NAME:kes_wren_presentation_plugin>")
    target_link_libraries(wren_host_tests PRIVATE ws2_32 mswsock)
else()
    target_compile_definitions(wren_host_tests PRIVATE
        WREN_HOST_PROGRAM="$<TARGET_FILE:wren-host>"
        WREN_ECHO_MODULE="$<TARGET_FILE:wren_echo_module>"
        WREN_DEFECTIVE_MODULE="$<TARGET_FILE:wren_defective_module>"
        WREN_CRASHING_MODULE="$<TARGET_FILE:wren_crashing_module>"
        WREN_BACKEND_LIBRARY="$<TARGET_FILE:kes_wren_api>")
    target_compile_definitions(wren_defective_module PRIVATE
        WREN_REAL_MODULE="$<TARGET_FILE:kes_wren_presentation_plugin>")
endif()
add_dependencies(wren_host_tests wren-host wren_crashing_module wren_defective_module wren_echo_module kes_wren_api
    kes_wren_presentation_plugin)
set_target_properties(wren_host_tests PROPERTIES ENABLE_EXPORTS ON)
# Modules that break rules on purpose, very long texts and the validator's second way to the same code tell a sanitizer
# nothing new, and take it minutes.
wren_tests(wren_host_tests -*Defect*:*LongTexts*:*TheModulePassesThroughTheClass)

add_subdirectory(boundary)

# Every order of calls and every fault, against the module's exports and a backend in memory.
file(GLOB boundary_sources CONFIGURE_DEPENDS boundary/*_test.cpp boundary/*_test_${system}.cpp)
add_executable(wren_boundary_tests ${boundary_sources})
target_link_libraries(wren_boundary_tests PRIVATE
    wren_flags wren_boundary wren_test_support GTest::gmock GTest::gtest_main)
target_precompile_headers(wren_boundary_tests REUSE_FROM wren_test_headers)
if(WREN_SANITIZE OR WIN32)
    target_compile_definitions(wren_boundary_tests PRIVATE WREN_LONGEST_ORDER=6)
else()
    target_compile_definitions(wren_boundary_tests PRIVATE WREN_LONGEST_ORDER=7)
endif()
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

    # libcrypto's, where nobody has used it before.
    file(GLOB digest_sources CONFIGURE_DEPENDS allocation/crypto/*_test.cpp allocation/crypto/*_test_${system}.cpp)
    add_executable(wren_digest_allocation_tests allocation/FailingAllocation.cpp allocation/FailingCrypto.cpp ${digest_sources})
    target_link_libraries(wren_digest_allocation_tests PRIVATE wren_flags wren_test_support wren_common GTest::gtest_main)
    wren_tests(wren_digest_allocation_tests)
endif()

# A long life; `scripts/soak` runs the whole of it.
add_executable(wren_soak soak/Soak.cpp)
target_link_libraries(wren_soak PRIVATE wren_flags wren_boundary)
if(WIN32) # what threads wait for there gets a handle when two first meet at it; that is a few in all, not one each round
    target_compile_definitions(wren_soak PRIVATE WREN_ALLOWED_DESCRIPTORS=8)
else()
    target_compile_definitions(wren_soak PRIVATE WREN_ALLOWED_DESCRIPTORS=0)
endif()
add_test(NAME Soak.HundredthPart COMMAND wren_soak 100 10000 30)
