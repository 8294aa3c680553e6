#include "host/records/text_blocks.hpp"

#include <algorithm>
#include <cstring>

#include "host/data/quick_cells.hpp"

namespace vqmath63::host {
namespace {

// Room before a chunk for the row that the chunk before it has left.
constexpr std::size_t kRoom = std::size_t{1} << 16;
constexpr std::size_t kLongestRow = std::size_t{1} << 24;

// Whether a quote at a place opens a field: before it stands what ends one, and blanks.
bool opens(std::string_view text, std::size_t at) {
  while (at > 0 && text[at - 1] == ' ') --at;
  return at == 0 || std::strchr(",;\t|\n", text[at - 1]) != nullptr;
}

}  // namespace

std::vector<std::size_t> row_ends(std::string_view text, std::size_t parts, bool is_quoted) {
  std::vector<std::size_t> ends;
  std::size_t part = 1;
  const auto target = [&] { return text.size() / parts * part; };
  std::size_t at = 0;    // outside of quotes
  std::size_t last = 0;  // behind the last row's end
  while (at < text.size()) {
    std::size_t quote = is_quoted ? text.find('"', at) : std::string_view::npos;
    while (quote < text.size() && !opens(text, quote)) quote = text.find('"', quote + 1);
    const std::string_view plain = text.substr(0, quote);
    for (; part < parts; ++part) {
      const std::size_t end = plain.find('\n', std::max(target(), at));
      if (end == std::string_view::npos) break;
      ends.push_back(end + 1);
    }
    const std::size_t end = plain.rfind('\n');
    if (end != std::string_view::npos && end >= at) last = end + 1;
    if (quote >= text.size()) break;
    at = text.find('"', quote + 1);
    while (at < text.size() - 1 && text[at + 1] == '"') at = text.find('"', at + 2);
    if (at >= text.size()) break;  // the quotes end with a later piece
    ++at;
  }
  while (!ends.empty() && ends.back() >= last) ends.pop_back();
  ends.push_back(last);
  ends.erase(std::unique(ends.begin(), ends.end()), ends.end());
  return ends;
}

TextBlocks::TextBlocks(const std::string& path, std::size_t size) : source_(path), size_(size) {
  ahead_ = std::async(std::launch::async, [this] { return read(); });
}

TextBlocks::Chunk TextBlocks::read() {
  Chunk chunk;
  const auto free = std::find_if(used_.begin(), used_.end(),
                                 [](const auto& text) { return text.use_count() == 1; });
  if (free == used_.end()) {
    chunk.text = std::make_shared<std::string>();
    chunk.text->reserve(kRoom + size_ + kCellPadding);
    used_.push_back(chunk.text);
  } else {
    chunk.text = *free;
  }
  chunk.text->resize(kRoom);
  chunk.more = source_.read(*chunk.text, size_);
  chunk.bytes_done = source_.bytes_done();
  return chunk;
}

TextPiece TextBlocks::next() {
  while (!ended_) {
    const Chunk chunk = ahead_.get();
    ended_ = !chunk.more;
    bytes_done_ = chunk.bytes_done;
    if (!ended_) ahead_ = std::async(std::launch::async, [this] { return read(); });
    std::string& text = *chunk.text;
    std::size_t begin = kRoom;
    if (rest_.size() <= kRoom) {
      begin -= rest_.size();
      std::copy(rest_.begin(), rest_.end(), text.begin() + static_cast<std::ptrdiff_t>(begin));
    } else {
      text.insert(kRoom, rest_);
    }
    if (ended_ && text.size() > begin && text.back() != '\n') text += '\n';
    std::string_view piece = std::string_view(text).substr(begin);
    const bool is_quoted = piece.find('"') != std::string_view::npos;
    std::size_t end = ended_ ? piece.size() : row_ends(piece, 1, is_quoted).back();
    const bool is_whole = end > 0 || piece.size() < kLongestRow;
    if (!is_whole) end = piece.size();
    rest_.assign(piece.substr(end));
    if (end == 0 && !ended_) continue;
    text.reserve(text.size() + kCellPadding);
    piece = std::string_view(text).substr(begin, end);
    return {chunk.text, piece, is_whole, is_quoted};
  }
  return {};
}

}  // namespace vqmath63::host
