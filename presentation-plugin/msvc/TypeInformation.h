/// Run-time type information as Microsoft's compiler lays it out for 32-bit code: what its `dynamic_cast` and
/// `typeid` read. All records are constant but for the field in which that compiler's library keeps a name.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace msvc {

/// A class. Classes of different modules are the same if their names are.
struct TypeDescriptor {
    const void* table;           ///< of these records' own class: one slot, the deleting destructor
    void* spare = nullptr;       ///< where that compiler's library keeps the readable name
    std::array<char, 40> name{}; ///< decorated, NUL-terminated

    /// @param decorated at most 39 characters
    constexpr TypeDescriptor(const void* ownTable, std::string_view decorated)
        : table(ownTable) {
        for (std::size_t index = 0; index < decorated.size(); ++index) {
            name[index] = decorated[index];
        }
    }
};

struct ClassHierarchy;

/// A class as the base of another, or as its own.
struct BaseClass {
    TypeDescriptor* type;
    std::uint32_t containedBases; ///< that it derives from in turn, at any depth
    std::int32_t offset = 0;      ///< within the object
    std::int32_t virtualTable = -1;
    std::int32_t virtualOffset = 0;
    std::uint32_t attributes = hasHierarchy;
    const ClassHierarchy* hierarchy;

    static constexpr std::uint32_t hasHierarchy = 0x40;
};

/// A class and all its bases, each before its own bases.
struct ClassHierarchy {
    std::uint32_t signature = 0;
    std::uint32_t attributes = 0; ///< none: single inheritance
    std::uint32_t count;
    const BaseClass* const* classes;
};

/// What stands before a table.
struct ObjectLocator {
    std::uint32_t signature = 0;
    std::uint32_t tableOffset = 0; ///< of the table's pointer within the object
    std::uint32_t constructorOffset = 0;
    TypeDescriptor* type;
    const ClassHierarchy* hierarchy;
};

// Other compilers' code finds the fields by their places.
static_assert(sizeof(void*) == 4);
static_assert(offsetof(TypeDescriptor, name) == 8);
static_assert(offsetof(BaseClass, containedBases) == 4 && offsetof(BaseClass, offset) == 8 &&
              offsetof(BaseClass, attributes) == 20 && offsetof(BaseClass, hierarchy) == 24);
static_assert(offsetof(ClassHierarchy, count) == 8 && sizeof(ClassHierarchy) == 16);
static_assert(offsetof(ObjectLocator, type) == 12 && sizeof(ObjectLocator) == 20);

} // namespace msvc
