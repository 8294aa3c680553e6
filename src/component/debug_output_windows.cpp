#include "component/debug_output_windows.hpp"

#include "automation/text.hpp"
#include "automation/types.hpp"

namespace vqmath63::component {

void debug_output(const std::string& line) noexcept {
  try {
    OutputDebugStringW(automation::utf16(line + "\n").c_str());
  } catch (...) {  // no memory for the wide text
    OutputDebugStringA(line.c_str());
  }
}

}  // namespace vqmath63::component
