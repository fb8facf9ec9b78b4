/// @file
/// How a name leaves a shared library and how it is called, on every platform that the SDK is built for.
#pragma once

/// @def WREN_DLL_EXPORT
/// On what a library lets out, in its own build.

/// @def WREN_DLL_IMPORT
/// On what a library takes in, in the builds of its users.

#if defined(_WIN32)
#define WREN_DLL_EXPORT /* the library's module definition file names what it exports */
#define WREN_DLL_IMPORT __declspec(dllimport)
#else
#define WREN_DLL_EXPORT __attribute__((visibility("default")))
#define WREN_DLL_IMPORT __attribute__((visibility("default")))
#endif

/// @def WREN_CALL
/// How functions are called that go by name or by a record's field: on 32-bit Windows there are several ways,
/// and a host may be built with another as its own. Operations of interfaces are called as compilers call
/// members by themselves, which is `__thiscall` there.
#if defined(_WIN32)
#define WREN_CALL __cdecl
#else
#define WREN_CALL
#endif

/// @def WREN_MODULE_API
/// On what the presentation module exports. Only the module's own build defines WREN_MODULE_BUILD.
#if defined(WREN_MODULE_BUILD)
#define WREN_MODULE_API WREN_DLL_EXPORT
#else
#define WREN_MODULE_API WREN_DLL_IMPORT
#endif

/// @def WREN_BACKEND_API
/// On what the backend library exports. Only a backend library's own build defines WREN_BACKEND_BUILD. The
/// Windows module finds these names at run time and imports none.
#if defined(WREN_BACKEND_BUILD) || (defined(_WIN32) && defined(WREN_MODULE_BUILD))
#define WREN_BACKEND_API WREN_DLL_EXPORT
#else
#define WREN_BACKEND_API WREN_DLL_IMPORT
#endif
