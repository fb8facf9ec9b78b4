/// A module's `CreatePlugin` and `DisposePlugin` with a plugin that only notes what reaches it.
#pragma once

#include "wren/PresentationPlugin.h"

#include <cstdint>
#include <string>

namespace test {

/// What the fake module does and what became of it. Every test begins with `fakeModule = {}`.
struct FakeModule {
    enum class Makes { Plugin, Nothing, PluginOfAnOlderVersion };

    Makes makes = Makes::Plugin;
    std::int32_t result = 0;    ///< of the operations that answer a number
    bool answer = true;         ///< of the operations that answer a bool
    bool throws = false;        ///< every operation does, and `CreatePlugin`
    bool throwsANumber = false; ///< likewise, what is no exception class
    bool disposeResult = true;  ///< of `DisposePlugin`
    bool stopsAtTheEnd = false; ///< the plugin calls `StopDone` from its destructor

    std::string created; ///< the name that `CreatePlugin` was given last
    std::string called;  ///< the operation that was called last, with its arguments
    unsigned alive = 0;  ///< plugins that are not yet disposed of
    std::uintptr_t hostHandle = 0;
    IPresentationCB* presentationCB = nullptr; ///< from the latest `Register`
    ITranslator* translator = nullptr;         ///< likewise
};
extern FakeModule fakeModule;

/// An address as the notes spell it.
std::string spelled(const void* address);

} // namespace test
