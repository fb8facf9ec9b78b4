/* Holds what Windows reads off a DLL: file-resources FILE.dll VERSION DESCRIPTION [EVENT]
 *
 * With EVENT, the DLL has the message of that id, which is the text of an entry in the event log as it is. */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

static int failures = 0;

static void expect(int isSo, const char* what, const char* value) {
    if (!isSo) {
        fprintf(stderr, "%s: %s\n", what, value);
        failures = 1;
    }
}

static const char* textOf(void* resource, const char* field) {
    char path[64];
    void* text = NULL;
    UINT length = 0;
    snprintf(path, sizeof path, "\\StringFileInfo\\040904b0\\%s", field);
    return VerQueryValueA(resource, path, &text, &length) ? (const char*)text : "(none)";
}

static void expectText(void* resource, const char* field, const char* expected) {
    const char* const text = textOf(resource, field);
    expect(strcmp(text, expected) == 0, field, text);
}

static void expectVersion(const char* file, const char* version, const char* description) {
    DWORD unused = 0;
    const DWORD size = GetFileVersionInfoSizeA(file, &unused);
    void* const resource = calloc(1, size + 1);
    if (resource == NULL || size == 0 || !GetFileVersionInfoA(file, 0, size, resource)) {
        expect(0, "no version resource", file);
        free(resource);
        return;
    }
    void* fixed = NULL;
    UINT length = 0;
    if (VerQueryValueA(resource, "\\", &fixed, &length)) {
        const VS_FIXEDFILEINFO* const info = fixed;
        char found[64];
        snprintf(found, sizeof found, "%u.%u.%u.%u", HIWORD(info->dwFileVersionMS),
                 LOWORD(info->dwFileVersionMS), HIWORD(info->dwFileVersionLS), LOWORD(info->dwFileVersionLS));
        expect(strcmp(found, version) == 0, "version in numbers", found);
    }
    expect(length == sizeof(VS_FIXEDFILEINFO), "no version in numbers", file);
    const char* const name = strrchr(file, '/');
    expectText(resource, "CompanyName", "The Wren Gate presentation plugin project");
    expectText(resource, "FileDescription", description);
    expectText(resource, "FileVersion", version);
    expectText(resource, "OriginalFilename", name == NULL ? file : name + 1);
    expectText(resource, "ProductName", "Wren Gate");
    expectText(resource, "ProductVersion", version);
    free(resource);
}

static void expectMessage(const char* file, DWORD event) {
    const HMODULE library = LoadLibraryExA(file, NULL, LOAD_LIBRARY_AS_DATAFILE);
    const wchar_t* const line = L"10:00:00 <DBG_ERROR> 100 % of a line";
    wchar_t text[100] = L"";
    DWORD_PTR arguments[] = {(DWORD_PTR)line};
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_ARGUMENT_ARRAY, library,
                                        event, 0, text, 100, (va_list*)arguments);
    expect(length > 0, "no such message", file);
    const size_t size = wcslen(line);
    expect(wcsncmp(text, line, size) == 0, "the message is not the line", file);
    expect(wcsspn(text + size, L"\r\n") == wcslen(text + size), "more follows the line", file);
    FreeLibrary(library);
}

int main(int count, char** arguments) {
    if (count < 4) {
        return 2;
    }
    expectVersion(arguments[1], arguments[2], arguments[3]);
    if (count > 4) {
        expectMessage(arguments[1], (DWORD)strtoul(arguments[4], NULL, 0));
    }
    return failures;
}
