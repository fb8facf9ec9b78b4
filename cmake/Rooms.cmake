# A room is a folder of the house, built as one static library that the module and the tests share.

# wren_sources(OUT DIR...): the sources of the folders, less those of other platforms. A platform seam is a
# header with one source a platform; the ending of the source's name (_linux, _win) says which it serves.
function(wren_sources out)
    if(WIN32)
        set(foreign "_linux\\.cpp$")
    else()
        set(foreign "_win\\.cpp$")
    endif()
    set(sources)
    foreach(dir IN LISTS ARGN)
        file(GLOB found CONFIGURE_DEPENDS ${dir}/*.cpp)
        list(APPEND sources ${found})
    endforeach()
    list(FILTER sources EXCLUDE REGEX ${foreign})
    set(${out} ${sources} PARENT_SCOPE)
endfunction()

# wren_room(NAME FOLDERS DIR... DEPENDS TARGET...): declares the room. Its includes are written from the
# folder that the CMakeLists.txt stands in, so that an include line shows the room that it points into.
function(wren_room name)
    cmake_parse_arguments(room "" "" "FOLDERS;DEPENDS" ${ARGN})
    list(TRANSFORM room_FOLDERS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    wren_sources(sources ${room_FOLDERS})
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${room_DEPENDS} PRIVATE wren_flags)
endfunction()

# wren_module_exports(NAME LIST): the shared library exports what its list names and nothing else: LIST.map is a version
# script, LIST.def the same for Windows. It needs nothing that is not linked. What it exports it may also call itself, and
# then finds its own: a host may hold other modules that export the same names. On Windows the library's name bears no prefix.
function(wren_module_exports name list)
    set(list ${CMAKE_CURRENT_SOURCE_DIR}/${list})
    if(WIN32)
        set_target_properties(${name} PROPERTIES PREFIX "")
        target_sources(${name} PRIVATE ${list}.def)
        return()
    endif()
    target_link_options(${name} PRIVATE LINKER:--version-script=${list}.map LINKER:--as-needed
        LINKER:-Bsymbolic-functions)
    if(NOT WREN_SANITIZE) # a sanitizer's runtime is found in the program
        target_link_options(${name} PRIVATE LINKER:--no-undefined)
    endif()
    set_target_properties(${name} PROPERTIES LINK_DEPENDS ${list}.map)
endfunction()
