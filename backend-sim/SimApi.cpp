#include "backend-sim/SimApi.h"

#include "backend-sim/Backend.h"

#include <utility>

namespace sim {
namespace {

class SimFactory final : public IQuillApiFactory {
public:
    explicit SimFactory(Backend& owner)
        : backend(owner) {}

    QuillApiResult Reserved() override { return QuillApiResult::NotImplemented; }
    QuillApiResult CreateApi(std::shared_ptr<IQuillApi>& api) override { return backend.createApi(api); }

private:
    Backend& backend;
};

/// One connection as the plugin holds it. A plugin that lets go of a running one has stopped it.
class SimApi final : public IQuillApi {
public:
    SimApi(Backend& owner, std::shared_ptr<Connection> made)
        : backend(owner)
        , connection(std::move(made)) {}
    SimApi(const SimApi&) = delete;
    SimApi& operator=(const SimApi&) = delete;
    ~SimApi() { backend.release(*connection); }

    QuillApiResult Start(std::weak_ptr<IQuillApiCallbacks> callbacks) override {
        return backend.start(connection, callbacks);
    }
    QuillApiResult InitiateEnrollment(const char* json) override {
        return request(Operation::InitiateEnrollment, json);
    }
    QuillApiResult InitiateReEnrollment(const char* json) override {
        return request(Operation::InitiateReEnrollment, json);
    }
    QuillApiResult EnrollmentAuthReply(const char* json) override {
        return request(Operation::EnrollmentAuthReply, json);
    }
    QuillApiResult CancelEnrollment(const char* json) override {
        return request(Operation::CancelEnrollment, json);
    }
    QuillApiResult InitiateUnenrollment(const char* json) override {
        return request(Operation::InitiateUnenrollment, json);
    }
    QuillApiResult PerformConfigSync(const char* json) override {
        return request(Operation::PerformConfigSync, json);
    }
    QuillApiResult TriggerPostureReports(const char* json) override {
        return request(Operation::TriggerPostureReports, json);
    }
    QuillApiResult DataplaneAuthReply(const char* json) override {
        return request(Operation::DataplaneAuthReply, json);
    }
    QuillApiResult Stop() override { return backend.stop(connection); }

private:
    QuillApiResult request(Operation operation, const char* json) {
        return backend.request(connection, operation, json);
    }

    Backend& backend;
    const std::shared_ptr<Connection> connection;
};

} // namespace

std::shared_ptr<IQuillApiFactory> makeFactory(Backend& backend) {
    return std::make_shared<SimFactory>(backend);
}

std::shared_ptr<IQuillApi> makeApi(Backend& backend, std::shared_ptr<Connection> connection) {
    return std::make_shared<SimApi>(backend, std::move(connection));
}

} // namespace sim
