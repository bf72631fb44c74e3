"""The text that the JSON writer prints for a string: only what JSON needs is escaped."""

_SHORT = {'"': '\\"', "\\": "\\\\", "\b": "\\b", "\f": "\\f", "\n": "\\n", "\r": "\\r", "\t": "\\t"}


def _escaped(character):
    if character in _SHORT:
        return _SHORT[character]
    return f"\\u{ord(character):04X}" if character < " " else character


def quoted(text):
    """One character per byte, in and out: bytes outside ASCII stand as they are."""
    return '"' + "".join(map(_escaped, text)) + '"'
