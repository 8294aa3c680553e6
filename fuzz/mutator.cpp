// How libFuzzer changes a program of operations: mostly within a chunk, so that the rest of the
// program keeps its meaning.
#include <algorithm>
#include <random>

#include "bytes.hpp"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t limit);

namespace vqmath63::fuzz {
namespace {

using Random = std::minstd_rand;

std::size_t below(Random& random, std::size_t limit) {
  return random() % limit;
}

/// Changes the bytes of a chunk as libFuzzer changes a whole input.
void mutate_chunk(std::string& chunk) {
  const std::size_t size = chunk.size();
  chunk.resize(size + 16);
  chunk.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(chunk.data()), size, chunk.size()));
}

/// An argument of the member's own type or of another, with few elements and common numbers.
std::string new_argument(Random& random) {
  constexpr char kObject = 9;
  std::string made = {static_cast<char>(below(random, 4)), 0};
  if (below(random, 2) == 0) made[1] = static_cast<char>(below(random, 256));
  if (below(random, 6) == 0) made[1] = kObject;
  made += static_cast<char>(below(random, 2));
  for (std::size_t i = 0, count = below(random, 24); i < count; ++i) {
    const std::size_t byte = below(random, 3) == 0 ? 256 : 8;
    made += static_cast<char>(below(random, 4) == 0 ? 255 : below(random, byte));
  }
  return made;
}

void mutate(Program& program, Random& random) {
  if (program.empty()) program.push_back({std::string(4, '\0')});
  const std::size_t at = below(random, program.size());
  const auto place = program.begin() + static_cast<std::ptrdiff_t>(below(random, program.size()));
  Operation& operation = program[at];
  switch (below(random, 16)) {
    case 0:
      program.insert(place, Operation(operation));
      break;
    case 1:
      program.erase(place);
      break;
    case 2:
      std::swap(operation, *place);
      break;
    case 3:  // an argument from elsewhere
      operation[below(random, operation.size())] = (*place)[below(random, place->size())];
      break;
    case 4:
      operation.push_back(place->back());
      break;
    case 5:
      if (operation.size() > 1) operation.pop_back();
      break;
    case 6:
    case 7:
      if (operation.size() > 1) {
        operation[1 + below(random, operation.size() - 1)] = new_argument(random);
      }
      break;
    case 8:  // later, when the host is called back
      operation.insert(operation.begin(), {'\7', static_cast<char>(below(random, 3))});
      break;
    default:
      mutate_chunk(operation[below(random, operation.size())]);
  }
}

std::size_t store(const Program& program, std::uint8_t* data, std::size_t limit) {
  const std::string bytes = bytes_of(program);
  const std::size_t size = std::min(bytes.size(), limit);
  std::memcpy(data, bytes.data(), size);
  return size;
}

std::string_view text_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace
}  // namespace vqmath63::fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t limit, unsigned seed) {
  using namespace vqmath63::fuzz;
  Random random(seed);
  Program program = program_of(text_of(data, size));
  for (std::size_t i = 0, count = 1 + below(random, 3); i < count; ++i) mutate(program, random);
  return store(program, data, limit);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* a, std::size_t a_size,
                                                 const std::uint8_t* b, std::size_t b_size,
                                                 std::uint8_t* out, std::size_t limit,
                                                 unsigned seed) {
  using namespace vqmath63::fuzz;
  Random random(seed);
  Program first = program_of(text_of(a, a_size));
  const Program second = program_of(text_of(b, b_size));
  first.resize(below(random, first.size() + 1));
  const auto from = second.begin() + static_cast<std::ptrdiff_t>(below(random, second.size() + 1));
  first.insert(first.end(), from, second.end());
  return store(first, out, limit);
}
