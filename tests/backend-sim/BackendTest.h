/// The library in its first state, for each test.
#pragma once

#include "backend-sim/WrenSim.h"
#include "tests/backend-sim/Receiver.h"
#include "wren/QuillApi.h"

#include <gtest/gtest.h>

#include <memory>

std::ostream& operator<<(std::ostream& out, QuillApiResult result);

namespace test {

/// Quiet, with nothing told.
class BackendTest : public ::testing::Test {
protected:
    BackendTest();
    ~BackendTest() override;

    /// The factory as a plugin gets it.
    static std::weak_ptr<IQuillApiFactory> factory();
    /// A connection that was made, and one that was started with `receiver`.
    static std::shared_ptr<IQuillApi> makeApi();
    std::shared_ptr<IQuillApi> startApi();

    std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
};

} // namespace test
