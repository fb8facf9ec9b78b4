/// What the tests of the host run against.
#pragma once

#include <string>

namespace test {

/// @param path absolute, or seen from this program's folder
std::string placed(const char* path);

inline const std::string hostProgram = placed(WREN_HOST_PROGRAM);
inline const std::string echoModule = placed(WREN_ECHO_MODULE);
inline const std::string backendLibrary = placed(WREN_BACKEND_LIBRARY);
inline const std::string defectiveModule = placed(WREN_DEFECTIVE_MODULE);
inline const std::string crashingModule = placed(WREN_CRASHING_MODULE);

/// Names the folder for temporary files.
extern const char* const temporaryFolderVariable;

/// How a thread's stack is reported, a part of it, as a pattern.
extern const char* const stackPattern;
/// How the end of a process is reported that one of the tests' modules lets crash.
extern const char* const crashText;
/// The end of the line on a module that crashes while it is being loaded.
extern const char* const crashWhenLoadedText;

} // namespace test
