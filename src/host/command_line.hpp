// The command line: commands, their arguments and options, help, and what is wrong with a line.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vqmath63::host {

struct Output;

/// What the command line asked for; returns the exit status.
using Work = std::function<int()>;

/// Declares one command. The variables are filled when the line is read and must live until the
/// work is done; `type` is the word for an option's value in the help.
class Command {
 public:
  Command& argument(const char* name, std::string& value, const char* help);
  /// An argument that may be left out.
  Command& optional_argument(const char* name, std::string& value, const char* help);
  Command& option(const char* names, const char* type, std::string& value, const char* help);
  Command& option(const char* names, const char* type, std::optional<std::string>& value,
                  const char* help);
  Command& option(const char* names, const char* type, std::optional<double>& value,
                  const char* help);
  /// A whole number from 1 to `most`.
  Command& count(const char* names, std::int32_t& value, const char* help,
                 std::int32_t most = std::numeric_limits<std::int32_t>::max());
  /// May be given several times.
  Command& repeatable(const char* names, const char* type, std::vector<std::string>& values,
                      const char* help);
  Command& flag(const char* names, bool& value, const char* help);
  /// The options -o and --format of a table; `help` says what a file gets.
  Command& output(Output& output, const char* help =
                                      "Write the table to this file; - is the "
                                      "standard output");
  /// Takes the arguments that follow as they stand; lists in brackets and negative numbers are no
  /// options then.
  Command& rest(std::vector<std::string>& values);
  /// Text at the end of the help: what there is to know, and examples.
  Command& notes(const char* text);
  /// The same where the text is made when it is asked for.
  Command& notes(std::function<std::string()> text);
  Command& does(Work work);

 private:
  friend class CommandLine;
  Command(CLI::App* app, Work* chosen) : app_(app), chosen_(chosen) {}

  CLI::App* app_;
  Work* chosen_;
};

/// A command of the program. A file commands/*_command.cpp is one, and has one such object:
///
///   const RegisteredCommand kRegistered{"fit", "Fit a line to two columns of a file", &declare};
///
/// where declare(Command&) says what its line holds and what is done.
struct RegisteredCommand {
  using Declare = void (*)(Command& command);
  RegisteredCommand(const char* name, const char* help, Declare declare);
};

/// The program's command line, with all registered commands in alphabetical order.
class CommandLine {
 public:
  CommandLine(const char* program, const char* description, const char* notes);
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  /// An option of the program itself that asks for work, as --version does.
  void add_option(const char* name, const char* help, Work work);

  /// Reads the line and gives the work it asks for, be it printing help. UsageError when the line
  /// is wrong.
  Work parse(int argc, char** argv);

 private:
  void check_command(const std::string& word) const;
  std::string unexpected() const;

  std::unique_ptr<CLI::App> app_;
  Work chosen_;
};

}  // namespace vqmath63::host
