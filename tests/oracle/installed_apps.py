"""What is installed on the simulated notebook, and which names and icons come of it."""

from pathlib import Path

DEVICE_START = "\\Device\\"
PROGRAMS = "C:\\Program Files\\"
LISTS = Path(__file__).resolve().parents[2] / "standins" / "notebook"


def _rows(name):
    lines = (LISTS / name).read_text(encoding="ascii").splitlines()
    return [line.split("|") for line in lines if line and not line.startswith("#")]


class InstalledApps:
    """`desktop` rows: program, description, registered name, root. `packaged` rows: package name,
    family suffix, shown name, kind, logo."""

    def __init__(self, desktop, packaged, device_prefix):
        self._prefix = device_prefix
        self._descriptions = {(PROGRAMS + row[0]).lower(): row[1] for row in desktop}
        self._registered = {row[2] for row in desktop if row[2]}
        # Neither frameworks nor parts of the system nor what has no logo enters the catalogue.
        self._packaged = {
            name: shown for name, _, shown, kind, logo in packaged if kind == "app" and logo != "none"
        }

    @staticmethod
    def of_the_notebook(device_prefix):
        return InstalledApps(_rows("desktop_apps.txt"), _rows("packaged_apps.txt"), device_prefix)

    def display_name(self, app_id):
        if app_id.startswith(DEVICE_START):
            return self._descriptions.get(self._drive_path(app_id).lower(), "")
        keys = self._matching_keys(app_id)
        return self._packaged[keys[-1]] if keys else ""

    def may_rank(self, app_id, display_name):
        return not app_id.startswith(DEVICE_START) or display_name in self._registered

    def icon(self, app_id, display_name, directory):
        """The path of the icon's file; empty where there is none."""
        if app_id.startswith(DEVICE_START):
            has_icon = self._drive_path(app_id).lower() in self._descriptions
        else:
            has_icon = bool(self._matching_keys(app_id))  # every logo of a catalogue is a file
        return f"{directory}\\{display_name}.png" if has_icon else ""

    def _drive_path(self, app_id):
        """Deliberate: the prefix is taken from the start, wherever it was found."""
        if not self._prefix or self._prefix not in app_id:
            return ""
        return "C:" + app_id[len(self._prefix):]  # fmt: skip

    def _matching_keys(self, app_id):
        return sorted(key for key in self._packaged if app_id.startswith(key))
