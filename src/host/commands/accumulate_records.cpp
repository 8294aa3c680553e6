#include "host/commands/accumulate_records.hpp"

#include <algorithm>
#include <iostream>

#include "host/client/message_sink.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/records/record_accumulation.hpp"
#include "host/records/record_table.hpp"
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
    plan_.form.missing = list_of(options_.missing);
    plan_.columns = head_.headers().size();
    plan_.by = indices(list_of(options_.by));
    plan_.date = date_column();
    if (has(plan_.by, plan_.date))
      throw UsageError("column " + quoted(plan_.date) + " is the date");
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

  // The column so named, else the first of a usual name, else the first that is no group's.
  std::size_t date_column() const {
    if (options_.date) return head_.column(*options_.date);
    std::size_t first = plan_.columns;
    for (std::size_t c = 0; c < plan_.columns; ++c) {
      if (has(plan_.by, c)) continue;
      const std::string& name = head_.headers()[c];
      for (const char* word : {"date", "day", "month", "time", "datetime", "timestamp", "dateprd",
                               "from_date", "date_time"}) {
        if (same_letters(name, word)) return c;
      }
      first = std::min(first, c);
    }
    if (first == plan_.columns) throw UsageError("--by leaves no column for the date");
    return first;
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
        if (c != plan_.date && !has(plan_.by, c)) columns.push_back(c);
      }
    }
    std::vector<std::size_t> taken;
    for (const std::size_t c : columns) {
      if (has(taken, c)) continue;
      if (c == plan_.date || has(plan_.by, c)) {
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
    if (options_.date_format) plan_.date_format.emplace(*options_.date_format);
    plan_.sort = options_.sort;
  }

  const RecordOptions& options_;
  const RecordWork& work_;
  const CsvFile& head_;
  RecordPlan plan_;
};

// Tells what was found while the records were read.
class Teller {
 public:
  Teller(const RecordPlan& plan, const RecordReport& report, const CsvFile& head,
         const TakeNote& note)
      : plan_(plan), found_(report.findings), report_(report), head_(head), note_(note) {}

  // The series that are shown; the user is told of the others.
  std::vector<std::size_t> series() {
    std::vector<std::size_t> shown;
    found_.filled.count = 0;
    for (std::size_t s = 0; s < plan_.series.size(); ++s) {
      const Series& series = plan_.series[s];
      const CellCounts& counts = report_.counts[s];
      if (series.wanted || (counts.numbers > 0 && counts.numbers >= counts.texts)) {
        judge(series, counts);
        found_.filled.count += plan_.empty == EmptyRule::kSkip ? 0 : counts.empty;
        shown.push_back(s);
        continue;
      }
      std::string note = "column " + in_quotes(series.name) + " holds ";
      note += counts.numbers == 0 ? "no numbers"
                                  : counted(counts.texts, "text") + " and only " +
                                        counted(counts.numbers, "number");
      note += " and is left out";
      if (counts.texts > 0) {
        note +=
            " (" + in_quotes(counts.text) + " on line " + std::to_string(counts.text_line) + ")";
      }
      note_(note);
    }
    if (shown.empty())
      throw WorkError(head_.path() + ": no column of numbers stands beside the date");
    return shown;
  }

  void tell() {
    if (head_.units_line() > 0) {
      note_("line " + std::to_string(head_.units_line()) + " is taken for a row of units");
    }
    tell_gaps();
    tell_no_interval();
    say(found_.twins, "row",
        plan_.twins == TwinRule::kSum
            ? "of a date that its group has already: their values are summed"
            : "of a date that its group has already: the last one counts");
    say(found_.filled, "empty cell",
        plan_.empty == EmptyRule::kHold ? "taken to be as the group's row before"
        : plan_.empty_value == 0.0      ? "taken to be zero"
                                        : "given the value of --empty-as");
    say(found_.skipped, "row", "with empty cells passed over");
  }

 private:
  // What a column that nobody has named, and that holds numbers, may not hold.
  void judge(const Series& series, const CellCounts& counts) const {
    if (counts.texts > 0) {
      throw WorkError(head_.place(counts.text_line, series.column) + in_quotes(counts.text) +
                      " is not a number (--missing " + counts.text +
                      " takes it for an empty cell, --columns leaves the column out)");
    }
    if (!series.wanted && counts.empty > 0 && plan_.empty == EmptyRule::kError) {
      throw WorkError(head_.place(counts.empty_line, series.column) +
                      "the value is missing (--empty zero, hold or skip says what is done with "
                      "such cells)");
    }
  }

  std::string where(const Finding& found) const {
    std::string name = found.group;
    std::replace(name.begin(), name.end(), kKeySeparator, ' ');
    return (name.empty() ? "" : in_quotes(name) + ", ") + "line " + std::to_string(found.line);
  }

  void say(const Finding& found, const char* what, const char* done) {
    if (found.count == 0) return;
    note_(counted(found.count, what) + " " + done + " (" + where(found) +
          (found.count > 1 ? ", for one" : "") + ")");
  }

  void tell_gaps() {
    const Finding& gaps = found_.gaps;
    if (gaps.count == 0) return;
    const bool zero = plan_.gap == GapRule::kZero;
    note_(counted(gaps.count, "gap") + " beside rows that follow each " + plan_.step->text() +
          ", " + (gaps.count > 1 ? "the longest " : "") + "from " + exact_moment_text(gaps.from) +
          " to " + exact_moment_text(gaps.to) + " (" + where(gaps) + "): " +
          (zero ? "taken for no production (--gap hold: as the row beside it)"
                : "taken to be as the row beside it (--gap zero: no production)"));
  }

  void tell_no_interval() {
    const Finding& rows = found_.no_interval;
    if (rows.count == 0) return;
    const bool begin = plan_.stamp == Stamp::kBegin;
    note_(counted(rows.count, begin ? "last row" : "first row") +
          (begin ? " without a row behind it" : " without a row before it") +
          (rows.count > 1 ? ": their values count" : ": its values count") + " for nothing (" +
          where(rows) + (rows.count > 1 ? ", for one" : "") + ")" +
          (plan_.step ? "" : "; --step says how long the interval of a row is"));
  }

  const RecordPlan& plan_;
  Findings found_;
  const RecordReport& report_;
  const CsvFile& head_;
  const TakeNote& note_;
};

// Whether a name has one of these words in it, whatever its letters' case.
bool has_one(std::string name, std::initializer_list<const char*> words) {
  std::transform(name.begin(), name.end(), name.begin(), [](char c) { return lower_case(c); });
  return std::any_of(words.begin(), words.end(),
                     [&](const char* word) { return name.find(word) != std::string::npos; });
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ",") + name;
  return text;
}

}  // namespace

bool RecordOptions::any() const {
  return by || date || volumes || stamp || gap || step || empty || twins || missing ||
         date_format || sort || wide || total;
}

void declare_records(Command& command, RecordOptions& o) {
  command
      .option("--by", "COL,...", o.by,
              "Columns that name a row's group, the well for instance; rows of groups may stand in "
              "any order beside one another")
      .option("--date", "COL", o.date, "Column of dates (default: by its name, else the first)")
      .option(
          "--date-format", "FORM", o.date_format,
          "How dates are written, DD/MM/YYYY for instance, D-MMM-YY, YYYYMMDD hh:mm; serial: as "
          "spreadsheets count days")
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

std::vector<std::size_t> series_of_records(const RecordPlan& plan, const RecordReport& report,
                                           const CsvFile& head, const TakeNote& note) {
  Teller teller(plan, report, head, note);
  std::vector<std::size_t> series = teller.series();
  teller.tell();
  return series;
}

void accumulate_records(const RecordOptions& options, const RecordWork& work) {
  RecordFile file(work.path);
  RecordPlan plan = plan_records(options, work, file.head());
  const MessageSink sink;
  PeriodCalendar calendar(work.periods.period, work.periods.frequency,
                          work.start.value_or(kCalendarPhase), work.start.has_value());
  RecordReport report;
  const RecordSums sums = file.accumulate(plan, std::move(calendar), report);

  RecordTableShape shape;
  shape.series = series_of_records(plan, report, file.head(), [](const std::string& note) {
    std::cerr << "vqhost: " << note << '\n';
  });
  std::vector<std::string> names;
  std::vector<bool> rates;
  for (const std::size_t s : shape.series) {
    names.push_back(plan.series[s].name);
    rates.push_back(plan.series[s].kind == SeriesKind::kRate);
  }
  warn_of_names(names, rates);
  if (sums.last_period() < sums.first_period()) {
    throw WorkError(work.start ? "no row has an interval behind the start of reporting, " +
                                     exact_moment_text(*work.start)
                               : "no row has an interval: --step says how long they are");
  }
  for (const std::size_t column : plan.by) shape.by.push_back(file.head().headers()[column]);
  shape.wide = options.wide;
  shape.total = options.total;
  RecordTable(sums, plan, std::move(shape)).put(work.output);
}

void warn_of_names(const std::vector<std::string>& names, const std::vector<bool>& rates) {
  std::vector<std::string> amounts;
  std::vector<std::string> cumulative;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!rates[i]) continue;
    if (has_one(names[i], {"cum"})) {
      cumulative.push_back(names[i]);
    } else if (has_one(names[i], {"vol", "amount", "produced", "quantity"})) {
      amounts.push_back(names[i]);
    }
  }
  if (!amounts.empty()) {
    std::cerr << "vqhost: taken for rates, though the names say amounts: " << joined(amounts)
              << " (--volumes " << joined(amounts) << " --stamp begin or end has their sums)\n";
  }
  if (!cumulative.empty()) {
    std::cerr << "vqhost: taken for rates, though the names say cumulative: " << joined(cumulative)
              << " (--cumulative " << joined(cumulative) << ")\n";
  }
}

}  // namespace vqmath63::host
