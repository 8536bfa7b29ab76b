#!/usr/bin/python3
"""Writes the DXF fixtures of the reader tests with ezdxf (Debian: python3-ezdxf).

Run from anywhere: /usr/bin/python3 tests/data/dxf/make_fixtures.py
The files are small on purpose; the tests know their content, so change the
tests together with this script.

  r12_drawing.dxf       R12: layers and line types, a block, and in the model
                        space a LINE, CIRCLE, ARC, TEXT, 2D POLYLINE and INSERT
  r12_drawing_crlf.dxf  the same bytes with CR LF line ends, as Windows programs
                        write them
  r2000_drawing.dxf     R2000: layers, a block with an attribute definition, and
                        a LINE, CIRCLE, ARC, LWPOLYLINE, TEXT, ELLIPSE, INSERT
                        with extended data (codes 1001, 1000, 1040, 1070); the
                        header is cut down to a few variables to keep it small
  r12_entities_only.dxf a bare ENTITIES section from ezdxf's fast R12 writer
"""
import os

import ezdxf
from ezdxf.addons import r12writer

ezdxf.options.write_fixed_meta_data_for_testing = True
HERE = os.path.dirname(os.path.abspath(__file__))


def path(name):
    return os.path.join(HERE, name)


def add_layers(doc):
    doc.layers.add("WALLS", color=1, linetype="DASHED")
    doc.layers.add("TEXT", color=5)


def r12():
    doc = ezdxf.new("R12", setup=["linetypes"])
    add_layers(doc)
    block = doc.blocks.new(name="MARK", base_point=(1, 1))
    block.add_line((0, 0), (2, 2))
    block.add_circle((1, 1), radius=0.5)
    msp = doc.modelspace()
    msp.add_line((0, 0), (100, 50), dxfattribs={"layer": "WALLS"})
    msp.add_circle((50, 25), radius=12.5, dxfattribs={"color": 3})
    msp.add_arc((10, 10), radius=5, start_angle=0, end_angle=90)
    msp.add_text("Hello DXF", dxfattribs={"layer": "TEXT", "height": 2.5, "insert": (5, 60)})
    msp.add_polyline2d([(0, 0), (10, 0), (10, 10), (0, 10)], close=True)
    msp.add_blockref("MARK", (30, 40), dxfattribs={"rotation": 45})
    doc.saveas(path("r12_drawing.dxf"))
    with open(path("r12_drawing.dxf"), "rb") as f:
        data = f.read()
    with open(path("r12_drawing_crlf.dxf"), "wb") as f:
        f.write(data.replace(b"\r\n", b"\n").replace(b"\n", b"\r\n"))


def r2000():
    doc = ezdxf.new("R2000", setup=False)
    keep = {"$ACADVER", "$HANDSEED", "$INSUNITS", "$DWGCODEPAGE"}
    for name in list(doc.header.varnames()):
        if name not in keep:
            del doc.header[name]
    doc.header["$INSUNITS"] = 4  # millimetres
    add_layers(doc)
    block = doc.blocks.new(name="TAG", base_point=(0, 0))
    block.add_lwpolyline([(0, 0), (4, 0), (4, 2)], close=True)
    block.add_attdef("NAME", (0.5, 0.5), dxfattribs={"height": 1})
    msp = doc.modelspace()
    doc.appids.add("FAROVEN")
    line = msp.add_line((1.5, -2.25), (3.75, 8), dxfattribs={"layer": "WALLS"})
    line.set_xdata("FAROVEN", [(1000, "note"), (1040, 2.5), (1070, 7)])
    msp.add_circle((0, 0), radius=1.25)
    msp.add_arc((5, 5), radius=2, start_angle=30, end_angle=150)
    msp.add_lwpolyline([(0, 0), (10, 0), (10, 5)], dxfattribs={"color": 2})
    msp.add_text("R2000 text", dxfattribs={"height": 3, "insert": (0, 20)})
    msp.add_ellipse((20, 20), major_axis=(10, 0), ratio=0.5)
    msp.add_blockref("TAG", (40, 40))
    doc.saveas(path("r2000_drawing.dxf"))


def bare():
    with r12writer(path("r12_entities_only.dxf")) as dxf:
        dxf.add_line((0, 0), (17, 23))
        dxf.add_circle((0, 0), radius=2)


if __name__ == "__main__":
    r12()
    r2000()
    bare()
