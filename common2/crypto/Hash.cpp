#include "common2/crypto/Hash.h"

#include "common2/logging/Common2Loggers.h"
#include "common2/util/GlobalError.h"

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>

#include <array>
#include <memory>
#include <new>
#include <string_view>

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";
static_assert(EVP_MAX_MD_SIZE == 64);

/// Leaves the thread's queue of errors, which is the whole process's business, as it was.
class ErrorQueueGuard {
public:
    ErrorQueueGuard() { ERR_set_mark(); }
    ErrorQueueGuard(const ErrorQueueGuard&) = delete;
    ErrorQueueGuard& operator=(const ErrorQueueGuard&) = delete;
    ~ErrorQueueGuard() { ERR_pop_to_mark(); }
};

struct FreeLibrary {
    void operator()(OSSL_LIB_CTX* library) const noexcept { OSSL_LIB_CTX_free(library); }
};
struct FreeDigest {
    void operator()(EVP_MD* digest) const noexcept { EVP_MD_free(digest); }
};
using Digest = std::unique_ptr<EVP_MD, FreeDigest>;

/// A context of libcrypto that is the module's own. The process's one is made once: if there is no memory for
/// it then, every later use of it crashes. This one can be made again.
class DigestLibrary {
public:
    /// @throws std::bad_alloc if there is no memory for the whole of it
    DigestLibrary()
        : context(OSSL_LIB_CTX_new())
        , usual(context ? EVP_MD_fetch(context.get(), usualName, nullptr) : nullptr) {
        // The first digest that is fetched loads them all. libcrypto also registers its own end with the
        // process meanwhile, so that it comes after the end of this object.
        if (!usual) {
            throw std::bad_alloc();
        }
    }

    /// @return null if there is no such digest
    Digest fetch(const char* name) const {
        // A fetch that finds no memory looks like one that finds no digest.
        const bool isUsual = std::string_view(name) == usualName && EVP_MD_up_ref(usual.get()) == 1;
        return Digest(isUsual ? usual.get() : EVP_MD_fetch(context.get(), name, nullptr));
    }

private:
    static constexpr const char* usualName = "sha1";

    std::unique_ptr<OSSL_LIB_CTX, FreeLibrary> context;
    Digest usual;
};

/// The library, made on first use, and again after that has failed.
/// @throws std::bad_alloc
const DigestLibrary& digestLibrary() {
    static const DigestLibrary library;
    return library;
}

} // namespace

void CHash::FreeContext::operator()(EVP_MD_CTX* digest) const noexcept { EVP_MD_CTX_free(digest); }

CHash::CHash(std::error_code& error, const char* digestName) {
    error.clear();
    if (!digestName) {
        error = makeGlobalError(QuillApiResult::NullPointer);
        return;
    }
    const ErrorQueueGuard guard;
    try {
        const Digest digest = digestLibrary().fetch(digestName);
        if (!digest) {
            error = makeGlobalError(QuillApiResult::NotSupported);
            return;
        }
        context.reset(EVP_MD_CTX_new());
        if (!context || EVP_DigestInit_ex(context.get(), digest.get(), nullptr) != 1) {
            throw std::bad_alloc();
        }
    } catch (const std::bad_alloc&) {
        context.reset();
        error = makeGlobalError(QuillApiResult::AllocFailed);
    }
}

std::error_code CHash::Update(const void* data, std::size_t size) {
    if (!context) {
        return makeGlobalError(QuillApiResult::InvalidState);
    }
    if (!data && size > 0) {
        return makeGlobalError(QuillApiResult::NullPointer);
    }
    const ErrorQueueGuard guard;
    return EVP_DigestUpdate(context.get(), data, size) == 1 ? std::error_code()
                                                            : makeGlobalError(QuillApiResult::Unexpected);
}

std::error_code CHash::GetHash(std::string& text) {
    text.clear();
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    auto result = QuillApiResult::Success;
    if (!context) {
        result = QuillApiResult::InvalidState;
    } else {
        const ErrorQueueGuard guard;
        if (EVP_DigestFinal_ex(context.get(), digest.data(), &size) != 1) {
            result = QuillApiResult::Unexpected;
        }
        context.reset();
    }
    if (result != QuillApiResult::Success) {
        COMMON2_LOG(DBG_ERROR, "CHash::GetHash")
            << "CHash::GetHash failed: " << static_cast<unsigned>(result);
        return makeGlobalError(result);
    }
    text.reserve(2 * size);
    for (unsigned int at = 0; at < size; ++at) {
        text += digits[digest[at] >> 4];
        text += digits[digest[at] & 0xF];
    }
    return {};
}
