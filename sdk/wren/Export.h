/// How a name leaves a shared library, on every platform that the SDK is built for.
#pragma once

#if defined(_WIN32)
#define WREN_DLL_EXPORT __declspec(dllexport)
#define WREN_DLL_IMPORT __declspec(dllimport)
#else
#define WREN_DLL_EXPORT __attribute__((visibility("default")))
#define WREN_DLL_IMPORT __attribute__((visibility("default")))
#endif

/// On what the presentation module exports. Only the module's own build defines WREN_MODULE_BUILD.
#if defined(WREN_MODULE_BUILD)
#define WREN_MODULE_API WREN_DLL_EXPORT
#else
#define WREN_MODULE_API WREN_DLL_IMPORT
#endif

/// On what the backend library exports. Only a backend library's own build defines WREN_BACKEND_BUILD.
#if defined(WREN_BACKEND_BUILD)
#define WREN_BACKEND_API WREN_DLL_EXPORT
#else
#define WREN_BACKEND_API WREN_DLL_IMPORT
#endif
