// The commands that work out curves: tables of functions, fits, derivatives, volume factors.
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

TEST_F(VqhostCommands, TabulatesFunctions) {
  const std::string erf = "table ztMathLib Erf ";
  const std::string squared = "table ztMathLib squared ";
  const Row table[] = {
      // Abramowitz and Stegun (1964), tables 7.1, 9.1 and 9.8 (times e); I(2, 3) are binomials.
      {erf + "-1 1 0.5",
       0,
       {"xValue ", "Erf(xValue)\n", "  -1    -0.84270079", "  -0.5  -0.5204998", "\n   0     0\n",
        "   0.5   0.520499877", "   1     0.84270079"},
       {}},
      {"table ztMathLib Jbn 2 0 4 2",
       0,
       {" Jbn(2, X)\n0  0\n2  0.35283402", "\n4  0.36412814"},
       {}},
      {"table ztMathLib jBN x 2 2 1 -1",
       0,
       {"n ", "Jbn(n, 2)\n2  0.35283402", "1  0.5767248077"},
       {}},
      {"table ztMathLib Ibn n=x X=1 0 0 1", 0, {"n ", "Ibn(n, 1)\n0  1.26606587"}, {}},
      {"table ztMathLib Max 5 4 6 1 -o -", 0, {"n2,\"Max(5, n2)\"\n4,5\n5,5\n6,6\n"}, {}},
      {"table ztMathLib BetaI X=1 A=2 3 4 1 -o -", 0, {"B,\"BetaI(2, B, 1)\"\n3,1\n4,1\n"}, {}},
      {"table ztStatistics Quartile [1,2,3,4,9] 1 3 1 -o -", 0, {"\n1,2\n2,3\n3,4\n"}, {}},
      // By the default tolerance of 1e-6: 1.001e-5 is not negligible beside 4, 1e-6 is.
      {"table ztMathLib ArithmeticDiff 4 3.99999 3.999999 0.000009 -o -",
       0,
       {"(4, sReal2)\"\n3.99999,1.001358e-05\n3.999999,0\n"},
       {}},
      {"table ztIntegrate Nope 0 1 1", 1, {}, {"ztIntegrate has no member 'Nope'"}},
      // Steps: the end belongs to them but for rounding, and each has the decimals of its kind.
      {"table ztMathLib Max -9 0 0.3 0.1 -o -", 0, {"\n0,0\n0.1,0.1\n0.2,0.2\n0.3,0.3\n"}, {}},
      {"table ztMathLib Max -9 1 -0.2 -0.3 -o -",
       0,
       {"\n1,1\n0.7,0.7\n0.4,0.4\n0.1,0.1\n-0.2,"},
       {}},
      {"table ztMathLib Max -9 0 1 0.3 -o out.csv", 0, {"out.csv: 4 rows\n"}, {}},
      {"table ztMathLib Max 0 1e9 1000000000.3 0.1 -o -",
       0,
       {"000000000.2,1000000000.2\n1000000000.3,1000000000.3\n"},
       {}},
      {squared + "7 7 -1 -o -", 0, {"X,Squared(X)\n7,49\n"}, {}},
      {"table ztMathLib dFloor -1.5e308 1.5e308 1.5e308 -o -",
       0,
       {"\n-1.5e+308,-1.5e+308\n0,0\n1.5e+308,1.5e+308\n"},
       {}},
      {squared + "0 1 0", 2, {}, {"STEP is 0"}},
      {squared + "0 1 -0.1", 2, {}, {"a STEP of -0.1 leads away from 1"}},
      {squared + "1 0 0.1", 2, {}, {"a STEP of 0.1 leads away from 0"}},
      {squared + "0 1 1e-5", 2, {}, {"more than 100000 rows"}},
      {squared + "1e17 100000000000000100 4", 2, {}, {"a STEP of 4 is lost beside"}},
      {squared + "0 nan 1", 2, {}, {"TO: 'nan' is not a finite number"}},
      {squared + "0 1", 2, {}, {"FROM, TO and STEP must follow"}},
      // What can run.
      {"table ztMathLib Factorial 0 1 0.5", 2, {}, {"n is a whole number: 0.5 is none"}},
      {"table ztIntegrate IntegerationRule 0 1 1", 2, {}, {"has no number left that could run"}},
      {"table ztMathLib Jbn 0 1 1", 2, {}, {"Jbn needs n too, before FROM (Function Jbn("}},
      {"table ztMathLib Max x X 0 1 1", 2, {}, {"x stands for one argument"}},
      {"table ztMathLib Arithmetic 0 1 1", 2, {}, {"Arithmetic is no function with one value"}},
      // Failures of single values.
      {"table ztMathLib Ln 1 0 -1",
       0,
       {"1      0\n", "0      1e+308\n"},
       {"1 value of 1e308: Ln is"}},
      {"table ztMathLib Ceil 2e9 3e9 1e9 -o -",
       1,
       {"X,Ceil(X)\n2e+09,2000000000\n3e+09,\n"},
       {"Error:Overflow (No.6)", "Ceil reported an error in 1 row"}},
      {"table ztMathLib Factorial 1e9 3e9 1e9", 1, {}, {"Factorial(n) at 3e+09: Overflow"}},
  };
  expect_all(table);
}

TEST_F(VqhostCommands, FitsLines) {
  write("line.csv", "t,oil rate\n1,3\n2,5\n3,7\n");
  write("grow.csv", "x,q,none\n0,2,0\n1,4,\n2,8,x\n");
  write("power.csv", "y,x\n8,1\n4,2\n2,4\n");
  write("log.csv", "x,y\n1,1\n2.718281828,3\n7.389056099,5\n");
  write("gaps.csv", "d,q\n2020-01-31,8\n2020-02-01,\n2020-02-02,4\n2020-02-03,0\n2020-02-04,2\n");
  write("same.csv", "x,y\n5,1\n5,2\n");
  write("one.csv", "x,y\n5,1\n");
  write("huge.csv", "x,y\n1,1e20\n2,3e20\n");
  write("far.csv", "x,y\n45000,10\n45001,9\n45002,8\n");
  write("years.csv", "year,q\n2015,10\n2015.25,9\n2015.5,8\n2015.75,7.5\n2016,6\n2016.25,5\n");
  const Row table[] = {
      {"fit line.csv",
       0,
       {"linear fit, 3 rows: 'oil rate' = A + B t\nA  1\nB  2\nR  1\n'oil rate' = 1 + 2 t\n"},
       {}},
      {"fit line.csv --x 'OIL RATE' --y t --type l", 0, {"\nt = -0.5 + 0.5 'oil rate'\n"}, {}},
      {"fit grow.csv --type EXPONENTIAL",
       0,
       {"exponential fit, 3 rows: ln q = A + B x\nA  0.69314", "\nB  0.69314",
        "\nR  1\nq = 2 * exp(0.693147 x)\n"},
       {}},
      {"fit grow.csv --type e", 0, {"q = 2 * exp(0.693147 x)\n"}, {}},
      {"fit power.csv --x x --y y --type power",
       0,
       {"power fit, 3 rows: ln y = A + B ln x\nA  2.0794", "\nB  -1\nR  -1\ny = 8 * x^(-1)\n"},
       {}},
      {"fit power.csv --x 2 --y 1 --type P", 0, {"polynomial fit", "y = 8 * x^(-1)\n"}, {}},
      {"fit log.csv --type Logarithmic", 0, {": y = A + B ln x\n", "\ny = 1 + 2 ln x\n"}, {}},
      // 8, 4 and 2 on days 0, 2 and 4.
      {"fit gaps.csv --skip --type exponential",
       0,
       {"3 rows: ln q", "q = 8 * exp(-0.346574 d)\nwith d in days since 2020-01-31\n"},
       {"vqhost: 2 rows left out"}},
      {"fit gaps.csv", 1, {}, {"gaps.csv:3: column 2 (q): the value is missing (--skip leaves"}},
      {"fit grow.csv --type power", 1, {}, {"grow.csv:2: column 1 (x): 0 is not above 0, and the"}},
      {"fit grow.csv --type power --skip", 0, {"2 rows", "q = 4 * x^1\n"}, {"1 row left out"}},
      {"fit grow.csv --y none --skip", 1, {}, {"grow.csv:4: column 3 (none): 'x' is not a n"}},
      {"fit line.csv --y 3", 1, {}, {"there is no column '3' (columns: t, oil rate)"}},
      {"fit line.csv --y t", 2, {}, {"column 't' is given twice"}},
      {"fit line.csv --type cubic", 2, {}, {"--type: 'cubic' is none of linear, logarithmic, exp"}},
      {"fit line.csv --type ''", 2, {}, {"--type: '' is none of"}},
      {"fit same.csv", 1, {}, {"same.csv: the values of 'x' are all the same: there is no line"}},
      {"fit one.csv", 1, {}, {"one.csv: a fit needs 2 rows; there is 1"}},
      {"fit huge.csv",
       1,
       {},
       {"Error:Overflow (No.6)", "the fit failed: its sums leave the range"}},
      {"fit far.csv", 1, {}, {"the fit failed: what the values vary by is lost"}},
      {"fit years.csv", 0, {"B  -3.72"}, {"in double precision B is -3.94286; take an offset"}},
  };
  expect_all(table);
}

TEST_F(VqhostCommands, DifferentiatesCurves) {
  write("square.csv", "x,y\n0,0\n1,1\n3,9\n6,36\n");
  write("days.csv", "q,date\n0,2020-02-28\n6,2020-03-01\n,2020-03-02\n9,2020-03-03\n");
  write("back.csv", "x,y\n0,0\n1,\n2,1\n2,9\n");
  write("huge.csv", "x,y\n0,0\n1e-300,1e300\n");
  const Row table[] = {
      // 2x inside, chords at the ends; the second derivative is 2, and a twelfth of it inside.
      {"derivative square.csv",
       0,
       {"x   y  d(y)/d(x)\n0   0          1\n1   1          2\n3   9          6\n6  36          "
        "9\n"},
       {}},
      {"derivative square.csv --order 2 -o -",
       0,
       {"x,y,d2(y)/d(x)2\n0,0,2\n1,1,0.1666666666666666", "\n3,9,0.1666666666666666", "\n6,36,2\n"},
       {"a twelfth of the second derivative"}},
      {"derivative days.csv --x date --y q --skip -o -",
       0,
       {"date,q,d(q)/d(date)\n2020-02-28,0,3\n2020-03-01,6,2.25\n2020-03-03,9,1.5\n"},
       {"vqhost: 1 row left out"}},
      {"derivative square.csv -o d.csv", 0, {"d.csv: 4 rows\n"}, {}},
      {"derivative square.csv -o square.csv", 2, {}, {"-o names the input file itself"}},
      {"derivative days.csv --x 2 --y 1",
       1,
       {},
       {"days.csv:4: column 1 (q): the value is missing"}},
      {"derivative back.csv --skip",
       1,
       {},
       {"back.csv:5: column 1 (x): 2 is not above the value of the"}},
      {"derivative huge.csv", 1, {}, {"Error:Overflow (No.6)", "FirstDerivative did not succeed"}},
      {"derivative huge.csv --order 2", 1, {}, {"huge.csv: a derivative of order 2 needs 3 rows"}},
      {"derivative square.csv --order 3", 2, {}, {"--order: 1 or 2 is wanted"}},
  };
  expect_all(table);
}

// Curves from 100 and 200 on; the last row stands beyond the points that are read.
const char* const kLive =
    "primary,pressure,factor\n1,100,1.25\n1,200,1.125\n1,300,1\n"
    "3,200,1.75\n3,300,1.5\n3,400,1.375\n3,500,1.3125\n";

TEST_F(VqhostCommands, WorksOutVolumeFactors) {
  write("live.csv", kLive);
  write("other.csv", "n;bo;p;rs\n1;1.25;100;1\n2;1;300;1\n3;0.5;400;1\n");
  write("mixed.csv", "pressure,primary,bo\n1,2,3\n");
  write("dead.csv", "pressure,factor\n100,1.5\n300,1.25\n700,1.125\n");
  write("water.csv", "p,b,c\n100,2,0.0009765625\n");
  write("in.csv", "well,pressure,primary\n7,100,2\n8,250,1\n9,450,3\n6,0,5\n");
  write("bad.csv", "primary,pressure\n1,100\n2,1e39\n");
  const std::string live = "volume-factor --live live.csv ";
  const Row table[] = {
      // Half way between the curves saturation is at 150, and (1.25 + 1.75) / 2 below it.
      {live + "--primary 2 --pressure 100",
       0,
       {"factor  1.5\nstate   saturated: the saturation pressure is 150\ncurves  1 and 3\n"},
       {}},
      {live + "--primary 1 --pressure 250",
       0,
       {"factor  1.0625\n", "undersaturated, 150 above"},
       {}},
      // 100 above: 200 on the lower curve, 1.125, and 300 on the upper one, 1.5.
      {live + "--primary 2 --pressure 250", 0, {"factor  1.3125\n"}, {}},
      // The upper curve's segment is found with the lower one's 250: 1.75 - 150 / 400.
      {live + "--primary 2 --pressure 300", 0, {"factor  1.21875\n"}, {}},
      // Beyond the points read, 200 to 400, their chord: 1.75 - 250 * 0.375 / 200.
      {live + "--primary 3 --pressure 450",
       0,
       {"factor  1.28125\n",
        "note    the curve of 3 is read from 200 to 400: its chord is extended",
        "the table's last row is no point"},
       {}},
      {live + "--primary 5 --pressure 0",
       0,
       {"factor  2.25\n", "from 1 to 3: the nearest two"},
       {}},
      {"volume-factor --live other.csv --columns RS,3,bo --primary 9 --pressure 200",
       0,
       {"factor  1.125\n", "curves  1\n", "from 1 to 1: the only one is taken"},
       {}},
      {live + "--points in.csv",
       0,
       {"primary  pressure   factor\n      2       100  1.5\n      1       250  1.0625\n"
        "      3       450  1.28125\n"
        "      5         0  2.25\n"},
       {"vqhost: for 2 points the table is extended"}},
      {live + "--points in.csv --point-columns 3,well -o -",
       0,
       {"primary,well,factor\n2,7,1.5\n1,8,1.25\n3,9,1.75\n5,6,2.25\n"},
       {"for 1 point the table is extended"}},
      {live + "--points - -o out.csv <in.csv", 0, {"out.csv: 4 rows\n"}, {"for 2 points"}},
      {"volume-factor --dead dead.csv --pressure 200", 0, {"1.375\nrows    at 100 and 300\n"}, {}},
      {"volume-factor --dead dead.csv --pressure 1100",
       0,
       {"factor  1\nrows    at 300 and 700\nnote    the table goes from 100 to 700: its nearest"},
       {}},
      {"volume-factor --dead dead.csv --points dead.csv -o -",
       0,
       {"pressure,factor\n100,1.5\n300,1.25\n700,1.125\n"},
       {}},
      // 2 (1 + 1/4 + 1/32).
      {"volume-factor --water water.csv --pressure 356",
       0,
       {"  2.5625\nreference        2 at 100\n"},
       {}},
      // X = 1e38 / 1024 has no Single square.
      {"volume-factor --water water.csv --pressure 1e38",
       1,
       {},
       {"Error:Overflow (No.6)", "no factor: qOK"}},
      {"volume-factor --pressure 1", 2, {}, {"one table is wanted: --live, --dead or --water"}},
      {live + "--dead dead.csv --pressure 1", 2, {}, {"one table is wanted"}},
      {live + "--pressure 1", 2, {}, {"--primary is missing, for live oil"}},
      {live + "--primary 1", 2, {}, {"--pressure is missing, or --points"}},
      {live + "--primary nan --pressure 1", 2, {}, {"--primary: a number is wanted"}},
      {live + "--primary 1 --pressure 1e39",
       2,
       {},
       {"--pressure: 1e+39 is too large for a Single"}},
      {live + "--primary 1 --points in.csv", 2, {}, {"--points stands for --primary and --pres"}},
      {live + "--points in.csv -o live.csv", 2, {}, {"-o names the input file itself"}},
      {live + "--primary 1 --pressure 1 -o out.csv", 2, {}, {"-o and --point-columns go with"}},
      {"volume-factor --dead dead.csv --primary 1 --pressure 1", 2, {}, {"is for live oil only"}},
      {"volume-factor --live mixed.csv --primary 1 --pressure 1",
       1,
       {},
       {"mixed.csv: which columns are primary, pressure, factor? --columns COL,... says it"}},
      {live + "--columns 1,2 --primary 1 --pressure 1",
       2,
       {},
       {"--columns: 3 columns must be given"}},
      {live + "--points bad.csv -o -", 1, {}, {"bad.csv:3: column 2 (pressure): 1e+39 is too la"}},
      {"volume-factor --help", 0, {"primary,pressure,factor: a row an entry", "Examples:"}, {}},
  };
  expect_all(table);
}

TEST_F(Vqhost, RefusesMalformedTablesBeforeAnyNumber) {
  const struct {
    const char* option;
    std::string table;
    const char* message;
  } rows[] = {
      {"live", "r,p,b\n", "t.csv: the file has a header and no rows"},
      {"live", "r,p\n1,2\n", "t.csv: there is no column '3' (columns: r, p)"},
      {"live", "r,p,b\n1,2,1\n1,x,1\n", "t.csv:3: column 2 (p): 'x' is not a number"},
      {"live", "r,p,b\n1,2,1\n1,3,nan\n", "t.csv:3: column 3 (b): the value is missing\n"},
      {"live", "r,p,b\n1,2,1\n,3,1\n", "t.csv:3: column 1 (r): the value is missing\n"},
      {"live", "r,p,b\n1,2,1\n1,1e39,1\n", "t.csv:3: column 2 (p): 1e+39 is too large for a Sin"},
      {"live", "r,p,b\n1,2,1\n1,3,0\n", "t.csv:3: column 3 (b): a factor of 0 is not above 0"},
      {"live", "r,p,b\n1,2,1\n1,2,1\n",
       "t.csv:3: column 2 (p): a pressure of 2 is not above the 2 of"},
      {"live", "r,p,b\n1,16777216,1\n1,16777217,1\n",
       "t.csv:3: column 2 (p): a pressure of 16777217 is"},
      {"live", "r,p,b\n1,2,1\n2,3,1\n1,4,1\n1,5,1\n",
       "t.csv:4: column 1 (r): a primary value of 1 stan"},
      {"live", "r,p,b\n1,2,1\n1,3,1\n2,4,1\n", "t.csv:4: column 1 (r): the last curve has one row"},
      {"dead", "p,b\n1,1\n", "t.csv:2: column 1 (p): the table has one row and needs two"},
      {"dead", "p,b\n1,1\n3,1\n2,1\n", "t.csv:4: column 1 (p): a pressure of 2 is not above the 3"},
      {"dead", "p,b\n1,1\n3,-1\n", "t.csv:3: column 2 (b): a factor of -1 is not above 0"},
      {"water", "p,b,c\n1,1,0\n2,1,0\n", "t.csv:3: column 1 (p): a water table has one row"},
      {"water", "p,b,c\n1,0,0\n", "t.csv:2: column 2 (b): a factor of 0 is not above 0"},
  };
  write("points.csv", "primary,pressure\n1,2\n");
  const auto refuses = [&](const std::string& option, const std::string& message) {
    const Outcome outcome = run("volume-factor --" + option + " t.csv --points points.csv -o -");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    expect_in_order(outcome.err, {message}, "the error stream");
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.table);
    write("t.csv", row.table);
    refuses(row.option, row.message);
  }
  std::string many = "p,b\n";
  for (int i = 0; i <= 100'000; ++i) many += std::to_string(i) + ",1\n";
  write("t.csv", many);
  refuses("dead", "t.csv: 100001 rows are more than the 100000 of a table");
}

}  // namespace
}  // namespace vqmath63::host
