// Long records: monthly sums of the sample's days are the operator's own however the file is
// written, and rates come to what ztAccumulate has for the same rows.
#include <sys/resource.h>

#include <functional>
#include <map>

#include "host/records/text_blocks.hpp"
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

const fs::path kSamples = fs::path(VQ_TEST_DATA) / ".." / ".." / "samples";
constexpr const char* kMonths = " --by well --volumes oil_vol,gas_vol,water_vol -o - ";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// A text of ASCII and letters up to U+00FF in bytes of another encoding.
std::string encoded(const std::string& utf8, std::size_t bytes, bool big) {
  std::string text = bytes == 1 ? "" : big ? "\xFE\xFF" : "\xFF\xFE";
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    char letter = utf8[i];
    if ((letter & 0x80) != 0) letter = static_cast<char>((letter & 3) << 6 | (utf8[++i] & 0x3F));
    if (bytes == 2 && big) text += '\0';
    text += letter;
    if (bytes == 2 && !big) text += '\0';
  }
  return text;
}

// With its lines in an order of their own, the header first.
std::string in_order(const std::string& text, const std::function<std::string(std::string)>& key) {
  auto lines = lines_of(text);
  std::stable_sort(lines.begin() + 1, lines.end(),
                   [&](const auto& a, const auto& b) { return key(a) < key(b); });
  std::string out;
  for (const std::string& line : lines) out += line + "\n";
  return out;
}

// As continental spreadsheets write it, with lines that are no rows.
std::string continental(const std::string& text) {
  std::string out = "# exported by hand\n";
  for (const std::string& line : lines_of(replaced(text, "\"test, separator 2\"", "test"))) {
    auto cells = fields_of(line + ",.");
    cells.pop_back();
    const bool header = cells[0] == "date";
    if (!header) {
      cells[0] = cells[0].substr(8) + "." + cells[0].substr(5, 2) + "." + cells[0].substr(0, 4);
    }
    for (std::size_t c = 0; c < cells.size(); ++c) {
      out += (c > 0 ? ";" : "") + replaced(cells[c], ".", header || c == 0 ? "." : ",");
    }
    out += "\n";
    if (header) out += "-;;;;h;%;bar;sm3;1000 sm3;sm3;\n";
  }
  return out;
}

// Every cell in quotes, some with so many lines in them that the file's middle, and the end of what
// is read first, is one of those.
std::string quoted(const std::string& text) {
  std::string out;
  for (const std::string& line : lines_of(replaced(text, "\"test, separator 2\"", "a\"\"b\"\"~"))) {
    out += "\"" + replaced(line, ",", "\",\"") + "\"\n";
  }
  return replaced(out, "~", "," + std::string(5000, '\n'));
}

struct Writing {
  const char* name;
  const char* options;
  std::function<std::string(const std::string&)> of;
};

const Writing kWritings[] = {
    {"as it is", "--stamp begin", [](const auto& text) { return text; }},
    {"named by the last day", "--stamp last", [](const auto& text) { return text; }},
    {"well by well", "--stamp begin",
     [](const auto& text) {
       return in_order(text, [](const auto& line) { return fields_of(line)[2]; });
     }},
    {"in no order", "--stamp begin --sort",
     [](const auto& text) {
       return in_order(text, [](const auto& line) { return line.substr(9); });
     }},
    {"continental", "--stamp begin --date-format DD.MM.YYYY", &continental},
    {"quoted", "--stamp begin", &quoted},
    {"UTF-16", "--stamp begin", [](const auto& text) { return encoded(text, 2, false); }},
    {"UTF-16, high byte first", "--stamp begin",
     [](const auto& text) { return encoded(text, 2, true); }},
    {"UTF-16 without a mark", "--stamp begin",
     [](const auto& text) { return encoded(text, 2, false).substr(2); }},
    {"a byte a letter", "--stamp begin", [](const auto& text) { return encoded(text, 1, false); }},
    {"no end of the last line", "--stamp begin",
     [](const auto& text) { return text.substr(0, text.size() - 1); }},
};

TEST_F(Vqhost, MonthlySumsOfDaysAreTheOperatorsOwn) {
  const std::string days = contents(kSamples / "daily_records.csv");
  std::map<std::string, std::string> wanted;  // well and month: the amounts
  for (const std::string& line : lines_of(contents(kSamples / "monthly_volumes.csv"))) {
    const auto fields = fields_of(line);
    wanted[fields[0] + fields[1].substr(0, 7)] = line;
  }
  ASSERT_EQ(wanted.size(), 22U);
  for (const Writing& writing : kWritings) {
    SCOPED_TRACE(writing.name);
    write("days.csv", writing.of(days));
    const Outcome outcome = run(std::string("accumulate days.csv") + kMonths + writing.options);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.err.find("gaps beside rows that follow each 1 day"), std::string::npos);
    const auto lines = lines_of(outcome.out);
    ASSERT_EQ(lines.size(), wanted.size());
    for (std::size_t i = 1; i < lines.size(); ++i) {
      const auto fields = fields_of(lines[i]);
      const auto amounts = fields_of(wanted[fields[0] + fields[1].substr(0, 7)]);
      ASSERT_EQ(amounts.size(), 5U) << lines[i];
      for (std::size_t s = 0; s < 3; ++s) {
        EXPECT_EQ(number_in(fields[4 + s]), number_in(amounts[2 + s])) << lines[i];
      }
    }
  }
}

// What the component makes of rates and cumulative values, records of one field come to as well.
TEST_F(Vqhost, RatesOfRecordsAreThoseOfTheComponent) {
  const std::string file = " '" + (kSamples / "field_wells.csv").string() + "' ";
  for (const std::string options : {"--period quarter", "--period week --frequency 3",
                                    "--period day", "--period year --columns W-2,W-5"}) {
    SCOPED_TRACE(options);
    const std::string line =
        "accumulate" + file + "--start 2015-01-01 -o - --cumulative field_oil_cum " + options;
    const auto wanted = lines_of(run(line).out);
    const Outcome outcome = run(line + " --gap hold");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const auto lines = lines_of(outcome.out);
    ASSERT_EQ(lines.size(), wanted.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const auto got = fields_of(lines[i]);
      const auto want = fields_of(wanted[i]);
      ASSERT_EQ(got.size(), want.size());
      for (std::size_t c = 0; c < got.size(); ++c) {
        const double value = number_in(want[c]);
        EXPECT_TRUE(
            got[c] == want[c] ||
            (c > 2 && i > 0 && std::fabs(number_in(got[c]) - value) <= 4e-7 * std::fabs(value)))
            << lines[i] << " instead of " << wanted[i];
      }
    }
  }
}

// Rows enough for many blocks of several threads: each well of 700 has 1 + its number every day.
TEST_F(Vqhost, TakesRecordsInBlocksOnAllThreads) {
  std::string text = "day,well,q\n";
  for (int day = 0; day < 600; ++day) {
    for (int well = 0; well < 700; ++well) {
      text += "20" + std::to_string(20 + day / 336) + "-" + std::to_string(10 + day % 3) + "-" +
              std::to_string(10 + day / 3 % 18) + ",well no. " + std::to_string(well) + "," +
              std::to_string(1 + well) + "\n";
    }
  }
  write("long.csv", text);
  const Outcome outcome =
      run("accumulate long.csv --by well --volumes q --stamp begin --step day --sort --twins sum "
          "--period year --frequency 10 -o -");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const auto lines = lines_of(outcome.out);
  ASSERT_EQ(lines.size(), 701U);
  for (std::size_t well = 0; well < 700; ++well) {
    const auto fields = fields_of(lines[well + 1]);
    EXPECT_EQ(fields[0], "well no. " + std::to_string(well));
    EXPECT_EQ(number_in(fields.back()), 600.0 * static_cast<double>(well + 1));
  }
}

TEST(TextBlocks, PiecesComeToTheTextAndTellHowFarItIsRead) {
  const fs::path file = kSamples / "daily_records.csv";
  TextBlocks blocks(file.string(), 30);  // in which not every row has room
  std::string text;
  std::size_t before = 0;
  for (TextPiece piece = blocks.next(); !piece.text.empty(); piece = blocks.next()) {
    text += piece.text;
    EXPECT_TRUE(piece.is_whole && piece.text.back() == '\n');
    EXPECT_GE(blocks.bytes_done(), text.size());
    before = blocks.bytes_done();
  }
  EXPECT_EQ(text, contents(file));
  EXPECT_EQ(before, fs::file_size(file));
  EXPECT_EQ(before, blocks.bytes());
}

// Ten times the rows of the same groups take no more memory.
TEST_F(Vqhost, MemoryGrowsWithGroupsAndNotWithRows) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "freed memory is kept";
#endif
  std::string rows;
  for (int i = 0; i < 400'000; ++i) {
    rows += "2020-01-01,well no. " + std::to_string(i % 1000) + ",1\n";
  }
  write("rows.csv", rows);
  const auto memory_of = [&](int times) {
    const Outcome outcome =
        run("accumulate pipe --by well --volumes q --stamp begin --step day --twins sum -o -",
            "rm -f pipe; mkfifo pipe; (echo date,well,q; for i in $(seq " + std::to_string(times) +
                "); do cat rows.csv; done) > pipe &");
    EXPECT_EQ(lines_of(outcome.out).size(), 1001U) << outcome.err;
    EXPECT_NE(outcome.out.find("," + std::to_string(400 * times) + "\n"), outcome.out.npos);
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
  };
  const auto few = memory_of(1);
  EXPECT_LT(memory_of(10), few + few / 4);
}

}  // namespace
}  // namespace vqmath63::host
