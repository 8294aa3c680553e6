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

// A piece keeps its separator.
Pieces split(std::string_view text, std::string_view separators) {
  Pieces pieces;
  while (!text.empty()) {
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

void mutate_bytes(std::string& text) {
  const std::size_t size = text.size();
  text.resize(size + 24);
  text.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(text.data()), size, text.size()));
}

// Leaves a piece out, repeats, moves or changes it, or takes one of `others`.
template <class Change>
void mutate(Pieces& pieces, const Pieces& others, Random& random, const Change& change) {
  const auto any = [&] { return static_cast<std::ptrdiff_t>(random() % pieces.size()); };
  const auto place = pieces.begin() + any();
  std::string& piece = pieces[static_cast<std::size_t>(any())];
  switch (random() % 10) {
    case 0:
      if (pieces.size() > 1) pieces.erase(place);
      break;
    case 1:
      pieces.insert(place, std::string(piece));
      break;
    case 2:
      std::swap(piece, *place);
      break;
    case 3:
      if (!others.empty()) piece = others[random() % others.size()];
      break;
    default:
      change(piece);
  }
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t limit, unsigned seed) {
  Random random(seed);
  Pieces lines = split({reinterpret_cast<const char*>(data), size}, "\n");
  if (lines.empty()) lines.emplace_back("$ members ztIntegrate\n");
  for (std::size_t left = 1 + random() % 3; left > 0; --left) {
    const std::string other = lines[random() % lines.size()];
    mutate(lines, {}, random, [&](std::string& line) {
      const char* const separators = line.starts_with('$') || random() % 3 == 0 ? " " : ",;\\";
      Pieces words = split(line, separators);
      if (!words.empty()) mutate(words, split(other, separators), random, mutate_bytes);
      line = joined(words);
    });
  }
  const std::string text = joined(lines);
  const std::size_t length = std::min(text.size(), limit);
  std::memcpy(data, text.data(), length);
  return length;
}
