/// The control functions of the stand-in service, where the module's backend library is the stand-in.
#pragma once

#include "backend-sim/WrenSim.h"
#include "host/SharedLibrary.h"

namespace host {

/// The functions of WrenSim.h under their names there, taken from the library that the module has loaded.
struct BackendControls {
    /// @throws HostError where no backend library is loaded or where it is not the stand-in
    BackendControls();

    SharedLibrary library;
    decltype(&wrensim_set_quiet) setQuiet;
    decltype(&wrensim_set_pace) setPace;
    decltype(&wrensim_deliver) deliver;
    decltype(&wrensim_deliver_and_wait) deliverAndWait;
    decltype(&wrensim_has_receiver) hasReceiver;
    decltype(&wrensim_set_result) setResult;
    decltype(&wrensim_set_null_api) setNullApi;
    decltype(&wrensim_set_factory_expired) setFactoryExpired;
    decltype(&wrensim_reset) reset;
    decltype(&wrensim_observe) observe;
    decltype(&wrensim_watch_documents) watchDocuments;
    decltype(&wrensim_forget_receivers) forgetReceivers;
    decltype(&wrensim_load_scenario) loadScenario;
    decltype(&wrensim_set) set;
    decltype(&wrensim_state) state;
    decltype(&wrensim_login_cookie) loginCookie;
    decltype(&wrensim_login_page) loginPage;
};

} // namespace host
