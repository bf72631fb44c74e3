"""The texts of commands 1, 3, 4, 5 and 6 at one instant."""

from dataclasses import replace

from day_energy import energy_by_hour
from float32 import booked, single
from local_calendar import day_name, month_name
from written_numbers import written


def _daily_average(calendar, ledger, now):
    total, day = 0.0, calendar.midnight(now)
    for _ in range(7):
        total = single(total + ledger.get(calendar.instant(day)))
        day = calendar.shift(day, -1)
    return single(total / 7.0)


def _trees(average):
    value = average
    for step in (lambda v: v * 365.0, lambda v: v * 3.0, lambda v: v / 1000.0, lambda v: v / 300.0):
        value = single(step(value))
    return value


def _series_text(label_member, pairs):
    values = [value for _, value in pairs]
    rows = [f'{{"{label_member}":"{label}","Value":{written(value)}}}' for label, value in pairs]
    bounds = f"[{written(min(values))},{written(max(values))}]"
    return f'{{"Range":{bounds},"Value":[{",".join(rows)}]}}'


def _last_hours(calendar, folder, now):
    present = calendar.local(now)
    old = energy_by_hour(calendar, folder, calendar.shift(present, -1))
    recent = energy_by_hour(calendar, folder, present)
    pairs = []
    for hour in range(present.hour - 12, present.hour):
        source, clock_hour = (old, hour + 24) if hour < 0 else (recent, hour)
        pairs.append((f"{clock_hour}:00", source.get(clock_hour, 0.0)))
    return pairs


def _last_days(calendar, ledger, now):
    day = calendar.shift(calendar.midnight(now), -7)
    pairs = []
    for _ in range(7):
        pairs.append((day_name(day), ledger.get(calendar.instant(day))))
        day = calendar.shift(day, 1)
    return pairs


def _last_months(calendar, ledger, now):
    present = calendar.local(now)
    year, month = present.year, present.month
    pairs = []
    for _ in range(6):
        total = 0.0
        for key, value in ledger.in_order():
            if (key.year, key.month) == (year, month):
                total = single(total + value)
        # Deliberate: the day of the month stays today's, and a short month runs over.
        label = replace(present, year=year, month=month, hour=0, minute=0, second=0)
        label = calendar.local(calendar.instant(label))
        pairs.append((month_name(label), booked(total)))
        month -= 1
        if month < 1:
            month, year = 12, year - 1
    return pairs[::-1]


def answers(calendar, folder, ledger, now):
    """The five texts by command number."""
    average = _daily_average(calendar, ledger, now)
    return {
        1: f"{average:f}",
        3: f"{_trees(average):f}",
        4: _series_text("Time", _last_hours(calendar, folder, now)),
        5: _series_text("Day", _last_days(calendar, ledger, now)),
        6: _series_text("Month", _last_months(calendar, ledger, now)),
    }
