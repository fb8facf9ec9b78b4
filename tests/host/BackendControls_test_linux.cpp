// On Windows the library that was used once stays loaded, since a library that is unloaded there can end no
// thread.
#include "host/BackendControls.h"

#include "host/LibraryNames.h"
#include "tests/host/Paths.h"
#include "tests/support/Holdings.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <thread>

namespace {

using host::SharedLibrary;

TEST(BackendControls, LibraryThatIsUnloadedTakesItsThreadWithIt) {
    std::thread([] {}).join(); // a sanitizer makes a thread of its own along with the first
    std::optional<SharedLibrary> backend = SharedLibrary::load(test::backendLibrary);
    const std::size_t before = test::runningThreads();
    backend->function<decltype(&wrensim_set_pace)>("wrensim_set_pace")(0);
    EXPECT_EQ(test::runningThreads(), before + 1);
    backend.reset();
    EXPECT_EQ(test::runningThreads(), before);
    EXPECT_FALSE(SharedLibrary::findLoaded(host::backendLibraryName));
}

} // namespace
