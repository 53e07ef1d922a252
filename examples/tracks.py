#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Draws a recording: where all entities went, and how fast they were.

    tracks.py FOLDER PICTURE [MEMBER]   a recording as omtreader.recording keeps it
    tracks.py --make FOLDER             first makes one: an hour in the harbour of the sample models

MEMBER is a geocentric position, X, Y and Z in metres, or holds one as the Spatial of the RPR FOM does:
"BaseEntity.Spatial". Without it, "PortEntity.Position".
"""
import sys
from pathlib import Path

import matplotlib
import matplotlib.patheffects

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np
import omtreader as omt
import pyarrow as pa
import pyarrow.compute as pc
from matplotlib.ticker import FuncFormatter, MaxNLocator, MultipleLocator
from omtreader import recording

COLOURS = ["#0b6e99", "#d1495b", "#edae49", "#3c896d", "#7a5195", "#8d6a4f"]
INK, FAINT, SEA = "#22313f", "#b9c6d0", "#f2f7fa"
KNOT = 1852 / 3600
MOST_NAMED, MOST_SPEEDS = 12, 8
LENGTHS = [digit * 10 ** power for power in range(5) for digit in (1, 2, 5)]
STEPS = [one / 3600 for one in (0.1, 0.3, 0.6, 1.2, 3, 6, 15, 30, 60, 120, 300, 600, 1800)]
STEPS += [1, 2, 5, 10, 30]

# Reading ---------------------------------------------------------------------------------------


def tracks_of(folder, member):
    """For each object its times in seconds and an array of geocentric positions in metres."""
    rows = recording.decode(folder, member, columns=["time", "object"])
    rows = rows.filter(rows["value"].is_valid()).sort_by("time")
    places = positions(rows["value"].combine_chunks())
    if places is None:
        raise ValueError(f"{member} holds no X, Y and Z")
    rows = rows.append_column("place", places)
    rows = rows.filter(rows["place"].is_valid())
    place = np.column_stack([pc.struct_field(rows["place"], axis).to_numpy() for axis in "XYZ"])
    times, names = rows["time"].to_numpy(), np.array(rows["object"].to_pylist())
    return {name: (times[names == name], place[names == name]) for name in dict.fromkeys(names)}


def positions(values):
    """The position that each value is, or that the first of its parts to have one has: in a variant
    record all alternatives but one are null. Null where there is none."""
    if not pa.types.is_struct(values.type):
        return None
    names = [field.name for field in values.type]
    if {"X", "Y", "Z"} <= set(names):
        return values
    found = [one for name in names if (one := positions(pc.struct_field(values, name))) is not None]
    return pc.coalesce(*found) if found else None


def geodetic(place):
    """Latitude and longitude in degrees on WGS 84, good to a millimetre near the ground."""
    a, f = 6378137.0, 1 / 298.257223563
    e2, b = f * (2 - f), a * (1 - f)
    x, y, z = place.T
    p = np.hypot(x, y)
    angle = np.arctan2(z * a, p * b)
    latitude = np.arctan2(z + e2 / (1 - e2) * b * np.sin(angle) ** 3, p - e2 * a * np.cos(angle) ** 3)
    return np.degrees(latitude), np.degrees(np.arctan2(y, x))


def speeds(times, place):
    """In knots, from the way between updates."""
    way = np.linalg.norm(np.diff(place, axis=0), axis=1) / np.diff(times) / KNOT
    return (times[1:] + times[:-1]) / 2, way


# Drawing ---------------------------------------------------------------------------------------


def degrees(axis, low, high, letters):
    """Marks an axis in degrees and minutes, at a handful of round places."""
    step = next((one for one in STEPS if (high - low) / one < 8), STEPS[-1])
    digits = 1 if step * 60 >= 0.5 else 3

    def text(value, _):
        whole, minutes = divmod(round(abs(value) * 60, digits), 60)
        return f"{whole:.0f}°{minutes:0{digits + 3}.{digits}f}′{letters[int(value < 0)]}"
    axis.set_major_locator(MultipleLocator(step))
    axis.set_major_formatter(FuncFormatter(text))


def scale_bar(axes, latitude):
    """A round length in the lower left corner."""
    left, right = axes.get_xlim()
    bottom, top = axes.get_ylim()
    degree = 111320 * np.cos(np.radians(latitude))
    room = (right - left) * degree / 3
    unit, name = (1852, "nautical mile") if room > 1852 else (1, "metre")
    count = max(one for one in LENGTHS if one * unit <= max(room, 1))
    length = count * unit / degree
    x, y = left + 0.04 * (right - left), bottom + 0.05 * (top - bottom)
    axes.plot([x, x + length], [y, y], color=INK, lw=3, solid_capstyle="butt", zorder=5)
    axes.annotate(f"{count} {name}{'s' if count > 1 else ''}", (x + length / 2, y), (0, 5), textcoords="offset points",
                  ha="center", color=INK, fontsize=9)


def loneliest(tracks, name, points=40):
    """The place of a track, east and north in degrees, from which all others are farthest, and
    whether they are below it, 1, or above, -1."""
    thin = {one: np.column_stack(geodetic(place[::max(1, len(place) // points)])[::-1])
            for one, (_, place) in tracks.items()}
    others = np.concatenate([place for one, place in thin.items() if one != name] or [thin[name][:1]])
    ways = np.linalg.norm(thin[name][:, None] - others[None], axis=2)
    best = ways.min(axis=1).argmax()
    return thin[name][best], 1 if others[ways[best].argmin()][1] <= thin[name][best][1] else -1


def draw_map(axes, tracks, colours):
    everywhere = np.concatenate([geodetic(place)[0] for _, place in tracks.values()])
    axes.set_aspect(1 / np.cos(np.radians(everywhere.mean())), adjustable="datalim")
    for count, (name, (times, place)) in enumerate(tracks.items()):
        latitude, longitude = geodetic(place)
        axes.plot(longitude, latitude, color=colours[name], lw=2, alpha=0.9, zorder=3)
        # A point every ten minutes tells direction and haste; a ring is where it began.
        ten = np.searchsorted(times, np.arange(times[0], times[-1], 600))[1:]
        axes.scatter(longitude[ten], latitude[ten], s=14, color=colours[name], zorder=4)
        axes.scatter(longitude[0], latitude[0], s=46, facecolor="white", edgecolor=colours[name], lw=2, zorder=4)
        axes.scatter(longitude[-1], latitude[-1], s=60, color=colours[name], marker="s", zorder=4)
        if count >= MOST_NAMED:
            continue
        place, side = loneliest(tracks, name)
        axes.annotate(name, place, (0, 10 * side), textcoords="offset points", ha="center",
                      va="bottom" if side > 0 else "top", color=colours[name], fontsize=10.5,
                      fontweight="bold", zorder=6,
                      path_effects=[matplotlib.patheffects.withStroke(linewidth=3, foreground=SEA)])
    axes.margins(0.06, 0.12)
    axes.set_facecolor(SEA)
    axes.apply_aspect()
    degrees(axes.xaxis, *axes.get_xlim(), "EW")
    degrees(axes.yaxis, *axes.get_ylim(), "NS")
    scale_bar(axes, everywhere.mean())
    named = f" ({MOST_NAMED} of {len(tracks)} named)" if len(tracks) > MOST_NAMED else ""
    axes.set_title("Tracks" + named, loc="left", color=INK, fontsize=12)
    axes.text(1, 1.02, "ring: start    point: ten minutes    square: end", transform=axes.transAxes,
              ha="right", color=INK, fontsize=9)


def draw_speeds(all_axes, tracks, colours):
    fastest = max(max(speeds(*track)[1], default=0) for track in tracks.values()) or 1
    for axes, (name, track) in zip(all_axes, tracks.items()):
        times, way = speeds(*track)
        axes.fill_between(times / 60, way, color=colours[name], alpha=0.22, lw=0)
        axes.plot(times / 60, way, color=colours[name], lw=1.6)
        axes.set_ylim(0, fastest * 1.3)
        axes.text(0.01, 0.86, name, transform=axes.transAxes, color=colours[name], fontsize=10,
                  fontweight="bold", va="top",
                  path_effects=[matplotlib.patheffects.withStroke(linewidth=3, foreground="white")])
        axes.yaxis.set_major_locator(MaxNLocator(3))
        axes.yaxis.tick_right()
        axes.margins(x=0)
    all_axes[0].set_title("Speed in knots", loc="left", color=INK, fontsize=12)
    all_axes[-1].set_xlabel("minutes", color=INK)


def draw(tracks, picture):
    plt.rcParams.update({"font.family": "DejaVu Sans", "axes.edgecolor": FAINT, "xtick.color": INK,
                         "ytick.color": INK, "axes.grid": True, "grid.color": "#dde5ea",
                         "axes.axisbelow": True, "font.size": 9})
    colours = {name: COLOURS[place % len(COLOURS)] for place, name in enumerate(tracks)}
    figure = plt.figure(figsize=(13, 6.2), layout="constrained")
    shown = dict(list(tracks.items())[:MOST_SPEEDS])
    grid = figure.add_gridspec(len(shown), 2, width_ratios=[2.05, 1])
    draw_map(figure.add_subplot(grid[:, 0]), tracks, colours)
    rows = [figure.add_subplot(grid[0, 1])]
    rows += [figure.add_subplot(grid[row, 1], sharex=rows[0]) for row in range(1, len(shown))]
    draw_speeds(rows, shown, colours)
    for axes in rows[:-1]:
        axes.tick_params(labelbottom=False)
    for axes in figure.axes:
        axes.tick_params(length=0)
        for side in axes.spines.values():
            side.set_visible(axes is figure.axes[0])
    figure.savefig(picture, dpi=110)


# Making ----------------------------------------------------------------------------------------

# Minutes, and metres east and north of the harbour's mouth.
PLANS = {
    "Tilda": [(0, -9000, 3600), (12, -4900, 2300), (22, -2200, 1150), (32, -550, 350), (42, 420, -60),
              (50, 700, -320), (54, 720, -345), (60, 720, -345)],
    "Castor": [(0, 500, 250), (8, 500, 250), (17, -1900, 1500), (22, -2130, 1250), (32, -480, 520),
               (42, 480, 90), (50, 790, -190), (54, 760, 60), (60, 500, 250)],
    "Pollux": [(0, 760, 330), (9, 760, 330), (18, -1700, 620), (22, -2270, 980), (32, -630, 180),
               (42, 330, -210), (50, 560, -420), (55, 800, -20), (60, 760, 330)],
    "Pilot 3": [(0, 300, 900), (2, 300, 900), (13, -4700, 2420), (16, -3760, 1960), (18, -3200, 1730),
                (20, -3000, 2050), (30, 150, 1350), (34, 300, 900), (60, 300, 900)],
    "Ferry Anna": [(0, -250, -1900), (3, -250, -1900), (14, -1900, 2900), (17, -1950, 3000),
                   (21, -1950, 3000), (34, -250, -1850), (37, -250, -1900), (41, -250, -1900),
                   (53, -1900, 2900), (56, -1950, 3000), (60, -1950, 3000)],
    "Patient Ox": [(0, -5600, -700), (15, -5480, -560), (30, -5300, -520), (45, -5120, -600),
                   (60, -5020, -760)],
}


def position(east, north, latitude=53.5520, longitude=6.7470):
    """Geocentric coordinates of a place on the sea, in metres from the harbour's mouth."""
    a, e2 = 6378137.0, 0.0066943799901413165
    phi, lam = np.radians(latitude), np.radians(longitude)
    radius = a / np.sqrt(1 - e2 * np.sin(phi) ** 2)
    phi = phi + north / (radius * (1 - e2) / (1 - e2 * np.sin(phi) ** 2))
    lam = lam + east / (radius * np.cos(phi))
    radius = a / np.sqrt(1 - e2 * np.sin(phi) ** 2)
    return (radius * np.cos(phi) * np.cos(lam), radius * np.cos(phi) * np.sin(lam),
            radius * (1 - e2) * np.sin(phi))


def smooth(plan, minutes):
    """A way through all points of a plan that stands still where two of them are the same."""
    knots = np.array(plan, float)
    steps = np.diff(knots[:, 0])[:, None]
    slopes = np.diff(knots[:, 1:], axis=0) / steps
    ends = np.zeros_like(knots[:, 1:])
    same = (slopes[:-1] * slopes[1:]) > 0
    # The harmonic mean overshoots nowhere.
    ends[1:-1][same] = (2 * slopes[:-1] * slopes[1:] / np.where(same, slopes[:-1] + slopes[1:], 1))[same]
    ends[0], ends[-1] = slopes[0], slopes[-1]
    at = np.clip(np.searchsorted(knots[:, 0], minutes, "right") - 1, 0, len(steps) - 1)
    u, h = ((minutes - knots[at, 0]) / steps[at, 0])[:, None], steps[at]
    return ((1 + 2 * u) * (1 - u) ** 2 * knots[at, 1:] + u * (1 - u) ** 2 * h * ends[at]
            + u * u * (3 - 2 * u) * knots[at + 1, 1:] + u * u * (u - 1) * h * ends[at + 1])


def make(folder):
    """An hour of updates, one in ten seconds of each entity."""
    models = Path(__file__).parent / "models"
    model = omt.load(models / "HarbourBase.xml", models / "HarbourTraffic.xml", mim=True)
    codec = model.codec()
    seconds = np.arange(0, 3601, 10)
    rows = []
    for name, plan in PLANS.items():
        for second, (east, north) in zip(seconds, smooth(plan, seconds / 60)):
            place = dict(zip("XYZ", map(float, position(east, north))))
            rows.append({"time": float(second), "object": name, "member": "Position", "kind": "update",
                         "class": "Tug" if name in ("Castor", "Pollux") else "Vessel",
                         "octets": codec.encode("PortEntity.Position", place)})
    rows.sort(key=lambda row: row["time"])
    recording.write([dict(row, event=at + 1) for at, row in enumerate(rows)], folder, model)


def main(words):
    if len(words) == 2 and words[0] == "--make":
        return make(words[1])
    if len(words) not in (2, 3):
        sys.exit(__doc__)
    try:
        tracks = tracks_of(words[0], *words[2:] or ["PortEntity.Position"])
    except (OSError, ValueError) as error:
        sys.exit(f"tracks.py: {error}")
    if not tracks:
        sys.exit("tracks.py: no position is recorded")
    draw(tracks, words[1])


if __name__ == "__main__":
    main(sys.argv[1:])
