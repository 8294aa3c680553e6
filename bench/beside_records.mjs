// Sums records of wells by month or quarter with a package of npm's, as bench/beside_records.py asks:
// node beside_records.mjs ENGINE IN.csv OUT.csv month|quarter
import { createRequire } from "node:module";
const require = createRequire(process.cwd() + "/");
const [engine, input, output, period] = process.argv.slice(2);

if (engine === "duckdb") {
  const { DuckDBInstance } = require("@duckdb/node-api");
  const connection = await (await DuckDBInstance.create(":memory:")).connect();
  await connection.run(`
    COPY (SELECT well, date_trunc('${period}', date) AS begin, sum(oil) AS oil, sum(gas) AS gas,
                 sum(water) AS water
          FROM read_csv('${input}') GROUP BY ALL ORDER BY well, begin)
    TO '${output}' (HEADER)`);
} else {
  const pl = require("nodejs-polars");
  const column = pl.col;
  const frame = await pl
    .scanCSV(input)
    .withColumns(column("date").str.strptime(pl.Date, "%Y-%m-%d").dt.truncate(period === "month" ? "1mo" : "1q").alias("begin"))
    .groupBy(["well", "begin"])
    .agg(column("oil").sum(), column("gas").sum(), column("water").sum())
    .sort(["well", "begin"])
    .collect();
  frame.writeCSV(output);
}
