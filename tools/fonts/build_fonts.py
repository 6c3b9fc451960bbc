#!/usr/bin/python3
"""Builds the nine scalable X fonts of the installation's Fonts directory.

    build_fonts.py --table symbol_table.tsv --map glyph_map.tsv --out DIR [--cache DIR]

Text faces (zrcmr, zrcmti, zrcmbx, zrcmss, zrcmtt, zrcmmi) hold Latin-1 at
its own codes, with the TeX quotes at 96 and 39; the symbol faces (zrsya,
zrsyb, zrsyc) hold each glyph of the symbol table at its code. Outlines come
from Debian's Latin Modern (CFF) and are converted to TrueType quadratics,
because the X server's font backend does not load CFF-flavoured fonts.

Every font has one (3,1) cmap in which character code c is U+00cc, so that an
iso8859-1 XLFD reaches code c. DIR receives the .ttf files, fonts.scale and
fonts.dir. With --cache, a finished set is kept under a hash of every input,
so that a second build tree (and a rebuild) only copies it.
"""

import argparse
import hashlib
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.boundsPen import BoundsPen
from fontTools.pens.cu2quPen import Cu2QuPen
from fontTools.pens.transformPen import TransformPen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont
from fontTools.ttLib.tables._c_m_a_p import CmapSubtable
import fontTools

LM = "/usr/share/texmf/fonts/opentype/public"
SOURCES = {
    "math": LM + "/lm-math/latinmodern-math.otf",
    "rm": LM + "/lm/lmroman10-regular.otf",
    "it": LM + "/lm/lmroman10-italic.otf",
    "bf": LM + "/lm/lmroman10-bold.otf",
    "ss": LM + "/lm/lmsans10-regular.otf",
    "tt": LM + "/lm/lmmono10-regular.otf",
}

VENDOR = "corvane"
UNITS_PER_EM = 1000
MATH_AXIS = 250  # height of the minus sign's centre in the sources, in font units


class Face:
    def __init__(self, name, sources, weight="medium", slant="r", spacing="p", tag=None):
        self.name = name
        self.sources = sources  # where a bare U+XXXX is looked up, in order
        self.weight = weight
        self.slant = slant
        self.spacing = spacing
        self.tag = tag  # symbol-table tag of a symbol face; None for text faces

    def xlfd(self):
        return "-%s-%s-%s-%s-normal--0-0-0-0-%s-0-iso8859-1" % (
            VENDOR, self.name, self.weight, self.slant, self.spacing)


FACES = [
    Face("zrcmr", ["rm"]),
    Face("zrcmti", ["it"], slant="i"),
    Face("zrcmbx", ["bf"], weight="bold"),
    Face("zrcmss", ["ss"]),
    Face("zrcmtt", ["tt"], spacing="m"),
    Face("zrcmmi", ["it"], slant="i"),
    Face("zrsya", ["math", "rm"], tag=6),
    Face("zrsyb", ["math", "rm"], tag=7),
    Face("zrsyc", ["math", "rm"], tag=8),
]
CURRENT_FAMILY_TAG = 0  # rows for "the current family" go into every text face
LATIN1 = list(range(32, 127)) + list(range(160, 256))
TEX_QUOTES = {96: 0x2018, 39: 0x2019}


def fail(message):
    sys.exit("build_fonts: " + message)


# ---- inputs ------------------------------------------------------------------

def read_symbol_table(path):
    """Rows (name, tag, code) with a glyph, in table order."""
    rows = []
    with open(path, encoding="utf-8") as f:
        for number, line in enumerate(f, 1):
            line = line.rstrip("\n")
            if not line or line.startswith("#"):
                continue
            fields = line.split("\t")
            if len(fields) != 4:
                fail("%s:%d: expected 4 fields" % (path, number))
            name, _greek, tag, code = fields[0], fields[1], int(fields[2]), int(fields[3])
            if code != 0:
                rows.append((name, tag, code))
    return rows


def read_glyph_map(path):
    """name -> glyph expression, (tag, code) -> name for shared codes, name -> note."""
    glyphs, shared, notes = {}, {}, {}
    with open(path, encoding="utf-8") as f:
        for number, line in enumerate(f, 1):
            line = line.rstrip("\n")
            if not line or line.startswith("#"):
                continue
            fields = line.split("\t")
            if len(fields) < 2:
                fail("%s:%d: expected name and glyph" % (path, number))
            if fields[0] == "shared":
                tag, code = fields[1].split(":")
                shared[(int(tag), int(code))] = fields[2]
            elif fields[0] in glyphs:
                fail("%s:%d: %s mapped twice" % (path, number, fields[0]))
            else:
                glyphs[fields[0]] = fields[1]
                if len(fields) > 2 and fields[2]:
                    notes[fields[0]] = fields[2]
    return glyphs, shared, notes


# ---- glyph expressions -------------------------------------------------------
# "TERM & TERM ...": the first term is the base and sets the advance; each
# further term is centred over the base's ink. TERM is [SRC:]U+XXXX or
# SRC:glyphname, optionally followed by (key=value,...) with keys s (both
# scales), sx, sy, cy (centre of scaling, default the math axis), dx, dy.

TERM = re.compile(r"^(?:(\w+):)?(U\+[0-9A-Fa-f]{4,6}|[\w.]+)(?:\((.*)\))?$")


class Sources:
    def __init__(self):
        self.fonts = {}

    def font(self, key):
        if key not in SOURCES:
            fail("unknown source font '%s'" % key)
        if key not in self.fonts:
            font = TTFont(SOURCES[key])
            self.fonts[key] = (font, font.getGlyphSet(), font.getBestCmap())
        return self.fonts[key]

    def find(self, source, ref, chain):
        """(glyph set, glyph name) for a reference, or None."""
        for key in ([source] if source else chain):
            _font, glyphset, cmap = self.font(key)
            if ref.startswith("U+"):
                name = cmap.get(int(ref[2:], 16))
            else:
                name = ref if ref in glyphset else None
            if name:
                return glyphset, name
        return None


def parse_term(text):
    m = TERM.match(text.strip())
    if not m:
        fail("bad glyph term '%s'" % text)
    source, ref, args = m.groups()
    params = {"sx": 1.0, "sy": 1.0, "cy": MATH_AXIS, "dx": 0.0, "dy": 0.0}
    for item in filter(None, (args or "").split(",")):
        key, _, value = item.partition("=")
        key = key.strip()
        if key == "s":
            params["sx"] = params["sy"] = float(value)
        elif key in params:
            params[key] = float(value)
        else:
            fail("bad glyph parameter '%s' in '%s'" % (key, text))
    return source, ref, params


def bounds(glyphset, name, transform=(1, 0, 0, 1, 0, 0)):
    pen = BoundsPen(glyphset)
    glyphset[name].draw(TransformPen(pen, transform))
    return pen.bounds


def draw_expression(expression, chain, sources, ttpen):
    """Draws a glyph expression into a TrueType pen; returns the advance."""
    placed = []  # (glyphset, name, transform, advance) of each term
    for text in expression.split("&"):
        source, ref, p = parse_term(text)
        found = sources.find(source, ref, chain)
        if not found:
            return None
        glyphset, name = found
        width = glyphset[name].width
        # Scale about the height cy and keep the glyph in the middle of its
        # scaled advance (a mirrored glyph keeps its side bearings swapped).
        advance = abs(p["sx"]) * width
        transform = (p["sx"], 0, 0, p["sy"],
                     (advance - p["sx"] * width) / 2.0 + p["dx"], p["cy"] - p["sy"] * p["cy"] + p["dy"])
        placed.append((glyphset, name, transform, advance))
    advance = placed[0][3]
    base = bounds(*placed[0][:3]) if len(placed) > 1 else None
    for index, (glyphset, name, transform, _width) in enumerate(placed):
        if index > 0 and base:
            # Centre this term's ink over the base's ink.
            ink = bounds(glyphset, name, transform)
            if ink:
                shift = (base[0] + base[2]) / 2.0 - (ink[0] + ink[2]) / 2.0
                transform = transform[:4] + (transform[4] + shift, transform[5])
        # CFF contours run the other way from TrueType ones; a mirroring
        # transform reverses them once more.
        mirrored = transform[0] * transform[3] < 0
        glyphset[name].draw(TransformPen(Cu2QuPen(ttpen, max_err=1.0, reverse_direction=not mirrored),
                                         transform))
    return int(round(advance))


# ---- one face ----------------------------------------------------------------

def face_contents(face, rows, glyph_map, shared):
    """code -> (glyph expression, what it is called in messages)."""
    contents = {}
    if face.tag is None:
        for code in LATIN1:
            contents[code] = ("U+%04X" % TEX_QUOTES.get(code, code), "code %d" % code)
        if face.name == "zrcmmi":
            # Math italic letters at their ASCII codes.
            for i in range(26):
                contents[65 + i] = ("math:U+%04X" % (0x1D434 + i), "math italic %c" % (65 + i))
                lower = 0x210E if i == 7 else 0x1D44E + i  # Unicode keeps h at U+210E
                contents[97 + i] = ("math:U+%04X" % lower, "math italic %c" % (97 + i))
    wanted_tag = face.tag if face.tag is not None else CURRENT_FAMILY_TAG
    names = {}  # code -> names the table puts there, in table order
    for name, tag, code in rows:
        if tag == wanted_tag:
            if name not in glyph_map:
                fail("symbol '%s' (tag %d, code %d) has no glyph in the glyph map" % (name, tag, code))
            names.setdefault(code, []).append(name)
    for code, at_code in names.items():
        chosen = shared.get((wanted_tag, code))
        if chosen is not None and chosen not in at_code:
            fail("shared row %d:%d names '%s', which the table does not put there"
                 % (wanted_tag, code, chosen))
        if chosen is None:
            chosen = at_code[0]
            for other in at_code[1:]:
                if glyph_map[other] != glyph_map[chosen]:
                    fail("'%s' and '%s' share code %d of tag %d with different glyphs: add a shared row"
                         % (chosen, other, code, wanted_tag))
        contents[code] = (glyph_map[chosen], chosen)
    return contents


def build_face(face, contents, sources, out_dir):
    chain = face.sources
    order = [".notdef"]
    glyphs = {".notdef": TTGlyphPen(None).glyph()}
    advances = {".notdef": 0}
    cmap = {}
    for code in sorted(contents):
        expression, label = contents[code]
        pen = TTGlyphPen(None)
        advance = draw_expression(expression, chain, sources, pen)
        if advance is None:
            if face.tag is None and code == 173:  # soft hyphen: the hyphen will do
                pen = TTGlyphPen(None)
                advance = draw_expression("U+002D", chain, sources, pen)
            if advance is None:
                fail("%s: no source glyph for %s ('%s')" % (face.name, label, expression))
        name = "c%03d" % code
        order.append(name)
        glyphs[name] = pen.glyph()
        advances[name] = advance
        cmap[code] = name

    fb = FontBuilder(UNITS_PER_EM, isTTF=True)
    fb.setupGlyphOrder(order)
    fb.setupCharacterMap(cmap)
    fb.setupGlyf(glyphs)
    glyf = fb.font["glyf"]
    metrics, top, bottom = {}, 0, 0
    for name in order:
        glyph = glyf[name]
        glyph.recalcBounds(glyf)
        xmin = getattr(glyph, "xMin", 0)
        metrics[name] = (advances[name], xmin)
        if hasattr(glyph, "yMax"):
            top, bottom = max(top, glyph.yMax), min(bottom, glyph.yMin)
    fb.setupHorizontalMetrics(metrics)
    # Line metrics from the glyphs carried: the sources' own values include
    # glyphs left out here (the math font's extensible pieces reach 3.5 em).
    fb.setupHorizontalHeader(ascent=top, descent=bottom)
    primary = sources.font(chain[0])[0]
    notice = primary["name"].getDebugName(0) or ""
    licence = primary["name"].getDebugName(13) or ""
    style = {"bold": "Bold"}.get(face.weight, "Regular") if face.slant == "r" else "Italic"
    fb.setupNameTable({
        "copyright": notice,
        "familyName": face.name,
        "styleName": style,
        "uniqueFontIdentifier": face.name + "-" + style,
        "fullName": face.name + " " + style,
        "psName": face.name + "-" + style,
        "description": "Made from Latin Modern for the zephrin viewer.",
        "licenseDescription": licence,
    })
    fb.setupOS2(sTypoAscender=top, sTypoDescender=bottom, sTypoLineGap=0,
                usWinAscent=top, usWinDescent=-bottom,
                usWeightClass=700 if face.weight == "bold" else 400,
                fsSelection=((0x20 if face.weight == "bold" else 0) | (0x01 if face.slant == "i" else 0)) or 0x40,
                achVendID="ZEPH", fsType=0)
    fb.font["head"].macStyle = (1 if face.weight == "bold" else 0) | (2 if face.slant == "i" else 0)
    fb.setupPost(keepGlyphNames=False, isFixedPitch=1 if face.spacing == "m" else 0)
    # One (3,1) subtable: the X server maps iso8859-1 code c through U+00cc.
    table = CmapSubtable.newSubtable(4)
    table.platformID, table.platEncID, table.language = 3, 1, 0
    table.cmap = dict(cmap)
    fb.font["cmap"].tables = [table]
    path = os.path.join(out_dir, face.name + ".ttf")
    fb.save(path)
    return path


# ---- the whole set -----------------------------------------------------------

OUTPUTS = [face.name + ".ttf" for face in FACES] + ["fonts.scale", "fonts.dir"]


def build_all(table, glyph_map_path, out_dir):
    rows = read_symbol_table(table)
    glyph_map, shared, notes = read_glyph_map(glyph_map_path)
    sources = Sources()
    lines = []
    for face in FACES:
        contents = face_contents(face, rows, glyph_map, shared)
        build_face(face, contents, sources, out_dir)
        lines.append("%s.ttf %s" % (face.name, face.xlfd()))
    with open(os.path.join(out_dir, "fonts.scale"), "w") as f:
        f.write("%d\n%s\n" % (len(lines), "\n".join(lines)))
    subprocess.run(["mkfontdir", out_dir], check=True)
    if not os.path.exists(os.path.join(out_dir, "fonts.dir")):
        fail("mkfontdir wrote no fonts.dir")
    near = sorted(n for n, note in notes.items() if note.startswith("near"))
    if near:
        print("build_fonts: stand-in glyphs (see glyph_map.tsv) for " + " ".join(near))


def input_hash(paths):
    digest = hashlib.sha256()
    digest.update(fontTools.version.encode())
    for path in paths:
        digest.update(path.encode() + b"\0")
        with open(path, "rb") as f:
            digest.update(f.read())
    return digest.hexdigest()[:24]


def prune_cache(cache, keep, max_age_days=30):
    """Removes sets (and abandoned work directories) nobody used for a while."""
    limit = time.time() - max_age_days * 86400
    for entry in os.listdir(cache):
        path = os.path.join(cache, entry)
        if path != keep and os.path.isdir(path) and os.path.getmtime(path) < limit:
            shutil.rmtree(path, ignore_errors=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--table")
    parser.add_argument("--map")
    parser.add_argument("--out")
    parser.add_argument("--cache", help="directory that keeps finished sets by input hash")
    parser.add_argument("--list-sources", action="store_true",
                        help="print the source font files, one a line, for the build's dependencies")
    args = parser.parse_args()
    if args.list_sources:
        print("\n".join(SOURCES[k] for k in sorted(SOURCES)))
        return
    if not (args.table and args.map and args.out):
        parser.error("--table, --map and --out are required")
    os.makedirs(args.out, exist_ok=True)

    inputs = [os.path.abspath(__file__), args.table, args.map] + [SOURCES[k] for k in sorted(SOURCES)]
    for path in inputs:
        if not os.path.exists(path):
            fail("missing input %s" % path)
    cached = os.path.join(args.cache, input_hash(inputs)) if args.cache else None
    if cached and all(os.path.exists(os.path.join(cached, n)) for n in OUTPUTS):
        print("build_fonts: using cached fonts in " + cached)
        os.utime(cached)  # keeps it from being pruned
    else:
        os.makedirs(args.cache or args.out, exist_ok=True)
        work = tempfile.mkdtemp(prefix="build-", dir=args.cache or args.out)
        try:
            build_all(args.table, args.map, work)
            if cached:
                # Rename is atomic: a parallel build sees a whole set or none.
                try:
                    os.rename(work, cached)
                except OSError:
                    shutil.rmtree(work)  # another build got there first
                prune_cache(args.cache, keep=cached)
            else:
                cached = work
        except BaseException:
            shutil.rmtree(work, ignore_errors=True)
            raise
    for name in OUTPUTS:
        shutil.copyfile(os.path.join(cached, name), os.path.join(args.out, name))
    if not args.cache:
        shutil.rmtree(cached)


if __name__ == "__main__":
    main()
