// The command that tabulates a function: one of its arguments runs, the others are fixed.
#include <charconv>
#include <cmath>
#include <iostream>
#include <list>
#include <memory>

#include "host/client/description.hpp"
#include "host/client/dispatch_client.hpp"
#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/commands/call_arguments.hpp"
#include "host/data/columns.hpp"
#include "host/data/csv.hpp"
#include "host/data/output.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "The last three words are the first value, the last one and the step, which may be negative.\n"
    "Words before them are fixed arguments, as 'vqhost call' takes them; an x among them stands\n"
    "where the values go. Without an x they go to the last number that is not fixed. A value of\n"
    "1e308 is what the functions of ztMathLib return outside their domain.\n"
    "Examples: vqhost table ztMathLib Erf -3 3 0.5\n"
    "          vqhost table ztMathLib Jbn 2 0 10 1          J of order 2\n"
    "          vqhost table ztMathLib Jbn x 1.5 0 8 1       orders 0 to 8 at 1.5\n"
    "          vqhost table ztMathLib BetaI A=2 B=3 0 1 0.1 -o beta.csv";

constexpr std::size_t kMostRows = 100'000;
constexpr double kOutOfRange = 1e308;

struct Options {
  std::string class_name;
  std::string member;
  std::vector<std::string> words;
  std::vector<std::string> settings;
  Output output;
};

double number_word(const std::string& text, const char* what) {
  const auto number = parse_number(text);
  if (number && std::isfinite(*number)) return *number;
  throw UsageError(std::string(what) + ": " + in_quotes(text) + " is not a finite number");
}

int decimals_of(double value) {
  char text[400];
  const char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr;
  const std::string_view digits(text, static_cast<std::size_t>(end - text));
  const auto point = digits.find('.');
  return point == digits.npos ? 0 : static_cast<int>(digits.size() - point - 1);
}

// The values from, from + step, from + 2 step and so on to the end, which belongs to them where a
// step leads there but for rounding.
std::vector<double> steps(double from, double to, double step) {
  if (step == 0.0) throw UsageError("STEP is 0");
  const double length = to - from;
  const double exact = std::isfinite(length) ? length / step : to / step - from / step;
  if (exact < 0.0) {
    throw UsageError("a STEP of " + number_text(step) + " leads away from " + number_text(to));
  }
  // What the step is rounded by, many times over, and what the ends are.
  const double rounding =
      1e-9 * std::fmax(1.0, exact) + 1e-15 * std::fabs(from / step) + 1e-15 * std::fabs(to / step);
  const double nearest = std::round(exact);
  const bool hits = std::fabs(exact - nearest) <= rounding;
  const double last = hits ? nearest : std::floor(exact);
  if (!(last < static_cast<double>(kMostRows))) {
    throw UsageError("the table would have more than " + std::to_string(kMostRows) + " rows");
  }
  if (last > 0.0 && (from + step == from || to - step == to)) {
    throw UsageError("a STEP of " + number_text(step) + " is lost beside " + number_text(from) +
                     " and " + number_text(to));
  }
  // The multiples of a step of 0.1 have one decimal, whatever binary digits make of them.
  constexpr int kMostDecimals = 30;
  const int decimals = std::max(decimals_of(from), decimals_of(step));
  std::vector<double> values;
  for (double i = 0.0; i <= last; ++i) {
    double x = std::fma(i, step, from);  // i * step alone may be too large
    if (decimals <= kMostDecimals) {
      char text[400];
      const char* end =
          std::to_chars(text, text + sizeof text, x, std::chars_format::fixed, decimals).ptr;
      std::from_chars(text, end, x);
    }
    values.push_back(x == 0.0 ? 0.0 : x);  // no -0
  }
  if (hits) values.back() = to;
  return values;
}

// Which argument takes the values, and the call as a heading: "Jbn(2, X)".
struct Running {
  std::size_t argument;
  std::string heading;
};

Running running(const MemberDescription& member, const CallArguments& arguments) {
  const std::size_t none = member.arguments.size();
  if (arguments.open().size() > 1) throw UsageError("x stands for one argument, not for several");
  std::size_t found = arguments.open().empty() ? none : arguments.open().front();
  for (std::size_t i = none; i-- > 0 && found == none;) {
    const ArgumentDescription& about = member.arguments[i];
    if (is_number(about.type) && !arguments.text(i) && !about.fallback) found = i;
  }
  if (found == none) {
    throw UsageError(member.name + " has no number left that could run (" +
                     basic_declaration(member) + ")");
  }
  std::string heading;
  for (std::size_t i = 0; i < none; ++i) {
    const ArgumentDescription& about = member.arguments[i];
    if (i != found && !arguments.text(i) && about.fallback) continue;
    if (i != found && !arguments.text(i)) {
      throw UsageError(member.name + " needs " + about.name + " too, before FROM (" +
                       basic_declaration(member) + ")");
    }
    heading += (heading.empty() ? "" : ", ") + (i == found ? about.name : *arguments.text(i));
  }
  return {found, member.name + "(" + heading + ")"};
}

// Numbers as they lie in the memory of an argument's type.
class Column {
 public:
  /// False where a number does not fit the type.
  bool fill(VARTYPE type, const std::vector<double>& numbers) {
    for (const double number : numbers) {
      VARIANT& cell = cells_.emplace_back();
      if (type == VT_R8) {
        cell.dblVal = number;
      } else if (type == VT_R4 && fits_single(number)) {
        cell.fltVal = static_cast<float>(number);
      } else if (type == VT_I4 && std::trunc(number) == number && std::fabs(number) < 0x1p31) {
        cell.lVal = static_cast<LONG>(number);
      } else {
        return false;
      }
    }
    return true;
  }
  VqColumn column() { return {&cells_[0].llVal, sizeof cells_[0]}; }

 private:
  std::vector<VARIANT> cells_;
};

// The results of all calls, made at once; none where this cannot be, or a call failed, which has to
// be told of call by call. `results` own nothing.
bool call_at_once(DispatchObject& object, const MemberDescription& member,
                  const CallArguments& arguments, std::size_t running,
                  const std::vector<double>& values, std::vector<VARIANT>& results) {
  if (member.kind == MemberKind::kGet || member.result.vt == VT_BSTR) return false;
  Column numbers;
  std::list<automation::Variant> fixed;
  std::vector<VqColumn> columns;
  for (std::size_t i = 0; i < member.arguments.size(); ++i) {
    const ArgumentDescription& about = member.arguments[i];
    if (i == running) {
      if (!numbers.fill(about.type.vt, values)) return false;
      columns.push_back(numbers.column());
      continue;
    }
    VARIANT& held = fixed.emplace_back();
    auto given = arguments.value(i).get();
    if (given.vt == VT_ERROR && about.fallback) {
      columns.push_back({nullptr, 0});
      continue;
    }
    if (about.type.rank > 0) {
      if ((given.vt & VT_ARRAY) == 0) return false;
      if (FAILED(VariantCopy(&held, &given))) return false;
    } else if (FAILED(VariantChangeType(&held, &given, 0, about.type.vt))) {
      return false;
    }
    columns.push_back({&held.llVal, 0});
  }
  results.assign(values.size(), VARIANT{});
  try {
    const VqColumn column{&results[0].llVal, sizeof results[0]};
    if (object.call_many(member.name, values.size(), columns, column) > 0) return false;
  } catch (const AutomationError&) {
    return false;
  }
  for (VARIANT& result : results) result.vt = member.result.vt;
  return true;
}

// A table's rows and what there is to say of them.
struct Tabulation {
  std::vector<Texts> rows{};
  std::size_t outside = 0;
  std::size_t failures = 0;

  void add(double x, const VARIANT& result, bool failed) {
    const bool real = result.vt == VT_R8;
    outside += real && std::fabs(result.dblVal) == kOutOfRange ? 1U : 0U;
    failures += failed ? 1U : 0U;
    rows.push_back({plain_text(x), failed ? ""
                                   : real ? plain_text(result.dblVal)
                                          : value_text(result, true)});
  }
};

Tabulation call_by_call(DispatchObject& object, const MemberDescription& member,
                        CallArguments& arguments, const Running& running,
                        const std::vector<double>& values, const MessageSink& sink) {
  const ArgumentDescription& about = member.arguments[running.argument];
  Tabulation table;
  for (const double x : values) {
    if (about.type.vt == VT_I4 && std::trunc(x) != x) {
      throw UsageError(about.name + " is a whole number: " + number_text(x) + " is none");
    }
    arguments.set(running.argument, Value::number(x));
    const int errors = sink.errors();
    Value result;
    try {
      result = member.kind == MemberKind::kGet ? object.get(member.name, arguments.make())
                                               : object.call(member.name, arguments.make());
    } catch (const AutomationError& error) {
      throw WorkError(running.heading + " at " + number_text(x) + ": " + error.what());
    }
    table.add(x, result.get(), sink.errors() > errors);
  }
  return table;
}

int run(const Options& options) {
  if (options.words.size() < 3) {
    throw UsageError("table: FROM, TO and STEP must follow the member");
  }
  const auto range = options.words.end() - 3;
  const std::vector<double> values = steps(
      number_word(range[0], "FROM"), number_word(range[1], "TO"), number_word(range[2], "STEP"));
  const std::vector<std::string> fixed(options.words.begin(), range);
  const auto members = describe_members(options.class_name);
  const MemberDescription& member =
      find_member(members, options.class_name, options.member, fixed.size() + 1);
  if (member.kind == MemberKind::kLet || member.result.vt == VT_EMPTY || member.result.rank > 0) {
    throw UsageError(member.name + " is no function with one value (" + basic_declaration(member) +
                     ")");
  }
  CallArguments arguments(member, fixed, std::nullopt, "x");
  const Running runs = running(member, arguments);

  MessageSink sink;
  DispatchObject object = DispatchObject::create(options.class_name);
  for (const std::string& setting : options.settings) {
    set_property(object, members, options.class_name, setting, std::nullopt);
  }
  std::vector<VARIANT> results;
  sink.set_deaf(true);
  const bool at_once = call_at_once(object, member, arguments, runs.argument, values, results);
  sink.set_deaf(false);
  Tabulation table;
  for (std::size_t i = 0; at_once && i < values.size(); ++i)
    table.add(values[i], results[i], false);
  if (!at_once) table = call_by_call(object, member, arguments, runs, values, sink);
  put_table(options.output,
            {{member.arguments[runs.argument].name, Align::kPoint}, {runs.heading, Align::kPoint}},
            table.rows);
  if (table.outside > 0) {
    std::cerr << "vqhost: " << counted(table.outside, "value") << " of 1e308: " << member.name
              << " is out of range there\n";
  }
  if (table.failures > 0) {
    throw WorkError(member.name + " reported an error in " + counted(table.failures, "row"));
  }
  return kSuccess;
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  command.argument("CLASS", options->class_name, "Class name or programmatic id")
      .argument("MEMBER", options->member, "Function, in any letter case")
      .rest(options->words)
      .repeatable("--set", "PROPERTY=VALUE", options->settings,
                  "Set a property before the calls (repeatable)")
      .output(options->output)
      .notes(kNotes)
      .does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{
    "table", "Tabulate a function: table [OPTIONS] CLASS MEMBER [ARG...] FROM TO STEP", &declare};

}  // namespace
}  // namespace vqmath63::host
