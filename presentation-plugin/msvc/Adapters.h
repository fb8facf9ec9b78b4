/// A service library of Microsoft's compiler behind the interfaces of wren/QuillApi.h.
#pragma once

#include "presentation-plugin/msvc/Service.h"

#include <functional>
#include <memory>
#include <string_view>

namespace msvc {

/// Calls into the library.
/// @return its answer; `Exception` where the call ended with one, which the log reports
QuillApiResult guardedCall(std::string_view operation, const std::function<QuillApiResult()>& call);

/// Finds the receiver that stands for one of the plugin's at the library.
/// @return with a weak use of its own; empty if there is none
using FindReceiver = std::function<WeakPointer<Callbacks>(const std::weak_ptr<IQuillApiCallbacks>&)>;

/// The library's factory. Any thread.
class FactoryAdapter final : public IQuillApiFactory {
public:
    FactoryAdapter(Observer<ApiFactory> observed, FindReceiver findReceiver);

    bool isExpired() const { return factory.isExpired(); }
    bool isFor(const Observer<ApiFactory>& other) const { return factory == other; }

    QuillApiResult Reserved() override;
    /// @throws ApiError_ex for a factory that has gone, which an expired weak pointer would have shown
    QuillApiResult CreateApi(std::shared_ptr<IQuillApi>& api) override;

private:
    const Observer<ApiFactory> factory;
    const FindReceiver findReceiver;
};

} // namespace msvc
