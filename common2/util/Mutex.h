/// The standard library's mutexes, known to the thread-safety analysis.
#pragma once

#include "common2/util/ThreadSafety.h"

#include <mutex>
#include <shared_mutex>

namespace common2 {

/// Held by one thread at a time. Not recursive.
class COMMON2_CAPABILITY("mutex") Mutex {
public:
    void lock() COMMON2_ACQUIRE() { mutex.lock(); }
    void unlock() COMMON2_RELEASE() { mutex.unlock(); }

private:
    std::mutex mutex;
};

/// Held by one writer or by many readers. Not recursive.
class COMMON2_CAPABILITY("mutex") SharedMutex {
public:
    SharedMutex() = default;
    SharedMutex(const SharedMutex&) = delete;
    SharedMutex& operator=(const SharedMutex&) = delete;
    ~SharedMutex();
    void lock() COMMON2_ACQUIRE() { mutex.lock(); }
    void unlock() COMMON2_RELEASE() { mutex.unlock(); }
    void lockShared() COMMON2_ACQUIRE_SHARED() { mutex.lock_shared(); }
    void unlockShared() COMMON2_RELEASE() { mutex.unlock_shared(); }

private:
    std::shared_mutex mutex;
};

/// Holds a mutex, of either kind for itself alone, until its scope ends.
template <class AnyMutex>
class COMMON2_SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(AnyMutex& mutex) COMMON2_ACQUIRE(mutex)
        : held(mutex) {
        held.lock();
    }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;
    ~MutexLock() COMMON2_RELEASE() { held.unlock(); }

private:
    AnyMutex& held;
};

/// Holds a mutex together with other readers until its scope ends.
class COMMON2_SCOPED_CAPABILITY ReaderLock {
public:
    explicit ReaderLock(SharedMutex& mutex) COMMON2_ACQUIRE_SHARED(mutex)
        : held(mutex) {
        held.lockShared();
    }
    ReaderLock(const ReaderLock&) = delete;
    ReaderLock& operator=(const ReaderLock&) = delete;
    ~ReaderLock() COMMON2_RELEASE() { held.unlockShared(); }

private:
    SharedMutex& held;
};

} // namespace common2
