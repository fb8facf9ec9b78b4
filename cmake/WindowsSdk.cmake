# What the SDK has on Windows beside the headers: import libraries for compilers of both kinds, the list that they are made
# of, and where CMake finds them.

set(list ${CMAKE_SOURCE_DIR}/presentation-plugin/module.def)
set(name kes_wren_presentation_plugin)
find_program(WREN_DLLTOOL NAMES llvm-dlltool-14 llvm-dlltool REQUIRED)
add_custom_command(OUTPUT ${package_build_folder}/${name}.lib
    COMMAND ${WREN_DLLTOOL} -m i386 -D ${name}.dll -d ${list} -l ${package_build_folder}/${name}.lib
    DEPENDS ${list} VERBATIM)
add_custom_target(wren_import_library ALL DEPENDS ${package_build_folder}/${name}.lib)
install(FILES ${package_build_folder}/${name}.lib $<TARGET_LINKER_FILE:${name}> DESTINATION lib COMPONENT sdk)
install(FILES ${list} DESTINATION lib RENAME ${name}.def COMPONENT sdk)

configure_file(${CMAKE_SOURCE_DIR}/packaging/WindowsModule.cmake.in ${package_build_folder}/WindowsModule.cmake.in @ONLY)
file(GENERATE OUTPUT ${package_build_folder}/${WREN_CMAKE_PACKAGE}WindowsModule.cmake
    INPUT ${package_build_folder}/WindowsModule.cmake.in)
install(FILES ${package_build_folder}/${WREN_CMAKE_PACKAGE}WindowsModule.cmake DESTINATION ${package_folder} COMPONENT sdk)
