#include "tests/backend-sim/BackendTest.h"

#include <ostream>

std::ostream& operator<<(std::ostream& out, QuillApiResult result) {
    return out << "result " << static_cast<unsigned>(result);
}

namespace test {

BackendTest::BackendTest() {
    wrensim_set_quiet(true);
    wrensim_reset();
}

BackendTest::~BackendTest() {
    wrensim_observe(nullptr, nullptr);
    wrensim_reset();
}

std::weak_ptr<IQuillApiFactory> BackendTest::factory() {
    std::weak_ptr<IQuillApiFactory> handedOut;
    EXPECT_EQ(GetQuillApiFactory(handedOut), QuillApiResult::Success);
    return handedOut;
}

std::shared_ptr<IQuillApi> BackendTest::makeApi() {
    std::shared_ptr<IQuillApi> api;
    EXPECT_EQ(factory().lock()->CreateApi(api), QuillApiResult::Success);
    return api;
}

std::shared_ptr<IQuillApi> BackendTest::startApi() {
    std::shared_ptr<IQuillApi> api = makeApi();
    EXPECT_EQ(api->Start(receiver), QuillApiResult::Success);
    return api;
}

} // namespace test
