// A report as one page: HTML with its style and its few lines of script inside, nothing from
// elsewhere.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/report/chart.hpp"
#include "host/report/data_table.hpp"

namespace vqmath63::host {

/// A picture with its title, what there is to know of it, and its numbers.
struct Figure {
  std::string title;
  std::string note{};
  Chart chart;
  DataTable table;
};

class Page {
 public:
  Page(std::string title, std::string subtitle)
      : title_(std::move(title)), subtitle_(std::move(subtitle)) {}

  /// A heading; what is added later stands below it. `name` is its place for links.
  void section(const std::string& name, const std::string& title);
  void paragraph(const std::string& text);
  void list(const std::vector<std::string>& items);
  /// A few numbers that stand out, each with what it is.
  void key_figures(const std::vector<std::pair<std::string, std::string>>& figures);
  void figure(const Figure& figure);
  /// Figures side by side where there is room.
  void begin_panels();
  void end_panels();
  void table(const DataTable& table);

  /// The page. `closing` stands at its end.
  std::string text(const std::string& closing) const;

 private:
  int columns_of_picture() const;

  std::string title_;
  std::string subtitle_;
  std::vector<std::pair<std::string, std::string>> sections_;
  std::string body_;
  bool in_panels_ = false;
  PageRoom room_;
};

}  // namespace vqmath63::host
