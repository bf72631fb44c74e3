"""Application energy through the passes of a scenario: the store and the answers of command 2."""

from app_ranking import ranking
from app_store import AppStore
from installed_apps import InstalledApps, read_in_the_systems_code_page
from time_stamps import TimeStamps

NO_ANSWER = "no answer"


class AppEnergy:
    def __init__(self, calendar, icon_folder, address="uri"):
        self._calendar = calendar
        self._icon_folder = icon_folder
        self._address = address
        self._stamps = TimeStamps(calendar)
        self._store = AppStore(calendar, self._stamps)
        self._apps = None
        self._icons = {}

    def begin_process(self, device_prefix):
        """Both catalogues are read once in a process."""
        self._apps = InstalledApps.of_the_notebook(device_prefix, self._address)

    def run_pass(self, now, report, status):
        self._store.run_pass(self._apps, now, report, status)

    def store_text(self):
        return self._store.text

    def files(self):
        """The names of the files of application energy in the data folder."""
        files = {"Powerlog.json": self._store.text, "Powerlog.xml": self._store.report}
        return [name for name, content in files.items() if content is not None]

    def answer(self, now, days, found):
        """The text for `days` days. Equal shares are in the order of `found` if that is valid."""
        if self._store.text is None:
            return NO_ANSWER
        result = ranking(
            self._calendar, self._stamps, self._apps, self._store.text, now, days, self._icon_folder
        )  # fmt: skip
        for name, logo in result.icons():
            self._icons[read_in_the_systems_code_page(name) + ".png"] = logo
        return result.in_the_order_of(found)

    def icons(self):
        """The files that the answers so far have left in the icon folder, by name: the path of the
        logo that the file is a copy of, or None for the icon of a program."""
        return self._icons
