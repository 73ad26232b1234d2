// What both sides of the step codec know of its bytes.
#pragma once

#include <cstdint>
#include <type_traits>

namespace velmor::steps {

/// Bytes that are no step of the drawing, or a step that can't be told in bytes.
struct Malformed {};

/// What is copied as it lies in memory.
template <class T>
concept Plain = std::is_trivially_copyable_v<T> && !std::is_pointer_v<T>;

/// How an object is named.
enum class Naming : std::uint8_t { None, Place, Number, Block };

} // namespace velmor::steps
