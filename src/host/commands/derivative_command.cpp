// The command that differentiates a sampled curve of a file.
#include <iostream>
#include <memory>

#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/data/columns.hpp"
#include "host/data/output.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "Rows stand in ascending x, at any spacing; dates (YYYY-MM-DD or YYYY-MM-DD hh:mm) count in\n"
    "days. A derivative is that of the parabola through a row and its neighbours; the first order\n"
    "takes the chord at both ends. Of the second order ztDifferentiate gives a twelfth in the "
    "rows\n"
    "between the first and the last; they are multiplied by 12 here, save with --raw.\n"
    "Examples: vqhost derivative samples/dead_oil.csv --order 2\n"
    "          vqhost derivative samples/field_wells.csv --x date --y field_oil_cum -o rate.csv";

struct Options {
  std::string path;
  std::string x = "1";
  std::string y = "2";
  std::optional<std::string> date_format;
  std::int32_t order = 1;
  bool skip = false;
  bool raw = false;
  Output output;
};

// The derivative at each row.
ArrayOwner derivative(const Columns& data, bool second) {
  ArrayOwner x = data.doubles(0);
  ArrayOwner y = data.doubles(1);
  // Only the first derivative wants its result sized.
  ArrayOwner result(second ? nullptr : new_array(VT_R8, data.rows()));
  DispatchObject object = DispatchObject::create("ztDifferentiate");
  std::vector<Argument> arguments;
  arguments.push_back({Value::array_reference(VT_R8, x.place())});
  arguments.push_back({Value::array_reference(VT_R8, y.place())});
  arguments.push_back({Value::array_reference(VT_R8, result.place())});
  const char* member = second ? "SecondDerivative" : "FirstDerivative";
  if (!object.succeeds(member, std::move(arguments))) {
    throw WorkError(std::string(member) + " did not succeed: qOK is False");
  }
  return result;
}

int run(const Options& options) {
  if (options.raw && options.order != 2) throw UsageError("--raw goes with --order 2");
  if (options.order > 2) throw UsageError("--order: 1 or 2 is wanted");
  check_output(options.output, options.path);
  const bool second = options.order == 2;
  Columns data(CsvFile(options.path), {options.x, options.y}, true,
               date_format_option(options.date_format));
  if (options.skip) {
    data.leave_gaps_out();
  } else {
    data.refuse_gaps(kSkipHint);
  }
  const std::size_t least = second ? 3 : 2;
  if (data.rows() < least) {
    throw WorkError(data.path() + ": a derivative of order " + std::to_string(options.order) +
                    " needs " + std::to_string(least) + " rows; the file has " +
                    std::to_string(data.rows()));
  }
  data.refuse_steps_back(0);
  const MessageSink sink;
  const ArrayOwner result = derivative(data, second);
  const double* values = static_cast<const double*>(result.get()->pvData);
  const std::string& x = data.name(0);
  const std::string& y = data.name(1);
  constexpr double kTwelfths = 12.0;
  const auto value_at = [&](std::size_t i) {
    const bool twelfth = second && !options.raw && i > 0 && i + 1 < data.rows();
    return twelfth ? values[i] * kTwelfths : values[i];
  };
  const std::string name = second ? "d2(" + y + ")/d(" + x + ")2" : "d(" + y + ")/d(" + x + ")";
  put_table(options.output,
            {{x, data.dated(0) ? Align::kLeft : Align::kPoint},
             {y, Align::kPoint},
             {name, Align::kPoint}},
            [&](TableWriter& table) {
              for (std::size_t i = 0; i < data.rows(); ++i) {
                table.row({data.text(i, 0), data.text(i, 1), plain_text(value_at(i))});
              }
            });
  return kSuccess;
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  Options& o = *options;
  command.argument("FILE", o.path, "CSV file with a header; - reads the standard input")
      .option("--x", "COL", o.x, "Column of the abscissae, by header or number (default 1)")
      .option("--y", "COL", o.y, "Column of the ordinates (default 2)")
      .option("--date-format", "FORM", o.date_format, kDateFormatHelp)
      .count("--order", o.order, "1 (default) or 2")
      .flag("--raw", o.raw,
            "Second derivatives as the component gives them, most of them a twelfth")
      .flag("--skip", o.skip, "Leave rows out in which a value is missing")
      .output(o.output)
      .notes(kNotes)
      .does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{"derivative", "Differentiate a sampled curve of a file",
                                    &declare};

}  // namespace
}  // namespace vqmath63::host
