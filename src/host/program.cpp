#include "host/program.hpp"

#include <iostream>

#include "host/client/dispatch_client.hpp"
#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kFirstSteps =
    "vqhost works on CSV files of production, fluids, wells and cells, and calls the component's\n"
    "functions. To begin with, from the folder that has samples/:\n"
    "  vqhost accumulate samples/field_wells.csv --period quarter   rates by month onto quarters\n"
    "  vqhost statistics samples/field_wells.csv                    a summary of each column\n"
    "  vqhost table ztMathLib Erf -3 3 0.5                          a function's table\n"
    "  vqhost accumulate --help                                     all about one command\n"
    "With a file of yours: a header, then a row a date, the first column YYYY-MM-DD.\n"
    "'vqhost --help' lists the commands.\n";

constexpr const char* kNotes =
    "Example: vqhost accumulate samples/field_wells.csv --period quarter\n"
    "Exit status: 0 done, 1 the work failed, 2 the command line is wrong.\n"
    "'vqhost COMMAND --help' tells more of a command.";

std::string version_text() {
  const MessageSink sink;
  std::vector<Argument> arguments;
  arguments.push_back({Value::boolean(false), "qLogToFile"});  // asking starts no log
  DispatchObject info = DispatchObject::create("ztAnalyseInfo");
  return value_text(info.get("DLLVersion", std::move(arguments)).get(), true);
}

int run(int argc, char** argv) {
  if (argc == 1) {
    std::cerr << kFirstSteps;
    return kBadUsage;
  }
  CommandLine program("vqhost", "Uses the classes of the component vqmath63 by name.", kNotes);
  program.add_option("--version", "Print the version text of the component", [] {
    std::cout << version_text() << '\n';
    return kSuccess;
  });
  return program.parse(argc, argv)();
}

int fail(int status, const char* why) {
  std::cerr << "vqhost: " << why << '\n';
  return status;
}

}  // namespace

int run_program(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  try {
    const int status = run(argc, argv);
    std::cout.flush();
    return std::cout ? status : fail(kWorkFailed, "the output cannot be written");
  } catch (const UsageError& error) {
    fail(kBadUsage, error.what());
    return fail(kBadUsage, "'vqhost --help' and 'vqhost COMMAND --help' show the usage");
  } catch (const std::bad_alloc&) {
    return fail(kWorkFailed, "out of memory");
  } catch (const std::exception& error) {
    return fail(kWorkFailed, error.what());
  }
}

}  // namespace vqmath63::host
