/// An environment variable for the length of a test.
#pragma once

#include <optional>
#include <string>

namespace test {

/// Sets a variable, or with null takes it away, and puts it back as it was.
class ScopedEnvironment {
public:
    /// When the C library is told to look at "TZ".
    enum class Zone { IsReadNow, IsReadAtTheEnd };

    ScopedEnvironment(const char* name, const char* value, Zone zone = Zone::IsReadNow);
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment();

private:
    /// As the system sets a variable.
    static void put(const std::string& name, const char* value);
    static void readZone();

    std::string variable;
    std::optional<std::string> former;
};

} // namespace test
