// Shows summaries of samples and their histograms as tables to read.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vqmath63::host {

/// What is told of one column; a measure that could not be worked out is empty.
struct Summary {
  std::string name;
  std::size_t n = 0;
  std::size_t nulls = 0;
  std::optional<float> mean{};
  std::optional<float> sigma_n{};
  std::optional<float> sigma_n1{};
  std::optional<float> minimum{};
  std::optional<float> first_quartile{};
  std::optional<float> median{};
  std::optional<float> third_quartile{};
  std::optional<float> maximum{};
};

/// An aligned table, a row for each summary, with dashes for what is empty. Numbers have the
/// shortest digits that read back the same.
void print_summaries(std::ostream& out, const std::vector<Summary>& summaries);

/// The bins of a histogram, as many counts as centres: centre, count and a bar of one character
/// each, or scaled so that the largest count has 50; a count above 0 shows at least one.
void print_bins(std::ostream& out, std::span<const float> centres, std::span<const float> counts);

}  // namespace vqmath63::host
