#include "info/analyse_info.hpp"

#include "frame/companions.hpp"
#include "info/common_globals.hpp"
#include "info/identity.hpp"

namespace vqmath63 {

std::string ztAnalyseInfo::DLLVersion(std::string& LOGFILE, const std::string& StartupMsg,
                                      bool& qLogToFile) {
  std::string version = version_text();
  if (LOGFILE.empty()) LOGFILE = std::string(kDefaultLogBaseName) + ".txt";
  const std::shared_ptr<ztErrorHandler> sink = error_handler();
  sink->SetLogToFile(qLogToFile);
  sink->SetLogFile(LOGFILE);
  sink->SetVersionText(version);
  if (!StartupMsg.empty()) {
    std::string line = version + " " + StartupMsg + ": OK";
    bool flag = true;
    sink->ReportError(line, flag);
  }
  return version;
}

void ztAnalyseInfo::CloseDown() {
  std::string message = product_and_version() + " Close Down";
  CLOSEALLCOMMONGLOBALS(message);
}

}  // namespace vqmath63
