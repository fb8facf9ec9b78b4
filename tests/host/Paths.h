/// What the tests of the host run against.
#pragma once

namespace test {

inline constexpr const char* hostProgram = WREN_HOST_PROGRAM;
inline constexpr const char* echoModule = WREN_ECHO_MODULE;
inline constexpr const char* backendLibrary = WREN_BACKEND_LIBRARY;
inline constexpr const char* defectiveModule = WREN_DEFECTIVE_MODULE;

} // namespace test
