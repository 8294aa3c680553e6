// Runs a fuzz target over inputs without the fuzzer: a corpus (many inputs one after another, each
// behind its length) or the file of a single one, as a crash leaves it.
//
// usage: replay FILE...     a file NAME.corpus is a corpus
#include <cstdio>
#include <fstream>
#include <iterator>

#include "bytes.hpp"

extern "C" int LLVMFuzzerInitialize(int* count, char*** words);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** words) {
  std::vector<std::string> inputs;
  for (int i = 1; i < count; ++i) {
    std::ifstream in(words[i], std::ios::binary);
    if (!in) {
      std::fprintf(stderr, "replay: %s cannot be read\n", words[i]);
      return 2;
    }
    std::string all(std::istreambuf_iterator<char>(in), {});
    if (!std::string_view(words[i]).ends_with(".corpus")) {
      inputs.push_back(std::move(all));
      continue;
    }
    for (vqmath63::fuzz::Bytes bytes(all); !bytes.empty();) {
      inputs.emplace_back(bytes.take(bytes.raw<std::uint32_t>()));
    }
  }
  LLVMFuzzerInitialize(&count, &words);
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    // So that a crash names its input.
    std::printf("\r%zu", i);
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(inputs[i].data()),
                           inputs[i].size());
  }
  std::printf("\r");
  std::printf("%zu inputs\n", inputs.size());
  return inputs.empty() ? 1 : 0;
}
