// Texts as JSON and Markdown write them.
#pragma once

#include <string>
#include <string_view>

namespace vqmath63::host {

/// Whether a text is a number as JSON writes it: no sign but a minus, no zero or point in front.
bool is_json_number(std::string_view text);

/// A text in quotes, with what JSON does not let stand escaped. What is no UTF-8 becomes U+FFFD.
std::string json_quoted(std::string_view text);

/// A text within a cell of a Markdown table.
std::string markdown_cell(std::string_view text);

}  // namespace vqmath63::host
