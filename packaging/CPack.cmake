# What each generator of packages is told beside cmake/Packaging.cmake.

set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CPACK_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The backend library has no version and comes with the product: no package is looked up for it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CPACK_WREN_LIBRARY_FOLDER}")

set(CPACK_DEBIAN_MODULE_PACKAGE_NAME wren-gate-module)
set(CPACK_DEBIAN_MODULE_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_MODULE_PACKAGE_RECOMMENDS wren-gate-backend)
set(CPACK_COMPONENT_MODULE_DESCRIPTION "Presentation plugin of the Wren Gate secure-access module
 A library that a host process loads: it describes the user interface of
 the Wren Gate module and hears what users do. The backend library
 libkes_wren_api.so belongs beside it, in /usr/lib/wren-gate.")

set(CPACK_DEBIAN_SDK_PACKAGE_NAME wren-gate-sdk)
set(CPACK_DEBIAN_SDK_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_SDK_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_SDK_PACKAGE_DEPENDS "wren-gate-module (= ${CPACK_PACKAGE_VERSION})")
set(CPACK_COMPONENT_SDK_DESCRIPTION "Headers for hosts and backend libraries of the Wren Gate plugin
 What a host of the presentation plugin, in C++ or in C, or a backend
 library is built against, for CMake and for pkg-config.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME wren-gate-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "wren-gate-module (= ${CPACK_PACKAGE_VERSION})")
set(CPACK_DEBIAN_TOOLS_PACKAGE_PROVIDES wren-gate-backend)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "Reference host and stand-in service of the Wren Gate plugin
 wren-host shows the plugin's screen in a browser or a terminal, runs and
 compares recorded sessions and collects diagnostic bundles. A service that
 stands in for the real one is used where there is no other.")
