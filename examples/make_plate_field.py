#!/usr/bin/env python3
"""Writes plate_field.txt, the deflection of a floor plate, for plate_field.tvo to show over its plan.

A rectangular plate, simply supported along its four sides, bends under its load: the Navier series, whose terms are
products of sines, summed until nothing changes any more. The mesh is a rectangle of triangles.

    python3 make_plate_field.py            writes plate_field.txt beside this file

Coordinates are metres, values metres of deflection downwards and, behind these, kNm/m of bending about both axes.
"""
import math
import pathlib

LENGTH, WIDTH = 24.0, 15.0  # m
THICKNESS = 0.45  # m
LOAD = 9.0e3  # N/m2
YOUNG, POISSON = 3.0e10, 0.2  # Pa
STIFFNESS = YOUNG * THICKNESS**3 / 12 / (1 - POISSON**2)
COLUMNS, ROWS = 80, 50


def results(x, y, terms=12):
    """Deflection in m, bending moments about y and x in kNm/m."""
    w = mx = my = 0.0
    for m in range(1, 2 * terms, 2):
        for n in range(1, 2 * terms, 2):
            a, b = (m / LENGTH) ** 2, (n / WIDTH) ** 2
            part = 16 * LOAD / (math.pi**6 * STIFFNESS * m * n * (a + b) ** 2)
            part *= math.sin(m * math.pi * x / LENGTH) * math.sin(n * math.pi * y / WIDTH)
            w += part
            mx += part * math.pi**2 * (a + POISSON * b) * STIFFNESS / 1000
            my += part * math.pi**2 * (b + POISSON * a) * STIFFNESS / 1000
    return w, mx, my


def main():
    xs = [LENGTH * i / COLUMNS for i in range(COLUMNS + 1)]
    ys = [WIDTH * j / ROWS for j in range(ROWS + 1)]
    lines = ["# Deflection of a simply supported plate of 24 m by 15 m: m, kNm/m, kNm/m", "# made by make_plate_field.py"]
    number = {}
    for j, y in enumerate(ys):
        for i, x in enumerate(xs):
            number[i, j] = len(number) + 1
            values = " ".join(f"{v + 0.0:.5g}" for v in results(x, y))
            lines.append(f"node {number[i, j]} {x:g} {y:g} {values}")
    for j in range(ROWS):
        for i in range(COLUMNS):
            corners = [(i, j), (i + 1, j), (i + 1, j + 1), (i, j + 1)]
            a, b, c, d = (number[corner] for corner in corners)
            # Diagonals alternate, so that the mesh has no direction of its own.
            lines += [f"tri {a} {b} {c}", f"tri {a} {c} {d}"] if (i + j) % 2 == 0 else [f"tri {a} {b} {d}", f"tri {b} {c} {d}"]
    path = pathlib.Path(__file__).with_name("plate_field.txt")
    path.write_text("\n".join(lines) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
