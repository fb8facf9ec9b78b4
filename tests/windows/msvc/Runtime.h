// What the programs of the other compiler have instead of its libraries: the system's C library and loader.
#pragma once

#include <stddef.h>

extern "C" {
int printf(const char* format, ...);
int snprintf(char* buffer, size_t size, const char* format, ...) __asm__("__snprintf");
int strcmp(const char* first, const char* second);
char* strstr(const char* text, const char* part);
size_t strlen(const char* text);
void* memcpy(void* to, const void* from, size_t size);
void* memset(void* to, int value, size_t size);
void* malloc(size_t size);
void free(void* memory);
char* getenv(const char* name);
[[noreturn]] void exit(int code);

using Handle = void*;
using ThreadFunction = unsigned long(__stdcall*)(void*);
__declspec(dllimport) Handle __stdcall LoadLibraryA(const char* file);
__declspec(dllimport) int __stdcall FreeLibrary(Handle library);
__declspec(dllimport) Handle __stdcall GetModuleHandleA(const char* file);
__declspec(dllimport) void* __stdcall GetProcAddress(Handle library, const char* name);
__declspec(dllimport) Handle __stdcall CreateThread(void* security, size_t stack, ThreadFunction function,
                                                    void* argument, unsigned long flags, unsigned long* id);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(Handle object, unsigned long milliseconds);
__declspec(dllimport) void __stdcall Sleep(unsigned long milliseconds);
__declspec(dllimport) int __stdcall CloseHandle(Handle object);
__declspec(dllimport) int __stdcall GetHandleInformation(Handle object, unsigned long* flags);
__declspec(dllimport) unsigned long __stdcall GetCurrentThreadId();
__declspec(dllimport) void __stdcall RaiseException(unsigned long code, unsigned long flags,
                                                    unsigned long count, const unsigned long* arguments);
}
