// The member table of ztAnalyseInfo.
#pragma once

#include "automation/member_table.hpp"
#include "info/analyse_info.hpp"

namespace vqmath63::members {

using automation::get;
using automation::method;
using automation::optional_arg;

inline constexpr auto kAnalyseInfo = automation::table<ztAnalyseInfo>(
    "ztAnalyseInfo", "Version text, log settings and close-down of the component.",
    {0x3CBB2301, 0x863E, 0x4D32, {0x83, 0x9F, 0x80, 0x2A, 0xE8, 0x1B, 0x1E, 0xEC}},
    {0xD96409C5, 0xF82A, 0x4FCD, {0x8D, 0x82, 0x99, 0x9A, 0x07, 0xEC, 0x0F, 0x8A}},
    // clang-format off
    get<&ztAnalyseInfo::DLLVersion>  (1, "DLLVersion", {optional_arg("LOGFILE", ""), optional_arg("StartupMsg", ""), optional_arg("qLogToFile", true)}, "Version text; sets the log file and whether lines are written to it, and sends a start-up line when StartupMsg is given. An empty LOGFILE receives the default name."),
    method<&ztAnalyseInfo::CloseDown>(2, "CloseDown",  {}, "Sends the close-down line and releases the thread's shared companion objects.")
    // clang-format on
);

}  // namespace vqmath63::members
