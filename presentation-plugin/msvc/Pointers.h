/// `std::shared_ptr` and `std::weak_ptr` of Microsoft's standard library, as they lie in memory. That layout
/// is public and has not changed since 2015. Either side counts the other's objects, always interlocked.
#pragma once

#include <atomic>
#include <memory>
#include <utility>

namespace msvc {

/// Counts the owners of one object of the other side. The table's four slots are in the library's order.
class ControlBlock {
public:
    virtual void destroy() noexcept = 0;    ///< the object, when its last owner goes
    virtual void deleteThis() noexcept = 0; ///< this block, when its last observer goes as well
    virtual void* deletingDestructor(unsigned flags) noexcept = 0;
    virtual void* getDeleter(const void* type) const noexcept = 0;

    /// Makes the caller an owner, unless there is none left.
    bool tryAddUse() noexcept {
        unsigned long count = uses.load();
        while (count != 0) {
            if (uses.compare_exchange_weak(count, count + 1)) {
                return true;
            }
        }
        return false;
    }
    void dropUse() noexcept {
        if (--uses == 0) {
            destroy();
            dropWeak(); // all owners together hold one
        }
    }
    void dropWeak() noexcept {
        if (--weaks == 0) {
            deleteThis();
        }
    }
    bool hasUse() const noexcept { return uses != 0; }

protected:
    ControlBlock() = default;
    ~ControlBlock() = default;

private:
    std::atomic<unsigned long> uses{1};
    std::atomic<unsigned long> weaks{1};
};
static_assert(sizeof(ControlBlock) == 12 && std::atomic<unsigned long>::is_always_lock_free);

/// A pointer as it lies in memory and goes by value: it owns nothing by itself.
template <class Object>
struct SharedPointer {
    Object* object = nullptr;
    ControlBlock* block = nullptr;
};

/// Likewise. Who gets one as an argument by value has to drop it.
template <class Object>
struct WeakPointer {
    Object* object = nullptr;
    ControlBlock* block = nullptr;
};
static_assert(sizeof(SharedPointer<int>) == 8 && sizeof(WeakPointer<int>) == 8);

/// Takes over the use that a pointer stands for.
template <class Object>
std::shared_ptr<Object> adopt(SharedPointer<Object> pointer) {
    if (pointer.block == nullptr) {
        return nullptr;
    }
    return {pointer.object, [block = pointer.block](Object*) { block->dropUse(); }};
}

/// Owns the weak use that a pointer stands for.
template <class Object>
class Observer {
public:
    explicit Observer(WeakPointer<Object> taken)
        : pointer(taken) {}
    Observer(Observer&& other) noexcept
        : pointer(std::exchange(other.pointer, {})) {}
    Observer& operator=(Observer&& other) noexcept {
        std::swap(pointer, other.pointer);
        return *this;
    }
    ~Observer() {
        if (pointer.block != nullptr) {
            pointer.block->dropWeak();
        }
    }

    bool operator==(const Observer& other) const {
        return pointer.object == other.pointer.object && pointer.block == other.pointer.block;
    }

    bool isExpired() const { return pointer.block == nullptr || !pointer.block->hasUse(); }
    std::shared_ptr<Object> lock() const {
        const bool isAlive = pointer.block != nullptr && pointer.block->tryAddUse();
        return isAlive ? adopt(SharedPointer<Object>{pointer.object, pointer.block}) : nullptr;
    }

private:
    WeakPointer<Object> pointer;
};

} // namespace msvc
