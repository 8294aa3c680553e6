// The program vqhost as a user meets it: command lines in, exit status, output and messages out.
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

struct Row {
  std::string arguments;
  int status;
  std::vector<std::string> out;  // texts that the output has, one after the other
  std::vector<std::string> err;  // the same of the messages; none: nothing is said
};

TEST_F(Vqhost, AnswersCommandLines) {
  write("f.csv", "date,oil,note\n2023-01-01,0,a\n2023-02-01,10,b\n2023-03-01,20,c\n");
  write("n.csv", "t,q\n0,0\n1,2\n2,4\n");
  write("steps.csv", "t,q\n0,0\n5,1\n4,1\n");
  write("back.csv", "t,q\n5,0\n4,1\n6,1\n");
  write("gap.csv", "t,q\n0,0\n1,\n2,4\n");
  write("text.csv", "date,oil\n2023-01-01,1\n2023-02-01,abc\n");
  write("huge.csv", "t,q\n0,0\n1,1e39\n");
  const std::string integral = "call ztIntegrate Integral ";
  const std::string rows = "call ztAccumulate Accumulate '[[0,5],[1,20],[2,30]]' ";
  const Row table[] = {
      // What there is.
      {"classes", 0, {"ztIntegrate  ", "ztAccumulate  ", "ztAnalyseInfo"}, {}},
      {"members ztintegrate",
       0,
       {"Property Let IntegrationRule(", "\n    Sets the rule",
        "\nFunction Integral(ByRef xVals() As Single, ByRef yVals() As Single) As Single\n    "},
       {}},
      {"members vq140Analyse.ztAccumulate",
       0,
       {"Property Let RateArray(ByRef value() As Boolean)", "Property Get Period() As String\n",
        "Sub Accumulate(ByRef dArr(,) As Single, ByRef dAccumulate(,) As Single, ByRef qOK As "
        "Boolean)\n"},
       {}},
      {"members ztAnalyseInfo",
       0,
       {"Optional ByRef LOGFILE As String = \"\"", "Sub CloseDown()"},
       {}},
      {"members ztNothing", 1, {}, {"vqhost: there is no class 'ztNothing' (classes: zt"}},
      {"--version", 0, {"vqmath63 v6.3.2436 "}, {}},
      {"--help", 0, {"accumulate", "Example: vqhost"}, {}},
      {"classes --help", 0, {"Example: vqhost classes"}, {}},
      {"members --help", 0, {"Example: vqhost members"}, {}},
      {"call --help", 0, {"Example: vqhost call"}, {}},
      {"accumulate --help", 0, {"--frequency", "Examples: vqhost accumulate"}, {}},
      {"", 2, {}, {"Subcommands:"}},
      {"nonsense", 2, {}, {"vqhost: ", "nonsense", "--help"}},
      // Calls: 0, 1, 4 over 0, 1, 2 is 3 by trapezia, 8/3 by Simpson, 5 by the backward rule.
      {integral + "[0,1,2] [0,1,4]", 0, {"3\nxVals = [0, 1, 2]\nyVals = [0, 1, 4]\n"}, {}},
      {integral + "'[0, 1, 2]' [0,1,4] --set IntegrationRule=2", 0, {"2.6666667\n"}, {}},
      {integral + "--set integrationrule=4 yvals=[0,1,4] XVALS=[0,1,2]",
       0,
       {"5\nxVals = [0, 1, 2]\n"},
       {}},
      {"call ztintegrate INTEGRAL [0,1] yVals=[-1,-3]", 0, {"-2\n"}, {}},
      {integral + "@n.csv:t @n.csv:2", 0, {"4\n"}, {}},
      {integral + "@f.csv:date @f.csv:oil --set IntegrationRule=4", 0, {"870\n"}, {}},
      {integral + "[0,1,2] [0,1]",
       1,
       {"0\n"},
       {"vqhost: Error:Subscript out of range (No.9) In [", "vqhost: Integral reported an error"}},
      {integral + "[0,1] [0,1e39]", 2, {}, {"yVals: 1e+39 is too large for a Single"}},
      {integral + "[0,x] [0,1]", 2, {}, {"vqhost: xVals: 'x' is not a number"}},
      {integral + "[0,1 [0,1]", 2, {}, {"vqhost: xVals: '[0,1' is not a list"}},
      {integral + "[0,,1] [0,1,2]", 2, {}, {"an element of '[0,,1]' is missing"}},
      {integral + "[0] [0] [0]", 2, {}, {"Integral takes 2 arguments"}},
      {integral + "[0] xVals=[0]", 2, {}, {"xVals: given twice"}},
      {integral + "@f.csv @f.csv:oil", 2, {}, {"one column is wanted"}},
      {"call ztAccumulate Accumulate @n.csv --set Period=day --set StartDate=2023-01-01 --set "
       "StartData=2023-01-01",
       0,
       {"  0  0\n  1  2\n  2  4\n", "  1  2\n  2  4\nqOK = True\n"},
       {}},
      {"call ztAccumulate Accumulate @f.csv", 1, {}, {"f.csv:2: column 3 (note): 'a' is neither"}},
      {integral + "@f.csv:note [0]", 1, {}, {"f.csv:2: column 3 (note): 'a' is neither"}},
      {integral + "@gap.csv:t @gap.csv:q", 1, {}, {"gap.csv:3: column 2 (q): the value is mi"}},
      {integral + "@gap.csv:t @gap.csv:q --empty-as 2", 0, {"4\n"}, {}},
      {integral + "--nope", 2, {}, {"vqhost: there is no option --nope"}},
      {"call ztIntegrate Nope", 1, {}, {"ztIntegrate has no member 'Nope'"}},
      {"call Nope Integral", 1, {}, {"there is no class 'Nope'"}},
      {"call ztIntegrate Integral [1] [1] --set Nope=1", 1, {}, {"no property 'Nope'"}},
      {"call ztIntegrate IntegrationRule 3e10", 1, {}, {"vqhost: Overflow"}},
      {"call ztAccumulate Period", 0, {"Month\n"}, {}},
      {"call ztAccumulate Period --set Period=12", 0, {"12\n"}, {}},
      {"call ztAccumulate Frequency --set Frequency=3", 0, {"3\n"}, {}},
      {"call ztAccumulate Rates --set Rates=false", 0, {"False\n"}, {}},
      {"call ztAccumulate Rates --set Rates=perhaps", 2, {}, {"'perhaps' is neither true nor"}},
      {"call ztAccumulate StartDate --set 'StartDate=1850-03-01 06:30'",
       0,
       {"1850-03-01 06:30\n"},
       {}},
      {"call ztAccumulate StartDate --set StartDate=1850-02-30", 2, {}, {"is not a date"}},
      {"call ztAnalyseInfo DLLVersion - StartupMsg=hello false", 2, {}, {"StartupMsg: given tw"}},
      {"call ztAnalyseInfo DLLVersion my.log hello false",
       0,
       {"vqmath63 v", "LOGFILE = my.log\nStartupMsg = hello\nqLogToFile = False\n"},
       {"vqhost: vqmath63 v", " hello: OK\n"}},
      {"call ztAnalyseInfo DLLVersion StartupMsg=hello",
       0,
       {"LOGFILE = vqmath63.txt\nStartupMsg = hello\nqLogToFile = True\n"},
       {" hello: OK\n"}},
      {"call ztAnalyseInfo DLLVersion", 0, {"LOGFILE = vqmath63.txt\n", "qLogToFile = True"}, {}},
      // Months from 31 January: 28 days at 20, 31 at 30.
      {rows + "--set DataPeriod=month --set StartDate=2023-01-31 --set StartData=2023-01-31",
       0,
       {"dArr = rows 1 to 3, columns 1 to 2\n  0   5\n  1  20\n  2  30\n",
        "dAccumulate = rows 1 to 2, columns 1 to 2\n  28  20\n  59  30\nqOK = True\n"},
       {}},
      {rows + "--set RateArray=[true,false] --set Period=day --set StartDate=2023-01-01 --set "
              "StartData=2023-01-01",
       0,
       {"  1  20\n  2  30\nqOK = True\n"},
       {}},
      {rows + "--set Period=fortnight",
       1,
       {"dAccumulate = (empty)\nqOK = False\n"},
       {"vqhost: Accumulate did not succeed: qOK is False"}},
      {"call ztAccumulate Accumulate '[[0,5],[1]]'", 2, {}, {"dArr: its rows differ in length"}},
      // Accumulation: what is wrong with the line, the file or the settings.
      {"accumulate", 2, {}, {"FILE"}},
      {"accumulate none.csv", 1, {}, {"vqhost: none.csv: No such file or directory"}},
      {"accumulate f.csv --start 2023-13-01", 2, {}, {"--start: '2023-13-01' is not a date"}},
      {"accumulate f.csv --frequency 0", 2, {}, {"--frequency: '0' is not a whole number"}},
      {"accumulate f.csv --time month", 2, {}, {"holds dates, which need no period word"}},
      {"accumulate f.csv --columns water", 1, {}, {"no column 'water' (columns: date, oil, note)"}},
      {"accumulate f.csv --columns note", 1, {}, {"f.csv:2: column 3 (note): 'a' is not a numb"}},
      {"accumulate f.csv --columns date", 2, {}, {"column 'date' is the time"}},
      {"accumulate f.csv -o ./f.csv", 2, {}, {"-o names the input file itself"}},
      {"accumulate f.csv --columns oil -o none/out.csv", 1, {}, {"none/out.csv: cannot be writ"}},
      {"accumulate f.csv --columns oil --period fortnight",
       1,
       {},
       {"vqhost: --period 'fortnight' is no period word; these are: minute, hour"}},
      {"accumulate f.csv --columns oil --period ''", 1, {}, {"--period '' is no period word"}},
      {"accumulate n.csv --start-data 2023-01-01 --time moon",
       1,
       {},
       {"vqhost: Error:Invalid procedure call or argument (No.5)", "--time 'moon' is no period"}},
      {"accumulate f.csv --columns oil --start 2023-03-01",
       1,
       {},
       {"the start of reporting, 2023-03-01, is not before the last row, 2023-03-01"}},
      {"accumulate f.csv --columns oil --from-row 4", 1, {}, {"the file has only 3 rows"}},
      {"accumulate f.csv --columns oil --from-row 3", 1, {}, {"span no time"}},
      {"accumulate n.csv", 2, {}, {"holds numbers: --start-data DATE must say"}},
      {"accumulate steps.csv --start-data 2023-01-01",
       1,
       {},
       {"steps.csv:4: column 1 (t): 4 lies before the time of the row above, 5"}},
      {"accumulate back.csv --start-data 2023-01-01", 1, {}, {"back.csv:3: column 1 (t): 4 lies"}},
      {"accumulate back.csv --start-data 2023-01-01 --from-row 2",
       0,
       {"2023-01-05   2023-01-07"},
       {}},
      {"accumulate gap.csv --start-data 2023-01-01", 1, {}, {"gap.csv:3: column 2 (q): the val"}},
      {"accumulate text.csv", 1, {}, {"text.csv:3: column 2 (oil): 'abc' is not a number"}},
      {"accumulate huge.csv --start-data 2023-01-01",
       1,
       {},
       {"huge.csv:3: column 2 (q): 1e+39 is too large for a Single"}},
      // And when all is well: a table with the volumes at its foot.
      {"accumulate f.csv",
       0,
       {"start ", "end ", "days", "oil\n", "mean\n---", "2023-01-01   2023-02-01    31    10\n",
        "2023-02-01   2023-03-01    28    20\n---", "rate x days", "59   870\n"},
       {"vqhost: column 'note' holds no numbers and is left out"}},
      {"accumulate f.csv --columns 2 -o out.csv", 0, {"out.csv: 2 periods of 1 series\n"}, {}},
  };
  for (const Row& row : table) {
    SCOPED_TRACE("vqhost " + row.arguments);
    const Outcome outcome = run(row.arguments);
    EXPECT_EQ(outcome.status, row.status) << outcome.err;
    expect_in_order(outcome.out, row.out, "the output");
    expect_in_order(outcome.err, row.err, "the error stream");
    if (row.err.empty()) {
      EXPECT_EQ(outcome.err, "");
    }
    if (row.status == 2) {
      EXPECT_EQ(outcome.out, "");
    }
  }
}

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

}  // namespace
}  // namespace vqmath63::host
