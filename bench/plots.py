"""Draws how costs grow, in instructions, one small SVG per quantity, with gnuplot."""
import os
import subprocess

# Per quantity: the horizontal axis, a factor for it, the vertical axis and a divisor for that.
QUANTITIES = {
    "depth": ("tokens in the path", 1, "instructions", 1),
    "width": ("members or elements", 1, "instructions", 1),
    "size": ("document, KB", 0.2, "instructions, thousands", 1e3),
    "sessions": ("sessions", 1, "instructions", 1),
    "records": ("login records", 1, "instructions, thousands", 1e3),
}

SCRIPT = """
set terminal svg size 480,300 font "sans-serif,11"
set output "{path}"
set xlabel "{axis}"
set ylabel "{unit}"
set key left top
set grid
set offsets graph 0.02, graph 0.05, 0, 0
{scale}
plot {curves}
"""

LOGARITHMIC = {"width": "set logscale x\nset yrange [0:*]", "size": "set logscale xy",
               "sessions": "set logscale x\nset yrange [0:*]", "records": "set logscale xy",
               "depth": "set yrange [0:*]"}


def curves_of(summary, quantity):
    """Per way, the points (n, figure)."""
    curves = {}
    for name, entry in summary.items():
        parts = name.split("/")
        row = parts[0].split(".")
        if row[:2] == ["growth", quantity]:
            curves.setdefault(parts[1], []).append((int(row[2]), entry["figure"]))
    return curves


def draw(summary, folder):
    os.makedirs(folder, exist_ok=True)
    for quantity, (axis, factor, unit, size) in QUANTITIES.items():
        curves = curves_of(summary, quantity)
        if not curves:
            continue
        data = "".join(
            "\n".join(f"{n * factor:g} {figure / size:g}" for n, figure in sorted(points)) + "\ne\n"
            for points in curves.values())
        plotted = ", ".join(f"'-' with linespoints pt 7 ps 0.4 title '{way}'" for way in curves)
        script = SCRIPT.format(path=f"{folder}/{quantity}.svg", axis=axis, unit=unit,
                               scale=LOGARITHMIC[quantity], curves=plotted)
        subprocess.run(["gnuplot"], input=script + data, text=True, check=True)
        for way, points in curves.items():
            print(quantity, way,
                  " ".join(f"{n}: {figure:,.0f}" for n, figure in sorted(points)))
