// What vqhost does with files that a test has to make: long ones, and points worked out.
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

TEST_F(Vqhost, ReadsTheStandardInputAndShortensLongArrays) {
  std::string csv = "t,q\n";
  for (int i = 0; i < 100; ++i) csv += std::to_string(i) + ",1\n";
  write("long.csv", csv);
  const Outcome shortened = run("call ztIntegrate Integral @long.csv:t @long.csv:q");
  expect_in_order(shortened.out, {"99\n", "[0, 1, ", ", ..., 90, ", "99] (100 elements)"}, "short");
  const Outcome whole = run("call ztIntegrate Integral @long.csv:t @long.csv:q --all");
  expect_in_order(whole.out, {"xVals = [0, ", "49, 50, 51", ", 99]\n"}, "--all");
  const Outcome piped = run("accumulate - --start-data 2023-01-01 -o - <long.csv");
  EXPECT_EQ(lines_of(piped.out).size(), 5U) << piped.out << piped.err;
}

TEST_F(Vqhost, SummarisesLongColumns) {
  std::string many = "q\n";
  for (int i = 0; i < 400; ++i) many += "0\n";
  for (int i = 0; i < 120; ++i) many += "4\n";
  write("many.csv", many + "2\n");
  expect_in_order(run("statistics many.csv --histogram 4").out,
                  {"q: 521 values in 4 bins\n",
                   "     0.5    400  ##################################################\n",
                   "     1.5      0\n     2.5      1  #\n     3.5    120  ###############\n"},
                  "the histogram");
  expect_in_order(run("statistics many.csv --null 4").out, {"q       401    120  0.0049875"},
                  "the summary");
}

TEST_F(Vqhost, RefusesATableOfTooManyRows) {
  std::string many = "p,b\n";
  for (int i = 0; i <= 100'000; ++i) many += std::to_string(i) + ",1\n";
  write("t.csv", many);
  const Outcome outcome = run("volume-factor --dead t.csv --pressure 1");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  expect_in_order(outcome.err, {"t.csv: 100001 rows are more than the 100000 of a table"},
                  "errors");
}

TEST_F(Vqhost, WritesAFileWholeOrLeavesWhatWasThere) {
  std::string csv = "x,y\n";
  for (int i = 0; i < 5000; ++i) csv += std::to_string(i) + ",1\n";
  write("long.csv", csv);
  write("old.csv", "old\n");
  fs::create_symlink("old.csv", folder_ / "out.csv");
  const char* const full_disk = "trap '' XFSZ; ulimit -f 16;";
  const Outcome refused = run("derivative long.csv -o out.csv", full_disk);
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err, "vqhost: out.csv: cannot be written: File too large\n");
  EXPECT_EQ(contents(folder_ / "old.csv"), "old\n");
  EXPECT_EQ(run("derivative long.csv -o out.csv").out, "out.csv: 5000 rows\n");
  EXPECT_TRUE(fs::is_symlink(folder_ / "out.csv"));
  EXPECT_EQ(lines_of(contents(folder_ / "old.csv")).size(), 5001U);
  EXPECT_EQ(run("derivative long.csv -o /dev/full").err,
            "vqhost: /dev/full: cannot be written: No space left on device\n");
  const auto files = std::distance(fs::directory_iterator(folder_), fs::directory_iterator());
  EXPECT_EQ(files, 4);  // with err.txt: nothing is left lying about
}

// What lies beyond the data is said in one line, without the component's own before it.
TEST_F(Vqhost, RefusesInOneLineWhatLiesBeyondTheData) {
  write("year.csv", "date,q\n2023-01-01,0\n2024-01-01,2\n");
  EXPECT_EQ(run("accumulate year.csv --start 2024-01-01").err,
            "vqhost: the start of reporting, 2024-01-01, is not before the last row, 2024-01-01\n");
  EXPECT_EQ(run("accumulate year.csv --from-row 3").err,
            "vqhost: --from-row 3: the file has only 2 rows\n");
}

// What the help of the commands and the README show runs from a folder that has samples/, and says
// nothing of files that are not there.
TEST_F(Vqhost, ExamplesRunAsPrinted) {
  fs::create_symlink(VQ_SOURCES "/samples", folder_ / "samples");
  std::string shown = contents(VQ_SOURCES "/README.md");
  for (const std::string& line : lines_of(run("--help").out)) {
    const std::string name = line.substr(0, line.find(' ', 2));
    if (!name.starts_with("  ") || name.size() < 4 || name[2] == '-') continue;
    std::string help = run(name + " --help").out;
    for (std::size_t at = 0; (at = help.find("\n            -", at)) != help.npos;) {
      help.replace(at, 12, " ");  // an example that goes on
    }
    shown += help;
  }
  int ran = 0;
  for (const std::string& line : lines_of(shown)) {
    const bool printed = line.starts_with("$ vqhost ") || line.starts_with("Example") ||
                         line.starts_with("          vqhost ");
    const std::size_t at = line.find("vqhost ");
    if (!printed || at == line.npos) continue;
    const std::string words = line.substr(at + 7, line.find("   ", at) - at - 7);
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, 0) << words << "\n" << outcome.err;
    ++ran;
  }
  EXPECT_GE(ran, 30);
}

// Stopped while it writes, the program takes its unfinished file away.
TEST_F(Vqhost, LeavesNoUnfinishedFileWhenItIsStopped) {
  write("year.csv", "date,q\n2023-01-01,1\n2024-01-01,2\n");
  write("stop.sh",
        "\"$1\" accumulate year.csv --period minute -o out.csv & pid=$!\n"
        "while [ ! -e out.csv.part$pid ] && kill -0 $pid; do :; done\n"
        "kill -TERM $pid; wait $pid; [ $? = 143 ] && ls\n");
  EXPECT_EQ(run("", "sh stop.sh").out, "err.txt\nstop.sh\nyear.csv\n");
}

// Nor does it write over what somebody else has where its unfinished file would be.
TEST_F(Vqhost, LeavesAFileOfThatNameAlone) {
  write("year.csv", "date,q\n2023-01-01,1\n2024-01-01,2\n");
  const char* const before =
      "sh -c 'echo mine >out.csv.part$$; exec \"$0\" accumulate year.csv -o out.csv'";
  EXPECT_EQ(run("; cat out.csv.part*", before).out, "out.csv: 12 periods of 1 series\nmine\n");
}

// A table's rows are not kept until it is printed: kept, these would take 200 MB.
TEST_F(Vqhost, PrintsALongTableInLittleMemory) {
  write("year.csv", "date,q\n2023-01-01,1\n2024-01-01,2\n");
  const char* const before = "ulimit -v 150000;";
  if (run("--help", before).status != 0) GTEST_SKIP() << "sanitizers and emulators need more";
  const auto lines = lines_of(run("accumulate year.csv --period minute", before).out);
  ASSERT_EQ(lines.size(), 525605U);
  EXPECT_EQ(lines[525602], "2023-12-31 23:59  2024-01-01 00:00    0.0007     2");
  EXPECT_EQ(lines[525604], "rate x days                         365.0000   730");
}

// 100 x 100, its bottom at 0, its top from 10 (south) to 14 (north), on a map.
const char* const kFar =
    "x,y,z\n431000,6712000,10\n431100,6712000,10\n431100,6712100,14\n431000,6712100,14\n"
    "431000,6712000,0\n431100,6712000,0\n431100,6712100,0\n431000,6712100,0\n";

TEST_F(Vqhost, SeenObliquelyEveryPointIsAnsweredRightly) {
  write("far.csv", kFar);
  std::string points = "x,y,z\n";
  std::vector<std::string> want;
  for (int i = 0; i < 8000; ++i) {
    const double x = -7.3 + 6.1 * (i % 20);
    const double y = -4.9 + 5.7 * (i / 20 % 20);
    const double z = -3.1 + 0.93 * (i / 400);
    points += std::to_string(431000 + x) + "," + std::to_string(6712000 + y) + "," +
              std::to_string(z) + "\n";
    const bool inside = x > 0 && x < 100 && y > 0 && y < 100 && z > 0 && z < 10 + y / 25;
    want.push_back(inside ? "True" : "False");
  }
  write("grid.csv", points);
  const auto lines = lines_of(run("inside grid.csv far.csv --oblique --all -o -").out);
  ASSERT_EQ(lines.size(), want.size() + 1);
  for (std::size_t i = 0; i < want.size(); ++i) {
    EXPECT_EQ(fields_of(lines[i + 1]).back(), want[i]) << lines[i + 1];
  }
}

// Only a terminal is told how far a long file has been read, and keeps nothing of it.
TEST_F(Vqhost, TellsATerminalHowFarItHasRead) {
  if (std::getenv("VQHOST") != nullptr) GTEST_SKIP() << "needs the terminal of this system";
  std::string rows = "day,oil\n";
  for (int i = 0; i < 600'000; ++i) rows += std::to_string(40000 + i) + ",1.5\n";
  write("long.csv", rows);
  const std::string terminal = "on_terminal() { script -qec \"$*\" /dev/null; }; on_terminal";
  for (const std::string command : {"statistics long.csv",
                                    "accumulate long.csv --date-format serial --stamp begin "
                                    "--period year -o out.csv"}) {
    EXPECT_EQ(run(command).err.find("reading"), std::string::npos) << command;
    const std::string shown = run(command, terminal).out;
    expect_in_order(shown, {"\rreading long.csv: ", " %, ", " rows\r\033[K"}, command.c_str());
    EXPECT_EQ(shown.find("reading", shown.find("\033[K")), std::string::npos) << command;
  }
}

TEST_F(Vqhost, FindsCrossingsOnAMap) {
  write("far.csv", kFar);
  // Beside millions, y = 25.125 is kept: the top there is at 11.005.
  const Outcome far =
      run("crossing far.csv --oblique --from 431030.5,6712025.125,-5 --to 431030.5,6712025.125,15 "
          "-o -");
  EXPECT_EQ(far.err,
            "vqhost: the segment meets 2 triangles of the cell's surface; both its ends "
            "are outside\n");
  const double want[2][4] = {{431030.5, 6712025.125, 11.005, 0.80025},
                             {431030.5, 6712025.125, 0.0, 0.25}};
  const auto lines = lines_of(far.out);
  ASSERT_EQ(lines.size(), 3U);
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t c = 0; c < 4; ++c) {
      EXPECT_NEAR(number_in(fields_of(lines[i + 1]).at(c)), want[i][c], 2e-5) << lines[i + 1];
    }
  }
}

}  // namespace
}  // namespace vqmath63::host
