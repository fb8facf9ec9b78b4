#include "host/SharedLibrary.h"

#include "host/HostError.h"

#include <dlfcn.h>

#include <utility>

namespace host {
namespace {

/// The loader's words for what just went wrong, in one line.
std::string loaderError() {
    const char* words = ::dlerror();
    std::string text = words != nullptr ? words : "cannot be loaded";
    for (char& character : text) {
        character = character == '\n' ? ' ' : character;
    }
    return text;
}

} // namespace

SharedLibrary SharedLibrary::load(const std::filesystem::path& file) {
    // An absolute path keeps the loader from searching its own folders for a bare name.
    void* handle = ::dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        throw HostError("cannot load the module: " + loaderError());
    }
    return SharedLibrary(handle);
}

std::optional<SharedLibrary> SharedLibrary::findLoaded(const std::string& name) {
    void* handle = ::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
    if (handle == nullptr) {
        return std::nullopt;
    }
    return SharedLibrary(handle);
}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : handle(std::exchange(other.handle, nullptr)) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    std::swap(handle, other.handle);
    return *this;
}

SharedLibrary::~SharedLibrary() {
    if (handle != nullptr) {
        ::dlclose(handle);
    }
}

void* SharedLibrary::symbol(const char* name) const { return ::dlsym(handle, name); }

} // namespace host
