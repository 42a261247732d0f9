#!/usr/bin/env python3
"""Writes office_plan.dxf, the sample plan of this project.

An office building of our own invention, as a drafter leaves it: a straight wing of eight bays, a curved
front, a round lecture hall at the east end, two stair cores and an atrium. Axes were copied bay by bay, so
that they carry the small faults that a net has to heal: ends that miss by some millimetres, overshoots, lines
drawn twice, a forgotten stub. Columns, axis bubbles, texts and walls stand on layers of their own.

    python3 make_office_plan.py            writes office_plan.dxf beside this file

Only needed when the plan itself is to change: the drawing is kept in the repository. R12, ASCII, code page
936 (GBK), millimetres.
"""
import math
import pathlib

AXIS = "轴线"  # main axes
CORE = "AXIS-CORE"  # axes of the stair cores alone, for a detail plan
COLUMN = "COLUMN-柱"
BUBBLE = "轴号"
WALL = "WALL"
TEXT = "TEXT-文字"

LAYERS = [("0", 7), (AXIS, 1), (CORE, 1), (COLUMN, 2), (BUBBLE, 3), (WALL, 4), (TEXT, 7)]

BAY = 7200.0
XS = [BAY * i for i in range(9)]  # axes 1 to 9
YS = [0.0, 7800.0, 10200.0, 18000.0]  # axes A to D; the corridor lies between B and C
FRONT_CENTRE = (28800.0, 41580.0)  # the front's arcs turn about this point
FRONT_OUTER = 50580.0
FRONT_INNER = math.hypot(XS[4] - XS[1], FRONT_CENTRE[1])  # meets axis A on axes 2 and 8
HALL_CENTRE = (57600.0, 9000.0)  # lecture hall at the east end
HALL_RADII = (9000.0, 5400.0)
ATRIUM = (28800.0, 14100.0, 3000.0)

out = []


def tag(code, value):
    out.append(f"{code:3d}\n{value}\n")


def number(value):
    text = f"{value:.4f}".rstrip("0").rstrip(".")
    return "0" if text == "-0" else text


def begin(kind, layer):
    tag(0, kind)
    tag(8, layer)


def point(x, y, first=10):
    tag(first, number(x))
    tag(first + 10, number(y))


def line(layer, x1, y1, x2, y2):
    begin("LINE", layer)
    point(x1, y1)
    point(x2, y2, 11)


def circle(layer, x, y, r):
    begin("CIRCLE", layer)
    point(x, y)
    tag(40, number(r))


def arc(layer, centre, r, start, end):
    begin("ARC", layer)
    point(*centre)
    tag(40, number(r))
    tag(50, number(start % 360))
    tag(51, number(end % 360))


def polyline(layer, vertices, closed=False):
    """vertices: (x, y) or (x, y, bulge)."""
    begin("POLYLINE", layer)
    tag(66, 1)
    point(0, 0)
    tag(70, 1 if closed else 0)
    for x, y, *bulge in vertices:
        begin("VERTEX", layer)
        point(x, y)
        if bulge:
            tag(42, number(bulge[0]))
    begin("SEQEND", layer)


def text(layer, x, y, height, words, centred=False):
    begin("TEXT", layer)
    point(x, y)
    tag(40, number(height))
    tag(1, words)
    if centred:
        tag(72, 1)
        tag(73, 2)
        point(x, y, 11)


def front_y(x, r):
    """y on the southern side of a front arc."""
    cx, cy = FRONT_CENTRE
    return cy - math.sqrt(r * r - (x - cx) ** 2)


def on_circle(centre, r, degrees):
    a = math.radians(degrees)
    return centre[0] + r * math.cos(a), centre[1] + r * math.sin(a)


def wing():
    # Lettered axes, each drawn in one stroke. B runs a little past its last crossing on both sides.
    line(AXIS, XS[0], YS[0], XS[8], YS[0])
    line(AXIS, XS[0] - 38, YS[1], XS[8] + 31, YS[1])
    line(AXIS, XS[8], YS[2], XS[0], YS[2])
    line(AXIS, XS[0], YS[3], XS[8], YS[3])
    # Numbered axes, copied bay by bay: the joints of some miss by a few millimetres.
    miss = [0, 12, -8, 0, 25, 0, -31, 18, 0]
    for i, x in enumerate(XS):
        line(AXIS, x, YS[0] - miss[i] / 2, x, YS[1] + miss[i])
        line(AXIS, x + miss[-i] / 4, YS[1], x, YS[2])
        line(AXIS, x, YS[2] + abs(miss[i]), x, YS[3])
    # Secondary axes in the middle of the bays, north and south of the corridor.
    for i in range(8):
        if i in (3, 4):
            continue  # the atrium's bays
        x = XS[i] + BAY / 2
        line(AXIS, x, YS[0], x, YS[1] + (9 if i % 2 else -14))
        if i not in (1, 6):  # the stair cores' bays
            line(AXIS, x, YS[2], x, YS[3] - (22 if i == 5 else 0))
    # Purlins of the roof terrace, between D and the parapet.
    line(AXIS, XS[1], YS[3] + 3600, XS[7], YS[3] + 3600)
    for i in range(1, 8):
        line(AXIS, XS[i], YS[3], XS[i], YS[3] + 3600 + (40 if i == 4 else 0))


def front():
    # The outer arc was drawn in two halves that overlap by half a degree, the inner one as a polyline from axis 2
    # to axis 8 with a corner on each axis between.
    half = math.degrees(math.asin((XS[8] - FRONT_CENTRE[0]) / FRONT_OUTER))
    arc(AXIS, FRONT_CENTRE, FRONT_OUTER, 270 - half, 270.5)
    arc(AXIS, FRONT_CENTRE, FRONT_OUTER, 270, 270 + half)
    angles = [math.asin((x - FRONT_CENTRE[0]) / FRONT_INNER) for x in XS[1:8]]
    bulges = [math.tan((b - a) / 4) for a, b in zip(angles, angles[1:])] + [0]
    polyline(AXIS, [(x, front_y(x, FRONT_INNER), bulge) for x, bulge in zip(XS[1:8], bulges)])
    for i in range(1, 8):
        line(AXIS, XS[i], YS[0] - (16 if i == 3 else 0), XS[i], front_y(XS[i], FRONT_OUTER) + (11 if i == 5 else -7))
    for i in range(1, 7):
        x = XS[i] + BAY / 2
        inner = front_y(x, FRONT_INNER)
        line(AXIS, x, inner, x, front_y(x, FRONT_OUTER))


def hall():
    for r in HALL_RADII:
        arc(AXIS, HALL_CENTRE, r, -90, 90)
    for k in range(1, 8):
        a = -90 + 22.5 * k
        r1, r2 = HALL_RADII[1] + (k % 3) * 9, HALL_RADII[0] - (k % 2) * 13
        line(AXIS, *on_circle(HALL_CENTRE, r1, a), *on_circle(HALL_CENTRE, r2, a))
    line(AXIS, HALL_CENTRE[0], 3600, HALL_CENTRE[0], 14400)  # drawn again over axis 9


def core(i, south):
    """A stair core in bay i: two flights, a landing, a shaft."""
    x1, x2 = XS[i], XS[i + 1]
    y1, y2 = (YS[0], YS[1]) if south else (YS[2], YS[3])
    xa, xb, ya = x1 + 2700, x1 + 5400, y1 + 1800
    polyline(AXIS, [(xa, y1), (xa, y2), (xb, y2), (xb, y1)])
    line(AXIS, xa + 21, ya, xb - 17, ya)
    line(AXIS, xa, y2 - 2100, xb, y2 - 2100)
    line(AXIS, xb, y1 + 3900, x2, y1 + 3900)
    line(AXIS, xb, y1 + 5700, x2 + 26, y1 + 5700)
    for layer_y in (y1, ya, y2 - 2100, y2):
        line(CORE, xa, layer_y, xb, layer_y)
    for x in (xa, xb):
        line(CORE, x, y1, x, y2)


def atrium():
    x, y, r = ATRIUM
    circle(AXIS, x, y, r)
    line(AXIS, XS[3] + 2200, y, x - r - 15, y)
    line(AXIS, x + r + 24, y, XS[5] - 2200, y)
    for side in (XS[3] + 2200, XS[5] - 2200):
        line(AXIS, side, YS[2], side, YS[3])
    for k in (45, 135):
        ax, ay = on_circle((x, y), r, k)
        line(AXIS, ax, ay, x + (3900 if k == 45 else -3900), YS[3])


def entrance():
    """The porch in front of bays 4 and 5, rounded at its corners."""
    x, y = FRONT_CENTRE[0], front_y(FRONT_CENTRE[0], FRONT_OUTER)
    c = math.tan(math.radians(90) / 4)
    polyline(AXIS, [(x - 5400, front_y(x - 5400, FRONT_OUTER)), (x - 5400, y - 2400, c), (x - 3600, y - 4200),
                    (x + 3600, y - 4200, c), (x + 5400, y - 2400), (x + 5400, front_y(x + 5400, FRONT_OUTER))])
    line(AXIS, x, y, x, y - 4200)
    for dx in (-1800, 1800):
        line(AXIS, x + dx, front_y(x + dx, FRONT_OUTER), x + dx, y - 4185)


def leftovers():
    """What years of editing leave behind."""
    line(AXIS, XS[2], YS[0], XS[2], YS[1])  # axis 3 once more
    line(AXIS, XS[6], YS[3], XS[6], YS[2])  # and a piece of axis 7, the other way round
    line(AXIS, XS[0], YS[3], XS[3], YS[3])  # and the beginning of axis D
    line(AXIS, XS[5] + 900, YS[1], XS[5] + 930, YS[1])  # a stub of 30 mm
    line(AXIS, XS[7], YS[2], XS[7], YS[2])  # a line without length


def furniture_of_the_sheet():
    columns = [(x, y) for x in XS for y in YS]
    columns += [(x, front_y(x, FRONT_OUTER)) for x in XS[1:8]]
    for x, y in columns:
        polyline(COLUMN, [(x - 300, y - 300), (x + 300, y - 300), (x + 300, y + 300), (x - 300, y + 300)], True)
    for k in range(1, 8):
        circle(COLUMN, *on_circle(HALL_CENTRE, HALL_RADII[0], -90 + 22.5 * k), 350)
    for i, x in enumerate(XS):
        line(BUBBLE, x, YS[3] + 5200, x, YS[3] + 7000)
        circle(BUBBLE, x, YS[3] + 7800, 800)
        text(BUBBLE, x, YS[3] + 7800, 700, str(i + 1), True)
    for letter, y in zip("ABCD", YS):
        line(BUBBLE, -1600, y, -3400, y)
        circle(BUBBLE, -4200, y, 800)
        text(BUBBLE, -4200, y, 700, letter, True)
    for y in (YS[0] - 120, YS[3] + 120):
        line(WALL, XS[0], y, XS[8], y)
    text(TEXT, 9000, -15000, 1200, "办公楼二层轴线平面图  1:100")
    text(TEXT, 27300, 14000, 500, "中庭 ATRIUM")
    text(TEXT, 59000, 8800, 500, "报告厅 HALL")


def main():
    tag(999, "Sample plan of TvoBase: an invented office building, millimetres.")
    tag(0, "SECTION"), tag(2, "HEADER")
    tag(9, "$ACADVER"), tag(1, "AC1009")
    tag(9, "$DWGCODEPAGE"), tag(3, "ANSI_936")
    tag(9, "$INSUNITS"), tag(70, 4)
    tag(0, "ENDSEC")
    tag(0, "SECTION"), tag(2, "TABLES")
    tag(0, "TABLE"), tag(2, "LAYER"), tag(70, len(LAYERS))
    for name, colour in LAYERS:
        tag(0, "LAYER"), tag(2, name), tag(70, 0), tag(62, colour), tag(6, "CONTINUOUS")
    tag(0, "ENDTAB")
    tag(0, "ENDSEC")
    tag(0, "SECTION"), tag(2, "ENTITIES")
    wing()
    front()
    hall()
    core(1, south=False)
    core(6, south=False)
    atrium()
    entrance()
    leftovers()
    furniture_of_the_sheet()
    tag(0, "ENDSEC")
    tag(0, "EOF")
    path = pathlib.Path(__file__).with_name("office_plan.dxf")
    path.write_bytes("".join(out).encode("gbk"))


if __name__ == "__main__":
    main()
