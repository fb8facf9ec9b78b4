# Chooses what the transition tables are compiled with: boost::ext::sml, where its header is installed in
# exactly the version that the tables were measured against, or the engine in common/state_machine.

set(WREN_SML auto CACHE STRING "State machine library: auto, bundled or system")
set_property(CACHE WREN_SML PROPERTY STRINGS auto bundled system)
set(sml_version 1.1.11)
string(REPLACE "." "_" sml_namespace v${sml_version})

set(sml_found FALSE)
if(NOT WREN_SML STREQUAL bundled)
    find_path(WREN_SML_INCLUDE_DIR boost/sml.hpp)
    if(WREN_SML_INCLUDE_DIR)
        file(STRINGS ${WREN_SML_INCLUDE_DIR}/boost/sml.hpp version_line REGEX ${sml_namespace} LIMIT_COUNT 1)
        if(version_line)
            set(sml_found TRUE)
        endif()
    endif()
endif()

add_library(wren_state_machine INTERFACE)
target_include_directories(wren_state_machine INTERFACE ${CMAKE_SOURCE_DIR})
if(sml_found)
    message(STATUS "State machine: boost::ext::sml ${sml_version} in ${WREN_SML_INCLUDE_DIR}")
    target_include_directories(wren_state_machine SYSTEM INTERFACE ${WREN_SML_INCLUDE_DIR})
    target_compile_definitions(wren_state_machine INTERFACE WREN_SML_SYSTEM)
elseif(WREN_SML STREQUAL system)
    message(FATAL_ERROR "WREN_SML=system, but boost/sml.hpp of version ${sml_version} was not found. "
                        "Name its folder with -DWREN_SML_INCLUDE_DIR=DIR or use -DWREN_SML=bundled.")
elseif(WREN_SML MATCHES "^(auto|bundled)$")
    message(STATUS "State machine: the bundled engine")
else()
    message(FATAL_ERROR "WREN_SML is '${WREN_SML}'; it takes auto, bundled or system.")
endif()
