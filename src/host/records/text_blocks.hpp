// The text of a file of any length, piece by piece, read ahead of what is done with it.
#pragma once

#include <cstddef>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/text_source.hpp"

namespace vqmath63::host {

/// A piece of a text. Some bytes behind it can be read (kCellPadding).
struct TextPiece {
  std::shared_ptr<const std::string> memory;  ///< that `text` lies in
  std::string_view text;
  bool is_whole = true;   ///< false where the last row is cut: it is too long to be one
  bool is_quoted = true;  ///< whether there may be quotes in it
};

/// Hands out a text as pieces of whole rows: each ends with a line's end that stands in no quotes;
/// the last line is given one where it has none. A row of more than 16 MB, which has a quote that
/// nothing closes, is handed out as far as it is known.
class TextBlocks {
 public:
  /// `path` "-" is the standard input; a piece has some `size` bytes, or as many as its one row.
  TextBlocks(const std::string& path, std::size_t size);

  /// The next piece; an empty one at the end.
  TextPiece next();

  /// Of the source, as far as it is read.
  std::size_t bytes_done() const { return bytes_done_; }
  /// 0 where that is not known beforehand.
  std::size_t bytes() const { return source_.bytes(); }

 private:
  struct Chunk {
    std::shared_ptr<std::string> text;
    std::size_t bytes_done;
    bool more;
  };
  Chunk read();

  TextSource source_;
  std::size_t size_;
  std::string rest_;  // of the last chunk: the beginning of a row
  std::size_t bytes_done_ = 0;
  std::vector<std::shared_ptr<std::string>> used_;
  std::future<Chunk> ahead_;
  bool ended_ = false;
};

/// Cuts pieces of whole rows into parts of whole rows: where each part ends, at most `parts` of
/// them. Behind the last one there may be the beginning of a row. A text without quotes, where that
/// is known, need not be looked through.
std::vector<std::size_t> row_ends(std::string_view text, std::size_t parts, bool is_quoted = true);

}  // namespace vqmath63::host
