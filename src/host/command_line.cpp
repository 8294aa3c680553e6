#include "host/command_line.hpp"

#include <CLI/CLI.hpp>
#include <charconv>
#include <iostream>
#include <map>

#include "host/data/csv.hpp"
#include "host/data/output.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

struct Entry {
  const char* help;
  RegisteredCommand::Declare declare;
};

// By name. Files register themselves while the program starts, in any order.
std::multimap<std::string, Entry>& registered() {
  static std::multimap<std::string, Entry> commands;
  return commands;
}

// Every value is taken as text and converted here, whatever the locale.
template <class Take>
void add(CLI::App* app, const char* names, const char* type, const char* help, const Take& take) {
  const std::string known(names);
  app->add_option_function<std::string>(
         known, [take, known](const std::string& text) { take(known, text); }, help)
      ->type_name(type);
}

}  // namespace

Command& Command::argument(const char* name, std::string& value, const char* help) {
  app_->add_option(name, value, help)->required()->type_name(" ");
  return *this;
}

Command& Command::optional_argument(const char* name, std::string& value, const char* help) {
  app_->add_option(name, value, help)->type_name(" ");
  return *this;
}

Command& Command::option(const char* names, const char* type, std::string& value,
                         const char* help) {
  add(app_, names, type, help,
      [&value](const std::string&, const std::string& text) { value = text; });
  return *this;
}

Command& Command::option(const char* names, const char* type, std::optional<std::string>& value,
                         const char* help) {
  add(app_, names, type, help,
      [&value](const std::string&, const std::string& text) { value = text; });
  return *this;
}

Command& Command::option(const char* names, const char* type, std::optional<double>& value,
                         const char* help) {
  add(app_, names, type, help, [&value](const std::string& known, const std::string& text) {
    value = parse_number(text);
    if (!value) throw UsageError(known + ": " + in_quotes(text) + " is not a number");
  });
  return *this;
}

Command& Command::count(const char* names, std::int32_t& value, const char* help,
                        std::int32_t most) {
  add(app_, names, "N", help, [&value, most](const std::string& known, const std::string& text) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end || value < 1 || value > most) {
      throw UsageError(known + ": " + in_quotes(text) + " is not a whole number from 1 to " +
                       std::to_string(most));
    }
  });
  return *this;
}

Command& Command::repeatable(const char* names, const char* type, std::vector<std::string>& values,
                             const char* help) {
  app_->add_option(names, values, help)
      ->expected(1)
      ->allow_extra_args(false)
      ->take_all()
      ->type_name(type);
  return *this;
}

Command& Command::flag(const char* names, bool& value, const char* help) {
  app_->add_flag_callback(
      names, [&value] { value = true; }, help);
  return *this;
}

Command& Command::output(Output& output, const char* help) {
  option("-o,--output", "OUT.csv", output.path, help);
  add(app_, "--format", "WORD",
      "table, csv, json or markdown (default: as OUT ends, else csv; "
      "without -o a table to read)",
      [&output](const std::string& known, const std::string& word) {
        output.form = table_form(word);
        if (output.form) return;
        throw UsageError(known + ": " + in_quotes(word) + " is none of table, csv, json, markdown");
      });
  return *this;
}

Command& Command::rest(std::vector<std::string>& values) {
  app_->allow_extras();
  app_->parse_complete_callback([app = app_, &values] {
    values = app->remaining();
    for (const std::string& value : values) {
      if (value.starts_with("--")) throw UsageError("there is no option " + value);
    }
  });
  return *this;
}

Command& Command::notes(const char* text) {
  app_->footer(text);
  return *this;
}

Command& Command::notes(std::function<std::string()> text) {
  app_->footer("");  // the program's, which a command begins with
  app_->footer(std::move(text));
  return *this;
}

Command& Command::does(Work work) {
  app_->final_callback([chosen = chosen_, work = std::move(work)] { *chosen = work; });
  return *this;
}

RegisteredCommand::RegisteredCommand(const char* name, const char* help, Declare declare) {
  registered().emplace(name, Entry{help, declare});
}

CommandLine::CommandLine(const char* program, const char* description, const char* notes)
    : app_(std::make_unique<CLI::App>(description, program)) {
  app_->footer(notes);
  app_->require_subcommand(0, 1);
  app_->allow_windows_style_options(false);  // /data/wells.csv is a path on every system
  for (const auto& [name, entry] : registered()) {
    Command command(app_->add_subcommand(name, entry.help), &chosen_);
    entry.declare(command);
  }
}

CommandLine::~CommandLine() = default;

void CommandLine::add_option(const char* name, const char* help, Work work) {
  app_->add_flag_callback(
      name, [this, work = std::move(work)] { chosen_ = work; }, help);
}

void CommandLine::check_command(const std::string& word) const {
  if (word.starts_with('-')) return;
  std::vector<std::string> names;
  for (const auto& [name, entry] : registered()) {
    if (name == word) return;
    names.push_back(name);
  }
  throw UsageError("there is no command " + in_quotes(word) + nearest_of(word, names));
}

// What is wrong with words of a command's line that are neither its arguments nor its options.
std::string CommandLine::unexpected() const {
  const CLI::App* command = app_->get_subcommands().front();
  std::vector<std::string> names;
  for (const CLI::Option* option : command->get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  const std::vector<std::string> words = app_->remaining(true);
  for (const std::string& word : words) {
    if (!word.starts_with('-')) continue;
    const std::string name = word.substr(0, word.find('='));
    return "there is no option " + name + nearest_of(name, names);
  }
  return "what is " + in_quotes(words.front()) + "? '" + command->get_name() +
         "' takes no further argument";
}

Work CommandLine::parse(int argc, char** argv) {
  if (argc > 1) check_command(argv[1]);
  try {
    app_->parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    const auto subcommands = app_->get_subcommands();
    const CLI::App* asked = subcommands.empty() ? app_.get() : subcommands.front();
    std::string help = asked->help(asked == app_.get() ? "" : app_->get_name());
    while (help.ends_with("\n\n")) help.pop_back();
    return [text = std::move(help)] {
      std::cout << text;
      return kSuccess;
    };
  } catch (const CLI::ExtrasError& error) {
    throw UsageError(app_->get_subcommands().empty() ? error.what() : unexpected());
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  if (chosen_) return chosen_;
  return [text = app_->help()] {
    std::cerr << text;
    return kBadUsage;
  };
}

}  // namespace vqmath63::host
