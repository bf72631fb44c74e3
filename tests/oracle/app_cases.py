"""A small machine for the hand-worked cases of application energy."""

import calendar as utc

from installed_apps import InstalledApps
from local_calendar import LocalCalendar
from time_stamps import TimeStamps

PREFIX = "\\Device\\HarddiskVolume1"
UTC = LocalCalendar("UTC")
STAMPS = TimeStamps(UTC)
APPS = InstalledApps(
    desktop=[
        ["Oak\\oak.exe", "Oak", "Oak", "1"],
        ["Oak\\sync.exe", "Oak", "", "0"],
        ["Elm\\elm.exe", "Elm", "Elm 2.1", "1"],
        ["Ash\\ash.exe", "", "Ash", "2"],
    ],
    packaged=[
        ["Fir.Notes", "s", "Fir Notes", "app", "scale"],
        ["Fir.NotesPro", "s", "Fir Notes Pro", "app", "size"],
        ["Yew.Own", "s", "Yew", "app", "own"],
        ["Yew.None", "s", "No Yew", "app", "none"],
        ["Bay.Runtime", "s", "Bay", "framework", "scale"],
    ],
    device_prefix=PREFIX,
)
OAK = PREFIX + "\\Program Files\\Oak\\oak.exe"
NOTES, NOTES_PRO = "Fir.Notes_1.0_x64__s!App", "Fir.NotesPro_1.0_x64__s!App"
NOW_TEXT = "2026-05-13:12:00:00"


def instant(*fields):
    return utc.timegm((*fields, 0, 0, 0, 0)[:6] + (0, 0, 0))


NOW = instant(2026, 5, 13, 12)
