#include "host/commands/record_options.hpp"

#include <algorithm>

#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

bool has(const std::vector<std::size_t>& columns, std::size_t column) {
  return std::find(columns.begin(), columns.end(), column) != columns.end();
}

// Which of some words an option has; the first where it is not given.
template <class Rule>
Rule one_of(const char* option, const std::optional<std::string>& given,
            std::initializer_list<std::pair<const char*, Rule>> words) {
  if (!given) return words.begin()->second;
  std::string known;
  for (const auto& [word, rule] : words) {
    if (same_letters(*given, word)) return rule;
    known += (known.empty() ? "" : ", ") + std::string(word);
  }
  throw UsageError(std::string(option) + " " + in_quotes(*given) +
                   ": one of these is wanted: " + known);
}

std::vector<std::string> list_of(const std::optional<std::string>& text) {
  return text && !text->empty() ? split(*text, ',') : std::vector<std::string>();
}

// Makes of the options, and of the header that a file has, what its reader is to do.
class Planner {
 public:
  Planner(const RecordOptions& options, const RecordWork& work, const CsvFile& head)
      : options_(options), work_(work), head_(head) {}

  RecordPlan plan() {
    plan_.form = head_.form();
    if (options_.decimal) {
      plan_.form.decimal_comma =
          one_of<bool>("--decimal", options_.decimal, {{"point", false}, {"comma", true}});
      plan_.form.mark_is_from = MarkIsFrom::kCells;
    }
    plan_.form.missing = list_of(options_.missing);
    plan_.columns = head_.headers().size();
    plan_.by = indices(list_of(options_.by));
    if (plan_.by.empty()) plan_.by_remedy = head_.by_remedy();
    choose_date();
    choose_series();
    choose_rules();
    return std::move(plan_);
  }

 private:
  std::string quoted(std::size_t column) const { return in_quotes(head_.headers()[column]); }

  std::vector<std::size_t> indices(const std::vector<std::string>& names) const {
    std::vector<std::size_t> columns;
    for (const std::string& name : names) {
      const std::size_t column = head_.column(name);
      if (!has(columns, column)) columns.push_back(column);
    }
    return columns;
  }

  // The columns so named, else the first of a usual name, else the first that is no group's.
  void choose_date() {
    std::vector<std::size_t> columns = indices(list_of(options_.date));
    if (columns.empty()) columns = usual_date();
    for (const std::size_t c : columns) {
      if (has(plan_.by, c)) throw UsageError("column " + quoted(c) + " is the date");
    }
    plan_.date = columns.front();
    if (columns.size() > 1) plan_.date_parts = std::move(columns);
  }

  std::vector<std::size_t> usual_date() const {
    const auto named = [&](std::initializer_list<const char*> words) -> std::optional<std::size_t> {
      for (std::size_t c = 0; c < plan_.columns; ++c) {
        for (const char* word : words) {
          if (!has(plan_.by, c) && same_letters(head_.headers()[c], word)) return c;
        }
      }
      return std::nullopt;
    };
    const auto year = named({"year"});
    const auto month = named({"month"});
    const auto day = named({"day"});
    if (year && month && day) return {*year, *month, *day};
    if (year && month) return {*year, *month};
    if (const auto date = named({"date", "day", "month", "time", "datetime", "timestamp", "dateprd",
                                 "from_date", "date_time"})) {
      return {*date};
    }
    for (std::size_t c = 0; c < plan_.columns; ++c) {
      if (!has(plan_.by, c)) return {c};
    }
    throw UsageError("--by leaves no column for the date");
  }

  bool is_date(std::size_t column) const {
    return column == plan_.date || has(plan_.date_parts, column);
  }

  void choose_series() {
    const std::vector<std::size_t> amounts = indices(list_of(options_.volumes));
    const std::vector<std::size_t> cumulative = indices(work_.cumulative);
    std::vector<std::size_t> columns = indices(work_.columns);
    const bool all = columns.empty() && amounts.empty();
    const std::vector<std::size_t> rates = columns;
    columns.insert(columns.end(), amounts.begin(), amounts.end());
    columns.insert(columns.end(), cumulative.begin(), cumulative.end());
    for (const std::size_t c : amounts) {
      if (has(cumulative, c)) throw UsageError("column " + quoted(c) + " is cumulative or not");
    }
    if (all) {
      columns.clear();
      for (std::size_t c = 0; c < plan_.columns; ++c) {
        if (!is_date(c) && !has(plan_.by, c)) columns.push_back(c);
      }
    }
    std::vector<std::size_t> taken;
    for (const std::size_t c : columns) {
      if (has(taken, c)) continue;
      if (is_date(c) || has(plan_.by, c)) {
        throw UsageError("column " + quoted(c) + " is the date or a group's, not a series");
      }
      taken.push_back(c);
      plan_.series.push_back({head_.headers()[c], c,
                              has(amounts, c)      ? SeriesKind::kAmount
                              : has(cumulative, c) ? SeriesKind::kCumulative
                                                   : SeriesKind::kRate,
                              !all || has(cumulative, c)});
    }
    if (plan_.series.empty()) throw WorkError(head_.path() + ": there is no column for a series");
  }

  void choose_rules() {
    const bool amounts = plan_.any(SeriesKind::kAmount);
    if (amounts && !options_.stamp) {
      throw UsageError(
          "--volumes wants --stamp: begin where a row's date is the day, or the first one, on "
          "which its amount was produced, last where it is the last of these days, end where it "
          "is the moment up to which they run");
    }
    plan_.stamp =
        one_of<Stamp>("--stamp", options_.stamp,
                      {{"end", Stamp::kEnd}, {"begin", Stamp::kBegin}, {"last", Stamp::kLast}});
    if (amounts) {
      plan_.gap = GapRule::kZero;  // an amount is of its usual interval and no more
    }
    if (options_.gap) {
      plan_.gap = one_of<GapRule>(
          "--gap", options_.gap,
          {{"zero", GapRule::kZero}, {"hold", GapRule::kHold}, {"error", GapRule::kError}});
    }
    plan_.twins = one_of<TwinRule>(
        "--twins", options_.twins,
        {{"error", TwinRule::kError}, {"sum", TwinRule::kSum}, {"last", TwinRule::kLast}});
    if (options_.empty) {
      plan_.empty = one_of<EmptyRule>("--empty", options_.empty,
                                      {{"zero", EmptyRule::kValue},
                                       {"hold", EmptyRule::kHold},
                                       {"skip", EmptyRule::kSkip},
                                       {"error", EmptyRule::kError}});
      if (plan_.empty == EmptyRule::kSkip && !plan_.series.front().wanted) {
        throw UsageError(
            "--empty skip wants --columns or --volumes: the cells that a row must have");
      }
      if (work_.empty_as) throw UsageError("--empty and --empty-as say the same: one is enough");
    } else if (work_.empty_as) {
      plan_.empty = EmptyRule::kValue;
      plan_.empty_value = *work_.empty_as;
    }
    if (options_.step) plan_.step = step_from_text(*options_.step);
    plan_.date_format = options_.dates();
    plan_.sort = options_.sort;
  }

  const RecordOptions& options_;
  const RecordWork& work_;
  const CsvFile& head_;
  RecordPlan plan_;
};

}  // namespace

bool RecordOptions::any() const {
  return by || date || volumes || stamp || gap || step || empty || twins || missing ||
         date_format || decimal || header > 1 || sort || wide || total;
}

std::optional<DateFormat> RecordOptions::dates() const {
  return date_format_option(date_format);
}

void declare_records(Command& command, RecordOptions& o) {
  command
      .option("--by", "COL,...", o.by,
              "Columns that name a row's group, the well for instance; rows of groups may stand in "
              "any order beside one another")
      .option("--date", "COL,...", o.date,
              "Column of dates (default: by its name, else the first), or columns that make one "
              "together: YEAR,MONTH")
      .option("--date-format", "FORM", o.date_format, kDateFormatHelp)
      .option("--decimal", "WORD", o.decimal,
              "Decimal mark of numbers: point, comma (default: as the first rows have it)")
      .count("--header", o.header, "Line of the file on which its header stands")
      .option("--volumes", "COL,...", o.volumes,
              "Series that are amounts of a row's interval: a period has their sum. Without "
              "--columns these and cumulative ones are all")
      .option(
          "--stamp", "WORD", o.stamp,
          "Where a row's date stands in its interval: end (default), begin, last (the last day)")
      .option("--step", "WORD", o.step,
              "How long a row's interval is: day, month, ..., or days (default: as most rows)")
      .option("--gap", "WORD", o.gap,
              "What rows that are missing had: zero (amounts), hold (rates), error")
      .option("--empty", "WORD", o.empty,
              "Cells without a value: error (default), zero, hold the row before, skip the row")
      .option("--missing", "WORD,...", o.missing,
              "Texts or numbers that stand for no value, besides n/a, null, - and their like")
      .option("--twins", "WORD", o.twins, "Rows of one group and date: error (default), sum, last")
      .flag("--sort", o.sort, "Bring rows into the order of time (takes memory for all of them)")
      .flag("--wide", o.wide, "Groups beside one another, a row a period")
      .flag("--total", o.total, "The sum of all groups too");
}

RecordPlan plan_records(const RecordOptions& options, const RecordWork& work, const CsvFile& head) {
  return Planner(options, work, head).plan();
}

}  // namespace vqmath63::host
