#include "host/BackendControls.h"

#include "host/HostError.h"
#include "host/LibraryNames.h"
#include "tests/host/Paths.h"

#include <gtest/gtest.h>

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
    ASSERT_FALSE(SharedLibrary::findLoaded(host::backendLibraryName));
    EXPECT_THROW(host::BackendControls(), host::HostError);
}

} // namespace
