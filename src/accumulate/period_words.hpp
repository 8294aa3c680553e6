// The period-word table of the accumulation module, loaded for the time of one check.
#pragma once

#include <string>

namespace vqmath63 {

/// True when zPeriod is one of the 17 period words, whatever its letter case; no blanks are
/// trimmed. Loads the table and unloads it again. False after a failure, which is reported.
bool CheckPeriod(const std::string& zPeriod);

/// Loads (qLoad true) or unloads this thread's period-word table. qOK tells that it went well.
void SetAccumulatePeriods(const bool& qLoad, bool& qOK);

}  // namespace vqmath63
