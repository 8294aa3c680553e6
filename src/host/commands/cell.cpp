#include "host/commands/cell.hpp"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr std::size_t kCorners = 4;  // of a face
constexpr const char* kFaces[] = {"top", "bottom"};

// What a file says besides coordinates.
struct Layout {
  std::optional<std::size_t> face;  // the column of the words top and bottom
  std::vector<std::string> words;   // a row's word
  std::vector<std::string> first;   // numbers of the first columns that can be coordinates
};

Layout layout_of(const CsvFile& file) {
  Layout layout;
  const auto& headers = file.headers();
  file.each_row([&](const std::vector<std::string>& cells) {
    if (layout.words.empty()) {
      for (std::size_t c = headers.size(); c-- > 0;) {
        if (same_letters(headers[c], "face")) layout.face = c;
      }
      const std::string& beginning = cells[0];
      if (!layout.face &&
          (same_letters(beginning, kFaces[0]) || same_letters(beginning, kFaces[1])))
        layout.face = 0;
    }
    layout.words.push_back(layout.face ? cells[*layout.face] : "");
  });
  for (std::size_t c = 0; c < headers.size(); ++c) {
    if (c == layout.face || same_letters(headers[c], "corner")) continue;
    layout.first.push_back(std::to_string(c + 1));
  }
  return layout;
}

// The table's rows in the order top 1 to 4, bottom 1 to 4.
std::vector<std::size_t> corner_rows(const Columns& table, const Layout& layout) {
  std::vector<std::size_t> rows[2];
  for (std::size_t row = 0; row < table.rows(); ++row) {
    std::size_t face = row < kCorners ? 0 : 1;
    const std::string where = table.path() + ":" + std::to_string(table.line(row)) + ": ";
    if (layout.face) {
      const std::string& word = layout.words[row];
      face = same_letters(word, kFaces[0]) ? 0 : 1;
      if (!same_letters(word, kFaces[face])) {
        throw WorkError(where + in_quotes(word) + " is neither top nor bottom");
      }
    }
    if (rows[face].size() == kCorners) {
      throw WorkError(where + "a fifth corner of the " + kFaces[face] + "; a face has four");
    }
    rows[face].push_back(row);
  }
  for (std::size_t face = 0; face < 2; ++face) {
    if (rows[face].size() == kCorners) continue;
    throw WorkError(table.path() + ": the " + kFaces[face] + " has " +
                    counted(rows[face].size(), "corner") +
                    " instead of 4 (a row each, the top's before the bottom's)");
  }
  rows[0].insert(rows[0].end(), rows[1].begin(), rows[1].end());
  return rows[0];
}

// Twice the area of the triangle abc, seen with coordinate u to the right and v upwards (in plan
// when not said otherwise); positive when it turns left.
double turn(const Spot& a, const Spot& b, const Spot& c, std::size_t u = 0, std::size_t v = 1) {
  return (b[u] - a[u]) * (c[v] - a[v]) - (b[v] - a[v]) * (c[u] - a[u]);
}

// Whether segments ab and cd, seen from above, cross within both.
bool cross(const Spot& a, const Spot& b, const Spot& c, const Spot& d) {
  return turn(a, b, c) * turn(a, b, d) < 0.0 && turn(c, d, a) * turn(c, d, b) < 0.0;
}

double distance_in_plan(const Spot& p, const Spot& a, const Spot& b) {
  const double dx = b[0] - a[0];
  const double dy = b[1] - a[1];
  const double length2 = dx * dx + dy * dy;
  double t = length2 > 0.0 ? ((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / length2 : 0.0;
  t = std::clamp(t, 0.0, 1.0);
  return std::hypot(p[0] - a[0] - t * dx, p[1] - a[1] - t * dy);
}

}  // namespace

std::vector<Triangle> cell_triangles() {
  std::vector<std::array<std::size_t, 4>> faces{{0, 1, 2, 3}, {4, 5, 6, 7}};
  for (std::size_t i = 0; i < kCorners; ++i) {
    const std::size_t next = (i + 1) % kCorners;
    faces.push_back({i + kCorners, i, next, next + kCorners});
  }
  std::vector<Triangle> all;
  for (const auto& f : faces) {
    all.push_back({f[0], f[1], f[2]});
    all.push_back({f[2], f[3], f[0]});
  }
  return all;
}

Spot spot_from_text(const char* option, const std::string& text) {
  const auto pieces = split(text, ',');
  Spot spot{};
  if (pieces.size() != spot.size()) {
    throw UsageError(std::string(option) + ": X,Y,Z is wanted, not " + in_quotes(text));
  }
  for (std::size_t c = 0; c < spot.size(); ++c) {
    const auto number = parse_number(pieces[c]);
    if (!number || std::isnan(*number)) {
      throw UsageError(std::string(option) + ": " + in_quotes(pieces[c]) + " is not a number");
    }
    check_single(option, number);
    spot[c] = *number;
  }
  return spot;
}

bool tell_of_blur(double extent, double largest) {
  constexpr double kMuch = 0.01;
  const double tolerance = kCoordinateTolerance * largest;
  if (extent == 0.0 || tolerance <= kMuch * extent) return false;
  std::cerr << "vqhost: coordinates as large as " << plain_text(static_cast<float>(largest))
            << " are equal within " << plain_text(std::ceil(tolerance * 1e4) / 1e4)
            << ", much beside an extent of " << plain_text(static_cast<float>(extent))
            << "; --oblique avoids that\n";
  return true;
}

Cell::Cell(const std::string& path, const std::string& columns, bool oblique)
    : top_(new_array(VT_R4, 3, kCorners)), bottom_(new_array(VT_R4, 3, kCorners)) {
  CsvFile file(path);
  const Layout layout = layout_of(file);
  const auto has = [&](const char* name) {
    return std::any_of(file.headers().begin(), file.headers().end(),
                       [&](const std::string& header) { return same_letters(header, name); });
  };
  if (columns.empty() && file.headers().size() > 2 && has("x") && has("y") && !has("z")) {
    throw WorkError(
        file.path() +
        ": a cell has three columns of coordinates; here is no z. 'vqhost inside' takes "
        "a polygon by --polygon");
  }
  std::vector<std::string> chosen = columns_or(file, "--cell-columns", columns, {"x", "y", "z"});
  if (columns.empty() && chosen[0] != "x") {
    chosen = layout.first;
    if (chosen.size() < 3) {
      throw WorkError(file.path() + ": a cell has three columns of coordinates; here " +
                      (chosen.size() == 1 ? "is 1" : "are " + std::to_string(chosen.size())) +
                      ". 'vqhost inside' takes a polygon by --polygon");
    }
    chosen.resize(3);
  }
  Columns table(std::move(file), chosen, false);
  table.refuse_gaps();
  const auto rows = corner_rows(table, layout);
  const auto single = [&](std::size_t k, std::size_t c) { return table.single(rows[k], c); };
  for (std::size_t k = 0; k < rows.size(); ++k) {
    for (std::size_t c = 0; c < 3; ++c) corners_[k][c] = static_cast<double>(single(k, c));
  }
  refuse_bow_ties(table, rows);
  measure();
  if (oblique) {
    view_ = View::oblique(least_, most_);
    view_.apply(table);
  } else if (!tell_of_blur() && edge_on()) {
    std::cerr << "vqhost: faces of the cell are parallel to an axis, where rounding may lose what "
                 "is inside or on them; --oblique avoids that\n";
  }
  for (std::size_t k = 0; k < rows.size(); ++k) {
    const auto& array = k < kCorners ? top_ : bottom_;
    float* place = static_cast<float*>(array.get()->pvData) + 3 * (k % kCorners);
    for (std::size_t c = 0; c < 3; ++c) {
      place[c] = single(k, c);
      corners_[k][c] = static_cast<double>(place[c]);
    }
  }
  measure();
  find_edges();
}

void Cell::refuse_bow_ties(const Columns& table, const std::vector<std::size_t>& rows) const {
  for (std::size_t face = 0; face < 2; ++face) {
    const Spot* corner = &corners_[face * kCorners];
    const bool first = cross(corner[0], corner[1], corner[2], corner[3]);
    if (!first && !cross(corner[1], corner[2], corner[3], corner[0])) continue;
    throw WorkError(table.path() + ":" + std::to_string(table.line(rows[face * kCorners + 2])) +
                    ": the corners of the " + kFaces[face] + " do not go around it: its edges " +
                    (first ? "1-2 and 3-4" : "2-3 and 4-1") + " cross");
  }
}

void Cell::measure() {
  least_ = most_ = corners_[0];
  for (std::size_t c = 0; c < 3; ++c) {
    for (const Spot& corner : corners_) {
      least_[c] = std::min(least_[c], corner[c]);
      most_[c] = std::max(most_[c], corner[c]);
    }
  }
  band_ = 2.0 * kCoordinateTolerance * std::max(largest(0), largest(1));
}

double Cell::largest(std::size_t c) const {
  return std::max(std::fabs(least_[c]), std::fabs(most_[c]));
}

bool Cell::tell_of_blur() const {
  for (std::size_t c = 0; c < 3; ++c) {
    if (host::tell_of_blur(most_[c] - least_[c], largest(c))) return true;
  }
  return false;
}

bool Cell::edge_on() const {
  constexpr double kThin = 0.05;
  for (const Triangle& t : cell_triangles()) {
    for (const auto& [u, v] : {std::pair<std::size_t, std::size_t>{0, 1}, {0, 2}, {1, 2}}) {
      const double box = (most_[u] - least_[u]) * (most_[v] - least_[v]);
      const double area = turn(corners_[t[0]], corners_[t[1]], corners_[t[2]], u, v);
      if (std::fabs(area) <= kThin * box) return true;
    }
  }
  return false;
}

void Cell::find_edges() {
  std::vector<Triangle> seen;  // those that a straight way up can cross
  for (const Triangle& t : cell_triangles()) {
    if (turn(corners_[t[0]], corners_[t[1]], corners_[t[2]]) == 0.0) continue;
    for (const Triangle& other : seen) {
      std::vector<std::size_t> shared;
      for (const std::size_t corner : t) {
        if (std::find(other.begin(), other.end(), corner) != other.end()) shared.push_back(corner);
      }
      if (shared.size() == 2) edges_.emplace_back(shared[0], shared[1]);
    }
    seen.push_back(t);
  }
}

bool Cell::in_doubt(const Spot& point) const {
  for (std::size_t c = 0; c < 2; ++c) {
    if (point[c] < least_[c] - band_ || point[c] > most_[c] + band_) return false;
  }
  if (point[2] > most_[2]) return false;
  return std::any_of(edges_.begin(), edges_.end(), [&](const auto& edge) {
    return distance_in_plan(point, corners_[edge.first], corners_[edge.second]) <= band_;
  });
}

}  // namespace vqmath63::host
