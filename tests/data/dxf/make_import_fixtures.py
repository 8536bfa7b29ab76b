#!/usr/bin/python3
"""Writes the DXF files of the import tests with ezdxf (Debian: python3-ezdxf).

Run from anywhere: /usr/bin/python3 tests/data/dxf/make_import_fixtures.py
Every entity kind a version can hold, written by another program than ours:

  kinds_r12.dxf    R12: LINE, CIRCLE, ARC, TEXT, 2D POLYLINE (closed), SOLID,
                   POINT, a spline-frame POLYLINE, and an INSERT of block
                   "MARK" scaled by 2 and turned by 90 degrees
  kinds_r2000.dxf  R2000: the above (LWPOLYLINE with a bulge instead of the 2D
                   polyline), ELLIPSE whole and partial and turned, SPLINE by
                   control points and by fit points, MTEXT of two paragraphs,
                   true colour, line weight, a layer switched off, HATCH
  kinds_r2018.dxf  R2018: the same content as kinds_r2000.dxf
The tests know this content; change them together with this script.
"""
import math
import os

import ezdxf

ezdxf.options.write_fixed_meta_data_for_testing = True
HERE = os.path.dirname(os.path.abspath(__file__))


def common(doc, msp):
    doc.layers.add("WALLS", color=1, linetype="DASHED")
    doc.layers.add("HIDDEN", color=3).off()
    block = doc.blocks.new(name="MARK", base_point=(1, 1))
    block.add_line((1, 1), (3, 1))
    block.add_circle((1, 1), radius=0.5, dxfattribs={"layer": "WALLS"})
    msp.add_line((0, 0), (100, 50), dxfattribs={"layer": "WALLS"})
    msp.add_circle((50, 25), radius=12.5, dxfattribs={"color": 3})
    msp.add_arc((10, 10), radius=5, start_angle=0, end_angle=90)
    msp.add_text("Hello DXF", dxfattribs={"height": 2.5, "insert": (5, 60), "rotation": 30})
    msp.add_solid([(0, 0), (4, 0), (0, 4), (4, 4)], dxfattribs={"layer": "HIDDEN"})
    msp.add_point((7, 7))
    msp.add_blockref("MARK", (30, 40), dxfattribs={"xscale": 2, "yscale": 2, "rotation": 90})


def r12():
    doc = ezdxf.new("R12", setup=["linetypes"])
    msp = doc.modelspace()
    common(doc, msp)
    msp.add_polyline2d([(0, 0), (10, 0), (10, 10), (0, 10)], close=True)
    frame = msp.add_polyline2d([(0, 0), (5, 5), (10, 0)])
    frame.dxf.flags = 4  # spline fit: only frame points, no fitted vertices
    for v in frame.vertices:
        v.dxf.flags = 16
    doc.saveas(os.path.join(HERE, "kinds_r12.dxf"))


def modern(version, name):
    doc = ezdxf.new(version, setup=["linetypes"])
    msp = doc.modelspace()
    common(doc, msp)
    msp.add_lwpolyline([(0, 0, 0, 0, 1), (10, 0), (10, 10)], format="xyseb")
    msp.add_ellipse((20, 20), major_axis=(10, 0), ratio=0.5)
    msp.add_ellipse((60, 20), major_axis=(0, 8), ratio=0.25)
    msp.add_ellipse((20, 60), major_axis=(10, 0), ratio=0.5, start_param=0, end_param=math.pi)
    msp.add_open_spline([(0, 0), (10, 10), (20, 0), (30, 10)], degree=3)
    msp.add_spline(fit_points=[(0, 30), (10, 40), (20, 30)])
    msp.add_mtext("First line\\PSecond {\\fArial|b1;bold}", dxfattribs={"char_height": 2, "insert": (50, 80), "attachment_point": 1})
    msp.add_line((0, 100), (10, 100), dxfattribs={"true_color": ezdxf.rgb2int((255, 128, 0)), "lineweight": 50})
    hatch = msp.add_hatch(color=2)
    hatch.paths.add_polyline_path([(0, 0), (1, 0), (1, 1)], is_closed=True)
    doc.saveas(os.path.join(HERE, name))


if __name__ == "__main__":
    r12()
    modern("R2000", "kinds_r2000.dxf")
    modern("R2018", "kinds_r2018.dxf")
