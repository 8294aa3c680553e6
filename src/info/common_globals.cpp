#include "info/common_globals.hpp"

#include "frame/companions.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

// Three blanks before the routine part: programs that search their logs for the text find it.
constexpr Location kCloseAll{"ztCommonClassVars", "CLOSEALLCOMMONGLOBALS", "   "};

}  // namespace

void CLOSEALLCOMMONGLOBALS(std::string& message) {
  trap(kCloseAll, [&] {
    CommonGlobals& globals = common_globals();
    globals.CommonMaths.reset();
    globals.ArrayTools.reset();
    globals.DateTools.reset();
    globals.Statistics.reset();
    bool flag = false;  // the one line that is neither an error nor the start-up line
    error_handler()->ReportError(message, flag);
    globals.ErrorHandler.reset();
  });
}

}  // namespace vqmath63
