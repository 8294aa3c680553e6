// Prints the texts that are made from the member tables: vqgenerate idl | manifest | reference.
#include <cstdio>
#include <cstring>

#include "component/class_list.hpp"
#include "component/describe.hpp"

int main(int count, char** words) {
  using namespace vqmath63::component;
  std::string text;
  if (count == 2 && std::strcmp(words[1], "idl") == 0) text = interface_text(classes());
  if (count == 2 && std::strcmp(words[1], "manifest") == 0) text = manifest_text(classes());
  if (count == 2 && std::strcmp(words[1], "reference") == 0) text = reference_text(classes());
  if (text.empty()) {
    std::fputs("usage: vqgenerate idl | manifest | reference\n", stderr);
    return 2;
  }
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
}
