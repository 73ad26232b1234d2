#!/usr/bin/env python3
"""Makes the example town: a sewer network (town.inp) and its plan (town_plan.dxf).

    python3 make_town.py [FOLDER]      writes both files into FOLDER, by default beside this script

A small town on a slope above a brook: a fan of old streets round a roundabout, two newer streets below it. Every run
gives the same bytes. The town is made in metres around the roundabout, then turned and moved to its place on the map.

Layer "Granice slivova" bounds a catchment around each sewer section. As in a drawing made by hand, its lines, chains
and arcs overrun their crossings and are not split there. Some catchments hold two or three sections, some hold islands that
drain by themselves, one has an open end, and the last section to the brook lies outside of them all.
"""

import math
import random
import sys
from pathlib import Path

SEED = 19
ORIGIN = (462350.0, 5073120.0)
TURN = math.radians(12.3)

RADIALS = [math.radians(a) for a in (8.0, 45.0, 82.0, 115.0, 149.0, 181.0)]
RINGS = [120.0, 230.0, 330.0]
MIDS = [175.0, 280.0, 385.0]  # backs of the parcels: behind each ring street
CORE = 24.0                   # catchment of the roundabout, a ring of sixteen straight sides
STRIP = 6.0                   # half a street with its footpaths: property line from the axis
CURB = 3.5                    # half a carriageway
MAIN_CUTS = [-70.0, -120.0, -210.0, -262.0]
ROWS = [(-120.0, -60.0, -165.0), (-210.0, -165.0, -255.0)]  # street axis, upper and lower back line
OVERRUN = 0.5
BENT_STREET = [(470.0 * math.cos(a), 470.0 * math.sin(a)) for a in (math.radians(37.0),)]
BENT_STREET += [(r * math.cos(math.radians(a)), r * math.sin(math.radians(a))) for r, a in ((428.0, 41.5), (385.0, 45.0))]

EDGE = "Granice slivova"
CURBS = "Cestovni rub"
AXES = "Os ceste"
PARCELS = "Katastarske čestice"
BUILDINGS = "Zgrade"
WATER = "Vodotok"
LABELS = "Natpisi"
TREES = "Stabla"
LAYERS = [(EDGE, 1), (CURBS, 8), (AXES, 4), (PARCELS, 9), (BUILDINGS, 30), (WATER, 5), (LABELS, 7), (TREES, 3)]


# --- Geometry in the town's own metres ---------------------------------------------------------------------------

def polar(radius, angle):
    return (radius * math.cos(angle), radius * math.sin(angle))


def beside(angle, along, offset):
    """Point of a radial street: along its axis from the centre, offset to its left."""
    c, s = math.cos(angle), math.sin(angle)
    return (along * c - offset * s, along * s + offset * c)


def chain(radius, start, end, side=16.0):
    """Points of a ring of straight sides along a circle, as between surveyed corners."""
    count = max(1, round((end - start) * radius / side))
    return [polar(radius, start + (end - start) * n / count) for n in range(count + 1)]


def on_circle(angle, radius, offset):
    """Where the line beside a radial street meets a circle round the centre."""
    return beside(angle, math.sqrt(radius * radius - offset * offset), offset)


def strip_angle(angle, radius, offset):
    x, y = on_circle(angle, radius, offset)
    return math.atan2(y, x) % (2 * math.pi)


def bulge_of(span):
    return math.tan(span / 4)


def middle(a, b):
    return ((a[0] + b[0]) / 2, (a[1] + b[1]) / 2)


def distance(a, b):
    return math.hypot(b[0] - a[0], b[1] - a[1])


def flatten(vertices, step=math.radians(6)):
    """Points along a closed ring of (x, y, bulge); arcs become chords."""
    points = []
    for i, (x, y, bulge) in enumerate(vertices):
        points.append((x, y))
        if bulge == 0.0:
            continue
        x2, y2, _ = vertices[(i + 1) % len(vertices)]
        span = 4 * math.atan(bulge)
        chord = math.hypot(x2 - x, y2 - y)
        radius = chord / (2 * math.sin(abs(span) / 2))
        toward = math.atan2(y2 - y, x2 - x) + math.pi / 2 * (1 if span > 0 else -1)
        high = math.sqrt(max(0.0, radius * radius - chord * chord / 4)) * (1 if abs(span) <= math.pi else -1)
        cx = (x + x2) / 2 + high * math.cos(toward)
        cy = (y + y2) / 2 + high * math.sin(toward)
        start = math.atan2(y - cy, x - cx)
        count = max(2, math.ceil(abs(span) / step))
        for k in range(1, count):
            points.append((cx + radius * math.cos(start + span * k / count),
                           cy + radius * math.sin(start + span * k / count)))
    return points


def ring_area(points):
    return abs(sum(points[i - 1][0] * p[1] - p[0] * points[i - 1][1] for i, p in enumerate(points))) / 2


def contains(points, p):
    inside = False
    for i, b in enumerate(points):
        a = points[i - 1]
        if (a[1] >= p[1]) != (b[1] >= p[1]):
            if a[0] + (p[1] - a[1]) * (b[0] - a[0]) / (b[1] - a[1]) >= p[0]:
                inside = not inside
    return inside


def fan_cell(i, inner, outer, offset, fillet=0.0):
    """Ring of the cell between radial streets i and i + 1 and two circles, its corners rounded."""
    a, b = RADIALS[i], RADIALS[i + 1]
    if fillet == 0.0:
        p = [on_circle(a, inner, offset), on_circle(a, outer, offset), on_circle(b, outer, -offset),
             on_circle(b, inner, -offset)]
        out = math.atan2(p[2][1], p[2][0]) - math.atan2(p[1][1], p[1][0])
        back = math.atan2(p[3][1], p[3][0]) - math.atan2(p[0][1], p[0][0])
        return [(*p[0], 0.0), (*p[1], bulge_of(out)), (*p[2], 0.0), (*p[3], -bulge_of(back))]

    def corner(angle, side, radius, sign):
        """Centre of the rounding and where it touches line and circle."""
        lateral = offset + fillet
        r = radius + sign * fillet
        x = math.sqrt(r * r - lateral * lateral)
        centre = beside(angle, x, side * lateral)
        direction = math.atan2(centre[1], centre[0])
        return beside(angle, x, side * offset), polar(radius, direction)

    line0, arc0 = corner(a, 1, inner, 1)
    line1, arc1 = corner(a, 1, outer, -1)
    line2, arc2 = corner(b, -1, outer, -1)
    line3, arc3 = corner(b, -1, inner, 1)

    def between(p, q):
        return math.atan2(q[1], q[0]) - math.atan2(p[1], p[0])

    def rounding(centre_angle_from, centre_angle_to):
        span = (centre_angle_to - centre_angle_from) % (2 * math.pi)
        return bulge_of(span)

    def turn(previous, p, q, following):
        """Bulge of the rounding p-q by the directions before and behind it."""
        before = math.atan2(p[1] - previous[1], p[0] - previous[0])
        behind = math.atan2(following[1] - q[1], following[0] - q[0])
        return rounding(before, behind)

    tangent_in = (arc0[0] + math.sin(math.atan2(arc0[1], arc0[0])), arc0[1] - math.cos(math.atan2(arc0[1], arc0[0])))
    tangent1 = (arc1[0] - math.sin(math.atan2(arc1[1], arc1[0])), arc1[1] + math.cos(math.atan2(arc1[1], arc1[0])))
    before2 = (arc2[0] + math.sin(math.atan2(arc2[1], arc2[0])), arc2[1] - math.cos(math.atan2(arc2[1], arc2[0])))
    after3 = (arc3[0] + math.sin(math.atan2(arc3[1], arc3[0])), arc3[1] - math.cos(math.atan2(arc3[1], arc3[0])))
    before0 = (2 * arc0[0] - tangent_in[0], 2 * arc0[1] - tangent_in[1])
    return [
        (*line0, 0.0),
        (*line1, turn(line0, line1, arc1, tangent1)),
        (*arc1, bulge_of(between(arc1, arc2))),
        (*arc2, turn(before2, arc2, line2, line3)),
        (*line2, 0.0),
        (*line3, turn(line2, line3, arc3, after3)),
        (*arc3, -bulge_of(between(arc0, arc3))),
        (*arc0, turn(before0, arc0, line0, line1)),
    ]


def box(x1, y1, x2, y2, fillet=0.0):
    """Counter-clockwise ring of a rectangle, its corners rounded."""
    if fillet == 0.0:
        return [(x1, y1, 0.0), (x2, y1, 0.0), (x2, y2, 0.0), (x1, y2, 0.0)]
    q = bulge_of(math.pi / 2)
    return [(x1 + fillet, y1, 0.0), (x2 - fillet, y1, q), (x2, y1 + fillet, 0.0), (x2, y2 - fillet, q),
            (x2 - fillet, y2, 0.0), (x1 + fillet, y2, q), (x1, y2 - fillet, 0.0), (x1, y1 + fillet, q)]


def regular(count, radius, bulge=0.0):
    """Counter-clockwise ring of equal sides round the centre."""
    return [(*polar(radius, 2 * math.pi * n / count), bulge) for n in range(count)]


def placed(ring, centre, angle):
    """A ring turned about its own origin and moved."""
    c, s = math.cos(angle), math.sin(angle)
    return [(centre[0] + x * c - y * s, centre[1] + x * s + y * c, bulge) for x, y, bulge in ring]


# --- The plan -----------------------------------------------------------------------------------------------------

class Plan:
    """Writes a drawing of the 2013 format; coordinates come in the town's metres."""

    def __init__(self):
        self.next_handle = 0x100
        self.entities = []
        self.low = [math.inf, math.inf]
        self.high = [-math.inf, -math.inf]

    @staticmethod
    def place(p):
        c, s = math.cos(TURN), math.sin(TURN)
        return (ORIGIN[0] + p[0] * c - p[1] * s, ORIGIN[1] + p[0] * s + p[1] * c)

    def handle(self):
        self.next_handle += 1
        return format(self.next_handle, "X")

    def point(self, p, code=10):
        x, y = self.place(p)
        for axis, value in enumerate((x, y)):
            self.low[axis] = min(self.low[axis], value)
            self.high[axis] = max(self.high[axis], value)
        return [(code, f"{x:.3f}"), (code + 10, f"{y:.3f}")]

    def start(self, kind, layer, subclass):
        return [(0, kind), (5, self.handle()), (330, MODEL_SPACE), (100, "AcDbEntity"), (8, layer), (100, subclass)]

    def line(self, layer, a, b):
        tags = self.start("LINE", layer, "AcDbLine")
        self.entities.append(tags + self.point(a) + [(30, "0.0")] + self.point(b, 11) + [(31, "0.0")])

    def circle(self, layer, centre, radius):
        tags = self.start("CIRCLE", layer, "AcDbCircle")
        self.entities.append(tags + self.point(centre) + [(30, "0.0"), (40, f"{radius:.3f}")])

    def arc(self, layer, centre, radius, start, end):
        """Counter-clockwise from start to end."""
        tags = self.start("ARC", layer, "AcDbCircle")
        tags += self.point(centre) + [(30, "0.0"), (40, f"{radius:.3f}"), (100, "AcDbArc")]
        for code, angle in ((50, start), (51, end)):
            tags.append((code, f"{math.degrees(angle + TURN) % 360:.6f}"))
        self.entities.append(tags)

    def ring(self, layer, vertices, closed=True):
        tags = self.start("LWPOLYLINE", layer, "AcDbPolyline")
        tags += [(90, str(len(vertices))), (70, "1" if closed else "0"), (43, "0.0")]
        for x, y, bulge in vertices:
            tags += self.point((x, y))
            if bulge:
                tags.append((42, f"{bulge:.9f}"))
        self.entities.append(tags)

    def text(self, layer, p, height, content, angle=0.0):
        """Centred on the point."""
        tags = self.start("TEXT", layer, "AcDbText")
        tags += self.point(p) + [(30, "0.0"), (40, f"{height:.2f}"), (1, content)]
        tags += [(50, f"{math.degrees(angle + TURN) % 360:.3f}"), (72, "1")]
        tags += self.point(p, 11) + [(31, "0.0"), (100, "AcDbText"), (73, "2")]
        self.entities.append(tags)

    def insert(self, layer, block, p, scale):
        tags = self.start("INSERT", layer, "AcDbBlockReference")
        tags += [(2, block)] + self.point(p) + [(30, "0.0")]
        self.entities.append(tags + [(code, f"{scale:.2f}") for code in (41, 42, 43)])

    def write(self, path):
        tags = self.header() + self.tables() + self.blocks()
        tags += [(0, "SECTION"), (2, "ENTITIES")]
        for entity in self.entities:
            tags += entity
        tags += [(0, "ENDSEC")] + OBJECTS + [(0, "EOF")]
        text = "".join(f"{code:>3}\n{value}\n" for code, value in tags)
        path.write_bytes(text.encode("utf-8"))

    def header(self):
        tags = [(0, "SECTION"), (2, "HEADER"), (9, "$ACADVER"), (1, "AC1027"), (9, "$DWGCODEPAGE"), (3, "ANSI_1252"),
                (9, "$EXTMIN"), (10, f"{self.low[0]:.3f}"), (20, f"{self.low[1]:.3f}"), (30, "0.0"),
                (9, "$EXTMAX"), (10, f"{self.high[0]:.3f}"), (20, f"{self.high[1]:.3f}"), (30, "0.0"),
                (9, "$INSUNITS"), (70, "6"), (9, "$MEASUREMENT"), (70, "1"),
                (9, "$HANDSEED"), (5, format(self.next_handle + 1, "X"))]
        return tags + [(0, "ENDSEC"), (0, "SECTION"), (2, "CLASSES"), (0, "ENDSEC")]

    def tables(self):
        def table(name, handle, records, extra=()):
            tags = [(0, "TABLE"), (2, name), (5, handle), (330, "0"), (100, "AcDbSymbolTable"), (70, str(len(records)))]
            tags += list(extra)
            for kind, record_handle, subclass, rest in records:
                tags += [(0, kind), (105 if kind == "DIMSTYLE" else 5, record_handle), (330, handle),
                         (100, "AcDbSymbolTableRecord"), (100, subclass)] + rest
            return tags + [(0, "ENDTAB")]

        centre = [(self.low[i] + self.high[i]) / 2 for i in range(2)]
        height = (self.high[1] - self.low[1]) * 1.1
        view = [(2, "*Active"), (70, "0"), (10, "0.0"), (20, "0.0"), (11, "1.0"), (21, "1.0"),
                (12, f"{centre[0]:.3f}"), (22, f"{centre[1]:.3f}"), (13, "0.0"), (23, "0.0"), (14, "10.0"),
                (24, "10.0"), (15, "10.0"), (25, "10.0"), (16, "0.0"), (26, "0.0"), (36, "1.0"), (17, "0.0"),
                (27, "0.0"), (37, "0.0"), (40, f"{height:.3f}"), (41, "1.5"), (42, "50.0"), (43, "0.0"), (44, "0.0"),
                (50, "0.0"), (51, "0.0"), (71, "0"), (72, "100"), (73, "1"), (74, "3"), (75, "0"), (76, "0"),
                (77, "0"), (78, "0")]

        def line_type(handle, name, description):
            rest = [(2, name), (70, "0"), (3, description), (72, "65"), (73, "0"), (40, "0.0")]
            return ("LTYPE", handle, "AcDbLinetypeTableRecord", rest)

        def layer(handle, name, colour):
            rest = [(2, name), (70, "0"), (62, str(colour)), (6, "Continuous"), (370, "-3"), (390, "F")]
            return ("LAYER", handle, "AcDbLayerTableRecord", rest)

        layers = [layer("10", "0", 7)]
        layers += [layer(format(0x40 + i, "X"), name, colour) for i, (name, colour) in enumerate(LAYERS)]
        style = [(2, "Standard"), (70, "0"), (40, "0.0"), (41, "1.0"), (50, "0.0"), (71, "0"), (42, "2.5"),
                 (3, "txt"), (4, "")]
        records = [("BLOCK_RECORD", handle, "AcDbBlockTableRecord", [(2, name), (340, "0"), (70, "0"), (280, "1"),
                                                                     (281, "0")])
                   for handle, name in ((MODEL_SPACE, "*Model_Space"), (PAPER_SPACE, "*Paper_Space"), ("60", TREE))]
        tags = [(0, "SECTION"), (2, "TABLES")]
        tags += table("VPORT", "8", [("VPORT", "31", "AcDbViewportTableRecord", view)])
        tags += table("LTYPE", "5", [line_type("14", "ByBlock", ""), line_type("15", "ByLayer", ""),
                                     line_type("16", "Continuous", "Solid line")])
        tags += table("LAYER", "2", layers)
        tags += table("STYLE", "3", [("STYLE", "11", "AcDbTextStyleTableRecord", style)])
        tags += table("VIEW", "6", []) + table("UCS", "7", [])
        tags += table("APPID", "9", [("APPID", "12", "AcDbRegAppTableRecord", [(2, "ACAD"), (70, "0")])])
        tags += table("DIMSTYLE", "A", [("DIMSTYLE", "27", "AcDbDimStyleTableRecord", [(2, "Standard"), (70, "0")])],
                      [(100, "AcDbDimStyleTable")])
        return tags + table("BLOCK_RECORD", "1", records) + [(0, "ENDSEC")]

    @staticmethod
    def blocks():
        def block(name, owner, begin, end, layer, content=()):
            space = [(67, "1")] if name == "*Paper_Space" else []
            return [(0, "BLOCK"), (5, begin), (330, owner), (100, "AcDbEntity")] + space + [
                (8, layer), (100, "AcDbBlockBegin"), (2, name), (70, "0"), (10, "0.0"), (20, "0.0"), (30, "0.0"),
                (3, name), (1, "")] + list(content) + [
                (0, "ENDBLK"), (5, end), (330, owner), (100, "AcDbEntity")] + space + [
                (8, layer), (100, "AcDbBlockEnd")]

        def in_tree(handle, kind, rest):
            return [(0, kind), (5, handle), (330, "60"), (100, "AcDbEntity"), (8, TREES)] + rest

        crown = in_tree("63", "CIRCLE", [(100, "AcDbCircle"), (10, "0.0"), (20, "0.0"), (30, "0.0"), (40, "1.0")])
        trunk = in_tree("64", "POINT", [(100, "AcDbPoint"), (10, "0.0"), (20, "0.0"), (30, "0.0")])
        return ([(0, "SECTION"), (2, "BLOCKS")] + block("*Model_Space", MODEL_SPACE, "20", "21", "0") +
                block("*Paper_Space", PAPER_SPACE, "1C", "1D", "0") +
                block(TREE, "60", "61", "62", TREES, crown + trunk) + [(0, "ENDSEC")])


MODEL_SPACE, PAPER_SPACE, TREE = "1F", "1B", "STABLO"
OBJECTS = [(0, "SECTION"), (2, "OBJECTS"),
           (0, "DICTIONARY"), (5, "C"), (330, "0"), (100, "AcDbDictionary"), (281, "1"), (3, "ACAD_GROUP"), (350, "D"),
           (3, "ACAD_LAYOUT"), (350, "1A"), (3, "ACAD_PLOTSTYLENAME"), (350, "E"),
           (0, "DICTIONARY"), (5, "D"), (330, "C"), (100, "AcDbDictionary"), (281, "1"),
           (0, "ACDBDICTIONARYWDFLT"), (5, "E"), (330, "C"), (100, "AcDbDictionary"), (281, "1"), (3, "Normal"),
           (350, "F"), (100, "AcDbDictionaryWithDefault"), (340, "F"),
           (0, "ACDBPLACEHOLDER"), (5, "F"), (330, "E"),
           (0, "DICTIONARY"), (5, "1A"), (330, "C"), (100, "AcDbDictionary"), (281, "1"), (0, "ENDSEC")]


# --- The sewer network --------------------------------------------------------------------------------------------

class Network:
    """A tree of manholes: each but the outfall has one section that leads down."""

    def __init__(self):
        self.places = {}
        self.down = {}   # manhole -> the next one
        self.bends = {}  # manhole -> points between it and the next one
        self.names = {}

    def add(self, key, place, down=None, bends=()):
        self.places[key] = place
        if down is not None:
            self.down[key] = down
            self.bends[key] = list(bends)

    def middle(self, key):
        return middle(self.places[key], self.places[self.down[key]])

    def length(self, key):
        points = [self.places[key], *self.bends[key], self.places[self.down[key]]]
        return sum(distance(a, b) for a, b in zip(points, points[1:]))

    def upstream(self, key):
        return [k for k, d in self.down.items() if d == key]

    def size(self, key):
        return 1 + sum(self.size(k) for k in self.upstream(key))

    def number(self):
        """Names R1, R2, ... from the outfall up: along the larger branch first, then the side branches."""
        order = []

        def walk(key):
            order.append(key)
            for k in sorted(self.upstream(key), key=lambda k: (-self.size(k), k)):
                walk(k)

        walk("outfall")
        self.names = {key: f"R{i + 1}" for i, key in enumerate(order)}
        return order


def lay_network():
    net = Network()
    net.add("outfall", (24.0, -301.0))
    net.add("m4", (0.0, -262.0), "outfall")
    net.add("m3", (0.0, -210.0), "m4")
    net.add("m2", (0.0, -120.0), "m3")
    net.add("m1", (0.0, -70.0), "m2")
    net.add("south", (0.0, -16.0), "m1")
    net.add("east", polar(16.0, math.radians(26.5)), "south")
    net.add("north", polar(16.0, math.radians(98.5)), "east")
    net.add("west", polar(16.0, math.radians(165.0)), "south")
    for i, angle in enumerate(RADIALS):
        below = ("east", "north", "west")[i // 2]
        for k, radius in enumerate(RINGS):
            net.add(f"i{k}{i}", polar(radius, angle), below)
            below = f"i{k}{i}"
    for k, radius in enumerate(RINGS):
        for i in range(len(RADIALS) - 1):
            # From a high point between two streets the water runs both ways, so there are two manholes there.
            a, b = RADIALS[i], RADIALS[i + 1]
            high = (a + b) / 2
            gap = 1.5 / radius
            for side, end, down in ((-1, a, f"i{k}{i}"), (1, b, f"i{k}{i + 1}")):
                top = high + side * gap
                count = 0 if k == 0 else 2 * k
                bends = [polar(radius, top + (end - top) * n / (count + 1)) for n in range(1, count + 1)]
                net.add(f"h{k}{i}{'ab'[side > 0]}", polar(radius, top), down, bends)
    net.add("x3", polar(445.0, RADIALS[3]), "i23")
    net.add("x1", BENT_STREET[0], "i21", BENT_STREET[1:])
    for row, (y, _, _) in enumerate(ROWS):
        for side in (-1, 1):
            below = ("m2", "m3")[row]
            for n, x in enumerate((70.0, 140.0, 200.0)):
                net.add(f"s{row}{'ew'[side < 0]}{n}", (side * x, y), below)
                below = f"s{row}{'ew'[side < 0]}{n}"
    return net


# --- Catchments -----------------------------------------------------------------------------------------------------

def draw_catchments(plan):
    """Boundary linework, and the ring of each catchment as (name, vertices)."""
    rings = []
    first, last = 0, len(RADIALS) - 1
    core = regular(16, CORE + 0.3)
    plan.ring(EDGE, core)
    rings.append(core)

    for i, angle in enumerate(RADIALS):
        end = 452.0 if i == 3 else MIDS[2] + 1.5
        for offset in (-STRIP, STRIP):
            plan.line(EDGE, beside(angle, CORE - 1.5, offset), beside(angle, end, offset))
        stops = [CORE, *RINGS]
        for k, radius in enumerate(RINGS):
            reach = (STRIP + OVERRUN) / radius
            plan.arc(EDGE, (0.0, 0.0), radius, angle - reach, angle + reach)
            inner, outer = stops[k], stops[k + 1]
            half_in, half_out = math.asin(STRIP / inner), math.asin(STRIP / outer)
            rings.append([(*on_circle(angle, inner, -STRIP), 0.0),
                          (*on_circle(angle, outer, -STRIP), bulge_of(2 * half_out)),
                          (*on_circle(angle, outer, STRIP), 0.0),
                          (*on_circle(angle, inner, STRIP), -bulge_of(2 * half_in))])
        if i == 3:
            plan.line(EDGE, beside(angle, 450.0, -STRIP - OVERRUN), beside(angle, 450.0, STRIP + OVERRUN))
            half = math.asin(STRIP / RINGS[2])
            rings.append([(*on_circle(angle, RINGS[2], -STRIP), 0.0), (*beside(angle, 450.0, -STRIP), 0.0),
                          (*beside(angle, 450.0, STRIP), 0.0),
                          (*on_circle(angle, RINGS[2], STRIP), -bulge_of(2 * half))])
        else:
            reach = (STRIP + OVERRUN) / MIDS[2]
            plan.arc(EDGE, (0.0, 0.0), MIDS[2], angle - reach, angle + reach)  # closes the street's end

    for i in range(first, last):
        a, b = RADIALS[i], RADIALS[i + 1]
        for radius in MIDS:
            inset = (STRIP - OVERRUN) / radius
            plan.ring(EDGE, [(*p, 0.0) for p in chain(radius, a + inset, b - inset)], closed=False)
        for k in range(len(RINGS)):
            inner, outer = ([CORE] + MIDS)[k], MIDS[k]
            whole = k == 0 or (k, i) in ((2, 1), (2, 3))  # both sections in one catchment
            if whole:
                rings.append(fan_cell(i, inner, outer, STRIP))
                continue
            high = (a + b) / 2
            plan.line(EDGE, polar(inner - OVERRUN, high), polar(outer + OVERRUN, high))
            for angle, side in ((a, 1), (b, -1)):
                p, r = on_circle(angle, inner, side * STRIP), on_circle(angle, outer, side * STRIP)
                out = high - math.atan2(r[1], r[0]) % (2 * math.pi)
                back = math.atan2(p[1], p[0]) % (2 * math.pi) - high
                rings.append([(*p, 0.0), (*r, bulge_of(out)), (*polar(outer, high), 0.0),
                              (*polar(inner, high), bulge_of(back))])

    # The bent street beyond the fan: one closed outline whose long sides are runs of arcs.
    low, high = math.radians(31.0), math.radians(50.0)
    steps = [low + (high - low) * n / 6 for n in range(7)]
    outline = [(*polar(500.0, t), (0.05, 0.09)[n % 2]) for n, t in enumerate(steps[:-1])]
    outline += [(*polar(500.0, high), 0.0)]
    outline += [(*polar(390.0, t), (-0.04, 0.02)[n % 2]) for n, t in enumerate(reversed(steps[1:]))]
    outline += [(*polar(390.0, low), 0.0)]
    plan.ring(EDGE, outline)
    rings.append(outline)

    # The main street below the roundabout.
    for side in (-1, 1):
        plan.line(EDGE, (side * STRIP, -CORE + 1.5), (side * STRIP, MAIN_CUTS[-1] - 2.0))
    top = -math.sqrt(CORE * CORE - STRIP * STRIP)
    half = math.asin(STRIP / CORE)
    for n, y in enumerate(MAIN_CUTS):
        plan.line(EDGE, (-STRIP - OVERRUN, y), (STRIP + OVERRUN, y))
        if n == 0:
            rings.append([(-STRIP, y, 0.0), (STRIP, y, 0.0), (STRIP, top, -bulge_of(2 * half)), (-STRIP, top, 0.0)])
        else:
            rings.append(box(-STRIP, y, STRIP, MAIN_CUTS[n - 1]))

    # The two streets below: long back lines, cut across at the manholes.
    west, east = -207.0, 207.0
    for y in sorted({y for _, upper, lower in ROWS for y in (upper, lower)}, reverse=True):
        plan.line(EDGE, (-STRIP + OVERRUN, y), (west - 6.0, y))
        plan.line(EDGE, (STRIP - OVERRUN, y), (east + 18.0, y))
    for row, (_, upper, lower) in enumerate(ROWS):
        for side, end in ((-1, west), (1, east)):
            cuts = [side * 70.0, side * 140.0]
            if (row, side) == (1, 1):
                cuts = [side * 140.0]  # two sections in one catchment
            for x in cuts:
                plan.line(EDGE, (x, upper + OVERRUN), (x, lower - OVERRUN))
            stops = [side * STRIP, *cuts]
            for x1, x2 in zip(stops, stops[1:]):
                rings.append(box(min(x1, x2), lower, max(x1, x2), upper))
            x1 = cuts[-1]
            if (row, side) == (0, 1):
                turning = [(212.0, upper + 3.0), (221.0, -78.0), (225.0, -100.0), (225.0, -125.0), (221.0, -147.0),
                           (212.0, lower - 3.0)]
                plan.ring(EDGE, [(*p, 0.0) for p in turning], closed=False)
                rings.append([(x1, lower, 0.0), *((*p, 0.0) for p in reversed(turning)), (x1, upper, 0.0)])
            elif (row, side) == (1, -1):
                pass  # nobody has closed this one yet
            else:
                plan.line(EDGE, (end, upper + OVERRUN), (end, lower - OVERRUN))
                rings.append(box(min(x1, end), lower, max(x1, end), upper))
    return rings


def draw_islands(plan):
    """Grounds that drain by themselves: closed outlines inside of catchments. Their rings."""
    islands = []

    def outline(ring):
        plan.ring(EDGE, ring)
        islands.append(ring)

    outline(placed(regular(8, 6.4), (0.7, -0.4), 0.2))                        # green of the roundabout
    school = placed(box(-17.0, -11.0, 17.0, 11.0, 4.0), polar(204.0, math.radians(20.0)), math.radians(20.0))
    outline(school)
    pond = [(10.0, -2.0, 0.25), (6.0, 8.0, 0.2), (-6.0, 6.0, 0.3), (-9.0, -5.0, -0.1), (1.0, -6.0, 0.25)]
    outline(placed(pond, polar(257.0, math.radians(17.0)), 0.3))
    church, east = polar(92.0, math.radians(98.5)), math.radians(98.5)
    outline(placed(box(-12.0, -13.0, 12.0, 13.0, 5.0), church, east))
    plan.ring(EDGE, placed(box(-5.0, -8.0, 5.0, 8.0), church, east))          # within an island
    outline(placed(box(-12.0, -9.0, 12.0, 9.0), polar(357.0, math.radians(139.0)), math.radians(139.0)))
    outline(placed(box(-20.0, -11.0, 20.0, 11.0, 4.0), (-105.0, -140.0), 0.0))  # sports ground
    outline(placed(box(-10.0, -8.0, 10.0, 8.0), (60.0, -187.0), 0.0))
    outline(placed([(-8.0, -8.0, 0.0), (8.0, -8.0, 0.0), (8.0, 0.0, 0.0), (0.0, 0.0, 0.0), (0.0, 8.0, 0.0),
                    (-8.0, 8.0, 0.0)], (105.0, -234.0), 0.0))
    return islands


# --- Streets, parcels, houses ----------------------------------------------------------------------------------------

def draw_streets(plan):
    for i, angle in enumerate(RADIALS):
        plan.line(AXES, polar(14.0, angle), polar(452.0 if i == 3 else MIDS[2], angle))
    for radius in RINGS:
        plan.arc(AXES, (0.0, 0.0), radius, RADIALS[0], RADIALS[-1])
    plan.line(AXES, (0.0, -14.0), (0.0, -275.0))
    plan.ring(AXES, [(*p, 0.0) for p in BENT_STREET], closed=False)
    for y, _, _ in ROWS:
        plan.line(AXES, (-205.0, y), (205.0, y))
    plan.circle(CURBS, (0.0, 0.0), 6.0)
    edges = [14.0] + [r for radius in RINGS for r in (radius - CURB, radius + CURB)]
    for i in range(len(RADIALS) - 1):
        for k in range(3):
            plan.ring(CURBS, fan_cell(i, edges[2 * k], edges[2 * k + 1], CURB, 6.0))
        plan.arc(CURBS, (0.0, 0.0), edges[6], RADIALS[i] + 0.02, RADIALS[i + 1] - 0.02)
    for side in (-1, 1):
        x1, x2 = sorted((side * CURB, side * 200.0))
        plan.ring(CURBS, box(x1, ROWS[1][0] + CURB, x2, ROWS[0][0] - CURB, 6.0))
        plan.ring(CURBS, [(side * CURB, -20.0, 0.0), (side * CURB, ROWS[0][0] + CURB + 6.0, 0.4142135 * side),
                          (side * (CURB + 6.0), ROWS[0][0] + CURB, 0.0), (side * 200.0, ROWS[0][0] + CURB, 0.0)],
                  closed=False)
        plan.ring(CURBS, [(side * CURB, -275.0, 0.0), (side * CURB, ROWS[1][0] - CURB - 6.0, -0.4142135 * side),
                          (side * (CURB + 6.0), ROWS[1][0] - CURB, 0.0), (side * 200.0, ROWS[1][0] - CURB, 0.0)],
                  closed=False)
    plan.arc(CURBS, (200.0, ROWS[0][0]), 9.0, math.radians(-155.0), math.radians(155.0))  # turning place


class Estates:
    """Parcels with their houses, numbered as they come."""

    def __init__(self, plan, islands):
        self.plan = plan
        self.islands = [flatten(ring) for ring in islands]
        self.random = random.Random(SEED)
        self.count = 0

    def parcel(self, ring, front, angle, depth):
        """front is the middle of the side to the street, angle points from the street into the parcel."""
        self.count += 1
        self.plan.ring(PARCELS, ring)
        number = f"{1000 + self.count // 3}" + ("" if self.count % 3 == 0 else f"/{self.count % 3}")
        at = (front[0] + (depth - 4.0) * math.cos(angle), front[1] + (depth - 4.0) * math.sin(angle))
        self.plan.text(LABELS, at, 1.8, number, angle - math.pi / 2)
        if self.count % 9 == 4:
            for n in range(2):  # an orchard
                away = 8.0 + 9.0 * n
                self.plan.insert(TREES, TREE, (front[0] + away * math.cos(angle), front[1] + away * math.sin(angle)),
                                 2.0 + 0.5 * n)
            return
        setback = 4.0 + 3.0 * self.random.random()
        width, length = 8.0 + 4.0 * self.random.random(), 9.0 + 4.0 * self.random.random()
        house = [(setback, -width / 2, 0.0), (setback + length, -width / 2, 0.0), (setback + length, width / 2, 0.0),
                 (setback, width / 2, 0.0)]
        if self.count % 4 == 1:  # with a wing
            house[2:3] = [(setback + length, 0.0, 0.0), (setback + length * 0.55, 0.0, 0.0),
                          (setback + length * 0.55, width / 2, 0.0)]
        ground_plan = flatten(ring)
        if any(contains(ground_plan, p) for island in self.islands for p in island):
            return  # what stands on an island's grounds is not ours to draw
        self.plan.ring(BUILDINGS, placed(house, front, angle))
        if self.count % 5 == 2 and depth > setback + length + 12.0:
            shed = box(setback + length + 4.0, -2.5, setback + length + 9.0, 2.5)
            self.plan.ring(BUILDINGS, placed(shed, front, angle))

    def stops(self, low, high, frontage):
        """Dividing places between low and high, about a frontage apart."""
        count = max(1, round((high - low) / frontage))
        width = (high - low) / count
        inner = [low + width * (n + 0.2 * (self.random.random() - 0.5)) for n in range(1, count)]
        return [low, *inner, high]

    def fan_row(self, i, inner, outer, front_is_inner):
        """Parcels side by side between two circles, from one street's property line to the next one's. The middle,
        where the catchments meet, is a parcel's border."""
        a, b = RADIALS[i], RADIALS[i + 1]
        front = inner if front_is_inner else outer
        low, high = strip_angle(a, front, STRIP), strip_angle(b, front, -STRIP)
        high_point = (a + b) / 2
        stops = self.stops(low, high_point, 20.0 / front)[:-1] + self.stops(high_point, high, 20.0 / front)
        for n in range(len(stops) - 1):
            left = [polar(inner, stops[n]), polar(outer, stops[n])]
            right = [polar(inner, stops[n + 1]), polar(outer, stops[n + 1])]
            if n == 0:
                left = [on_circle(a, inner, STRIP), on_circle(a, outer, STRIP)]
            if n == len(stops) - 2:
                right = [on_circle(b, inner, -STRIP), on_circle(b, outer, -STRIP)]

            def span(p, r):
                return (math.atan2(r[1], r[0]) - math.atan2(p[1], p[0])) % (2 * math.pi)

            ring = [(*left[0], 0.0), (*left[1], bulge_of(span(left[1], right[1]))), (*right[1], 0.0),
                    (*right[0], -bulge_of(span(left[0], right[0])))]
            angle = (stops[n] + stops[n + 1]) / 2
            self.parcel(ring, polar(front, angle), angle if front_is_inner else angle + math.pi, outer - inner)

    def straight_row(self, x1, x2, street, back):
        """Parcels side by side along a level street; the corner at the main street is rounded."""
        stops = self.stops(x1, x2, 19.0)
        up = back > street
        for n in range(len(stops) - 1):
            left, right = stops[n], stops[n + 1]
            low, high = min(street, back), max(street, back)
            ring = box(left, low, right, high)
            nearest = left if abs(left) < abs(right) else right
            if abs(abs(nearest) - STRIP) < 1e-9:  # the corner parcel: rounded where the streets meet
                corner = ring.index((nearest, street, 0.0))
                before, after = ring[corner - 1], ring[(corner + 1) % 4]

                def toward(p, r, length=5.0):
                    d = math.hypot(r[0] - p[0], r[1] - p[1])
                    return (p[0] + (r[0] - p[0]) * length / d, p[1] + (r[1] - p[1]) * length / d)

                p = ring[corner]
                ring[corner:corner + 1] = [(*toward(p, before), bulge_of(math.pi / 2)), (*toward(p, after), 0.0)]
            self.parcel(ring, ((left + right) / 2, street), math.pi / 2 if up else -math.pi / 2, high - low)


def draw_estates(plan, islands):
    estates = Estates(plan, islands)
    for i in range(len(RADIALS) - 1):
        # The old core: one parcel with a house round a yard, then a row of houses to the first ring street.
        core = fan_cell(i, 30.0, 70.0, STRIP)
        plan.ring(PARCELS, core)
        plan.ring(BUILDINGS, fan_cell(i, 48.0, 68.0, STRIP + 1.5))
        plan.ring(BUILDINGS, fan_cell(i, 55.0, 62.0, STRIP + 5.0))
        estates.fan_row(i, 70.0, RINGS[0] - STRIP, False)
        for k in range(2):
            estates.fan_row(i, RINGS[k] + STRIP, MIDS[k], True)
            estates.fan_row(i, MIDS[k], RINGS[k + 1] - STRIP, False)
        estates.fan_row(i, RINGS[2] + STRIP, MIDS[2], True)
    for y, upper, lower in ROWS:
        for side in (-1, 1):
            for from_x, to_x in ((STRIP, 70.0), (70.0, 140.0), (140.0, 195.0)):
                x1, x2 = sorted((side * from_x, side * to_x))
                estates.straight_row(x1, x2, y + STRIP, upper)
                estates.straight_row(x1, x2, y - STRIP, lower)
    for n in range(11):  # the avenue
        for side in (-1, 1):
            plan.insert(TREES, TREE, (side * 4.8, -34.0 - 20.0 * n), 1.8)


def draw_labels(plan):
    streets = ["Školska ulica", "Ulica Đure Đakovića", "Crkvena ulica", "Vinogradska cesta", "Ulica lipa", "Zvonimirova"]
    for angle, name in zip(RADIALS, streets):
        turned = angle if angle < math.pi / 2 else angle + math.pi
        plan.text(LABELS, beside(angle, 285.0, 1.6 if angle < math.pi / 2 else -1.6), 2.5, name, turned)
    for radius, name in zip(RINGS, ("Trg i prvi krug", "Gornji prsten", "Ulica Ljudevita Gaja")):
        angle = (RADIALS[2] + RADIALS[3]) / 2 - 0.06
        plan.text(LABELS, polar(radius + 1.5, angle), 2.5, name, angle - math.pi / 2)
    plan.text(LABELS, (-2.0, -165.0), 2.5, "Ulica bana Jelačića", math.pi / 2)
    for (y, _, _), name in zip(ROWS, ("Cvjetna ulica", "Ulica uz potok")):
        plan.text(LABELS, (105.0, y + 1.6), 2.5, name)
        plan.text(LABELS, (-105.0, y + 1.6), 2.5, name)
    plan.text(LABELS, (-120.0, -300.0), 3.5, "Potok Žirovnica")
    plan.text(LABELS, polar(204.0, math.radians(20.0)), 3.0, "Škola", math.radians(-70.0))
    plan.text(LABELS, polar(92.0, math.radians(98.5)), 2.5, "Župna crkva", math.radians(8.5))
    bank = [(-260.0, -296.0, 0.22), (-150.0, -286.0, -0.18), (-40.0, -303.0, -0.12), (60.0, -312.0, 0.2),
            (160.0, -295.0, -0.15), (270.0, -301.0, 0.0)]
    plan.ring(WATER, bank, closed=False)
    plan.ring(WATER, [(x, y - 6.0, bulge) for x, y, bulge in bank], closed=False)


# --- The network file -------------------------------------------------------------------------------------------------

def ground(p):
    """Height of the ground: rises from the brook to the north, a little to the west."""
    return 118.0 + 0.032 * (p[1] + 300.0) - 0.006 * p[0]


def write_network(path, net, order, catchments, islands):
    invert = {}

    def settle(key):
        arriving = [settle(k) - 0.005 * net.length(k) for k in net.upstream(key)]
        invert[key] = min([ground(net.places[key]) - (1.6 if key != "outfall" else 2.6), *arriving])
        return invert[key]

    settle("outfall")

    def diameter(key):
        size = net.size(key)
        return 0.30 if size < 6 else 0.40 if size < 20 else 0.50 if size < 45 else 0.60

    out = ["[TITLE]", "Primjer: mali grad", "", "[OPTIONS]", "FLOW_UNITS           LPS", "INFILTRATION         HORTON",
           "FLOW_ROUTING         KINWAVE", "START_DATE           01/01/2024", "START_TIME           00:00:00",
           "END_DATE             01/01/2024", "END_TIME             03:00:00", "REPORT_STEP          00:05:00",
           "WET_STEP             00:01:00", "DRY_STEP             01:00:00", "ROUTING_STEP         0:00:20", "",
           "[EVAPORATION]", "CONSTANT         0.0", "", "[RAINGAGES]", ";;Name Format Interval SCF Source",
           "Kisa INTENSITY 0:15 1.0 TIMESERIES Pljusak", "", "[TIMESERIES]"]
    for minute, rain in ((0, 6), (15, 14), (30, 42), (45, 24), (60, 12), (75, 6), (90, 0)):
        out.append(f"Pljusak {minute // 60}:{minute % 60:02d} {rain}")

    held = []  # (name, outlet, points, area)
    for ring in catchments:
        points = flatten(ring)
        inside = [k for k in order if k in net.down and contains(points, net.middle(k))]
        if not inside:
            continue
        area = ring_area(points)
        for island in islands:
            hole = flatten(island)
            if contains(points, hole[0]):
                area -= ring_area(hole)
        held.append((f"S{net.names[inside[0]][1:]}", inside, points, area))

    out += ["", "[SUBCATCHMENTS]", ";;Name RainGage Outlet Area %Imperv Width %Slope CurbLen"]
    for name, inside, _, area in held:
        out.append(f"{name} Kisa {net.names[net.down[inside[0]]]} {area / 10000:.4f} 55 {math.sqrt(area):.1f} 1.2 0")
    out += ["", "[SUBAREAS]", ";;Name N-Imperv N-Perv S-Imperv S-Perv PctZero RouteTo"]
    out += [f"{name} 0.015 0.2 1.5 5 25 OUTLET" for name, _, _, _ in held]
    out += ["", "[INFILTRATION]", ";;Name MaxRate MinRate Decay DryTime MaxInfil"]
    out += [f"{name} 50 5 4 7 0" for name, _, _, _ in held]

    out += ["", "[JUNCTIONS]", ";;Name Elevation MaxDepth InitDepth SurDepth Aponded"]
    for key in order[1:]:
        out.append(f"{net.names[key]} {invert[key]:.3f} {ground(net.places[key]) - invert[key]:.3f} 0 0 0")
    out += ["", "[OUTFALLS]", ";;Name Elevation Type", f"{net.names['outfall']} {invert['outfall']:.3f} FREE", "",
            "[CONDUITS]", ";;Name FromNode ToNode Length Roughness InOffset OutOffset"]
    pipes = [k for k in order if k in net.down]
    for key in pipes:
        out.append(f"D{net.names[key][1:]} {net.names[key]} {net.names[net.down[key]]} {net.length(key):.3f} 0.013 0 0")
    out += ["", "[XSECTIONS]", ";;Link Shape Geom1 Geom2 Geom3 Geom4 Barrels"]
    out += [f"D{net.names[key][1:]} CIRCULAR {diameter(key):.2f} 0 0 0 1" for key in pipes]

    def coordinates(p):
        x, y = Plan.place(p)
        return f"{x:.3f} {y:.3f}"

    out += ["", "[COORDINATES]", ";;Node X Y"]
    out += [f"{net.names[key]} {coordinates(net.places[key])}" for key in order]
    out += ["", "[VERTICES]", ";;Link X Y"]
    out += [f"D{net.names[key][1:]} {coordinates(p)}" for key in pipes for p in net.bends[key]]
    out += ["", "[POLYGONS]", ";;Subcatchment X Y"]
    out += [f"{name} {coordinates(p)}" for name, _, points, _ in held for p in points]
    path.write_bytes(("\n".join(out) + "\n").encode("utf-8"))
    return held


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent
    folder.mkdir(parents=True, exist_ok=True)
    net = lay_network()
    order = net.number()
    plan = Plan()
    catchments = draw_catchments(plan)
    islands = draw_islands(plan)
    draw_streets(plan)
    draw_estates(plan, islands)
    draw_labels(plan)
    plan.write(folder / "town_plan.dxf")
    held = write_network(folder / "town.inp", net, order, catchments, islands)

    pipes = len(net.down)
    covered = sum(len(inside) for _, inside, _, _ in held)
    shared = sum(len(inside) > 1 for _, inside, _, _ in held)
    print(f"{pipes} sections, {len(order)} nodes, {len(held)} catchments ({shared} of them with several sections), "
          f"{pipes - covered} sections in none, {len(islands)} islands, {len(plan.entities)} entities")


if __name__ == "__main__":
    main()
