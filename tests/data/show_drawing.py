"""Prints what ezdxf finds in each drawing: version, code page and unit, the faults of its audit, then one line per
entity, as dxf_tongue.h shows them, with " | COLOUR" and what our own reader doesn't take."""
import sys

import ezdxf

sys.stdout.reconfigure(encoding="utf-8", errors="backslashreplace")


def number(v):
    return "%.10g" % (v + 0.0)


def point(p):
    return number(p[0]) + "," + number(p[1])


def shown(e):
    d = e.dxf
    kind = e.dxftype()
    if kind == "POINT":
        return "", " " + point(d.location)
    if kind == "LINE":
        return " %s - %s" % (point(d.start), point(d.end)), ""
    if kind == "CIRCLE":
        return " %s r %s" % (point(d.center), number(d.radius)), ""
    if kind == "ARC":
        return " %s r %s %s..%s" % (point(d.center), number(d.radius), number(d.start_angle), number(d.end_angle)), ""
    if kind == "TEXT":
        extra = " %s deg, %s x %s" % (number(d.rotation), d.style, number(d.width))
        return " %s h %s '%s'" % (point(d.insert), number(d.height), d.text), extra
    if kind == "LWPOLYLINE":
        corners = [(x, y, b) for x, y, b in e.get_points("xyb")]
        widths = "%s to %s" % (number(d.const_width), number(d.const_width))
    else:
        corners = [(v.dxf.location[0], v.dxf.location[1], v.dxf.bulge) for v in e.vertices]
        widths = "%s to %s" % (number(d.default_start_width), number(d.default_end_width))
    text = "".join(" " + point(c) + ("b" + number(c[2]) if c[2] else "") for c in corners)
    return text, " wide " + widths


for path in sys.argv[1:]:
    doc = ezdxf.readfile(path)
    print(doc.dxfversion, doc.encoding, doc.units)
    audit = doc.audit()
    for fault in list(audit.errors) + list(audit.fixes):
        print("fault:", fault.message)
    for e in doc.modelspace():
        base, extra = shown(e)
        kind = e.dxftype().replace("LWPOLYLINE", "POLYLINE")
        ltype = " " + e.dxf.linetype if e.dxf.hasattr("linetype") else ""
        print("%s[%s]%s | %d%s%s" % (kind, e.dxf.layer, base, e.dxf.color, ltype, extra))
