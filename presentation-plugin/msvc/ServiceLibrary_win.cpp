#include "presentation-plugin/msvc/ServiceLibrary.h"

#include "common2/logging/Common2Loggers.h"
#include "presentation-plugin/msvc/ExportNames.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace msvc {
namespace {

constexpr std::string_view function = "GetQuillApiFactory";
constexpr const wchar_t* libraryName = L"kes_wren_api.dll";

std::wstring folderOf(HMODULE module) {
    std::wstring path(32'768, L'\0');
    path.resize(::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.rfind(L'\\') + 1);
}

HMODULE ownModule() {
    static const char inThisModule = 0;
    HMODULE module = nullptr;
    ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                             GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         &inThisModule, &module);
    return module;
}

/// The library that the process has already; otherwise the one beside the module, or beside the program. The
/// folders that the system searches by itself may be anybody's.
HMODULE loadLibrary() {
    HMODULE library = nullptr;
    if (::GetModuleHandleExW(0, libraryName, &library)) {
        return library;
    }
    DWORD error = ERROR_MOD_NOT_FOUND;
    for (const HMODULE neighbour : {ownModule(), HMODULE{}}) {
        const std::wstring path = folderOf(neighbour) + libraryName;
        library = ::LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
        if (library != nullptr) {
            return library;
        }
        const DWORD failure = ::GetLastError();
        if (::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) {
            error = failure;
        }
    }
    COMMON2_LOG(DBG_ERROR, function) << "kes_wren_api.dll can't be loaded: error " << error;
    return nullptr;
}

template <class Function>
bool find(HMODULE library, const std::string& name, Function& found) {
    found =
        name.empty()
            ? nullptr
            : reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library, name.c_str())));
    return found != nullptr;
}

/// What the library exports by Microsoft's names. Whether its function has C's linkage or C++'s is not said.
bool findExports(HMODULE library, Exports& exports) {
    const ExportNames names(library);
    std::string getFactory = names.find("?GetQuillApiFactory@@YA", "");
    if (getFactory.empty()) {
        getFactory = "GetQuillApiFactory";
    }
    return find(library, names.find("??0IQuillApiCallbacks@@", "@XZ"), exports.constructCallbacks) &&
           find(library, names.find("??1IQuillApiCallbacks@@", "@XZ"), exports.destructCallbacks) &&
           find(library, getFactory, exports.getFactory);
}

bool findExports(HMODULE library, OwnExports& exports) {
    return find(library, "_ZN18IQuillApiCallbacksC2Ev", exports.constructCallbacks) &&
           find(library, "_ZN18IQuillApiCallbacksD2Ev", exports.destructCallbacks) &&
           find(library, "GetQuillApiFactory", exports.getFactory);
}

} // namespace

ServiceLibrary& ServiceLibrary::instance() {
    static ServiceLibrary library;
    return library;
}

// Runs when the module is unloaded, never at the process's end, when the library may have ended before.
ServiceLibrary::~ServiceLibrary() {
    receivers.clear();
    factories.clear();
    if (library != nullptr) {
        ::FreeLibrary(static_cast<HMODULE>(library));
    }
}

ServiceLibrary::AnyExports ServiceLibrary::exports() {
    const std::lock_guard lock(mutex);
    return exported;
}

/// Looks for a library as long as there is none.
ServiceLibrary::AnyExports ServiceLibrary::load() {
    const std::lock_guard lock(mutex);
    if (library != nullptr) {
        return exported;
    }
    const HMODULE loaded = loadLibrary();
    if (loaded == nullptr) {
        return {};
    }
    if (Exports other{}; findExports(loaded, other)) {
        exported = other;
    } else if (OwnExports own{}; findExports(loaded, own)) {
        exported = own;
    } else {
        COMMON2_LOG(DBG_ERROR, function) << "kes_wren_api.dll exports neither Microsoft's nor GCC's names of "
                                            "GetQuillApiFactory and IQuillApiCallbacks";
        ::FreeLibrary(loaded);
        return {};
    }
    library = loaded;
    return exported;
}

QuillApiResult ServiceLibrary::getFactory(std::weak_ptr<IQuillApiFactory>& factory) {
    const AnyExports used = load();
    if (const auto* own = std::get_if<OwnExports>(&used)) {
        return own->getFactory(factory);
    }
    const auto* other = std::get_if<Exports>(&used);
    return other != nullptr ? adaptFactory(*other, factory) : QuillApiResult::LoadFailed;
}

QuillApiResult ServiceLibrary::adaptFactory(const Exports& used, std::weak_ptr<IQuillApiFactory>& factory) {
    WeakPointer<ApiFactory> given;
    const QuillApiResult result = guardedCall(function, [&] { return used.getFactory(given); });
    Observer<ApiFactory> observed(given);
    if (result != QuillApiResult::Success) {
        return result;
    }
    std::vector<std::shared_ptr<FactoryAdapter>> expired; // their ends call the library
    const std::lock_guard lock(mutex);
    const auto firstExpired =
        std::ranges::partition(factories, [](const auto& made) { return !made->isExpired(); }).begin();
    expired.assign(std::make_move_iterator(firstExpired), std::make_move_iterator(factories.end()));
    factories.erase(firstExpired, factories.end());
    const auto known =
        std::ranges::find_if(factories, [&](const auto& made) { return made->isFor(observed); });
    if (known != factories.end()) {
        factory = *known;
        return result;
    }
    factories.push_back(std::make_shared<FactoryAdapter>(
        std::move(observed), [this](const auto& callbacks) { return findReceiver(callbacks); }));
    factory = factories.back();
    return result;
}

void ServiceLibrary::construct(IQuillApiCallbacks* callbacks) {
    const AnyExports used = exports();
    if (const auto* own = std::get_if<OwnExports>(&used)) {
        own->constructCallbacks(callbacks);
    } else if (const auto* other = std::get_if<Exports>(&used)) {
        auto receiver = std::make_unique<LentReceiver>(*other);
        const std::lock_guard lock(mutex);
        receivers.emplace(callbacks, std::move(receiver));
    }
}

void ServiceLibrary::destruct(IQuillApiCallbacks* callbacks) noexcept {
    const AnyExports used = exports();
    if (const auto* own = std::get_if<OwnExports>(&used)) {
        own->destructCallbacks(callbacks);
        return;
    }
    OwnedReceiver ended; // its end waits for the library's threads, and calls the library
    const std::lock_guard lock(mutex);
    if (auto found = receivers.extract(callbacks)) {
        ended = std::move(found.mapped());
    }
}

WeakPointer<Callbacks> ServiceLibrary::findReceiver(const std::weak_ptr<IQuillApiCallbacks>& callbacks) {
    const std::shared_ptr<IQuillApiCallbacks> receiver = callbacks.lock();
    const std::lock_guard lock(mutex);
    const auto found = receivers.find(receiver.get());
    if (found == receivers.end()) {
        return {};
    }
    return found->second->pointer(callbacks);
}

} // namespace msvc

// The SDK's names, which a service library defines: here they lead to whichever the process has.

IQuillApiCallbacks::IQuillApiCallbacks() { msvc::ServiceLibrary::instance().construct(this); }

IQuillApiCallbacks::~IQuillApiCallbacks() { msvc::ServiceLibrary::instance().destruct(this); }

QuillApiResult GetQuillApiFactory(std::weak_ptr<IQuillApiFactory>& factory) {
    return msvc::ServiceLibrary::instance().getFactory(factory);
}
