#!/usr/bin/env python3
"""check-report-page accepts a page of the host with the answers that it was made from, and finds each kind of mistake.

report_page_test.py CHECK SAMPLE"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

SAMPLE = sys.argv.pop()
CHECK = pathlib.Path(sys.argv.pop())

sys.dont_write_bytecode = True
sys.path.insert(0, str(CHECK.parent))
from report_page import answer_findings, structure_findings  # noqa: E402


def series(member, *values):
    entries = [{member: label, "Value": value} for label, value in values]
    return json.dumps({"Range": [0.0, 1.0], "Value": entries})


APPLICATIONS = [{"Name": name, "Icon": "", "Value": 11.111111640930176}
                for name in ("Finch Music", "Otter & Sons", "Heron", "Plover", "<script>alert(1)</script>", "x" * 10000)]
ANSWERS = {
    1: "209.891129",
    2: json.dumps(APPLICATIONS),
    3: "0.766103",
    4: series("Time", ("0:00", 0.0), ("1:00", 0.0), ("2:00", 0.02), ("3:00", 15.2)),
    5: series("Day", ("Sat", 288.46), ("Sun", 74.93)),
    6: series("Month", ("Oct", 4564.96), ("Nov", 3356.07)),
    7: "1",
}


class CheckReportPage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.page = subprocess.run([SAMPLE], capture_output=True, check=True).stdout.decode().replace("\r\n", "\n")

    def findings(self, page, answers=None):
        commands = [{"number": number, "text": text} for number, text in {**ANSWERS, **(answers or {})}.items()]
        return structure_findings(page) + answer_findings(page, {"commands": commands})

    def check(self, page):
        """Runs the script as a user does."""
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder)
            (path / "page.html").write_text(page, encoding="utf-8")
            commands = [{"number": number, "text": text} for number, text in ANSWERS.items()]
            (path / "answers.json").write_text(json.dumps({"commands": commands}), encoding="utf-8")
            return subprocess.run([sys.executable, CHECK, path / "page.html", "--answers", path / "answers.json"],
                                  capture_output=True, text=True, check=False)

    def planted(self, old, new):
        self.assertTrue(old in self.page, old)
        return self.findings(self.page.replace(old, new, 1))

    def test_accepts_the_page_of_the_host(self):
        self.assertEqual(self.findings(self.page), [])

    def test_ends_with_status_0_or_1(self):
        good = self.check(self.page)
        self.assertEqual((good.returncode, good.stderr), (0, ""))
        self.assertEqual(good.stdout, "check-report-page: page.html is in order, with the figures of the commands\n")
        bad = self.check(self.page.replace(">Supported<", ">Unknown<"))
        self.assertEqual((bad.returncode, bad.stderr), (1, ""))
        self.assertEqual(bad.stdout, "page.html: support: Unknown, command 7 has 1\n")

    def test_finds_mistakes_of_the_document(self):
        cases = {
            ("<body>", "<body><script>1</script>"): "has <script>",
            ("<body>", "<body onload='x'>"): "<body> has onload",
            ("<body>", '<body><img alt="" src="http://127.0.0.1/a.png">'): "<img> refers to http://127.0.0.1/a.png",
            ("<body>", '<body><img src="data:image/png;base64,AA==">'): "an image has no alt",
            ("default-src 'none'", "default-src *"): "another security policy",
            ("<!DOCTYPE html>", ""): "no document type",
            (":root {", "@import 'x';"): "the style sheet refers to a file",
            ('<html lang="en">', "<html>"): "<html> has no lang",
            ("<h1>Energy report</h1>", ""): "the first and only <h1> is missing",
            ("</h1>", "</h1><h3>More</h3>"): "<h3> follows <h1>",
            ('<h2 id="days"', '<h2 id="hours"'): "two elements have the id hours",
            ('id="days-desc"', 'id="other"'): "<svg> is labelled by days-desc, which does not exist",
            (' role="img" aria-labelledby="days-title days-desc"', ""): "a chart has no name",
            ('<th scope="row">Sat', "<th>Sat"): "a heading of a table has no scope",
            ("<caption ", "<p "): "a table has no caption",
            ("<title>Energy report of NOTEBOOK</title>", "<title></title>"): "the page has no title",
            ("</main>", "</section></main>"): "</section> ends <main>",
            ("</footer>", "x" * 200_000 + "</footer>"): "more than 200000",
        }
        for (old, new), message in cases.items():
            with self.subTest(message):
                self.assertIn(message, "\n".join(self.planted(old, new)))

    def test_finds_figures_that_are_not_those_of_the_commands(self):
        cases = {
            ('id="average">209.89', 'id="average">209.88'): "average: 209.88, command 1 has 209.891129",
            ('id="average">209.89', 'id="average">no data'): "average: no data, command 1 has 209.891129",
            ('id="trees">0.77', 'id="trees">0.76'): "trees: 0.76",
            ('id="formula">209.89', 'id="formula">209.99'): "formula: 209.99",
            ("&times; 365", "&times; 366"): "formula: 209.89 Wh × 366",
            (">Supported<", ">Not supported<"): "support: Not supported, command 7 has 1",
            ('<th scope="row">3:00', '<th scope="row">4:00'): "hours: labels",
            ("<td>288.46</td>", "<td>288.47</td>"): "days: Sat has 288.47, command 5 has 288.46",
            ("<td>4,564.96</td>", "<td>no data</td>"): "months: Oct has no data",
        }
        for (old, new), message in cases.items():
            with self.subTest(message):
                self.assertIn(message, "\n".join(self.planted(old, new)))

    def test_finds_charts_that_are_not_those_of_the_commands(self):
        chart = "chart days: "
        cases = {
            ('203">Sat</text>', '203">Sun</text>'): chart + "label Sun, not Sat",
            ('height="160"/><text class="value" x="25%" y="17">288', 'height="159"/><text class="value" x="25%" y="17">288'):
                chart + "the bar of Sat is 159.0 high, not 160.00",
            ('">288</text>', '">289</text>'): chart + "Sat shows 289, not 288.46",
            ('">15.2</text>', '">no data</text>'): "chart hours: 3:00 shows no data, not 15.2",
            ("<g><title>Sat: 288.46 Wh</title>", "<g></g><g><title>Sat: 288.46 Wh</title>"): chart + "3 columns for 2 values",
        }
        for (old, new), message in cases.items():
            with self.subTest(message):
                self.assertIn(message, "\n".join(self.planted(old, new)))
        # Without a bar, as for zero.
        self.assertIn("chart hours: the bar of 1:00 is 0.0 high",
                      "\n".join(self.findings(self.page, {4: ANSWERS[4].replace('"1:00", "Value": 0.0', '"1:00", "Value": 3.8')})))

    def test_finds_shares_that_are_not_those_of_the_commands(self):
        cases = {
            ("Heron", "Egret"): "application Heron is missing",
            ('class="rank">2<', 'class="rank">3<'): "has rank 3, not 2",
            (">11.11 %<", ">11.13 %<"): "rank 1 has 11.13 %",
            (">33.34 %<", ">33.35 %<"): "the shares add up to 100.01 %",
            ('class="bar" width="100%"', 'class="bar" width="90%"'): "the bar of Everything else has 90.0 %",
            ("Everything else</span>", "Others</span>"): "applications, command 2 has 6",
            ('id="applications-table"', 'id="other-table"'): "no applications, command 2 has 6",
        }
        for (old, new), message in cases.items():
            with self.subTest(message):
                if old == 'id="applications-table"':
                    page = self.page.replace('class="share"', 'class="none"')
                    self.assertIn(message, "\n".join(self.findings(page)))
                else:
                    self.assertIn(message, "\n".join(self.planted(old, new)))


if __name__ == "__main__":
    unittest.main()
