/// Message digests.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <system_error>

struct evp_md_ctx_st;

/// One digest over bytes that come piece by piece. Not for several threads at once.
class CHash {
public:
    /// @param error takes what stands in the way, or is cleared; then every operation answers with an error
    /// @param digestName as libcrypto knows it, such as "sha1"
    CHash(std::error_code& error, const char* digestName);

    /// @param data may be null if `size`, in bytes, is 0
    std::error_code Update(const void* data, std::size_t size);

    /// Ends the digest: no operation works afterwards.
    /// @param text takes the digest as upper-case hexadecimal digits, two a byte; empty on failure
    std::error_code GetHash(std::string& text);

private:
    struct FreeContext {
        void operator()(evp_md_ctx_st* digest) const noexcept;
    };
    std::unique_ptr<evp_md_ctx_st, FreeContext> context; ///< null once there is nothing to be had
};
