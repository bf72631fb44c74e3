"""The page of `wattleaf_host report`, read and checked without a browser.

read_page() returns what the page shows; structure_findings() looks at the document, answer_findings() compares it
with the answers of the commands. Both return texts, one for each mistake; none means that all is well."""

import html.parser
import json
import math
import re

LARGEST_PAGE = 200_000
POLICY = "default-src 'none'; style-src 'unsafe-inline'; img-src data:; base-uri 'none'; form-action 'none'"
SUPPORT = {"1": "Supported", "0": "Not supported", "-1": "Firmware update required"}
SERIES = {4: ("hours", "Time"), 5: ("days", "Day"), 6: ("months", "Month")}
VOID = {"meta", "img", "link", "br", "hr", "input", "base", "rect", "line"}
NAME_CHARS = 60


class Node:
    def __init__(self, tag, attributes, parent):
        self.tag, self.attributes, self.parent = tag, dict(attributes), parent
        self.children = []

    def all(self, tag=None, **wanted):
        """All nodes below this one; `class_` stands for class."""
        wanted = {name.rstrip("_"): value for name, value in wanted.items()}
        for child in self.children:
            if isinstance(child, Node):
                if tag in (None, child.tag) and all(child.attributes.get(n) == v for n, v in wanted.items()):
                    yield child
                yield from child.all(tag, **wanted)

    def one(self, tag=None, **wanted):
        return next(self.all(tag, **wanted), None)

    def text(self):
        parts = [child if isinstance(child, str) else child.text() for child in self.children]
        return re.sub(r"\s+", " ", "".join(parts)).strip()


class Reader(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.root = self.open = Node("document", {}, None)
        self.mistakes = []

    def handle_starttag(self, tag, attributes):
        names = [name for name, _ in attributes]
        if len(names) != len(set(names)):
            self.mistakes.append(f"<{tag}> has an attribute twice")
        node = Node(tag, attributes, self.open)
        self.open.children.append(node)
        if tag not in VOID:
            self.open = node

    def handle_startendtag(self, tag, attributes):
        self.open.children.append(Node(tag, attributes, self.open))

    def handle_endtag(self, tag):
        if tag in VOID:
            return
        if self.open.tag != tag:
            self.mistakes.append(f"</{tag}> ends <{self.open.tag}>")
        if self.open.parent is not None:
            self.open = self.open.parent

    def handle_data(self, data):
        self.open.children.append(data)


def read_page(text):
    reader = Reader()
    reader.feed(text)
    reader.close()
    return reader.root, reader.mistakes


# ----- the document

def size_findings(text):
    without_icons = re.sub(r'src="data:[^"]*"', "", text)
    size = len(without_icons.encode())
    return [f"{size} bytes without icons, more than {LARGEST_PAGE}"] if size > LARGEST_PAGE else []


def independence_findings(root):
    policy = root.one("meta", **{"http-equiv": "Content-Security-Policy"})
    if policy is None or policy.attributes.get("content") != POLICY:
        yield "another security policy"
    for tag in ("script", "link", "iframe", "object", "embed", "base", "form", "input", "video", "audio", "foreignobject"):
        if root.one(tag) is not None:
            yield f"has <{tag}>"
    for node in root.all():
        for name, value in node.attributes.items():
            if name.startswith("on"):
                yield f"<{node.tag}> has {name}"
            if name in ("src", "href", "xlink:href", "srcset", "action") and not value.startswith("data:image/png;base64,"):
                yield f"<{node.tag}> refers to {value[:60]}"
    for style in root.all("style"):
        if re.search(r"@import|url\(", style.text()):
            yield "the style sheet refers to a file"


def heading_findings(root):
    levels = [int(node.tag[1]) for node in root.all() if re.fullmatch(r"h[1-6]", node.tag)]
    if levels.count(1) != 1 or levels[:1] != [1]:
        yield "the first and only <h1> is missing"
    for before, after in zip(levels, levels[1:]):
        if after > before + 1:
            yield f"<h{after}> follows <h{before}>"


def reader_findings(root):
    """What people need who hear the page."""
    document = root.one("html")
    if document is None or not document.attributes.get("lang"):
        yield "<html> has no lang"
    if not (root.one("title") and root.one("title").text()):
        yield "the page has no title"
    ids = [node.attributes["id"] for node in root.all() if "id" in node.attributes]
    for name in {name for name in ids if ids.count(name) > 1}:
        yield f"two elements have the id {name}"
    for node in root.all():
        for name in node.attributes.get("aria-labelledby", "").split():
            if name not in ids:
                yield f"<{node.tag}> is labelled by {name}, which does not exist"
        if node.tag == "img" and "alt" not in node.attributes:
            yield "an image has no alt"
        if node.tag == "svg" and "aria-hidden" not in node.attributes and not (
                node.attributes.get("role") == "img" and node.attributes.get("aria-labelledby")):
            yield "a chart has no name"
        if node.tag == "th" and "scope" not in node.attributes:
            yield "a heading of a table has no scope"
        if node.tag == "table" and node.one("caption") is None:
            yield "a table has no caption"


def structure_findings(text):
    root, mistakes = read_page(text)
    if not text.startswith("<!DOCTYPE html>"):
        mistakes.append("no document type")
    return [*mistakes, *size_findings(text), *independence_findings(root), *heading_findings(root),
            *reader_findings(root)]


# ----- the figures

def number(text):
    return float(text.replace(",", "").removesuffix(" %"))


def shown(root, name):
    node = root.one(id=name)
    return node.text() if node else f"no element {name}"


def differs(text, value, tolerance=0.00501):
    """Whether a printed figure is another than this value rounded to two digits. Without data it is 0."""
    try:
        printed = 0.0 if text == "no data" else number(text)
    except ValueError:
        return True
    return abs(printed - value) > max(tolerance, abs(value) * 1e-9)


def figure_findings(root, answers):
    for command, name in ((1, "average"), (3, "trees")):
        if differs(shown(root, name), float(answers[command])):
            yield f"{name}: {shown(root, name)}, command {command} has {answers[command]}"
    formula = re.match(r"(\S+) Wh × 365 × 3 ÷ 1000 ÷ 300$", shown(root, "formula"))
    if formula is None or differs(formula[1], float(answers[1])):
        yield f"formula: {shown(root, 'formula')}"
    if shown(root, "support") != SUPPORT.get(answers[7]):
        yield f"support: {shown(root, 'support')}, command 7 has {answers[7]}"


def table_rows(root, name):
    table = root.one("table", id=f"{name}-table")
    body = table.one("tbody") if table else None
    return [[cell.text() for cell in row.children if isinstance(cell, Node)] for row in body.all("tr")] if body else []


def chart_of(root, name):
    return root.one("svg", **{"aria-labelledby": f"{name}-title {name}-desc"})


def column_findings(name, column, label, value, scale):
    """One column of a chart; `scale` is pixels for each watt-hour."""
    texts = {node.attributes.get("class", "").split(" ")[0]: node.text() for node in column.all("text")}
    if texts.get("label") != label:
        yield f"chart {name}: label {texts.get('label')}, not {label}"
    bar = column.one("rect", class_="bar")
    height = float(bar.attributes["height"]) if bar else 0.0
    expected = abs(value) * scale
    if value != 0.0:
        expected = max(expected, 2.0)
    if abs(height - expected) > 0.02:
        yield f"chart {name}: the bar of {label} is {height} high, not {expected:.2f}"
    printed = texts.get("value", "0" if texts.get("nodata") == "no data" else "missing")
    if printed != "<0.1" and differs(printed, value, 0.0501 if abs(value) < 99.95 else 0.501):
        yield f"chart {name}: {label} shows {printed}, not {value}"


def series_findings(root, answers):
    for command, (name, member) in SERIES.items():
        entries = [(entry[member], entry["Value"]) for entry in json.loads(answers[command])["Value"]]
        rows = table_rows(root, name)
        if [row[0] for row in rows] != [label for label, _ in entries]:
            yield f"{name}: labels {[row[0] for row in rows]}, command {command} has {[label for label, _ in entries]}"
            continue
        for row, (label, value) in zip(rows, entries):
            if differs(row[2], value):
                yield f"{name}: {label} has {row[2]}, command {command} has {value}"
        chart = chart_of(root, name)
        columns = list(chart.all("g")) if chart else []
        if len(columns) != len(entries):
            yield f"chart {name}: {len(columns)} columns for {len(entries)} values"
            continue
        values = [value for _, value in entries]
        span = max(0.0, *values) - min(0.0, *values)
        for column, (label, value) in zip(columns, entries):
            yield from column_findings(name, column, label, value, 160.0 / span if span else 0.0)


def share_rows(root):
    """Rank, name, width of the bar and share of each row of the applications."""
    rows = []
    for row in (root.one("table", id="applications-table") or root).all("tr"):
        bar, share = row.one("rect"), row.one("td", class_="share")
        if bar is not None and share is not None:
            rows.append((row.one("td", class_="rank").text(), row.one("th").text(),
                         float(bar.attributes["width"].removesuffix("%")), number(share.text())))
    return rows


def comparable(name):
    """A name as the page can show it; None for one that it changes."""
    plain = re.sub(r"\s+", " ", name).strip()
    return plain if plain.isprintable() and 0 < len(name) <= NAME_CHARS else None


def share_findings(root, answers):
    apps = [(app["Name"], app["Value"]) for app in json.loads(answers[2])] if answers[2] else []
    rows = share_rows(root)
    if not rows:
        if apps:
            yield f"no applications, command 2 has {len(apps)}"
        return
    if len(rows) != len(apps) + 1 or rows[-1][1] != "Everything else":
        yield f"{len(rows) - 1} applications, command 2 has {len(apps)}"
        return
    # Those of equal shares may change places.
    wanted = {name: share for name, share in ((comparable(name), share) for name, share in apps) if name}
    names = [row[1] for row in rows[:-1]]
    for name in wanted.keys() - set(names):
        yield f"application {name} is missing"
    for place, (rank, name, _, share) in enumerate(rows[:-1]):
        if rank != str(place + 1):
            yield f"application {name} has rank {rank}, not {place + 1}"
        if abs(share - apps[place][1]) > 0.0101:
            yield f"rank {rank} has {share} %, command 2 has {apps[place][1]} %"
        if name in wanted and abs(share - wanted[name]) > 0.0101:
            yield f"application {name} has {share} %, command 2 has {wanted[name]} %"
    total = sum(row[3] for row in rows)
    if not math.isclose(total, 100.0, abs_tol=1e-6):
        yield f"the shares add up to {total:.2f} %"
    widest = max(row[3] for row in rows)
    for _, name, width, share in rows:
        if abs(width - max(share, 0.0) / widest * 100.0) > 0.0101:
            yield f"the bar of {name} has {width} %, not {share / widest * 100.0:.2f} %"


def answers_of(report):
    """The text of each command from `wattleaf_host serve-once --json`; "" for one without a result."""
    return {command["number"]: command["text"] or "" for command in report["commands"]}


def answer_findings(text, report):
    root, _ = read_page(text)
    answers = answers_of(report)
    return [*figure_findings(root, answers), *series_findings(root, answers), *share_findings(root, answers)]
