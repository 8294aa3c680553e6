// The program vqhost as a user meets it: command lines in, exit status, output and messages out.
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

TEST_F(VqhostCommands, AnswersCommandLines) {
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
  expect_all(table);
}

TEST_F(VqhostCommands, SummarisesColumns) {
  // oil: sum 40, sum of squares 232, so that s = 32. gas without its nulls is 4 1 3 2: s = 5.
  write("s.csv",
        "date,oil,note,gas\n2023-01-01,2,a,4\n2023-01-02,4,b,-999.25\n2023-01-03,4,c,1\n"
        "2023-01-04,4,d,3\n2023-01-05,5,e,\n2023-01-06,5,f,2\n2023-01-07,7,g,-999.25\n"
        "2023-01-08,9,h,-999.25\n");
  write("bad.csv", "t,q\n0,1\n1,abc\n");
  write("dates.csv", "t,note\n2023-01-01,a\n");
  write("huge.csv", "q\n3e38\n3e38\n");
  write("beyond.csv", "t,q\n0,1\n1,1e39\n");
  write("nulls.csv", "oil,gas\n1,-9\n3,-9\n");
  write("tenth.csv", "q\n0.1\n100000\n");
  std::string many = "q\n";
  for (int i = 0; i < 400; ++i) many += "0\n";
  for (int i = 0; i < 120; ++i) many += "4\n";
  write("many.csv", many + "2\n");
  const std::string oil =
      "column  n  nulls  mean  sd_n    sd_n1  min  q1  median  q3  max\n"
      "oil     8      0     5     2  2.13809    2   4     4.5   5    9\n";
  const std::string null = " --null -999.25 --empty-as -999.25";
  const Row table[] = {
      {"statistics s.csv --columns oil", 0, {oil}, {}},
      {"statistics s.csv --columns OIL,2,oil", 0, {oil}, {}},
      {"statistics - --columns oil <s.csv", 0, {oil}, {}},
      {"statistics s.csv" + null,
       0,
       {"column  n  nulls  mean      sd_n      sd_n1  min   q1  median  q3  max\n"
        "oil     8      0     5         2    2.13809    2    4     4.5   5    9\n"
        "gas     4      4   2.5  1.118034  1.2909944    1  1.5     2.5   3    4\n"},
       {"column 'date' holds no numbers and is left out", "column 'note' holds no numbers"}},
      {"statistics s.csv --columns gas,oil --null 9 --empty-as 9",
       0,
       {"\ngas     7      1 ", "\noil     7      1 "},
       {}},
      // A null is compared as a Single, as the cells are.
      {"statistics tenth.csv --null 0.1",
       0,
       {"q       1      1  100000     0      0  100000  100000  100000  100000  100000\n"},
       {}},
      {"statistics s.csv --columns oil --histogram 4",
       0,
       {oil + "\noil: 8 values in 4 bins\n  centre  count\n   2.875      1  #\n"
              "   4.625      5  #####\n   6.375      1  #\n   8.125      1  #\n"},
       {}},
      // 400 is 50 characters, 120 is 15, and 1 is not lost.
      {"statistics many.csv --histogram 4",
       0,
       {"q: 521 values in 4 bins\n", "\n     0.5    400  " + std::string(50, '#') + "\n",
        "     1.5      0\n     2.5      1  #\n     3.5    120  " + std::string(15, '#') + "\n"},
       {}},
      // Nothing is left of a column.
      {"statistics nulls.csv --null -9 --histogram 1",
       0,
       {"oil     2      0     2     1  1.4142135    1   1       2   2    3\n"
        "gas     0      2     -     -          -    -   -       -   -    -\n",
        "oil: 2 values in 1 bin\n  centre  count\n       2      2  ##\n\ngas: 0 values\n"},
       {}},
      {"statistics tenth.csv --columns q --null 0.1 --histogram 2",
       0,
       {"q: 1 value in 2 bins\n", "  100000      1  #\n", "  100000      0\n"},
       {}},
      {"statistics dates.csv --columns t", 1, {}, {"dates.csv:2: column 1 (t): '2023-01-01' is"}},
      {"statistics many.csv --null 4", 0, {"q       401    120  0.0049875"}, {}},
      {"statistics dates.csv", 1, {}, {"dates.csv: there is no column of numbers"}},
      {"statistics bad.csv", 1, {}, {"vqhost: bad.csv:3: column 2 (q): 'abc' is not a number"}},
      {"statistics bad.csv --columns t", 0, {"t       2      0   0.5   0.5"}, {}},
      {"statistics s.csv", 1, {}, {"s.csv:6: column 4 (gas): the value is missing (--empty-as"}},
      {"statistics beyond.csv", 1, {}, {"beyond.csv:3: column 2 (q): 1e+39 is too large for a S"}},
      {"statistics s.csv --columns water", 1, {}, {"there is no column 'water' (columns: date,"}},
      {"statistics none.csv", 1, {}, {"vqhost: none.csv: No such file or directory"}},
      // The sum is no Single: what needs no sum is told all the same.
      {"statistics huge.csv --histogram 2",
       1,
       {"q       2      0     -     -      -  3e+38  3e+38   3e+38  3e+38  3e+38\n",
        "q: 2 values in 2 bins\n", "3e+38      2  ##\n", "3e+38      0\n"},
       {"vqhost: Error:Overflow (No.6) In [ztStatistics (Code) (BasicStatistics)]",
        "vqhost: column 'q': BasicStatistics did not succeed: qOK is False"}},
      {"statistics", 2, {}, {"FILE"}},
      {"statistics s.csv --null x", 2, {}, {"--null: 'x' is not a number"}},
      {"statistics s.csv --null 1e39", 2, {}, {"--null: 1e+39 is too large for a Single"}},
      {"statistics s.csv --empty-as -1e39", 2, {}, {"--empty-as: -1e+39 is too large for a S"}},
      {"statistics s.csv --histogram 0", 2, {}, {"--histogram: '0' is not a whole number"}},
      {"statistics s.csv --histogram 1001", 2, {}, {"--histogram: 1001 bins are more than 1000"}},
      {"statistics --help", 0, {"--histogram", "Examples: vqhost statistics"}, {}},
  };
  expect_all(table);
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
