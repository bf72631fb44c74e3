"""Compares the results of Pattern on random expressions with those of Python's re.

expression_check.py PROGRAM...: the command that prints the table, with an emulator before it if needed.

A second, independent reader decides here whether an expression is valid and translates it to Python:
classes to plain sets of characters, assertions to forms with the same meaning in both, and a reference
to one that matches the empty text while its group is unset.
"""

import re
import subprocess
import sys

SMALLEST_TABLE = 200_000
LINE_ENDS = {0x0A, 0x0D, 0x2028, 0x2029}


class Invalid(Exception):
    """The expression is not valid in the grammar."""


def ascii_where(test):
    return {code for code in range(128) if test(chr(code))}


DIGIT = ascii_where(str.isdigit)
WORD = ascii_where(lambda c: c.isalnum() or c == "_")
SPACE = set(map(ord, " \t\n\v\f\r"))
GRAPH = set(range(0x21, 0x7F))
NAMED = {
    "alnum": ascii_where(str.isalnum), "alpha": ascii_where(str.isalpha), "blank": {0x20, 0x09},
    "cntrl": set(range(0x20)) | {0x7F}, "digit": DIGIT, "graph": GRAPH,
    "lower": ascii_where(str.islower), "print": GRAPH | {0x20},
    "punct": GRAPH - ascii_where(str.isalnum), "space": SPACE, "upper": ascii_where(str.isupper),
    "xdigit": ascii_where(lambda c: c in "0123456789abcdefABCDEF"), "d": DIGIT, "s": SPACE, "w": WORD,
}
CONTROLS = {"f": 0x0C, "n": 0x0A, "r": 0x0D, "t": 0x09, "v": 0x0B}
# The POSIX names that the table uses.
COLLATING = {"hyphen": 0x2D, "NUL": 0x00, "one": 0x31, "underscore": 0x5F}


class Codes:
    """A set of characters: the listed ones, or all others."""

    def __init__(self, listed=(), inverted=False):
        self.listed = set(listed)
        self.inverted = inverted

    def __or__(self, other):
        if self.inverted and other.inverted:
            return Codes(self.listed & other.listed, True)
        if self.inverted:
            return Codes(self.listed - other.listed, True)
        if other.inverted:
            return Codes(other.listed - self.listed, True)
        return Codes(self.listed | other.listed)

    def complement(self):
        return Codes(self.listed, not self.inverted)

    def text(self):
        """The set as a Python class."""
        if not self.listed:
            return r"[\u0000-\uffff]" if self.inverted else r"(?:(?!))"
        ranges = []
        for code in sorted(self.listed):
            if ranges and ranges[-1][1] == code - 1:
                ranges[-1][1] = code
            else:
                ranges.append([code, code])
        inner = "".join(rf"\u{first:04x}-\u{last:04x}" for first, last in ranges)
        return f"[{'^' if self.inverted else ''}{inner}]"


class Reader:
    def __init__(self, text):
        self.text = text
        self.at = 0
        self.groups = 0
        self.closed = set()

    def take(self, token):
        if not self.text.startswith(token, self.at):
            return False
        self.at += len(token)
        return True

    def next(self):
        if self.at == len(self.text):
            raise Invalid
        self.at += 1
        return self.text[self.at - 1]

    def pattern(self, expected):
        result = self.match(expected)
        if result is None:
            raise Invalid
        return result

    def match(self, expected):
        found = re.compile(expected, re.ASCII).match(self.text, self.at)
        if found:
            self.at = found.end()
        return found

    def whole(self):
        result = self.alternatives()
        if self.at < len(self.text):
            raise Invalid
        return result

    def alternatives(self):
        parts = [self.sequence()]
        while self.take("|"):
            parts.append(self.sequence())
        return "|".join(parts)

    def sequence(self):
        parts = []
        while self.at < len(self.text) and self.text[self.at] not in "|)":
            parts.append(self.term())
        return "".join(parts)

    def term(self):
        for token, assertion in (("^", r"\A"), ("$", r"\Z"), (r"\b", r"\b"), (r"\B", r"(?!\b)")):
            if self.take(token):
                return assertion
        for token in ("(?=", "(?!"):
            if self.take(token):
                return token + self.alternatives() + self.pattern(r"\)").group()
        return self.atom() + self.quantifier()

    def quantifier(self):
        found = self.match(r"(?:[*+?]|\{(\d+)(,?)(\d*)\})\??")
        if not found:
            return ""
        least, comma, most = found.groups()
        if least and (not comma and most or most and int(most) < int(least)):
            raise Invalid
        return found.group()

    def atom(self):
        character = self.next()
        if character == "(":
            if self.take("?:"):
                return "(?:" + self.alternatives() + self.pattern(r"\)").group()
            if self.take("?"):
                raise Invalid
            self.groups += 1
            number = self.groups
            inner = self.alternatives()
            self.pattern(r"\)")
            self.closed.add(number)
            return f"({inner})"
        if character == "[":
            return self.character_class().text()
        if character == ".":
            return Codes(LINE_ENDS, inverted=True).text()
        if character in "*+?{":
            raise Invalid
        if character != "\\":
            return Codes({ord(character)}).text()
        number = self.match(r"[1-9]\d*")
        if number is None:
            return self.escape()[0].text()
        if int(number.group()) not in self.closed:
            raise Invalid
        return rf"(?:(?({number.group()})\{number.group()}))"

    def escape(self):
        """The codes, and whether they can be an end of a range, as single characters can."""
        letter = self.next()
        sets = {"d": DIGIT, "w": WORD, "s": SPACE}
        if letter in sets:
            return Codes(sets[letter]), False
        if letter.lower() in sets:
            return Codes(sets[letter.lower()], inverted=True), False
        if letter in CONTROLS:
            return Codes({CONTROLS[letter]}), True
        if letter == "c":
            return Codes({ord(self.pattern("[A-Za-z]").group()) & 0x1F}), True
        if letter in "xu":
            digits = 2 if letter == "x" else 4
            return Codes({int(self.pattern(f"[0-9A-Fa-f]{{{digits}}}").group(), 16)}), True
        if letter in "0123456789":
            if letter != "0" or self.match(r"\d"):
                raise Invalid
            return Codes({0}), True
        return Codes({ord(letter)}), True

    def class_part(self):
        opening = self.match(r"\[([.:=])")
        if opening:
            kind = opening.group(1)
            # Any character, including line ends.
            name = self.pattern(rf"((?s:[^{kind}]*)){re.escape(kind)}\]").group(1)
            if kind == ":":
                if name.lower() not in NAMED or not name.isascii():
                    raise Invalid
                return Codes(NAMED[name.lower()]), False
            code = ord(name) if len(name) == 1 else COLLATING.get(name)
            if code is None:
                raise Invalid
            if kind == ".":
                return Codes({code}), True
            is_letter = chr(code).isascii() and chr(code).isalpha()
            return Codes({code, code ^ 0x20} if is_letter else {code}), False
        if self.take("\\"):
            if self.take("b"):
                return Codes({0x08}), True
            if self.take("B"):
                raise Invalid
            return self.escape()
        return Codes({ord(self.next())}), True

    def character_class(self):
        inverted = self.take("^")
        codes = Codes()
        while not self.take("]"):
            first, is_single = self.class_part()
            is_range = self.text.startswith("-", self.at) and not self.text.startswith("-]", self.at)
            if not is_range:
                codes |= first
                continue
            self.next()
            last, is_last_single = self.class_part()
            if not is_single or not is_last_single or min(first.listed) > min(last.listed):
                raise Invalid
            codes |= Codes(range(min(first.listed), min(last.listed) + 1))
        return codes.complement() if inverted else codes


def compiled(expression):
    try:
        return re.compile(rf"(?:{Reader(expression).whole()})\Z", re.ASCII)
    except Invalid:
        return None


def decoded(field):
    digits = field[1:]
    return "".join(chr(int(digits[i : i + 4], 16)) for i in range(0, len(digits), 4))


def main():
    table = subprocess.run(sys.argv[1:], check=True, capture_output=True, text=True).stdout
    pattern, expression, texts, matches, invalid, wrong = None, "", 0, 0, 0, 0
    for line in table.splitlines():
        kind, field, result = line.split()
        text, is_true = decoded(field), result == "1"
        if kind == "E":
            expression, pattern = text, compiled(text)
            invalid += pattern is None
            if is_true != (pattern is not None):
                sys.exit(f"{expression!r}: {'valid' if is_true else 'invalid'} for Pattern only")
            continue
        texts += 1
        matches += is_true
        if (pattern.match(text) is not None) != is_true:
            wrong += 1
            print(f"{expression!r} on {text!r}: {'match' if is_true else 'no match'} for Pattern only")
    if wrong:
        sys.exit(f"{wrong} results differ")
    if texts < SMALLEST_TABLE or matches < SMALLEST_TABLE // 20 or invalid < 500:
        sys.exit(f"too small a table: {texts} texts, {matches} matches, {invalid} invalid expressions")
    print(f"{texts} results agree, {matches} of them matches; {invalid} expressions are invalid")


if __name__ == "__main__":
    main()
