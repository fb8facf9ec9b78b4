#include "host/ExportedSymbols.h"

#include "host/HostError.h"
#include "tests/host/Paths.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using host::exportedSymbols;
using host::HostError;
using ::testing::ElementsAre;

TEST(ExportedSymbols, BackendLibraryExportsItsContractAndItsControlsAndNothingElse) {
    auto symbols = exportedSymbols(test::backendLibrary);
    // The constructor that makes a whole object: of an abstract class not every compiler writes one.
    std::erase(symbols, "_ZN18IQuillApiCallbacksC1Ev");
    const auto controls =
        std::erase_if(symbols, [](const std::string& name) { return name.starts_with("wrensim_"); });
    EXPECT_GT(controls, 0u);
    EXPECT_THAT(symbols, ElementsAre("GetQuillApiFactory", "_ZN18IQuillApiCallbacksC2Ev",
                                     "_ZN18IQuillApiCallbacksD0Ev", "_ZN18IQuillApiCallbacksD1Ev",
                                     "_ZN18IQuillApiCallbacksD2Ev", "_ZTI18IQuillApiCallbacks",
                                     "_ZTS18IQuillApiCallbacks", "_ZTV18IQuillApiCallbacks"));
}

TEST(ExportedSymbols, RefusesWhatCannotBeRead) {
    EXPECT_THROW(exportedSymbols("/nonexistent/library.so"), HostError);
    EXPECT_THROW(exportedSymbols("/"), HostError);
}

} // namespace
