/// Which lock guards what, in words that clang's thread-safety analysis checks while it compiles.
#pragma once

#if defined(__clang__)
#define COMMON2_THREAD_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#define COMMON2_THREAD_ATTRIBUTE(attribute)
#endif

/// A type that can be held, as a mutex is.
#define COMMON2_CAPABILITY(name) COMMON2_THREAD_ATTRIBUTE(capability(name))
/// A type that holds a mutex as long as it lives.
#define COMMON2_SCOPED_CAPABILITY COMMON2_THREAD_ATTRIBUTE(scoped_lockable)
/// A member that is touched only while the mutex is held.
#define COMMON2_GUARDED_BY(mutex) COMMON2_THREAD_ATTRIBUTE(guarded_by(mutex))
/// A function that is called only while the mutex is held.
#define COMMON2_REQUIRES(...) COMMON2_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define COMMON2_ACQUIRE(...) COMMON2_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define COMMON2_ACQUIRE_SHARED(...) COMMON2_THREAD_ATTRIBUTE(acquire_shared_capability(__VA_ARGS__))
/// Whichever way it is held.
#define COMMON2_RELEASE(...) COMMON2_THREAD_ATTRIBUTE(release_generic_capability(__VA_ARGS__))
