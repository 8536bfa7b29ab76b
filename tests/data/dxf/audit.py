"""Reads a DXF file with ezdxf, audits it and prints what the interchange
export tests compare, as one JSON object:

  errors, fixes       the audit's error and fix messages (must be empty)
  entities            [type, layer] of every model space entity, in order
  looks               [colour, true colour, line type, line weight] of each
  invisible           the indices of the entities with the invisible flag
  layers              layer name -> colour number (negative: off)
  lines               [x1, y1, x2, y2] of every LINE
  arcs, ellipses      start and end points (and the ratio and major axis of
                      ellipses)
  circles             radii
  splines             degree and the curve point at parameter 1
  texts, mtexts       [text, rotation in degrees, insertion point], the text
                      with its \\U+XXXX escapes decoded

Usage: python3 audit.py file.dxf
"""
import json
import sys

import ezdxf


def xy(v):
    return [round(v[0], 6), round(v[1], 6)]


def main(path):
    doc = ezdxf.readfile(path)
    auditor = doc.audit()
    out = {
        "version": doc.dxfversion,
        "errors": [e.message for e in auditor.errors],
        "fixes": [f.message for f in auditor.fixes],
        "entities": [], "looks": [], "invisible": [],
        "layers": {layer.dxf.name: layer.dxf.color for layer in doc.layers},
        "lines": [], "arcs": [], "ellipses": [], "circles": [], "splines": [],
        "texts": [], "mtexts": [],
    }
    for e in doc.modelspace():
        kind = e.dxftype()
        out["entities"].append([kind, e.dxf.layer])
        if e.dxf.invisible:
            out["invisible"].append(len(out["entities"]) - 1)
        out["looks"].append([e.dxf.color, e.dxf.get("true_color", -1), e.dxf.linetype, e.dxf.lineweight])
        if kind == "LINE":
            out["lines"].append(xy(e.dxf.start) + xy(e.dxf.end))
        elif kind == "ARC":
            out["arcs"].append({"start": xy(e.start_point), "end": xy(e.end_point)})
        elif kind == "ELLIPSE":
            out["ellipses"].append({"ratio": round(e.dxf.ratio, 6), "start": xy(e.start_point),
                                    "end": xy(e.end_point), "major": xy(e.dxf.major_axis)})
        elif kind == "CIRCLE":
            out["circles"].append(round(e.dxf.radius, 6))
        elif kind == "SPLINE":
            tool = e.construction_tool()
            out["splines"].append({"degree": e.dxf.degree, "at1": xy(tool.point(1.0))})
        elif kind == "TEXT":
            out["texts"].append([ezdxf.decode_dxf_unicode(e.dxf.text), e.dxf.rotation, xy(e.dxf.insert)])
        elif kind == "MTEXT":
            out["mtexts"].append([ezdxf.decode_dxf_unicode(e.plain_text()), e.get_rotation(), xy(e.dxf.insert)])
    print(json.dumps(out))


if __name__ == "__main__":
    main(sys.argv[1])
