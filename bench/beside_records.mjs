// Sums monthly records of wells by quarter with a package of npm's, as bench/beside_records.py asks:
// node beside_records.mjs ENGINE IN.csv OUT.csv
import { createRequire } from "node:module";
const require = createRequire(process.cwd() + "/");
const [engine, input, output] = process.argv.slice(2);

if (engine === "duckdb") {
  const { DuckDBInstance } = require("@duckdb/node-api");
  const connection = await (await DuckDBInstance.create(":memory:")).connect();
  await connection.run(`
    COPY (SELECT well, date_trunc('quarter', date) AS quarter, sum(oil) AS oil, sum(gas) AS gas,
                 sum(water) AS water
          FROM read_csv('${input}') GROUP BY ALL ORDER BY well, quarter)
    TO '${output}' (HEADER)`);
} else {
  const pl = require("nodejs-polars");
  const column = pl.col;
  const frame = await pl
    .scanCSV(input)
    .withColumns(column("date").str.strptime(pl.Date, "%Y-%m-%d").dt.truncate("1q").alias("quarter"))
    .groupBy(["well", "quarter"])
    .agg(column("oil").sum(), column("gas").sum(), column("water").sum())
    .sort(["well", "quarter"])
    .collect();
  frame.writeCSV(output);
}
