"""Size, load time and memory of the library, and how long a clean build takes:
python3 bench/resources.py BUILD [OUT.json]

BUILD is the folder of a release build; vqmath63.dll is looked for beside it, in BUILD-windows."""
import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
LOAD = """
import ctypes, sys, time
begun = time.perf_counter()
ctypes.CDLL(sys.argv[1])
print(time.perf_counter() - begun)
"""
# What a job takes beside its arguments, which are there before it.
MEMORY = """
import pathlib, re, sys
import numpy as np, vqmath63
def memory(what):
    return int(re.search(what + r":\\s+(\\d+)", pathlib.Path("/proc/self/status").read_text())[1]) * 1024
statistics = vqmath63.Statistics()
x = np.random.default_rng(63).normal(100, 15, 10_000_000).astype("f4")
statistics.SumOfX(x)
pathlib.Path("/proc/self/clear_refs").write_text("5")  # the peak begins anew
before = memory("VmRSS")
result = statistics.Statistics(x) if sys.argv[1] == "Statistics" else statistics.RemoveNullsXYZ(-999.25, x, x, x)
print(memory("VmHWM") - before)
"""


def stripped_size(path):
    with tempfile.NamedTemporaryFile() as copy:
        shutil.copyfile(path, copy.name)
        tool = "x86_64-w64-mingw32-strip" if path.suffix == ".dll" else "strip"
        subprocess.run([tool, copy.name], check=True)
        return os.path.getsize(copy.name) / 1024


def said(script, *words, **environment):
    done = subprocess.run([sys.executable, "-c", script, *words], check=True, capture_output=True,
                          text=True, env={**os.environ, **environment})
    return float(done.stdout)


def accumulation_peak(build):
    """Of a process that accumulates a table of a million rows by ten columns, which has 40 MB."""
    words = [build / "bench/accumulate_bench", "--benchmark_filter=/1000000$", "--benchmark_format=json"]
    done = subprocess.run(words, check=True, capture_output=True, text=True)
    return json.loads(done.stdout)["benchmarks"][0]["process_peak_MB"]


def clean_build():
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["cmake", "-S", str(HERE.parent), "-B", folder, "-G", "Ninja",
                        "-DCMAKE_BUILD_TYPE=Release", "-DVQ_BUILD_TESTS=OFF"],
                       check=True, stdout=subprocess.DEVNULL)
        begun = time.perf_counter()
        subprocess.run(["cmake", "--build", folder, "-j2"], check=True, stdout=subprocess.DEVNULL)
        return time.perf_counter() - begun


def main():
    build = pathlib.Path(sys.argv[1])
    library = (build / "src/libvqmath63.so").resolve()
    dll = build.with_name(build.name + "-windows") / "src/vqmath63.dll"
    python = {"VQMATH63_LIBRARY": str(library), "PYTHONPATH": str(HERE.parent / "python")}
    figures = {"so_kb": stripped_size(library), "dll_kb": stripped_size(dll) if dll.exists() else None,
               "so_load_us": statistics.median(said(LOAD, str(library)) for _ in range(15)) * 1e6}
    for job in ("Statistics", "RemoveNullsXYZ"):
        figures[f"{job}_mb"] = said(MEMORY, job, **python) / 1e6
    figures["Accumulate_mb"] = accumulation_peak(build)
    figures["clean_build_s"] = clean_build()
    text = json.dumps(figures, indent=1)
    if sys.argv[-1].endswith(".json"):
        pathlib.Path(sys.argv[-1]).write_text(text)
    else:
        print(text)


main()
