// Where results go: to the standard output or a file, as a table to read or for other programs.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/data/table.hpp"

namespace vqmath63::host {

/// Where a command's table goes, as its options -o and --format have it.
struct Output {
  std::string path{};               ///< a file, or "-", the standard output; empty: the same
  std::optional<TableForm> form{};  ///< of --format

  /// The form: that of --format, else, of a file, what its name ends with; else CSV where there is
  /// a path, and a table to be read where there is none.
  TableForm table_form() const;
  /// Whether numbers are written to be read, rather than exactly.
  bool for_reading() const;
  /// Whether the table stands on the standard output between words for a reader.
  bool among_words() const { return path.empty() && table_form() == TableForm::kAligned; }
};

/// UsageError when the option -o names a file that is read.
void check_output(const Output& output, const std::string& input);

/// A line for the user, on the standard output where it is no part of what is made there, else
/// among the messages.
void say_beside(const Output& output, const std::string& words);

/// Hands a table's rows to the writer: the same ones each time that it is asked.
using FillTable = std::function<void(TableWriter& table)>;

/// A table on the standard output or into a file, of which the user is told `content`, by default
/// the number of its rows: "out.csv: 12 rows". The file is written beside the one that may be there
/// and takes its place when it is whole. WorkError when it cannot be written; what was there stays
/// as it was then.
void put_table(const Output& output, std::vector<TableColumn> columns, const FillTable& fill,
               const std::string& content = {});

/// The same with rows that are there already.
void put_table(const Output& output, std::vector<TableColumn> columns,
               const std::vector<Texts>& rows);

/// A whole text instead of a table, into a file or with "-" on the standard output; of a file the
/// user is told `content`.
void put_text(const std::string& path, const std::string& text, const std::string& content);

/// Lines of CSV where that is the output's form: `next` makes some of them of an empty text each
/// time, none at the end; what it has made before is written meanwhile. Otherwise as put_table.
void put_lines(const Output& output, const std::function<void(std::string& lines)>& next,
               const std::string& content);

/// Rows of texts, without a header where they stand among words for a reader.
void put_list(const Output& output, const Texts& names, const std::vector<Texts>& rows);

/// Words, each with what there is to say.
using Facts = std::vector<std::pair<std::string, std::string>>;

/// For a reader a line each, in other forms one row with a column for each word, in which what a
/// word says twice is joined.
void put_facts(const Output& output, const Facts& facts);

}  // namespace vqmath63::host
