"""The text that the JSON writer prints for a string: it escapes only what JSON requires."""

_SHORT = {'"': '\\"', "\\": "\\\\", "\b": "\\b", "\f": "\\f", "\n": "\\n", "\r": "\\r", "\t": "\\t"}


def _escaped(character):
    if character in _SHORT:
        return _SHORT[character]
    return f"\\u{ord(character):04X}" if character < " " else character


def quoted(text):
    """`text` and the result hold one character per byte; bytes outside ASCII are not changed."""
    return '"' + "".join(map(_escaped, text)) + '"'
