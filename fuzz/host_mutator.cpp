// How libFuzzer changes a transcript: by lines and by words, so that most of it keeps its meaning.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t limit);

namespace {

using Random = std::minstd_rand;
using Pieces = std::vector<std::string>;

Pieces split(std::string_view text, std::string_view separators) {
  Pieces pieces;
  while (!text.empty()) {  // a piece keeps its separator
    const auto end = std::min(text.find_first_of(separators), text.size() - 1) + 1;
    pieces.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return pieces;
}

std::string joined(const Pieces& pieces) {
  std::string text;
  for (const std::string& piece : pieces) text += piece;
  return text;
}

std::string& any(Pieces& pieces, Random& random) {
  return pieces[random() % pieces.size()];
}

void mutate_bytes(std::string& text) {
  const std::size_t size = text.size();
  text.resize(size + 24);
  text.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(text.data()), size, text.size()));
}

// Changes a line of `lines`, mostly at a word or a cell, with a piece of another line perhaps.
void mutate_line(Pieces& lines, Random& random) {
  std::string& line = any(lines, random);
  const char* const separators = line.starts_with('$') ? " " : random() % 2 == 0 ? ",;\\" : " ";
  Pieces pieces = split(line, separators);
  if (pieces.empty()) return;
  std::string& piece = any(pieces, random);
  const auto place = pieces.begin() + static_cast<std::ptrdiff_t>(random() % pieces.size());
  switch (random() % 8) {
    case 0:
      pieces.erase(place);
      break;
    case 1:
      pieces.insert(place, std::string(piece));
      break;
    case 2:
      std::swap(piece, *place);
      break;
    case 3:
    case 4: {
      Pieces others = split(any(lines, random), separators);
      if (!others.empty()) piece = any(others, random);
      break;
    }
    default:
      mutate_bytes(piece);
  }
  line = joined(pieces);
}

std::size_t store(const std::string& text, std::uint8_t* data, std::size_t limit) {
  const std::size_t size = std::min(text.size(), limit);
  std::memcpy(data, text.data(), size);
  return size;
}

Pieces lines_of(const std::uint8_t* data, std::size_t size) {
  return split({reinterpret_cast<const char*>(data), size}, "\n");
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t limit, unsigned seed) {
  Random random(seed);
  Pieces lines = lines_of(data, size);
  if (lines.empty()) lines.emplace_back("$ members ztIntegrate\n");
  for (std::size_t left = 1 + random() % 3; left > 0; --left) {
    const auto place = lines.begin() + static_cast<std::ptrdiff_t>(random() % lines.size());
    switch (random() % 12) {
      case 0:
        lines.insert(place, std::string(any(lines, random)));
        break;
      case 1:
        if (lines.size() > 1) lines.erase(place);
        break;
      case 2:
        std::swap(any(lines, random), *place);
        break;
      case 3:
        mutate_bytes(any(lines, random));
        break;
      default:
        mutate_line(lines, random);
    }
  }
  return store(joined(lines), data, limit);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* a, std::size_t a_size,
                                                 const std::uint8_t* b, std::size_t b_size,
                                                 std::uint8_t* out, std::size_t limit,
                                                 unsigned seed) {
  Random random(seed);
  Pieces first = lines_of(a, a_size);
  Pieces second = lines_of(b, b_size);
  first.resize(random() % (first.size() + 1));
  second.erase(second.begin(),
               second.begin() + static_cast<std::ptrdiff_t>(random() % (second.size() + 1)));
  return store(joined(first) + joined(second), out, limit);
}
