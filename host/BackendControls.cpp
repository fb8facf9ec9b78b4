#include "host/BackendControls.h"

#include "host/HostError.h"
#include "host/LibraryNames.h"

#include <string>

namespace host {
namespace {

SharedLibrary loadedBackend() {
    auto found = SharedLibrary::findLoaded(backendLibraryName);
    if (!found) {
        throw HostError("the module has loaded no backend library " + std::string(backendLibraryName));
    }
    return std::move(*found);
}

template <class Function>
Function required(const SharedLibrary& library, const char* name) {
    const auto function = library.function<Function>(name);
    if (function == nullptr) {
        throw HostError("the module's backend library is not the stand-in service: it exports no " +
                        std::string(name));
    }
    return function;
}

} // namespace

BackendControls::BackendControls()
    : library(loadedBackend())
    , setQuiet(required<decltype(setQuiet)>(library, "wrensim_set_quiet"))
    , setPace(required<decltype(setPace)>(library, "wrensim_set_pace"))
    , deliver(required<decltype(deliver)>(library, "wrensim_deliver"))
    , deliverAndWait(required<decltype(deliverAndWait)>(library, "wrensim_deliver_and_wait"))
    , hasReceiver(required<decltype(hasReceiver)>(library, "wrensim_has_receiver"))
    , setResult(required<decltype(setResult)>(library, "wrensim_set_result"))
    , setNullApi(required<decltype(setNullApi)>(library, "wrensim_set_null_api"))
    , setFactoryExpired(required<decltype(setFactoryExpired)>(library, "wrensim_set_factory_expired"))
    , reset(required<decltype(reset)>(library, "wrensim_reset"))
    , observe(required<decltype(observe)>(library, "wrensim_observe"))
    , watchDocuments(required<decltype(watchDocuments)>(library, "wrensim_watch_documents"))
    , forgetReceivers(required<decltype(forgetReceivers)>(library, "wrensim_forget_receivers"))
    , loadScenario(required<decltype(loadScenario)>(library, "wrensim_load_scenario"))
    , set(required<decltype(set)>(library, "wrensim_set"))
    , state(required<decltype(state)>(library, "wrensim_state"))
    , loginCookie(required<decltype(loginCookie)>(library, "wrensim_login_cookie"))
    , loginPage(required<decltype(loginPage)>(library, "wrensim_login_page")) {}

} // namespace host
