"""Small changes of C++ sources for tools/mutate, made on clang's tokens and syntax tree.

Each change replaces one piece of text: an operator by its neighbour, a constant by the next one, a condition by its
opposite, a returned value by its opposite or by an empty one, a statement by nothing, two arguments of one type by each
other, continue and break by each other."""

import dataclasses
import functools
import re
import subprocess

from clang.cindex import CursorKind, Index, TokenKind, TypeKind

COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
# Of built-in types only: most texts that are added cannot be subtracted.
ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "<<": ">>", ">>": "<<",
              "&&": "||", "||": "&&"}
ASSIGNMENTS = {"+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "|=": "&=", "&=": "|="}
STEPS = {"++": "--", "--": "++"}
WORDS = {"true": "false", "false": "true", "continue": "break", "break": "continue"}
INTEGER = re.compile(r"(0[xX][\da-fA-F]+|\d+)([uUlLzZ]*)\Z")
DECIMAL = re.compile(r"(\d+)(\.\d+[fF]?)\Z")
# A value that is named only so that it counts as used.
UNUSED = re.compile(r"static_cast<void>\(\w+\)\Z")


@dataclasses.dataclass(frozen=True, order=True)
class Change:
    """`text[begin:end]` of a file becomes `replacement`."""
    file: str
    begin: int
    end: int
    replacement: str

    def applied(self, text):
        return text[:self.begin] + self.replacement + text[self.end:]

    def line(self, text):
        return text.count("\n", 0, self.begin) + 1

    def diff(self, text):
        """The changed lines before and after, each as one line with single blanks."""
        begin = text.rfind("\n", 0, self.begin) + 1
        end = text.find("\n", self.end)
        end = len(text) if end < 0 else end
        after = text[begin:self.begin] + self.replacement + text[self.end:end]
        return " ".join(text[begin:end].split()), " ".join(after.split())


def next_constants(spelling):
    """The constants beside an integer or a decimal number."""
    if integer := INTEGER.match(spelling):
        value = int(integer[1], 16 if integer[1][:2] in ("0x", "0X") else 10)
        return [f"{near}{integer[2]}" for near in (value + 1, value - 1) if near >= 0]
    if decimal := DECIMAL.match(spelling):
        return [f"{int(decimal[1]) + 1}{decimal[2]}"]
    return []


class _File:
    """The changes of one file of a translation unit."""

    def __init__(self, unit, path, name):
        with open(path, encoding="utf-8") as source:
            self.text = source.read()
        # clang counts bytes.
        self.bytes = self.text.encode()
        self.path, self.name, self.changes = path, name, set()
        file = unit.get_file(path)
        whole = unit.get_extent(path, (0, len(self.bytes)))
        self.tokens = [token for token in unit.get_tokens(extent=whole) if token.location.file.name == file.name]
        self.starts = {token.extent.start.offset for token in self.tokens}
        self._take_tokens()
        for cursor in unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == file.name:
                self._take_tree(cursor)

    def _place(self, byte_offset):
        return len(self.bytes[:byte_offset].decode())

    def _add(self, begin, end, replacement):
        """Offsets are clang's."""
        self.changes.add(Change(self.name, self._place(begin), self._place(end), replacement))

    def _text_of(self, cursor):
        return self.bytes[cursor.extent.start.offset:cursor.extent.end.offset].decode()

    def _is_written_here(self, cursor):
        """False for what a macro or an implicit call made."""
        extent = cursor.extent
        return (extent.start.file is not None and extent.start.file.name == extent.end.file.name
                and extent.start.offset in self.starts and extent.end.offset > extent.start.offset)

    def _take_tokens(self):
        before = None
        for token in self.tokens:
            begin, end, spelling = token.extent.start.offset, token.extent.end.offset, token.spelling
            if token.kind == TokenKind.PUNCTUATION and before != "operator":
                if spelling in ("==", "!=", "<=", ">="):
                    self._add(begin, end, COMPARISONS[spelling])
                elif spelling in ASSIGNMENTS or spelling in STEPS:
                    self._add(begin, end, {**ASSIGNMENTS, **STEPS}[spelling])
            elif token.kind == TokenKind.KEYWORD and spelling in WORDS:
                self._add(begin, end, WORDS[spelling])
            elif token.kind == TokenKind.LITERAL:
                for constant in next_constants(spelling):
                    self._add(begin, end, constant)
            before = spelling

    def _token_between(self, left, right):
        between = [token for token in self.tokens
                   if left.extent.end.offset <= token.extent.start.offset < right.extent.start.offset]
        return between[0] if len(between) == 1 else None

    def _take_tree(self, cursor):
        children = list(cursor.get_children())
        if self._is_written_here(cursor):
            self._take_operator(cursor, children)
            self._take_condition(cursor, children)
            self._take_statements(cursor, children)
            self._take_arguments(cursor)
        for child in children:
            self._take_tree(child)

    def _take_operator(self, cursor, children):
        if cursor.kind == CursorKind.BINARY_OPERATOR and len(children) == 2:
            token = self._token_between(*children)
            if token and token.spelling in {**ARITHMETIC, "<": 0, ">": 0}:
                self._add(token.extent.start.offset, token.extent.end.offset,
                          {**ARITHMETIC, **COMPARISONS}[token.spelling])
        elif cursor.kind == CursorKind.CALL_EXPR and cursor.spelling in ("operator<", "operator>"):
            operators = [token for token in cursor.get_tokens() if token.spelling == cursor.spelling[-1]]
            if len(operators) == 1:
                self._add(operators[0].extent.start.offset, operators[0].extent.end.offset,
                          COMPARISONS[cursor.spelling[-1]])
        elif cursor.kind == CursorKind.UNARY_OPERATOR:
            begin = cursor.extent.start.offset
            # "a != b" may be an "!" before "a == b", and "--" is a step.
            if self.bytes[begin:begin + 1] in (b"!", b"-") and self.bytes[begin + 1:begin + 2] not in (b"=", b"-"):
                self._add(begin, begin + 1, "")

    def _take_condition(self, cursor, children):
        if cursor.kind == CursorKind.CONDITIONAL_OPERATOR and len(children) == 3:
            _, yes, no = children
            if self._is_written_here(yes) and self._is_written_here(no):
                self._swap(yes, no)
        elif cursor.kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT) and children:
            condition = children[0]
            # A comparison or a "!" has a change of its own.
            if (condition.kind.is_expression() and self._is_written_here(condition)
                    and condition.kind not in (CursorKind.BINARY_OPERATOR, CursorKind.UNARY_OPERATOR)):
                self._replace(condition, f"!({self._text_of(condition)})")

    def _take_statements(self, cursor, children):
        if cursor.kind == CursorKind.COMPOUND_STMT:
            statements = children
        elif cursor.kind in (CursorKind.IF_STMT, CursorKind.FOR_STMT, CursorKind.WHILE_STMT,
                             CursorKind.CXX_FOR_RANGE_STMT):
            statements = children[-1:]
        else:
            statements = []
        for statement in statements:
            if (statement.kind.is_expression() and self._is_written_here(statement)
                    and not UNUSED.match(self._text_of(statement))):
                self._replace(statement, "")
        if cursor.kind == CursorKind.RETURN_STMT and children and self._is_written_here(children[0]):
            self._take_returned(children[0])

    def _take_returned(self, value):
        text = self._text_of(value)
        if value.type.get_canonical().kind == TypeKind.BOOL:
            if text not in WORDS and value.kind != CursorKind.BINARY_OPERATOR:
                self._replace(value, f"!({text})")
        elif text not in ("{}", "0", "0.0F", "nullptr", "std::nullopt", "*this"):
            self._replace(value, "{}")

    def _take_arguments(self, cursor):
        if cursor.kind != CursorKind.CALL_EXPR or cursor.spelling.startswith("operator"):
            return
        arguments = list(cursor.get_arguments())
        for first, second in zip(arguments, arguments[1:]):
            if (first is not None and second is not None and self._is_written_here(first)
                    and self._is_written_here(second)
                    and first.extent.end.offset <= second.extent.start.offset
                    and first.type.get_canonical().spelling == second.type.get_canonical().spelling
                    and self._text_of(first) != self._text_of(second)):
                self._swap(first, second)

    def _replace(self, cursor, replacement):
        self._add(cursor.extent.start.offset, cursor.extent.end.offset, replacement)

    def _swap(self, first, second):
        between = self.bytes[first.extent.end.offset:second.extent.start.offset].decode()
        self._add(first.extent.start.offset, second.extent.end.offset,
                  self._text_of(second) + between + self._text_of(first))


@functools.lru_cache(maxsize=None)
def _resource_folder():
    """clang's own headers, which the library alone does not find for every target."""
    return subprocess.check_output(["clang", "-print-resource-dir"], text=True).strip()


def changes_of(source, arguments, files):
    """The changes of some files, by name and in their order in each: `files` maps the names that the changes get to
    paths, of the source itself or of headers that it includes. `arguments` are clang's for the source."""
    unit = Index.create().parse(str(source), args=["-resource-dir", _resource_folder(), *arguments])
    errors = [str(fault) for fault in unit.diagnostics if fault.severity >= 3]
    if errors:
        raise RuntimeError("\n".join(errors))
    return {name: sorted(_File(unit, str(path), name).changes) for name, path in files.items()}
