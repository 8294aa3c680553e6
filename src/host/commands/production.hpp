// A dated production table, read from a CSV file into the form that ztAccumulate takes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/client/dispatch_client.hpp"

namespace vqmath63::host {

/// What the user chose of a file; columns are given by header or number.
struct ProductionChoice {
  std::string path;
  std::vector<std::string> columns;     ///< series; empty: every column of numbers
  std::vector<std::string> cumulative;  ///< series that are cumulative values, not rates
  std::optional<double> start_data;     ///< moment of time 0
  std::size_t from_row = 1;             ///< first row that will be used
  std::optional<double> empty_as;       ///< value of missing cells
};

struct Production {
  std::vector<std::string> names;  ///< of the series
  std::vector<bool> rates;         ///< per series, false for a cumulative value
  ArrayOwner table;                ///< Singles: column 1 the time, then the series
  std::size_t rows = 0;
  bool dated = false;                 ///< the first column held dates: times are days
  double start_data = 0.0;            ///< moment of time 0
  double first_time = 0.0;            ///< time of the first row used
  double last_time = 0.0;             ///< of the last one
  std::vector<std::string> left_out;  ///< columns without numbers: "column 'x' ... is left out"
  std::vector<std::string> doubts;    ///< what cells and names were taken for
  std::vector<std::string> notes;     ///< what else a user has to know: gaps, rows without interval
};

/// Reads the file. Dates in the first column become days since `start_data`, by default since the
/// first date; with numbers it must be given (UsageError). A time that steps back, and a value
/// beyond Single, is an error at its row.
Production read_production(const ProductionChoice& choice);

}  // namespace vqmath63::host
