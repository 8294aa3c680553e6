#include "host/report/page.hpp"

#include "host/report/markup.hpp"
#include "host/report/page_parts.hpp"

namespace vqmath63::host {
namespace {

std::string element(const char* name, const std::string& text) {
  return "<" + std::string(name) + ">" + escaped(text) + "</" + name + ">\n";
}

}  // namespace

void Page::section(const std::string& name, const std::string& title) {
  if (!sections_.empty()) body_ += "</section>\n";
  body_ += "<section" + attribute("id", name) + ">\n" + element("h2", title);
  sections_.emplace_back(name, title);
}

void Page::paragraph(const std::string& text) {
  body_ += element("p", text);
}

void Page::list(const std::vector<std::string>& items) {
  body_ += "<ul>\n";
  for (const std::string& item : items) body_ += element("li", item);
  body_ += "</ul>\n";
}

void Page::key_figures(const std::vector<std::pair<std::string, std::string>>& figures) {
  body_ += "<dl class=\"key-figures\">\n";
  for (const auto& [what, number] : figures) {
    body_ += "<div>" + element("dt", what) + element("dd", number) + "</div>\n";
  }
  body_ += "</dl>\n";
}

void Page::figure(const Figure& figure) {
  body_ += "<figure>\n<figcaption>" + element("h3", figure.title);
  if (!figure.note.empty()) body_ += element("p", figure.note);
  const int columns = columns_of_picture();
  const std::string picture =
      figure.chart.markup(figure.title, columns, figure.table.is_whole(room_));
  PageRoom::use(room_.pictures, picture.size());
  body_ += "</figcaption>\n" + picture;
  body_ += figure.table.markup(room_) + "</figure>\n";
}

// Screens show a panel in some hundred columns; the less room there is left, the fewer they are.
int Page::columns_of_picture() const {
  const int columns = in_panels_ ? 500 : 1000;
  if (room_.pictures > PageRoom::kPictures / 2) return columns;
  return room_.pictures > PageRoom::kPictures / 5 ? columns / 4 : 100;
}

void Page::begin_panels() {
  in_panels_ = true;
  body_ += "<div class=\"panels\">\n";
}

void Page::end_panels() {
  in_panels_ = false;
  body_ += "</div>\n";
}

void Page::table(const DataTable& table) {
  body_ += "<div class=\"alone\">" + table.open_markup(room_) + "</div>\n";
}

std::string Page::text(const std::string& closing) const {
  std::string text =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"
      // Whatever a cell of the file holds, the page asks nobody for anything.
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
      "style-src 'unsafe-inline'; script-src 'unsafe-inline'\"/>\n"
      "<meta name=\"color-scheme\" content=\"light dark\"/>\n";
  text += element("title", title_) + "<style>\n" + kPageStyle +
          "</style>\n</head>\n<body>\n<header>" + element("h1", title_) + element("p", subtitle_);
  if (sections_.size() > 1) {
    text += "<nav>";
    for (const auto& [name, title] : sections_) {
      text += "<a" + attribute("href", "#" + name) + ">" + escaped(title) + "</a>\n";
    }
    text += "</nav>";
  }
  text += "</header>\n<main>\n" + body_ + (sections_.empty() ? "" : "</section>\n") + "</main>\n";
  return text + "<footer>" + element("p", closing) + "</footer>\n<script>\n" + kPageScript +
         "</script>\n</body>\n</html>\n";
}

}  // namespace vqmath63::host
