#include "host/data/columns.hpp"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>

#include "host/data/moment.hpp"
#include "host/data/progress.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {

CsvTable read_rows(const CsvFile& file, CsvReading reading) {
  ReadingProgress progress(file.path());
  reading.progress = [&](std::size_t rows, std::size_t done, std::size_t bytes) {
    progress.update(rows, done, bytes);
  };
  return file.read(reading);
}

void tell_notes(const CsvFile& file) {
  for (const std::string& note : file.notes()) std::cerr << "vqhost: " << note << '\n';
}

bool fits_single(double value) {
  return !(std::fabs(value) > std::numeric_limits<float>::max());
}

void check_single(const char* option, std::optional<double> value) {
  if (!value || fits_single(*value)) return;
  throw UsageError(std::string(option) + ": " + number_text(*value) + " is too large for a Single");
}

float single_at(const CsvFile& file, const CsvTable& table, std::size_t column, std::size_t row) {
  const double value = table.columns[column].values[row];
  if (!fits_single(value)) {
    throw WorkError(file.place(table.lines[row], column) + number_text(value) +
                    " is too large for a Single");
  }
  return static_cast<float>(value);
}

ArrayOwner singles(const CsvFile& file, const CsvTable& table, std::size_t column) {
  const std::size_t rows = table.columns[column].values.size();
  ArrayOwner array(new_array(VT_R4, rows));
  float* out = static_cast<float*>(array.get()->pvData);
  for (std::size_t i = 0; i < rows; ++i) out[i] = single_at(file, table, column, i);
  return array;
}

std::vector<std::string> columns_or(const CsvFile& file, const char* option,
                                    const std::string& given,
                                    const std::vector<std::string>& names) {
  const std::string wanted = listed(names);
  std::size_t found = 0;
  bool elsewhere = false;
  std::vector<std::string> first;
  for (const std::string& name : names) {
    const std::size_t at = static_cast<std::size_t>(
        std::find_if(file.headers().begin(), file.headers().end(),
                     [&](const std::string& header) { return same_letters(header, name); }) -
        file.headers().begin());
    found += at < file.headers().size() ? 1U : 0U;
    elsewhere = elsewhere || (at < file.headers().size() && at != first.size());
    first.push_back(std::to_string(first.size() + 1));
  }
  if (!given.empty()) {
    std::vector<std::string> chosen = split(given, ',');
    if (chosen.size() == names.size()) return chosen;
    throw UsageError(std::string(option) + ": " + counted(names.size(), "column") +
                     " must be given, " + wanted);
  }
  if (found == names.size()) return names;
  if (elsewhere) {
    throw WorkError(file.path() + ": which columns are " + wanted + "? " + option +
                    " COL,... says it");
  }
  return first;
}

Columns numbers_of(const std::string& path, const char* option, const std::string& given,
                   const std::vector<std::string>& names) {
  CsvFile file(path);
  const auto chosen = columns_or(file, option, given, names);
  try {
    Columns columns(std::move(file), chosen, false);
    columns.refuse_gaps();
    return columns;
  } catch (const WorkError& error) {
    if (!given.empty() || chosen == names) throw;
    throw WorkError(error.what() + (" (" + std::string(option)) +
                    " COL,... says which columns are " + listed(names) + ")");
  }
}

Columns::Columns(CsvFile file, const std::vector<std::string>& names, bool dated_first,
                 std::optional<DateFormat> format)
    : file_(std::move(file)) {
  CsvReading reading;
  reading.date_format = std::move(format);
  reading.takes_date_format = dated_first;
  reading.empty_as = std::numeric_limits<double>::quiet_NaN();
  reading.wants.assign(file_.headers().size(), Want::kNothing);
  for (const std::string& name : names) {
    const std::size_t c = file_.column(name);
    if (std::find(chosen_.begin(), chosen_.end(), c) != chosen_.end()) {
      throw UsageError("column " + in_quotes(file_.headers()[c]) + " is given twice");
    }
    reading.wants[c] = dated_first && chosen_.empty() ? Want::kNumbersOrDates : Want::kNumbers;
    chosen_.push_back(c);
  }
  tell_notes(file_);
  table_ = read_rows(file_, reading);
}

std::string Columns::text(std::size_t row, std::size_t c) const {
  const double value = (*this)[c][row];
  return dated(c) ? exact_moment_text(value) : plain_text(value);
}

void Columns::refuse(std::size_t row, std::size_t c, const std::string& problem) const {
  throw WorkError(file_.place(table_.lines[row], chosen_[c]) + problem);
}

void Columns::refuse_gaps(const char* hint) const {
  for (std::size_t row = 0; row < rows(); ++row) {
    for (std::size_t c = 0; c < count(); ++c) {
      if (std::isnan((*this)[c][row])) refuse(row, c, std::string("the value is missing") + hint);
    }
  }
}

void Columns::refuse_steps_back(std::size_t c) const {
  for (std::size_t row = 1; row < rows(); ++row) {
    if ((*this)[c][row] > (*this)[c][row - 1]) continue;
    refuse(row, c, text(row, c) + " is not above the value of the row before, " + text(row - 1, c));
  }
}

void Columns::keep_rows(const std::function<bool(std::size_t row)>& wanted) {
  std::size_t kept = 0;
  for (std::size_t row = 0; row < rows(); ++row) {
    if (!wanted(row)) continue;
    for (const std::size_t c : chosen_) {
      table_.columns[c].values[kept] = table_.columns[c].values[row];
    }
    table_.lines[kept++] = table_.lines[row];
  }
  for (const std::size_t c : chosen_) table_.columns[c].values.resize(kept);
  table_.lines.resize(kept);
}

void Columns::leave_gaps_out() {
  const std::size_t all = rows();
  keep_rows([this](std::size_t row) {
    return std::none_of(chosen_.begin(), chosen_.end(),
                        [&](std::size_t c) { return std::isnan(table_.columns[c].values[row]); });
  });
  if (rows() == all) return;
  std::cerr << "vqhost: " << counted(all - rows(), "row") << " left out\n";
}

ArrayOwner Columns::doubles(std::size_t c) const {
  ArrayOwner array(new_array(VT_R8, rows()));
  std::copy((*this)[c].begin(), (*this)[c].end(), static_cast<double*>(array.get()->pvData));
  return array;
}

}  // namespace vqmath63::host
