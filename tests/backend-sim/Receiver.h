/// A plugin's callback side, as the backend library sees it.
#pragma once

#include "wren/QuillApi.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace test {

/// One callback: the operation's name and the document.
struct Received {
    std::string operation;
    std::string json;

    bool operator==(const Received&) const = default;
};
void PrintTo(const Received& received, std::ostream* out);

/// Keeps what arrives. Any thread.
class Receiver : public IQuillApiCallbacks {
public:
    void StatusNotification(const char* json) override { take("StatusNotification", json); }
    void EnrollmentStatusNotification(const char* json) override {
        take("EnrollmentStatusNotification", json);
    }
    void EnrollmentAuthRequest(const char* json) override { take("EnrollmentAuthRequest", json); }
    void UnenrollmentStatusNotification(const char* json) override {
        take("UnenrollmentStatusNotification", json);
    }
    void DataplaneNotification(const char* json) override { take("DataplaneNotification", json); }

    /// Runs inside each callback, before it is counted. Set before documents are sent.
    std::function<void()> inside;

    std::vector<Received> all() const;
    /// Waits until that many callbacks were made, and gives them.
    std::vector<Received> waitFor(std::size_t count) const;
    std::thread::id lastThread() const;

private:
    void take(const char* operation, const char* json);

    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    std::vector<Received> received;
    std::thread::id thread;
};

/// Something that happens once and that another thread waits for.
class Event {
public:
    void happen();
    void await();

private:
    std::mutex mutex;
    std::condition_variable changed;
    bool happened = false;
};

} // namespace test
