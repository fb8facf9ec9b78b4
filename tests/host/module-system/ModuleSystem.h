/// What the tests' modules need of the system.
#pragma once

#include <string>

namespace test::module_system {

/// Writes a line to the system's log.
void log(const std::string& line);

/// Ends the process as a fault of the module does.
[[noreturn]] void crash();
/// Ends the process at once, as if all were well.
[[noreturn]] void leave(int exitCode);
/// Never returns.
[[noreturn]] void hang();

/// Another module, loaded for as long as this lives. The process crashes where there is none.
class OtherModule {
public:
    explicit OtherModule(const char* file);
    OtherModule(const OtherModule&) = delete;
    OtherModule& operator=(const OtherModule&) = delete;
    ~OtherModule();

    template <class Function>
    Function function(const char* name) const {
        return reinterpret_cast<Function>(symbol(name));
    }

private:
    void* symbol(const char* name) const;

    void* handle;
};

} // namespace test::module_system
