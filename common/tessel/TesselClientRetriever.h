/// What this client is, and on which device it runs.
#pragma once

#include <string>

/// Gathers the client's identity once, in its constructor, which always completes: a field that can't be had
/// is logged and stays empty. Reads the operating system's settings and files. Throws only for want of
/// memory.
class TesselClientRetriever {
public:
    TesselClientRetriever();

    /// "Wren Gate".
    const std::string& getProduct() const noexcept { return product; }
    const std::string& getVersion() const noexcept { return version; }
    /// Kind of operating system, such as "win" or "linux-x86_64".
    const std::string& getOs() const noexcept { return os; }
    /// 40 upper-case hexadecimal digits, or empty.
    const std::string& getDeviceHash() const noexcept { return device_hash; }
    /// Machine id of the endpoint monitoring agent, or empty where there is none.
    const std::string& getSandpiperId() const noexcept { return sandpiper_id; }

private:
    std::string product;
    std::string version;
    std::string os;
    std::string device_hash;
    std::string sandpiper_id;
};
