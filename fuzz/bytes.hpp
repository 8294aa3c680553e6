// The inputs of the fuzzers: programs of operations, each a few chunks of bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace vqmath63::fuzz {

/// Reads values off the front of some bytes; behind the end all are zero.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : left_(bytes) {}

  bool empty() const { return left_.empty(); }
  template <class T>
  T raw() {
    T value{};
    const std::size_t size = std::min(sizeof value, left_.size());
    if (size != 0) std::memcpy(&value, left_.data(), size);
    left_.remove_prefix(size);
    return value;
  }
  std::uint8_t byte() { return raw<std::uint8_t>(); }
  std::size_t below(std::size_t limit) { return byte() % limit; }
  std::string_view take(std::size_t count) {
    const std::string_view taken = left_.substr(0, count);
    left_.remove_prefix(taken.size());
    return taken;
  }
  std::string_view rest() { return take(left_.size()); }

 private:
  std::string_view left_;
};

/// An operation: its head, then one chunk an argument.
using Operation = std::vector<std::string>;
using Program = std::vector<Operation>;

/// A chunk of an operation, empty where there is none.
inline std::string_view chunk(const Operation& operation, std::size_t number) {
  return number < operation.size() ? std::string_view(operation[number]) : std::string_view();
}

/// An operation is the number of its chunks and the chunks; a chunk is its length, in one byte or
/// behind 255 in two more, and its bytes. What is cut short is taken as far as it goes.
inline Program program_of(std::string_view input) {
  Program program;
  Bytes bytes(input);
  while (!bytes.empty()) {
    Operation operation(bytes.byte() % 32U);
    for (std::string& chunk : operation) {
      std::size_t length = bytes.byte();
      if (length == 255) length = bytes.raw<std::uint16_t>();
      chunk = bytes.take(length);
    }
    if (!operation.empty()) program.push_back(std::move(operation));
  }
  return program;
}

inline std::string bytes_of(const Program& program) {
  std::string bytes;
  for (const Operation& operation : program) {
    bytes += static_cast<char>(operation.size());
    for (const std::string& chunk : operation) {
      const std::size_t length = std::min<std::size_t>(chunk.size(), 0xFFFF);
      if (length < 255) {
        bytes += static_cast<char>(length);
      } else {
        bytes += {'\xFF', static_cast<char>(length & 0xFF), static_cast<char>(length >> 8)};
      }
      bytes.append(chunk, 0, length);
    }
  }
  return bytes;
}

}  // namespace vqmath63::fuzz
