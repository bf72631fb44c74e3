"""A small set of installed applications for the cases that were computed by hand."""

import calendar as utc

from installed_apps import InstalledApps
from local_calendar import LocalCalendar
from time_stamps import TimeStamps

PREFIX = "\\Device\\HarddiskVolume1"
UTC = LocalCalendar("UTC")
STAMPS = TimeStamps(UTC)
# Rows in the format of the notebook's lists.
DESKTOP = [
    ["Program Files\\Oak\\oak.exe", "Oak", "1.0", "Oak", "1", "here"],
    ["Program Files\\Oak\\sync.exe", "Oak", "1.0", "", "none", "here"],
    ["Program Files\\Elm\\elm.exe", "Elm", "2.1", "Elm 2.1", "1", "here"],
    ["Program Files\\Ash\\ash.exe", "", "1.0", "Ash", "2", "here"],
    ["users\\wren\\ivy.exe", "Ivy", "1.0", "Ivy", "user", "here"],
    ["Program Files\\Gone\\gone.exe", "Gone", "1.0", "Gone", "1", "gone"],
    ["Program Files\\Reed\\reed.exe", "Reed \u0442\u0440", "1.0", "Reed \u0442\u0440", "1", "here"],
    ["Program Files\\Rue\\rue.exe", "Ru\u00e9", "1.0", "Ru\u00e9", "1", "here"],
    ["Program Files\\\u00dclm\\ulm.exe", "Ulm", "1.0", "Ulm", "1", "here"],
]
PACKAGED = [
    ["Fir.Notes", "s", "1.0", "Fir Notes", "app", "scale", "App"],
    ["Fir.NotesPro", "s", "1.0", "Fir Notes Pro", "app", "size", "App"],
    ["Yew.Own", "s", "1.0", "Yew", "app", "own", "App"],
    ["Yew.Large", "s", "1.0", "Large Yew", "app", "large", "App"],
    ["Yew.None", "s", "1.0", "No Yew", "app", "none", "App"],
    ["Bay.Runtime", "s", "1.0", "Bay", "framework", "scale", "App"],
    ["Box.One", "s", "1.0", "ms-resource:AppName", "app", "scale", "App"],
    ["Box.Two", "s", "1.0", "ms-resource:AppName", "app", "size", "App"],
    ["Tea.Leaf", "s", "1.0", "Tea", "app", "scale", "App"],
    ["Tea.Leaf", "s", "2.0", "New Tea", "app", "size", "App"],
    ["Pea.Books", "s", "1.0", "Pea \u041a\u043d", "app", "scale", "App"],
    ["Pea.Menu", "s", "1.0", "Ruh\u00e9", "app", "scale", "App"],
]
APPS = InstalledApps(DESKTOP, PACKAGED, PREFIX, "plain")
APPS_WITH_URIS = InstalledApps(DESKTOP, PACKAGED, PREFIX, "uri")
OAK = PREFIX + "\\Program Files\\Oak\\oak.exe"
NOTES, NOTES_PRO = "Fir.Notes_1.0_x64__s!App", "Fir.NotesPro_1.0_x64__s!App"
NOW_TEXT = "2026-05-13:12:00:00"


def instant(*fields):
    return utc.timegm((*fields, 0, 0, 0, 0)[:6] + (0, 0, 0))


NOW = instant(2026, 5, 13, 12)
