"""The applications of the simulated notebook, and their names and icons.

Texts hold one character per byte as in app_report.py; the lists and the paths of files hold Unicode
characters.
"""

from pathlib import Path

DEVICE_START = "\\Device\\"
PACKAGES = "C:\\Program Files\\WindowsApps\\"
LISTS = Path(__file__).resolve().parents[2] / "standins" / "notebook"

# The file that is chosen for each kind of logo, determined by hand: the first name in the directory's
# order that contains the manifest's stem and ".scale-100", or else the first that contains "44x44".
MANIFEST_LOGOS = {
    "scale": "Square44x44Logo.scale-100.png",
    "size": "Square44x44Logo.targetsize-44.png",
    "scale200": "Square44x44Logo.scale-200.png",
    "variants": "Square44x44Logo.altform-unplated_targetsize-44.png",
    "contrast": "Square44x44Logo.scale-100_contrast-black.png",
}
# For these the package's own logo is chosen. The manifest of "large" names a logo without a variant.
OWN_LOGOS = ("large", "own")
OWN_LOGO = "StoreLogo.png"
NAME_LEADS_ELSEWHERE = set("\\/:\0")
NAME_IS_NO_FILE_NAME = set('<>"|?*') | {chr(code) for code in range(1, 32)}


def _rows(name):
    lines = (LISTS / name).read_text(encoding="utf-8").splitlines()
    return [line.split("|") for line in lines if line and not line.startswith("#")]


def narrowed(text):
    """The low byte of each character."""
    return "".join(chr(ord(c) & 0xFF) for c in text)


def widened(text):
    """Each byte as a wide character, by sign extension."""
    return "".join(c if c < "\x80" else chr(0xFF00 | ord(c)) for c in text)


def in_the_systems_code_page(text):
    """A text as the narrow calls return it: "?" for a character outside code page 1252."""
    return text.encode("cp1252", "replace").decode("latin-1")


def read_in_the_systems_code_page(text):
    """Bytes as the narrow calls read them. Five bytes are not in code page 1252 and are read as control
    characters."""
    return "".join(
        bytes([ord(c)]).decode("cp1252") if ord(c) not in (0x81, 0x8D, 0x8F, 0x90, 0x9D) else c
        for c in text
    )


class Package:
    """One row of the list, with the texts of the catalogue."""

    def __init__(self, row, address):
        name, suffix, version, shown, self.kind, self._kind_of_logo, _ = row
        self.key = narrowed(name)
        self.shown = narrowed(shown)
        self.full_name = f"{name}_{version}_x64__{suffix}"
        self._has_plain_address = address == "plain"

    def enters(self):
        """Frameworks, system packages and packages without a logo do not enter the catalogue."""
        return self.kind == "app" and self._kind_of_logo != "none"

    def logo(self):
        """The path of the logo file; None if the path in the catalogue does not exist.

        The path of a URI is not decoded, and there is no folder "Program%20Files".
        """
        folder = f"{PACKAGES}{self.full_name}\\Assets\\"
        if self._kind_of_logo not in OWN_LOGOS:
            return folder + MANIFEST_LOGOS[self._kind_of_logo]
        return folder + OWN_LOGO if self._has_plain_address else None


class InstalledApps:
    """`desktop` and `packaged` are the rows of the two lists. `address` is the form of the packages'
    own logos: "uri" for the path of a URI, "plain" for that of the file."""

    def __init__(self, desktop, packaged, device_prefix, address="uri"):
        self._prefix = device_prefix
        self._descriptions = {
            ("C:\\" + path).lower(): in_the_systems_code_page(description)
            for path, description, _, _, _, on_disk in desktop if on_disk == "here"
        }  # fmt: skip
        self._registered = {name for _, _, _, name, where, _ in desktop if where in ("1", "2")}
        packages = sorted((Package(row, address) for row in packaged), key=lambda p: p.full_name)
        # The last of two packages of one name stays.
        self._packaged = {package.key: package for package in packages if package.enters()}

    @staticmethod
    def of_the_notebook(device_prefix, address="uri"):
        return InstalledApps(
            _rows("desktop_apps.txt"), _rows("packaged_apps.txt"), device_prefix, address
        )

    def display_name(self, app_id):
        if app_id.startswith(DEVICE_START):
            return self._descriptions.get(self._drive_path(app_id), "")
        packages = self._matching_packages(app_id)
        return packages[-1].shown if packages else ""

    def may_rank(self, app_id, display_name):
        return not app_id.startswith(DEVICE_START) or widened(display_name) in self._registered

    def icon(self, app_id, display_name, directory):
        """The path of the icon file; empty for an application without an icon."""
        if app_id.startswith(DEVICE_START):
            has_icon = self._drive_path(app_id) in self._descriptions
        else:
            has_icon = self.logo(app_id, display_name) is not None
        return f"{directory}\\{display_name}.png" if has_icon else ""

    def logo(self, app_id, display_name):
        """The path of the logo that is copied for a packaged application, or None."""
        packages = self._matching_packages(app_id)
        if not packages or set(display_name) & (NAME_LEADS_ELSEWHERE | NAME_IS_NO_FILE_NAME):
            return None
        return packages[-1].logo()

    def _drive_path(self, app_id):
        """Deliberate: the length of the prefix is cut from the start even if it occurs later."""
        if not self._prefix or self._prefix not in app_id:
            return ""
        return read_in_the_systems_code_page("C:" + app_id[len(self._prefix):]).lower()  # fmt: skip

    def _matching_packages(self, app_id):
        keys = sorted(key for key in self._packaged if app_id.startswith(key))
        return [self._packaged[key] for key in keys]
