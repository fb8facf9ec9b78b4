# What is installed, in three components that stand apart, and the packages made of them:
#
#   module   the plugin module
#   sdk      the public headers, and how CMake and pkg-config find them and the module
#   tools    the reference host with its pages, and the stand-in service
#
# For Windows there is a fourth, of the module's debug symbols, and an installer of the module.
#
# The prefix may be moved: all find each other by their places to one another.

set(WREN_PACKAGE wren-gate)
set(WREN_CMAKE_PACKAGE WrenGatePresentationPlugin)
set(WREN_INCLUDE_FOLDER include/${WREN_PACKAGE})

# Beside the module stands the backend library of the product. The stand-in has a folder of its own below, where the
# module looks last: it never takes the real library's place.
if(WIN32)
    set(WREN_MODULE_FOLDER bin)
    set(WREN_STAND_IN_FOLDER bin)
else()
    set(WREN_MODULE_FOLDER lib/${WREN_PACKAGE})
    set(WREN_STAND_IN_FOLDER ${WREN_MODULE_FOLDER}/stand-in)
    # The same in the build: where the two differ, CMake fills the shorter one up with empty folders, which stand for the
    # current one.
    set_target_properties(kes_wren_presentation_plugin PROPERTIES
        INSTALL_RPATH "$ORIGIN:$ORIGIN/stand-in" BUILD_WITH_INSTALL_RPATH ON)
endif()
set(WREN_MODULE_PATH ${WREN_MODULE_FOLDER}/$<TARGET_FILE_NAME:kes_wren_presentation_plugin>)

# wren_documents(COMPONENT): what each package tells of itself: its changes, and what it is made of.
function(wren_documents component)
    set(folder share/doc/${WREN_PACKAGE}-${component})
    install(FILES ${CMAKE_SOURCE_DIR}/CHANGELOG.md DESTINATION ${folder} COMPONENT ${component})
    if(WREN_BILL_OF_MATERIALS)
        install(CODE "execute_process(COMMAND ${CMAKE_SOURCE_DIR}/scripts/sbom ${component} ${CMAKE_BINARY_DIR}
            --output \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}/sbom.spdx.json\" COMMAND_ERROR_IS_FATAL ANY)"
            COMPONENT ${component})
    endif()
    if(WIN32)
        install(CODE "execute_process(COMMAND ${CMAKE_SOURCE_DIR}/scripts/windows/notices ${component} ${CMAKE_BINARY_DIR}
            --output \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}/third-party-notices.txt\"
            COMMAND_ERROR_IS_FATAL ANY)" COMPONENT ${component})
    endif()
endfunction()

# The bill of materials is read off Debian's package database and the build's record of included headers.
find_program(WREN_DPKG_QUERY dpkg-query)
if(WREN_DPKG_QUERY AND CMAKE_GENERATOR STREQUAL Ninja)
    set(WREN_BILL_OF_MATERIALS ON)
else()
    set(WREN_BILL_OF_MATERIALS OFF)
endif()

install(TARGETS kes_wren_presentation_plugin
    LIBRARY DESTINATION ${WREN_MODULE_FOLDER} COMPONENT module
    RUNTIME DESTINATION ${WREN_MODULE_FOLDER} COMPONENT module)
wren_documents(module)

install(DIRECTORY ${CMAKE_SOURCE_DIR}/sdk/wren DESTINATION ${WREN_INCLUDE_FOLDER} COMPONENT sdk FILES_MATCHING PATTERN *.h)
include(CMakePackageConfigHelpers)
set(package_folder lib/cmake/${WREN_CMAKE_PACKAGE})
set(package_build_folder ${CMAKE_BINARY_DIR}/packaging)
install(TARGETS wren_sdk EXPORT ${WREN_CMAKE_PACKAGE} COMPONENT sdk)
install(EXPORT ${WREN_CMAKE_PACKAGE} NAMESPACE WrenGate:: FILE ${WREN_CMAKE_PACKAGE}Targets.cmake
    DESTINATION ${package_folder} COMPONENT sdk)
configure_package_config_file(${CMAKE_SOURCE_DIR}/packaging/Config.cmake.in
    ${package_build_folder}/Config.cmake.in INSTALL_DESTINATION ${package_folder})
file(GENERATE OUTPUT ${package_build_folder}/${WREN_CMAKE_PACKAGE}Config.cmake
    INPUT ${package_build_folder}/Config.cmake.in)
write_basic_package_version_file(${package_build_folder}/${WREN_CMAKE_PACKAGE}ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${package_build_folder}/${WREN_CMAKE_PACKAGE}Config.cmake
    ${package_build_folder}/${WREN_CMAKE_PACKAGE}ConfigVersion.cmake
    DESTINATION ${package_folder} COMPONENT sdk)
configure_file(${CMAKE_SOURCE_DIR}/packaging/wren-gate.pc.in ${package_build_folder}/pc.in @ONLY)
file(GENERATE OUTPUT ${package_build_folder}/${WREN_PACKAGE}.pc INPUT ${package_build_folder}/pc.in)
install(FILES ${package_build_folder}/${WREN_PACKAGE}.pc DESTINATION lib/pkgconfig COMPONENT sdk)
if(WIN32)
    include(WindowsSdk)
endif()
wren_documents(sdk)

install(TARGETS wren-host RUNTIME DESTINATION bin COMPONENT tools)
install(TARGETS kes_wren_api
    LIBRARY DESTINATION ${WREN_STAND_IN_FOLDER} COMPONENT tools
    RUNTIME DESTINATION ${WREN_STAND_IN_FOLDER} COMPONENT tools)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/host/app ${CMAKE_SOURCE_DIR}/host/pages ${CMAKE_SOURCE_DIR}/backend-sim/scenarios
    DESTINATION share/wren-host COMPONENT tools)
install(FILES ${CMAKE_SOURCE_DIR}/backend-sim/scenario.schema.json DESTINATION share/wren-host COMPONENT tools)
wren_documents(tools)

set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_SOURCE_DIR}/packaging/CPack.cmake)
set(CPACK_PACKAGE_NAME ${WREN_PACKAGE})
set(CPACK_PACKAGE_VENDOR "${WREN_VENDOR}")
set(CPACK_PACKAGE_CONTACT "${CPACK_PACKAGE_VENDOR} <maintainers@wren-gate.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_WREN_LIBRARY_FOLDER ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_COMPONENTS_ALL module sdk tools)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    list(APPEND CPACK_COMPONENTS_ALL symbols)
    install(FILES $<TARGET_FILE:kes_wren_presentation_plugin>.debug DESTINATION bin COMPONENT symbols OPTIONAL)
    target_link_options(wren-host PRIVATE $<$<CONFIG:Release>:-s>)
else()
    set(CPACK_STRIP_FILES ON) # on Windows, finished files are installed
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
endif()
include(CPack)
