#pragma once

#include <rapidjson/allocators.h>
#include <rapidjson/encodings.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstddef>
#include <new>

// RapidJSON that reports the end of memory. The library's own allocator returns null, which its
// parser, writers and documents do not check.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// RapidJSON's allocator of the C heap, but it throws std::bad_alloc.
class JsonMemory : public rapidjson::CrtAllocator {
 public:
  [[nodiscard]] void* Malloc(std::size_t bytes) {
    return Checked(CrtAllocator::Malloc(bytes), bytes);
  }
  [[nodiscard]] void* Realloc(void* block, std::size_t bytesBefore, std::size_t bytes) {
    return Checked(CrtAllocator::Realloc(block, bytesBefore, bytes), bytes);
  }

 private:
  /// Null is right for no bytes.
  static void* Checked(void* block, std::size_t bytes) {
    if (block == nullptr && bytes != 0) throw std::bad_alloc();
    return block;
  }
};

using JsonReader = rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, JsonMemory>;
using JsonBuffer = rapidjson::GenericStringBuffer<rapidjson::UTF8<>, JsonMemory>;

/// A writer into a RapidJSON stream.
template <typename Stream>
using JsonWriterInto = rapidjson::Writer<Stream, rapidjson::UTF8<>, rapidjson::UTF8<>, JsonMemory>;

}  // namespace Zq::Gantry::Server::Services::Wattleaf
