#pragma once

#include <cstddef>
#include <utility>

// Calls an object's virtual operations by slot, without its class, as a host does that has only the
// table.
namespace TestSupport {

/// How the toolchain lays out and calls virtual operations: the number of slots of a virtual
/// destructor, the one of them that also frees the object, and whether the address for a returned
/// object is passed before the object that is called.
#if defined(__MINGW32__)
inline constexpr std::size_t kDestructorSlots = 2;
inline constexpr std::size_t kFreeingDestructor = 1;
inline constexpr bool kResultBeforeObject = true;
#else
inline constexpr std::size_t kDestructorSlots = 1;
inline constexpr std::size_t kFreeingDestructor = 0;
inline constexpr bool kResultBeforeObject = false;
#endif

/// Calls slot `slot` of `object` as `Result(object, arguments...)`. `Result` fits into a register.
template <typename Result, typename... Arguments>
Result CallSlot(void* object, std::size_t slot, Arguments... arguments) {
  using Operation = Result (*)(void*, Arguments...);
  void* const* table = *static_cast<void* const* const*>(object);
  return reinterpret_cast<Operation>(table[slot])(object, std::move(arguments)...);
}

/// The same for an operation that returns an object of a class.
template <typename Result, typename... Arguments>
[[nodiscard]] Result CallSlotForObject(void* object, std::size_t slot, Arguments... arguments) {
  using Operation = void* (*)(void*, void*, Arguments...);
  void* const* table = *static_cast<void* const* const*>(object);
  const auto operation = reinterpret_cast<Operation>(table[slot]);
  alignas(Result) std::byte place[sizeof(Result)];
  void* const first = kResultBeforeObject ? static_cast<void*>(place) : object;
  void* const second = kResultBeforeObject ? object : static_cast<void*>(place);
  auto* made = static_cast<Result*>(operation(first, second, std::move(arguments)...));
  Result result = std::move(*made);
  made->~Result();
  return result;
}

/// Destroys and frees `object`; `slot` is the first slot of its destructor.
inline void DestroyThroughSlot(void* object, std::size_t slot) {
  // One toolchain takes "free it too" as an argument, the other has a slot for it.
  CallSlot<void>(object, slot + kFreeingDestructor, /*flags=*/1U);
}

}  // namespace TestSupport
