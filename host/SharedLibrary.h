/// A library that is loaded while the program runs.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace host {

/// Keeps one library loaded.
class SharedLibrary {
public:
    /// Loads the file, with everything that it needs.
    /// @throws HostError with the system's words
    static SharedLibrary load(const std::filesystem::path& file);

    /// Another hold on a library that this process has loaded already.
    /// @param name as its users name it, without a folder
    static std::optional<SharedLibrary> findLoaded(const std::string& name);

    SharedLibrary(SharedLibrary&& other) noexcept;
    SharedLibrary& operator=(SharedLibrary&& other) noexcept;
    ~SharedLibrary();

    /// The address of an exported symbol, or null.
    void* symbol(const char* name) const;

    /// The exported function of that name with the type of the function pointer `Function`, or null.
    template <class Function>
    Function function(const char* name) const {
        return reinterpret_cast<Function>(symbol(name));
    }

private:
    explicit SharedLibrary(void* opened)
        : handle(opened) {}

    void* handle;
};

} // namespace host
