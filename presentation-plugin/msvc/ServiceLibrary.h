/// The service library `kes_wren_api.dll` as the module finds it on Windows: at run time, by the names that
/// either compiler gives its exports.
#pragma once

#include "presentation-plugin/msvc/Adapters.h"
#include "presentation-plugin/msvc/Receiver.h"

#include <map>
#include <memory>
#include <mutex>
#include <variant>
#include <vector>

namespace msvc {

/// What a library exports that was built with the module's own compiler.
struct OwnExports {
    QuillApiResult (*getFactory)(std::weak_ptr<IQuillApiFactory>& factory);
    void(__thiscall* constructCallbacks)(IQuillApiCallbacks* callbacks);
    void(__thiscall* destructCallbacks)(IQuillApiCallbacks* callbacks);
};

/// The library, which is loaded when it is first asked for and let go of with the module. Any thread. No lock
/// is held while the library is called.
class ServiceLibrary {
public:
    static ServiceLibrary& instance();
    ServiceLibrary(const ServiceLibrary&) = delete;
    ServiceLibrary& operator=(const ServiceLibrary&) = delete;
    ~ServiceLibrary();

    /// Asks the library's `GetQuillApiFactory`.
    /// @return its answer; `LoadFailed` where there is no library of that kind, which the log explains
    QuillApiResult getFactory(std::weak_ptr<IQuillApiFactory>& factory);

    /// Runs the library's constructor for a receiver that is being made, and its destructor for one that
    /// ends. Without a library there is nothing to run.
    void construct(IQuillApiCallbacks* callbacks);
    void destruct(IQuillApiCallbacks* callbacks) noexcept;

private:
    using AnyExports = std::variant<std::monostate, OwnExports, Exports>;
    using OwnedReceiver = std::unique_ptr<LentReceiver>;

    ServiceLibrary() = default;

    AnyExports exports();
    AnyExports load();
    QuillApiResult adaptFactory(const Exports& used, std::weak_ptr<IQuillApiFactory>& factory);
    WeakPointer<Callbacks> findReceiver(const std::weak_ptr<IQuillApiCallbacks>& callbacks);

    std::mutex mutex;
    void* library = nullptr;                                ///< under the mutex, as what follows
    AnyExports exported;                                    ///< of the library
    std::vector<std::shared_ptr<FactoryAdapter>> factories; ///< given out, while the library has them
    std::map<const IQuillApiCallbacks*, OwnedReceiver> receivers;
};

} // namespace msvc
