// The close-down of the thread's shared companion references.
#pragma once

#include <string>

namespace vqmath63 {

/// Releases the thread's shared objects in the order ztCommonMaths, ztArrayTools, ztDateTools,
/// ztStatistics; then sends `message` to the error sink with flag false, so
/// that it is the last line the sink receives, and releases the sink too. The next use of any of
/// them creates a fresh one. A failure is reported under this routine's name.
void CLOSEALLCOMMONGLOBALS(std::string& message);

}  // namespace vqmath63
