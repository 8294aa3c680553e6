// The command that fits a line to two columns of a file, and says it in words.
#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <iostream>
#include <limits>
#include <memory>

#include "host/command_line.hpp"
#include "host/commands/line_check.hpp"
#include "host/commands/line_fit.hpp"
#include "host/data/columns.hpp"
#include "host/data/moment.hpp"
#include "host/data/output.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "Types: linear        y = A + B x\n"
    "       logarithmic   y = A + B ln x\n"
    "       exponential   ln y = A + B x\n"
    "       power         ln y = A + B ln x\n"
    "       polynomial    the line of power: ztRegression keeps no polynomial coefficients\n"
    "Words in any letter case; L, E and P are linear, exponential and polynomial, as for the\n"
    "property RegressionType. That property takes every word in L as linear, so that for a\n"
    "logarithmic fit this command hands ln x to a linear one. R is the correlation coefficient.\n"
    "Values are Singles of 24 bits, and so are the sums: an x with a large offset, such as a year\n"
    "with fractions, wants that taken off first. Dates count in days from the first one on.\n"
    "--solve-y tells where the line has a value, and how far that is from the data: a line says\n"
    "nothing of what lies a good part of their span beyond them.\n"
    "Examples: vqhost fit samples/field_wells.csv --x date --y W-1 --type exponential --skip\n"
    "          vqhost fit samples/field_wells.csv --x date --y W-1 --type exponential --skip\n"
    "            --from 2016-01-01 --to 2019-12-31 --solve-y 50";

struct Type {
  const char* word;
  const char* letter;    // by which the property knows it
  const char* property;  // what RegressionType is set to
  bool log_x;
  bool log_y;
};
constexpr Type kTypes[] = {{"linear", "L", "Linear", false, false},
                           {"logarithmic", "", "Linear", true, false},
                           {"exponential", "E", "Exponential", false, true},
                           {"power", "", "Power", true, true},
                           {"polynomial", "P", "Polynomial", true, true}};

struct Options {
  std::string path;
  std::string x = "1";
  std::string y = "2";
  std::string type = "linear";
  bool skip = false;
  std::optional<std::string> from;
  std::optional<std::string> to;
  std::optional<std::string> date_format;
  std::optional<double> solve_y;
  Output output;
};

const Type& type_of(const std::string& word) {
  std::string words;
  for (const Type& type : kTypes) {
    if (same_letters(word, type.word) || (!word.empty() && same_letters(word, type.letter))) {
      return type;
    }
    words += (words.empty() ? "" : ", ") + std::string(type.word);
  }
  throw UsageError("--type: " + in_quotes(word) + " is none of " + words);
}

// A number or a date, as x is given.
std::optional<double> bound(const char* option, const std::optional<std::string>& text,
                            const Options& options, bool dated) {
  if (!text) return std::nullopt;
  if (dated) return moment_option(text, option, date_format_option(options.date_format));
  const auto value = parse_number(*text);
  if (value && !std::isnan(*value)) return value;
  throw UsageError(std::string(option) + ": " + in_quotes(*text) + " is not a number");
}

// Leaves the rows out whose x lies outside --from and --to, before all else is asked of them.
void keep_range(Columns& data, const Options& options) {
  if (!options.from && !options.to) return;
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double least = bound("--from", options.from, options, data.dated(0)).value_or(-kInfinity);
  const double most = bound("--to", options.to, options, data.dated(0)).value_or(kInfinity);
  const std::size_t rows = data.rows();
  data.keep_rows([&](std::size_t row) { return data[0][row] >= least && data[0][row] <= most; });
  if (data.rows() == 0 && rows > 0) {
    throw WorkError(data.path() + ": no row lies from " + options.from.value_or("the first one") +
                    " to " + options.to.value_or("the last one"));
  }
}

// The samples: no gaps, only values above 0 where a logarithm is taken, and days from the first
// date on; `first_date` is that date.
Columns read_samples(const Options& options, const Type& type, double& first_date) {
  Columns data(CsvFile(options.path), {options.x, options.y}, true,
               date_format_option(options.date_format));
  keep_range(data, options);
  if (!options.skip) data.refuse_gaps(kSkipHint);
  if (data.dated(0)) {
    first_date = data[0][0];
    for (const double date : data[0]) first_date = std::fmin(first_date, date);
    for (double& date : data[0]) date -= first_date;
  }
  for (std::size_t row = 0; row < data.rows(); ++row) {
    for (const std::size_t c : {std::size_t{0}, std::size_t{1}}) {
      // It is the Single whose logarithm is taken.
      if (!(c == 0 ? type.log_x : type.log_y) || data.single(row, c) > 0.0F) continue;
      if (!options.skip && !std::isnan(data[c][row])) {
        data.refuse(row, c,
                    number_text(data[c][row]) + " is not above 0, and the " + type.word +
                        " fit takes its logarithm" + kSkipHint);
      }
      data[c][row] = std::numeric_limits<double>::quiet_NaN();
    }
  }
  data.leave_gaps_out();
  return data;
}

// Fits through the component, which takes Singles and their logarithms itself, but for the one
// logarithm that its property RegressionType cannot ask for.
Line fit(const Columns& data, const Type& type) {
  ArrayOwner x = data.singles(0);
  if (type.log_x && !type.log_y) {
    float* values = static_cast<float*>(x.get()->pvData);
    for (std::size_t i = 0; i < data.rows(); ++i) {
      values[i] = static_cast<float>(std::log(static_cast<double>(values[i])));
    }
  }
  const std::optional<Line> line = fit_line(std::move(x), data.singles(1), type.property);
  if (!line) throw WorkError("the fit failed: its sums leave the range of a Single");
  return *line;
}

LineCheck check_fit(const Columns& data, const Type& type) {
  std::vector<double> x = data[0];
  std::vector<double> y = data[1];
  const auto take_logarithms = [](std::vector<double>& values) {
    for (double& value : values) value = std::log(value);
  };
  if (type.log_x) take_logarithms(x);
  if (type.log_y) take_logarithms(y);
  return check_line(x, y);
}

// Six digits, enough for a line in words.
std::string short_text(double value) {
  constexpr int kDigits = 6;
  char text[40];
  return {text,
          std::to_chars(text, text + sizeof text, value, std::chars_format::general, kDigits).ptr};
}

// A column's name as it stands in a formula.
std::string variable(const std::string& name) {
  const bool plain = std::all_of(name.begin(), name.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == '_' || c >= 0x80;
  });
  return plain ? name : in_quotes(name);
}

// "A + B x" with the signs of both.
std::string sum_text(float a, float b, const std::string& x) {
  return short_text(a) + (b < 0.0F ? " - " : " + ") + short_text(std::fabs(b)) + " " + x;
}

std::string line_text(const Type& type, const Line& line, const std::string& x,
                      const std::string& y) {
  if (!type.log_y) return y + " = " + sum_text(line.a, line.b, type.log_x ? "ln " + x : x);
  const double factor = std::exp(static_cast<double>(line.a));
  if (!std::isnormal(factor)) {
    return "ln " + y + " = " + sum_text(line.a, line.b, type.log_x ? "ln " + x : x);
  }
  const std::string power = short_text(line.b);
  return y + " = " + short_text(factor) +
         (type.log_x ? " * " + x + "^" + (line.b < 0.0F ? "(" + power + ")" : power)
                     : " * exp(" + power + " " + x + ")");
}

// Where the line has the value of --solve-y.
double solved(const Type& type, const Line& line, double y) {
  if (type.log_y && !(y > 0.0)) {
    throw UsageError("--solve-y: " + number_text(y) + " is not above 0, where the line is");
  }
  const double at =
      ((type.log_y ? std::log(y) : y) - static_cast<double>(line.a)) / static_cast<double>(line.b);
  const double x = type.log_x ? std::exp(at) : at;
  if (std::isfinite(x)) return x;
  throw WorkError("--solve-y: the line never has the value " + number_text(y));
}

// What an x is called: of dates the day.
std::string place_text(double x, bool dated, double first_date) {
  constexpr double kEnd = 2958466.0;  // 10000-01-01
  const double moment = first_date + x;
  if (!dated) return short_text(x);
  return moment > -kEnd / 5 && moment < kEnd ? moment_text(std::floor(moment), false)
                                             : short_text(x) + " days";
}

// Where the line has a value, and how far that lies from what the samples span.
Facts solution(const Columns& data, double first_date, double y, double at) {
  const auto [least, most] = std::minmax_element(data[0].begin(), data[0].end());
  const auto place = [&](double x) { return place_text(x, data.dated(0), first_date); };
  const double beyond = at > *most ? at - *most : at < *least ? at - *least : 0.0;
  return {{"y", plain_text(y)},
          {"at", place(at)},
          {"from", place(*least)},
          {"to", place(*most)},
          {"beyond", short_text(beyond)},
          {"beyond_percent", short_text(std::round(100 * std::fabs(beyond) / (*most - *least)))}};
}

// The same in words.
void tell_solution(const Facts& facts, const std::string& x, const std::string& y, bool dated) {
  const auto fact = [&](std::size_t i) { return facts[i].second; };
  std::string reach = "within the data";
  if (fact(4) != "0") {
    const bool before = fact(4)[0] == '-';
    reach = fact(4).substr(before ? 1 : 0) + (dated ? " days" : "") +
            (before ? " before" : " after") + " the data, " + fact(5) + " % of their span";
  }
  std::cout << y << " = " << fact(0) << " at " << x << " = " << fact(1) << ": " << reach << " ("
            << fact(2) << " to " << fact(3) << ")\n";
}

int run(const Options& options) {
  check_output(options.output, options.path);
  const Type& type = type_of(options.type);
  double first_date = 0.0;
  const Columns data = read_samples(options, type, first_date);
  if (data.rows() < 2) {
    throw WorkError(data.path() + ": a fit needs 2 rows; there is " +
                    (data.rows() == 1 ? "1" : "none"));
  }
  std::size_t row = 1;
  while (row < data.rows() && data.single(row, 0) == data.single(0, 0)) ++row;
  if (row == data.rows()) {
    throw WorkError(data.path() + ": the values of " + in_quotes(data.name(0)) +
                    " are all the same: there is no line");
  }
  const Line line = fit(data, type);
  constexpr float kMostR = 1.001F;
  constexpr double kToTell = 1e-3;
  constexpr double kToFail = 0.1;
  const LineCheck check = check_fit(data, type);
  const double error = std::fabs(line.b - check.slope) / check.unit;
  if (error > kToFail || !(std::fabs(line.r) <= kMostR)) {
    throw WorkError(
        "the fit failed: what the values vary by is lost in sums of Singles; take an "
        "offset off them");
  }
  const std::string x = variable(data.name(0));
  const std::string y = variable(data.name(1));
  const std::string left = (type.log_y ? "ln " : "") + y;
  Facts facts{{"A", plain_text(line.a)}, {"B", plain_text(line.b)}, {"R", plain_text(line.r)}};
  const std::string formula = line_text(type, line, x, y);
  const std::string since = data.dated(0) ? exact_moment_text(first_date) : "";
  Facts solved_at;
  if (options.solve_y) {
    const double at = solved(type, line, *options.solve_y);
    solved_at = solution(data, first_date, *options.solve_y, at);
  }
  if (options.output.among_words()) {
    std::cout << type.word << " fit, " << counted(data.rows(), "row") << ": " << left << " = A + B "
              << (type.log_x ? "ln " : "") << x << '\n';
    put_facts(options.output, facts);
    std::cout << formula << '\n';
    if (!since.empty()) std::cout << "with " << x << " in days since " << since << '\n';
    if (options.solve_y) tell_solution(solved_at, x, y, data.dated(0));
  } else {
    facts.insert(facts.begin(), {{"fit", type.word}, {"rows", std::to_string(data.rows())}});
    facts.insert(facts.end(), {{"line", formula}, {"days_since", since}});
    facts.insert(facts.end(), solved_at.begin(), solved_at.end());
    put_facts(options.output, facts);
  }
  if (error > kToTell) {
    std::cerr << "vqhost: sums of Singles lose digits here: in double precision B is "
              << short_text(check.slope) << "; take an offset off the values\n";
  }
  return kSuccess;
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  Options& o = *options;
  command.argument("FILE", o.path, "CSV file with a header; - reads the standard input")
      .option("--x", "COL", o.x, "Column of the abscissae, by header or number (default 1)")
      .option("--y", "COL", o.y, "Column of the ordinates (default 2)")
      .option("--type", "WORD", o.type,
              "linear (default), logarithmic, exponential, power or polynomial")
      .option("--date-format", "FORM", o.date_format, kDateFormatHelp)
      .option("--from", "X", o.from, "First x used, or date (default: the file's)")
      .option("--to", "X", o.to, "Last x used, or date")
      .option("--solve-y", "VALUE", o.solve_y, "Tell where the line has this y")
      .flag("--skip", o.skip,
            "Leave rows out in which a value is missing, or is not above 0 and has no logarithm")
      .output(o.output)
      .notes(kNotes)
      .does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{"fit", "Fit a line to two columns of a file", &declare};

}  // namespace
}  // namespace vqmath63::host
