"""Writes the drawings the DXF reader test loads, with ezdxf (Debian's python3-ezdxf).

Usage: /usr/bin/python3 make_reader_samples.py OUTPUT_FOLDER

Writes reader-R12.dxf and reader-R2010.dxf: one entity of each kind the reader draws, each on a layer
named after it, so that the test can check every one against its closed form. The values here and in
tst_dxfreader.cpp go together.
"""

import math
import os
import sys

import ezdxf


def layers(doc, modern):
    doc.layers.add("line", color=1)
    doc.layers.add("circle", color=30)
    ellipse = doc.layers.add("ellipse", color=5)
    if modern:
        ellipse.rgb = (0x12, 0x34, 0x56)
    doc.layers.add("off", color=3).off()
    doc.layers.add("frozen", color=4).freeze()


def blocks(doc):
    # A 10 x 10 square around its base point (5, 5), drawn on layer 0: it takes the insert's layer.
    square = doc.blocks.new("SQUARE", base_point=(5, 5))
    square.add_polyline2d([(0, 0), (10, 0), (10, 10), (0, 10)], close=True)
    pair = doc.blocks.new("PAIR")
    pair.add_blockref("SQUARE", (5, 5))
    pair.add_blockref("SQUARE", (25, 5))


def common(msp):
    msp.add_line((0, 0), (100, 50), dxfattribs={"layer": "line"})
    msp.add_line((0, 10), (100, 60), dxfattribs={"layer": "off"})
    msp.add_line((0, 20), (100, 70), dxfattribs={"layer": "frozen"})
    msp.add_circle((50, 50), 20, dxfattribs={"layer": "circle"})
    msp.add_arc((150, 50), 30, 30, 120, dxfattribs={"layer": "arc"})
    # Seen from below: the plane's x axis points to world -x.
    msp.add_arc((50, 300), 10, 0, 90, dxfattribs={"layer": "mirrored", "extrusion": (0, 0, -1)})
    msp.add_polyline2d(
        [(100, 100, -0.5), (140, 100, 0), (140, 130, 0)],
        format="xyb",
        close=True,
        dxfattribs={"layer": "polyline"},
    )
    msp.add_point((10, -10), dxfattribs={"layer": "point"})
    msp.add_text("Hello %%c10", dxfattribs={"layer": "text", "height": 5, "rotation": 30, "insert": (0, -50)})
    centred = msp.add_text("mid", dxfattribs={"layer": "centred", "height": 2})
    centred.dxf.halign = 1
    centred.dxf.valign = 2
    centred.dxf.insert = (50, -50)
    centred.dxf.align_point = (50, -50)
    msp.add_blockref("SQUARE", (200, 200), dxfattribs={"layer": "insert", "xscale": 2, "yscale": 3, "rotation": 90})
    grid = msp.add_blockref("PAIR", (300, 300), dxfattribs={"layer": "array"})
    grid.dxf.column_count = 2
    grid.dxf.row_count = 3
    grid.dxf.column_spacing = 50
    grid.dxf.row_spacing = 40
    msp.add_solid([(0, 0), (1, 0), (0, 1)])


def modern_only(msp):
    lw = msp.add_lwpolyline([(0, 100, 1), (40, 100, 0), (40, 140, 0)], format="xyb", dxfattribs={"layer": "lwpolyline"})
    lw.dxf.const_width = 0
    msp.add_ellipse((300, 50), major_axis=(40, 0), ratio=0.5, start_param=0, end_param=math.pi,
                    dxfattribs={"layer": "ellipse"})
    msp.add_open_spline([(0, 200), (30, 260), (70, 140), (100, 200)], degree=3,
                        dxfattribs={"layer": "spline"})
    # A quarter of the circle of radius 50 around (200, 400), exactly.
    msp.add_rational_spline([(250, 400), (250, 450), (200, 450)], [1, math.sqrt(0.5), 1], degree=2,
                            dxfattribs={"layer": "rational"})
    msp.add_spline([(0, 500), (20, 520), (40, 500), (60, 520)], dxfattribs={"layer": "fitspline"})
    mtext = msp.add_mtext("{\\fArial|b1;Bold} line\\Pnext \\S1/2; %%d", dxfattribs={"layer": "mtext"})
    mtext.dxf.insert = (0, -100)
    mtext.dxf.char_height = 4
    mtext.dxf.attachment_point = 5
    mtext.dxf.rotation = 45


def main(folder):
    for version in ("R12", "R2010"):
        doc = ezdxf.new(version)
        modern = version != "R12"
        if modern:
            doc.header["$INSUNITS"] = 4
        layers(doc, modern)
        blocks(doc)
        common(doc.modelspace())
        if modern:
            modern_only(doc.modelspace())
        doc.saveas(os.path.join(folder, "reader-%s.dxf" % version))


if __name__ == "__main__":
    main(sys.argv[1])
