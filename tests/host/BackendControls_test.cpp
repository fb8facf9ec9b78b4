#include "host/BackendControls.h"

#include "host/HostError.h"
#include "tests/host/Paths.h"
#include "tests/support/Holdings.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <thread>

namespace {

using host::SharedLibrary;

TEST(BackendControls, AreTakenFromTheLoadedLibrary) {
    const SharedLibrary backend = SharedLibrary::load(test::backendLibrary);
    const host::BackendControls controls;
    EXPECT_FALSE(controls.hasReceiver(WRENSIM_LATEST_API));
    EXPECT_EQ(controls.deliverAndWait(WRENSIM_LATEST_API, wrensim_status_notification, "{}"),
              wrensim_no_receiver);
    EXPECT_FALSE(controls.setResult("Nothing", 1, 1));
}

TEST(BackendControls, NeedALoadedLibrary) {
    ASSERT_FALSE(SharedLibrary::findLoaded("libkes_wren_api.so"));
    EXPECT_THROW(host::BackendControls(), host::HostError);
}

TEST(BackendControls, LibraryThatIsUnloadedTakesItsThreadWithIt) {
    std::thread([] {}).join(); // a sanitizer makes a thread of its own along with the first
    std::optional<SharedLibrary> backend = SharedLibrary::load(test::backendLibrary);
    const std::size_t before = test::runningThreads();
    backend->function<decltype(&wrensim_set_pace)>("wrensim_set_pace")(0);
    EXPECT_EQ(test::runningThreads(), before + 1);
    backend.reset();
    EXPECT_EQ(test::runningThreads(), before);
    EXPECT_FALSE(SharedLibrary::findLoaded("libkes_wren_api.so"));
}

} // namespace
