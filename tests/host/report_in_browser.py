#!/usr/bin/env python3
"""Opens reports of vqhost in headless Chromium and looks at what it makes of them.

usage: report_in_browser.py VQHOST SAMPLES FOLDER

Pages and pictures are left in FOLDER, to be looked at. The last line tells checks and failures.
"""

import base64
import json
import os
import pathlib
import subprocess
import sys
import time


class Browser:
    """Chromium over the pipe of its DevTools protocol: file descriptors 3 and 4 of the browser."""

    def __init__(self, profile):
        to_browser, self.commands = os.pipe()
        self.answers, from_browser = os.pipe()

        def place_pipes():
            low, high = os.dup(to_browser), os.dup(from_browser)
            os.dup2(low, 3)
            os.dup2(high, 4)

        self.process = subprocess.Popen(
            ["chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
             "--no-first-run", f"--user-data-dir={profile}", "--remote-debugging-pipe", "about:blank"],
            preexec_fn=place_pipes, pass_fds=(3, 4), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.count, self.buffer, self.events, self.session = 0, b"", [], None
        target = self.ask("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.ask("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.ask(domain + ".enable")

    def read(self):
        while b"\0" not in self.buffer:
            self.buffer += os.read(self.answers, 1 << 20)
        line, self.buffer = self.buffer.split(b"\0", 1)
        return json.loads(line)

    def ask(self, method, **parameters):
        self.count += 1
        message = {"id": self.count, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.commands, json.dumps(message).encode() + b"\0")
        while True:
            answer = self.read()
            if answer.get("id") != self.count:
                self.events.append(answer)
            elif "error" in answer:
                raise RuntimeError(f"{method}: {answer['error']}")
            else:
                return answer["result"]

    def open(self, path, width=1200, dark=False, scripts=True, paper=False):
        self.events.clear()
        self.ask("Emulation.setScriptExecutionDisabled", value=not scripts)
        self.ask("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1,
                 mobile=width < 600)
        self.ask("Emulation.setEmulatedMedia", media="print" if paper else "",
                 features=[{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])
        self.ask("Page.navigate", url=path.as_uri())
        while not any(each.get("method") == "Page.loadEventFired" for each in self.events):
            self.events.append(self.read())

    def value(self, expression):
        answer = self.ask("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(answer["exceptionDetails"])
        return answer["result"].get("value")

    def picture(self, path, whole=True):
        shot = self.ask("Page.captureScreenshot", captureBeyondViewport=whole)
        path.write_bytes(base64.b64decode(shot["data"]))

    def printed(self, path):
        path.write_bytes(base64.b64decode(self.ask("Page.printToPDF", preferCSSPageSize=True)["data"]))

    def close(self):
        self.process.terminate()
        self.process.wait()


def luminance(colour):
    """Relative luminance of a colour after WCAG 2."""
    parts = [each / 255 for each in colour]
    linear = [each / 12.92 if each <= 0.04045 else ((each + 0.055) / 1.055) ** 2.4 for each in parts]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def contrast(a, b):
    light, dark = sorted((luminance(a), luminance(b)), reverse=True)
    return (light + 0.05) / (dark + 0.05)


# Linear RGB as seen without one of the cones (Machado, Oliveira and Fernandes, 2009, severity 1).
EYES = {
    "all cones": ((1, 0, 0), (0, 1, 0), (0, 0, 1)),
    "no red": ((0.152286, 1.052583, -0.204868), (0.114503, 0.786281, 0.099216), (-0.003882, -0.048116, 1.051998)),
    "no green": ((0.367322, 0.860646, -0.227968), (0.280085, 0.672501, 0.047413), (-0.011820, 0.042940, 0.968881)),
    "no blue": ((1.255528, -0.076749, -0.178779), (-0.078411, 0.930809, 0.147602), (0.004733, 0.691367, 0.303900)),
}


def seen(colour, eye):
    """A colour in CIE Lab as an eye sees it."""
    linear = [each / 255 / 12.92 if each <= 10.3 else ((each / 255 + 0.055) / 1.055) ** 2.4 for each in colour]
    r, g, b = (min(1, max(0, sum(w * c for w, c in zip(row, linear)))) for row in EYES[eye])
    xyz = ((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.9505, 0.2126 * r + 0.7152 * g + 0.0722 * b,
           (0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.089)
    fx, fy, fz = (each ** (1 / 3) if each > 0.008856 else 7.787 * each + 16 / 116 for each in xyz)
    return 116 * fy - 16, 500 * (fx - fy), 200 * (fy - fz)


# In the page: what is drawn, what sticks out, what lies over something else.
LOOK = """(() => {
  const rgb = (text) => text.match(/[0-9.]+/g).slice(0, 3).map(Number);
  const undrawn = [...document.querySelectorAll("path[data-series]")].filter((path) => {
    const box = path.getBoundingClientRect(), frame = path.ownerSVGElement.getBoundingClientRect();
    return getComputedStyle(path).stroke === "none" || !path.getAttribute("d")
      || (!path.classList.contains("dots") && path.getTotalLength() === 0)
      || box.left > frame.right || box.right + 0.5 < frame.left || box.top > frame.bottom + 0.5 || box.bottom + 0.5 < frame.top;
  }).map((path) => path.closest("figure").querySelector("h3").textContent + ": " + path.dataset.series);
  const over = [];
  for (const ticks of document.querySelectorAll(".ticks")) {
    const boxes = [...ticks.children].map((each) => [each.getBoundingClientRect(), each.textContent]).filter((each) => each[0].width);
    const upright = ticks.classList.contains("y");
    boxes.sort((a, b) => upright ? b[0].top - a[0].top : a[0].left - b[0].left);
    for (let i = 1; i < boxes.length; ++i) {
      if (upright ? boxes[i - 1][0].top < boxes[i][0].bottom - 2 : boxes[i - 1][0].right > boxes[i][0].left - 2)
        over.push(boxes[i - 1][1] + " " + boxes[i][1]);
    }
    for (const each of boxes) if (each[0].left < 0 || each[0].right > innerWidth) over.push(each[1] + " leaves the page");
  }
  const probe = document.createElement("i");
  document.body.append(probe);
  const colours = {};
  for (const name of ["paper", "ink", "soft", "s1", "s2", "s3", "s4", "s5", "s6", "s7", "s8"]) {
    probe.style.color = "var(--" + name + ")";
    colours[name] = rgb(getComputedStyle(probe).color);
  }
  probe.remove();
  return {
    paths: document.querySelectorAll("path[data-series]").length, undrawn, over, colours,
    figures: document.querySelectorAll("figure").length, buttons: document.querySelectorAll("button").length,
    sideways: document.documentElement.scrollWidth - document.documentElement.clientWidth,
    background: rgb(getComputedStyle(document.body).backgroundColor),
  };
})()"""

POINTED = """(() => {
  const figure = document.querySelector("#stack figure"), box = figure.querySelector("svg").getBoundingClientRect();
  figure.querySelector("svg").dispatchEvent(new PointerEvent("pointermove",
    {clientX: box.left + box.width * 0.001, clientY: box.top + 5, bubbles: true}));
  const cells = [...figure.querySelectorAll("tbody tr:first-child td")].map((each) => each.textContent);
  const tip = figure.querySelector(".tip").textContent;
  return cells.every((each) => tip.includes(each));
})()"""


class Looker:
    def __init__(self, browser):
        self.browser, self.checks, self.failures = browser, 0, 0

    def expect(self, holds, what):
        self.checks += 1
        if not holds:
            self.failures += 1
            print("FAILED:", what)

    def look(self, page, **view):
        where = f"{page.name} {view}"
        self.browser.open(page, **view)
        found = self.browser.value(LOOK)
        for what in ("undrawn", "over"):
            self.expect(not found[what], f"{where}: {what}: {found[what]}")
        self.expect(found["figures"] > 0 and found["paths"] >= found["figures"], f"{where}: nothing is drawn")
        self.expect(found["sideways"] <= 0, f"{where}: it scrolls sideways by {found['sideways']}")
        self.expect((found["buttons"] > 0) == view.get("scripts", True), f"{where}: {found['buttons']} buttons")
        said = [each for each in self.browser.events if each.get("method") in
                ("Runtime.consoleAPICalled", "Runtime.exceptionThrown", "Log.entryAdded")]
        asked = [each["params"]["request"]["url"] for each in self.browser.events
                 if each.get("method") == "Network.requestWillBeSent"]
        self.expect(not said, f"{where}: the console says {said}")
        self.expect(asked == [page.as_uri()], f"{where}: it asks for {asked}")
        return found

    def colours(self, found, where):
        paper = found["colours"].pop("paper")
        self.expect(paper == found["background"], f"{where}: {found['background']}")
        for name, colour in found["colours"].items():
            least = 2.4 if name[1:].isdigit() else 4.5
            self.expect(contrast(colour, paper) >= least, f"{where}: {name}: contrast {contrast(colour, paper):.2f}")
        series = [colour for name, colour in found["colours"].items() if name[1:].isdigit()]
        for eye in EYES:
            for i, one in enumerate(series):
                for k, other in enumerate(series[:i]):
                    apart = sum((a - b) ** 2 for a, b in zip(seen(one, eye), seen(other, eye))) ** 0.5
                    neighbours = i - k == 1
                    self.expect(apart >= (20 if neighbours else 12), f"{where}: {eye}: s{k + 1}, s{i + 1}: {apart:.1f} apart")


def main():
    host, samples, folder = (pathlib.Path(each).resolve() for each in sys.argv[1:])
    folder.mkdir(parents=True, exist_ok=True)
    field, fluid, records, table = (folder / each for each in ("field.html", "fluid.html", "records.html", "dead_oil.csv"))
    table.write_text("pressure,factor\n50,1.21\n120,1.18\n300,1.12\n")
    (folder / "points.csv").write_text("pressure\n100\n350\n")
    subprocess.run([host, "report", samples / "field_wells.csv", "--cumulative", "field_oil_cum", "--unit", "sm3",
                    "--period", "quarter", "--decline", "W-1,W-4", "--limit", "50", "-o", field], check=True)
    subprocess.run([host, "report", "--dead", table, "--points", folder / "points.csv", "--pressure-unit", "bar",
                    "-o", fluid], check=True)
    subprocess.run([host, "report", samples / "daily_records.csv", "--by", "well", "--volumes", "oil_vol,gas_vol",
                    "--stamp", "begin", "--empty", "zero", "-o", records], check=True)
    browser = Browser(folder / "profile")
    looker = Looker(browser)
    for page in (field, fluid, records):
        for dark in (False, True):
            found = looker.look(page, dark=dark)
            browser.picture(page.with_name(page.stem + ("-dark" if dark else "") + ".png"))
            looker.colours(found, "dark" if dark else "light")
        looker.look(page, width=390)
        browser.picture(page.with_name(page.stem + "-phone.png"))
        looker.look(page, width=768, scripts=False)
        looker.look(page, width=717, paper=True)  # A4 within its margins
        browser.open(page)
        browser.printed(page.with_suffix(".pdf"))
        looker.expect(page.with_suffix(".pdf").stat().st_size > 10_000, "nothing is printed")
        looker.expect(not browser.value("document.querySelectorAll('details[open]').length"), "print left tables open")
    browser.open(field)
    looker.expect(browser.value(POINTED), "the numbers under the pointer are not those of the table")
    browser.value("document.querySelector('.csv').open = true; document.querySelector('button').click()")
    time.sleep(0.5)
    looker.expect(browser.value("document.querySelector('button').textContent") != "Copy", "nothing is copied")
    looker.expect(browser.value("getSelection().toString()").startswith("start,end,days,"), "the CSV is not selected")
    browser.close()
    print(f"{looker.checks} checks, {looker.failures} failures")
    return 1 if looker.failures else 0


if __name__ == "__main__":
    sys.exit(main())
