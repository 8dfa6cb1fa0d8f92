"""Reads a DXF file with ezdxf and prints, as JSON, what a strict reader finds in it.

Usage: /usr/bin/python3 check_dxf.py FILE.dxf

Reports the audit's errors and fixes, ezdxf's warnings while loading, the objects ezdxf had to
create because the file lacked them, the header values and every model-space entity. An IMAGE
reports its file as the drawing names it and the pixel size of that PNG file, found beside the drawing.
"""

import json
import logging
import os
import struct
import sys

import ezdxf
from ezdxf.lldxf.encoding import decode_dxf_unicode

# Objects of later DXF versions that ezdxf adds to every document it loads, whatever it contains.
EZDXF_ADDITIONS = {
    "ACAD_COLOR",
    "ACAD_MATERIAL",
    "ACAD_MLEADERSTYLE",
    "ACAD_SCALELIST",
    "ACAD_TABLESTYLE",
    "ACAD_VISUALSTYLE",
}


class Collect(logging.Handler):
    def __init__(self):
        super().__init__(logging.WARNING)
        self.messages = []

    def emit(self, record):
        self.messages.append(record.getMessage())


def file_handles(path):
    """Handles of the records in the file: the first group 5 or 105 tag of each record."""
    with open(path, encoding="cp1252") as f:
        lines = [line.strip() for line in f]
    handles = set()
    pending = False
    for i in range(0, len(lines) - 1, 2):
        code, value = lines[i], lines[i + 1]
        if code == "0":
            pending = value != "SECTION"  # the header's $HANDSEED is no record
        elif pending and code in ("5", "105"):
            handles.add(value.upper())
            pending = False
    return handles


def owned_by_addition(doc, entity):
    owner = doc.entitydb.get(entity.dxf.get("owner", "0"))
    names = {name for name, e in doc.rootdict.items() if e is entity or e is owner}
    return bool(names & EZDXF_ADDITIONS)


def xy(v):
    return [round(v[0], 6), round(v[1], 6)]


def png_size(path):
    """Width and height from a PNG file's header, or None when there is no such PNG file."""
    try:
        with open(path, "rb") as f:
            head = f.read(24)
    except OSError:
        return None
    if len(head) < 24 or head[:8] != b"\x89PNG\r\n\x1a\n" or head[12:16] != b"IHDR":
        return None
    return list(struct.unpack(">II", head[16:24]))


def text_of(e):
    # Escapes stand for UTF-16 code units: a surrogate pair makes one character again.
    decoded = decode_dxf_unicode(e.plain_text())
    return decoded.encode("utf-16-le", "surrogatepass").decode("utf-16-le")


def describe(e, folder):
    d = {
        "type": e.dxftype(),
        "aci": e.dxf.get("color", 256),
        "rgb": "%02x%02x%02x" % e.rgb if e.rgb else None,
        "linetype": e.dxf.get("linetype", "BYLAYER"),
        "lineweight": e.dxf.get("lineweight", -1),
    }
    t = d["type"]
    if t == "LINE":
        d.update(start=xy(e.dxf.start), end=xy(e.dxf.end))
    elif t == "LWPOLYLINE":
        d.update(points=[xy(p) for p in e.get_points("xy")], closed=e.closed)
    elif t == "SPLINE":
        d.update(
            degree=e.dxf.degree,
            controls=[xy(p) for p in e.control_points],
            knots=[round(k, 9) for k in e.knots],
        )
    elif t == "CIRCLE":
        d.update(center=xy(e.dxf.center), radius=e.dxf.radius)
    elif t == "ARC":
        d.update(
            center=xy(e.dxf.center),
            radius=e.dxf.radius,
            start=e.dxf.start_angle,
            end=e.dxf.end_angle,
        )
    elif t == "ELLIPSE":
        d.update(center=xy(e.dxf.center), major=xy(e.dxf.major_axis), ratio=e.dxf.ratio)
    elif t == "HATCH":
        d.update(solid=bool(e.dxf.solid_fill), loops=[[xy(v) for v in p.vertices] for p in e.paths])
    elif t == "IMAGE":
        name = e.image_def.dxf.filename
        d.update(
            insert=xy(e.dxf.insert),
            u=xy(e.dxf.u_pixel),
            v=xy(e.dxf.v_pixel),
            size=xy(e.dxf.image_size),
            file=name,
            fileSize=png_size(os.path.join(folder, name)),
        )
    elif t == "TEXT":
        d.update(
            text=text_of(e),
            insert=xy(e.dxf.insert),
            height=e.dxf.height,
            rotation=e.dxf.get("rotation", 0.0),
            style=e.dxf.style,
        )
    return d


def main(path):
    collect = Collect()
    logging.getLogger("ezdxf").addHandler(collect)
    before = file_handles(path)
    doc = ezdxf.readfile(path)
    auditor = doc.audit()
    created = sorted(
        e.dxftype()
        for handle, e in doc.entitydb.items()
        if handle.upper() not in before and not owned_by_addition(doc, e)
    )
    handles = [int(h, 16) for h in before]
    report = {
        "version": doc.dxfversion,
        "errors": [str(x.message) for x in auditor.errors],
        "fixes": [str(x.message) for x in auditor.fixes],
        "warnings": collect.messages,
        "created": created,
        "handseedAboveHandles": int(doc.header["$HANDSEED"], 16) > max(handles),
        "insunits": doc.header.get("$INSUNITS", -1),
        "extmin": xy(doc.header["$EXTMIN"]),
        "extmax": xy(doc.header["$EXTMAX"]),
        "linetypes": sorted(lt.dxf.name for lt in doc.linetypes),
        "entities": [describe(e, os.path.dirname(path)) for e in doc.modelspace()],
    }
    json.dump(report, sys.stdout, ensure_ascii=False)


if __name__ == "__main__":
    main(sys.argv[1])
