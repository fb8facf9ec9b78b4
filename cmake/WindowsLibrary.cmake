# What a DLL that ships has beside its code: a version resource, a message table, its debug symbols in a file of their own.

set(WREN_VENDOR "The Wren Gate presentation plugin project")

# wren_windows_library(LIBRARY DESCRIPTION TEXT [MESSAGES FILE.mc]): gives the DLL its resources, and finishes the linked
# file. Elsewhere it does nothing.
function(wren_windows_library library)
    if(NOT WIN32)
        return()
    endif()
    cmake_parse_arguments(file "" "DESCRIPTION;MESSAGES" "" ${ARGN})
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/resources)
    set(messages)
    if(file_MESSAGES)
        cmake_path(GET file_MESSAGES STEM name)
        find_program(WREN_MESSAGE_COMPILER i686-w64-mingw32-windmc REQUIRED)
        add_custom_command(OUTPUT ${folder}/${name}.rc
            COMMAND ${WREN_MESSAGE_COMPILER} -h ${folder} -r ${folder} ${CMAKE_CURRENT_SOURCE_DIR}/${file_MESSAGES}
            DEPENDS ${file_MESSAGES} VERBATIM)
        set(messages "#include \"${name}.rc\"")
        set(message_resource ${folder}/${name}.rc)
    endif()
    string(REPLACE "." "," version_with_commas ${PROJECT_VERSION})
    configure_file(${CMAKE_SOURCE_DIR}/cmake/version.rc.in ${folder}/${library}.rc @ONLY)

    # As a source of the target it would be given the flags of the C++ compiler.
    add_custom_command(OUTPUT ${folder}/${library}.res.obj
        COMMAND ${CMAKE_RC_COMPILER} -O coff -I ${folder} ${folder}/${library}.rc ${folder}/${library}.res.obj
        DEPENDS ${folder}/${library}.rc ${message_resource} VERBATIM)
    target_sources(${library} PRIVATE ${folder}/${library}.res.obj)
    set_source_files_properties(${folder}/${library}.res.obj PROPERTIES EXTERNAL_OBJECT ON GENERATED ON)

    if(CMAKE_BUILD_TYPE STREQUAL Release)
        # Nothing refers to it in the code, so that the linker would leave it out.
        target_link_options(${library} PRIVATE LINKER:--undefined=__load_config_used)
        find_package(Python3 REQUIRED COMPONENTS Interpreter)
        set(finish ${CMAKE_SOURCE_DIR}/scripts/windows/finish-library)
        add_custom_command(TARGET ${library} POST_BUILD
            COMMAND ${Python3_EXECUTABLE} ${finish} $<TARGET_FILE:${library}> 
            BYPRODUCTS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${library}.dll.debug VERBATIM)
        set_property(TARGET ${library} APPEND PROPERTY LINK_DEPENDS ${finish})
    endif()
endfunction()
