#include "host/commands/accumulate_records.hpp"

#include <algorithm>
#include <iostream>
#include <unordered_map>

#include "host/client/message_sink.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/records/record_accumulation.hpp"
#include "host/records/record_table.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

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
    const std::string doubt = doubtful_mark(plan_.form);
    for (const std::string& note : head_.notes()) {
      if (note == doubt) {
        note_(note + " (--decimal " + (plan_.form.decimal_comma ? "point" : "comma") +
              ": they part thousands)");
      } else if (note != doubtful_mark(head_.form())) {
        note_(note);
      }
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

// Tells of a group that has no name, and of two whose names differ by letters' case or blanks
// alone.
void note_groups(const RecordPlan& plan, const RecordSums& sums, const CsvFile& head,
                 const TakeNote& note) {
  std::unordered_map<std::string, std::size_t> known;  // what a name comes to: its group
  std::string alike;
  std::size_t count = 0;
  const auto place = [&](std::size_t group) {
    std::string name = sums.name(group);
    std::replace(name.begin(), name.end(), kKeySeparator, ' ');
    return in_quotes(name) + " (line " + std::to_string(sums.first_line(group)) + ")";
  };
  for (std::size_t group = 0; !plan.by.empty() && group < sums.groups(); ++group) {
    std::string name;
    for (const char c : sums.name(group)) {
      if (c != ' ') name += lower_case(c);
    }
    if (name.find_first_not_of(kKeySeparator) == std::string::npos) {
      note("rows without a " + in_quotes(head.headers()[plan.by.front()]) +
           " are a group of their own, the first on line " +
           std::to_string(sums.first_line(group)));
    }
    const auto [other, is_new] = known.try_emplace(std::move(name), group);
    if (!is_new && count++ == 0) alike = place(other->second) + " and " + place(group);
  }
  if (count == 0) return;
  note(alike + (count > 1 ? ", and " + std::to_string(count - 1) + " more," : "") +
       " are taken for different groups, though their names are alike");
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ",") + name;
  return text;
}

}  // namespace

std::vector<std::size_t> series_of_records(const RecordPlan& plan, const RecordReport& report,
                                           const RecordSums& sums, const CsvFile& head,
                                           const TakeNote& note) {
  Teller teller(plan, report, head, note);
  std::vector<std::size_t> series = teller.series();
  teller.tell();
  note_groups(plan, sums, head, note);
  std::vector<std::string> names;
  std::vector<SeriesKind> kinds;
  for (const std::size_t s : series) {
    names.push_back(plan.series[s].name);
    kinds.push_back(plan.series[s].kind);
  }
  for (const std::string& each : notes_of_names(names, kinds)) note(each);
  return series;
}

void accumulate_records(const RecordOptions& options, const RecordWork& work) {
  RecordFile file(work.path, static_cast<std::size_t>(options.header));
  RecordPlan plan = plan_records(options, work, file.head());
  const MessageSink sink;
  PeriodCalendar calendar(work.periods.period, work.periods.frequency,
                          work.start.value_or(kCalendarPhase), work.start.has_value());
  RecordReport report;
  const RecordSums sums = file.accumulate(plan, std::move(calendar), report);

  RecordTableShape shape;
  shape.series = series_of_records(plan, report, sums, file.head(), [](const std::string& note) {
    std::cerr << "vqhost: " << note << '\n';
  });
  refuse_nothing(sums, report, work.start);
  for (const std::size_t column : plan.by) shape.by.push_back(file.head().headers()[column]);
  shape.wide = options.wide;
  shape.total = options.total;
  RecordTable(sums, plan, std::move(shape)).put(work.output);
}

void refuse_nothing(const RecordSums& sums, const RecordReport& report,
                    const std::optional<double>& start) {
  if (sums.first_period() <= sums.last_period()) return;
  if (report.findings.skipped.count == report.rows) {
    throw WorkError("no row is left: each has an empty cell (--empty zero or hold takes them)");
  }
  if (start && report.step) {
    throw WorkError("no row has an interval behind the start of reporting, " +
                    exact_moment_text(*start));
  }
  throw WorkError("no row has an interval: --step says how long they are");
}

std::vector<std::string> notes_of_names(const std::vector<std::string>& names,
                                        const std::vector<SeriesKind>& kinds) {
  std::vector<std::string> amounts;
  std::vector<std::string> cumulative;
  std::vector<std::string> rates;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const bool is_rate = kinds[i] == SeriesKind::kRate;
    if (is_rate && has_one(names[i], {"cum"})) {
      cumulative.push_back(names[i]);
    } else if (is_rate && has_one(names[i], {"vol", "amount", "produced", "quantity"})) {
      amounts.push_back(names[i]);
    } else if (kinds[i] == SeriesKind::kAmount &&
               has_one(names[i], {"rate", "/d", "per day", "bopd", "bwpd", "scfd"})) {
      rates.push_back(names[i]);
    }
  }
  std::vector<std::string> notes;
  if (!amounts.empty()) {
    notes.push_back("taken for rates, though the names say amounts: " + joined(amounts) +
                    " (--volumes " + joined(amounts) + " --stamp begin or end has their sums)");
  }
  if (!cumulative.empty()) {
    notes.push_back("taken for rates, though the names say cumulative: " + joined(cumulative) +
                    " (--cumulative " + joined(cumulative) + ")");
  }
  if (!rates.empty()) {
    notes.push_back("taken for amounts, though the names say rates: " + joined(rates) +
                    " (--columns " + joined(rates) + " has their means)");
  }
  return notes;
}

}  // namespace vqmath63::host
