#!/usr/bin/env python3
"""Write resources/theme/METADATAUITHEME.xml from the colour list.

    python3 scripts/make-theme.py            # write the theme file
    python3 scripts/make-theme.py --check    # fail if the committed file is stale

resources/theme/colors.txt lists the colour identifiers, "<id> <name>", in the
order of the toolkit's colour enumeration. If the toolkit's headers declare
kColor_ enumerators, their names win at their numbers and colors.txt is
rewritten to match, so the two never drift apart.

Every colour is a curve over the brightness axis (0 = darkest interface,
1 = lightest). Its shape follows from the role its name states:
- foreground (text, glyphs): light on dark interfaces, holding its value up
  to the first flip point and dark from the second;
- surfaces (backgrounds, faces, tracks) and lines (frames, dividers): greys
  that flip alongside the text, so text keeps its contrast on both sides;
- accents (focus, selection, links, status): hue, saturation and value from
  the family constants at Dark and Light; fills also pass through Medium,
  coloured text flips like grey text;
- shadows: black with falling alpha; disabled states add alpha.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
THEME_DIR = ROOT / "resources" / "theme"
COLORS = THEME_DIR / "colors.txt"
OUTPUT = THEME_DIR / "METADATAUITHEME.xml"
TOOLKIT_HEADERS = ROOT / "platform" / "zephui" / "include" / "zephui"

COLOR_COUNT = 375
KEYFRAME_COUNT = 1428

# Ids other code reads by number; the list must keep these names there.
PINNED = {236: "kColor_ListBoxContentDivider"}

# Accent families: hue (degrees), saturation, value for dark and light interfaces.
ACCENTS = {
    "Focus":     ((204, 0.70, 0.95), (204, 0.80, 0.86)),
    "Accent":    ((208, 0.68, 0.88), (208, 0.78, 0.80)),
    "Selection": ((210, 0.55, 0.46), (210, 0.28, 0.98)),
    "Range":     ((204, 0.42, 0.36), (204, 0.16, 0.99)),
    "Link":      ((207, 0.55, 0.96), (207, 0.78, 0.76)),
    "FindHit":   ((50, 0.80, 0.86), (54, 0.85, 0.99)),
    "Warning":   ((38, 0.78, 0.98), (36, 0.90, 0.88)),
    "Error":     ((2, 0.60, 0.98), (2, 0.78, 0.80)),
    "Success":   ((140, 0.55, 0.80), (140, 0.72, 0.58)),
    "Info":      ((200, 0.50, 0.92), (200, 0.68, 0.74)),
    "Marker":    ((28, 0.72, 0.96), (26, 0.82, 0.90)),
    "Rating":    ((45, 0.80, 0.98), (42, 0.88, 0.92)),
}

# The last role word of a name decides its role: "HeaderText" is text,
# "ThumbBorder" a line, "TextBandA" a surface. State words (Hover, Down,
# Disabled...) only shade it.
ROLE_WORDS = {
    "foreground": r"Text|Glyph|Arrow|Check|Dot|Label|Caret|Disclosure|Title|Heading|Caption|Code|Secondary|"
                  r"Emphasis|Inverse|Mixed|Underline|Mark|OnAccent|Note",
    "line": r"Border|Frame|Divider|Line|Ruler|Tick|Grip|Gripper|Guide|Ring|ResizeHandle|Stroke",
    "surface": r"Background|Face|Track|Fill|Bar|Thumb|Corner|Handle|Band|Marquee|Indicator|Glow|Selection|"
               r"SelectedRow|Playhead|InPoint|OutPoint|Marker|Checker|Shadow|Alternate|Row",
}
ROLE_PATTERN = re.compile("|".join(f"(?P<{role}>(?:{words}))(?=[A-Z]|$)" for role, words in ROLE_WORDS.items()))


def read_colors():
    names = []
    for number, line in enumerate(COLORS.read_text(encoding="utf-8").splitlines(), 1):
        line = line.split("#", 1)[0].strip()
        if not line:
            continue
        ident, name = line.split()
        if int(ident) != len(names):
            sys.exit(f"{COLORS.name}:{number}: id {ident}, expected {len(names)}")
        names.append(name)
    return names


def toolkit_colors():
    """kColor_ enumerators declared by the toolkit, as {number: name}."""
    found = {}
    if not TOOLKIT_HEADERS.is_dir():
        return found
    pattern = re.compile(r"\b(kColor_\w+)\s*(?:=\s*(\d+))?\s*[,}]")
    for header in sorted(TOOLKIT_HEADERS.rglob("*.h")):
        text = re.sub(r"//[^\n]*|/\*.*?\*/", "", header.read_text(encoding="utf-8"), flags=re.S)
        for enum in re.finditer(r"enum\b[^{;]*\{([^}]*)\}", text):
            number = 0
            for match in pattern.finditer(enum.group(1) + "}"):
                if match.group(2) is not None:
                    number = int(match.group(2))
                found[number] = match.group(1)
                number += 1
    return found


def merge_toolkit(names, rewrite):
    """Give the toolkit's names their numbers; rewrite colors.txt if that changed it."""
    toolkit = toolkit_colors()
    changed = False
    for number, name in sorted(toolkit.items()):
        if number >= len(names):
            sys.exit(f"toolkit colour {name} = {number} is past the theme's {len(names)} colours")
        if names[number] != name:
            if name in names:
                names[names.index(name)] = names[number]
            print(f"colour {number}: toolkit name {name} replaces {names[number]}")
            names[number] = name
            changed = True
    if changed and rewrite:
        header = [line for line in COLORS.read_text(encoding="utf-8").splitlines() if line.startswith("#")]
        body = [f"{number} {name}" + ("  # toolkit" if number in toolkit else "") for number, name in enumerate(names)]
        COLORS.write_text("\n".join(header + body) + "\n", encoding="utf-8")
    return len(toolkit)


def role_of(body):
    roles = [match.lastgroup for match in ROLE_PATTERN.finditer(body)]
    return roles[-1] if roles else "surface"


def accent_of(body, role):
    """The accent family a colour draws from, or None for a grey."""
    # Wells, inactive states and the rims of handles stay grey: they must stand
    # apart from the accent they sit on or stand in for.
    if re.search(r"Well|Inactive|Off(?=[A-Z]|$)|HandleFrame", body):
        return None
    for word in ("FindHit", "Warning", "Error", "Success", "Info", "Focus"):
        if word in body:
            return word
    if body.startswith("Link") or "Link" in body and role == "foreground":
        return "Link"
    if body.startswith("StarRating") and "Disabled" not in body:
        return "Rating"
    if "Range" in body:
        return "Range"
    if re.search(r"Selection|SelectedRow", body) and role != "foreground":
        return "Selection"
    if re.search(r"InPoint|OutPoint|Playhead|Marker", body):
        return "Marker"
    if re.search(r"FaceDefault|FaceChecked|FaceOn|FaceSelected|TrackFill|Progress(Fill)?$|ProgressFill|"
                 r"TabIndicator|DropIndicator|BadgeBackground|DragDrop|InsertLine|TextHighlight", body):
        return "Accent"
    return None


def on_accent(body):
    """Foregrounds drawn over an accent fill stay light on every interface."""
    return bool(re.fullmatch(r"TextOnAccent|ButtonTextDefault|ToggleButtonTextOn|StatusBadgeText|CheckBoxCheck|"
                             r"CheckBoxMixed|RadioButtonDot", body))


def shade(body, value, toward_contrast):
    """Nudge a grey for its state words."""
    step = 1 if toward_contrast else -1
    for pattern, delta in ((r"Alternate", 0.03), (r"Hover", 0.05), (r"Down", -0.05), (r"Header", 0.02),
                           (r"Track|Recessed|Corner", -0.04), (r"Thumb", 0.12)):
        if re.search(pattern, body):
            value += delta * step
    return round(min(max(value, 0.0), 1.0), 3)


def accent_curve(accent, disabled, with_medium=False, flips=False, translucent=False):
    family = f"k{accent}Color"
    alpha = {"a": "0.45"} if disabled else {"a": "0.25"} if translucent else {}
    dark = dict(h=f"&{family}_DarkH;", s=f"&{family}_DarkS;", v=f"&{family}_DarkV;", **alpha)
    light = dict(h=f"&{family}_LightH;", s=f"&{family}_LightS;", v=f"&{family}_LightV;", **alpha)
    if flips:
        # Coloured text changes sides with the grey text it stands beside.
        return [("Dark", dark), ("kCSTextFlipT", dict(dark, hold="true")), ("kCSTextFlipT2", light), ("Light", light)]
    frames = [("Dark", dark), ("Light", light)]
    if with_medium:
        # Halfway, a little deeper than the mean, so fills keep their weight on mid greys.
        (_, sd, vd), (_, sl, vl) = ACCENTS[accent]
        frames.insert(1, ("Medium", dict(h=f"&{family}_LightH;", s=f"{round((sd + sl) / 2, 3)}",
                                         v=f"{round((vd + vl) / 2 - 0.08, 3)}", **alpha)))
    return frames


# Grey curves: value at Dark, just before the flip, just after it, and at Light.
GREYS = {
    "text": (0.88, 0.84, 0.16, 0.10),
    "text-secondary": (0.68, 0.64, 0.38, 0.44),
    "text-disabled": (0.50, 0.46, 0.56, 0.62),
    "text-on-accent": (0.98, 0.98, 0.98, 0.98),
    "surface": (0.19, 0.40, 0.56, 0.93),
    "content": (0.14, 0.36, 0.60, 0.99),
    "line": (0.09, 0.26, 0.38, 0.70),
    "divider": (0.12, 0.30, 0.44, 0.82),
}


def curve(name):
    """Key frames of one colour: list of (brightness point, attributes)."""
    body = name[len("kColor_"):]
    role = role_of(body)
    accent = accent_of(body, role)
    disabled = bool(re.search(r"Disabled|Inactive", body))
    if re.search(r"Shadow$", body):
        return [("Dark", {"v": "0.0", "a": "0.6"}), ("Medium", {"v": "0.0", "a": "0.45"}),
                ("Light", {"v": "0.0", "a": "0.25"})]
    if role == "foreground" and accent == "FindHit":
        # Drawn over the bright hit fill, so dark everywhere.
        return [("Dark", {"v": "0.05"}), ("Light", {"v": "0.05"})]
    if accent and (role != "foreground" or accent in ("Link", "Warning", "Error", "Success", "Info", "Rating")):
        return accent_curve(accent, disabled, with_medium=role == "surface" and not disabled,
                            flips=role == "foreground", translucent=body.endswith(("TargetFill", "MarqueeFill")))
    alpha = {}
    if role == "foreground":
        if on_accent(body):
            kind = "text-on-accent"
        elif disabled:
            kind = "text-disabled"
        elif re.search(r"Secondary|Placeholder|Empty|Unknown|Mixed|LineNumber|Shortcut|Note|Caption", body):
            kind = "text-secondary"
        else:
            kind = "text"
    elif role == "line":
        kind = "divider" if re.search("Divider|Grid|Separator|Guide", body) else "line"
        alpha = {"a": "0.6"} if disabled else {}
    else:
        content = r"^(Edit|ListBox|Tree|SearchField|Table|TextBand|Timeline)(Background|Alternate|[AB]$)|^TextBand[AB]$"
        kind = "content" if re.search(content, body) else "surface"
        alpha = {"a": "0.6"} if disabled else {}
    dark, before, after, light = GREYS[kind]
    if not kind.startswith("text"):
        dark, before = shade(body, dark, True), shade(body, before, True)
        after, light = shade(body, after, False), shade(body, light, False)
    hold = dict(hold="true")
    return [("Dark", dict(v=f"{dark}", **alpha)),
            ("kCSTextFlipT", dict(v=f"{before}", **alpha, **hold)),
            ("kCSTextFlipT2", dict(v=f"{after}", **alpha)),
            ("Light", dict(v=f"{light}", **alpha))]


def attributes(attrs):
    order = ("name", "t", "h", "s", "v", "a", "hold")
    return " ".join(f'{key}="{attrs[key]}"' for key in order if key in attrs)


def build(names):
    curves = {name: curve(name) for name in names}
    total = sum(len(frames) for frames in curves.values())
    if total != KEYFRAME_COUNT:
        sys.exit(f"{total} key frames, expected {KEYFRAME_COUNT}: adjust the role rules")

    out = ['<?xml version="1.0" encoding="UTF-8"?>', "<!DOCTYPE ThemeParameters [",
           "  <!-- Colour identifiers, in the order of the toolkit's colour enumeration. -->"]
    width = max(len(name) for name in names)
    out += [f'  <!ENTITY {name.ljust(width)} "{number}">' for number, name in enumerate(names)]
    out += ["  <!-- Brightness points: 0 is the darkest interface, 1 the lightest. -->",
            '  <!ENTITY Dark "0.0">', '  <!ENTITY Medium "0.5">', '  <!ENTITY Light "1.0">',
            "  <!-- Foreground colours change sides here: between the two, the darker value holds. -->",
            '  <!ENTITY kCSTextFlipT "0.5">', '  <!ENTITY kCSTextFlipT2 "0.501">',
            "  <!-- Accent families: hue in degrees, saturation and value from 0 to 1. -->"]
    for family, (dark, light) in ACCENTS.items():
        for side, hsv in (("Light", light), ("Dark", dark)):
            for letter, value in zip("HSV", hsv):
                out.append(f'  <!ENTITY k{family}Color_{side}{letter} "{value}">')
    out += ["  <!-- Text identifiers; the first is the default. -->",
            '  <!ENTITY kText_Main_Large "0">', '  <!ENTITY kText_Main_Small "1">', '  <!ENTITY kText_Title "2">',
            "  <!-- Font size schemes; Regular is the default. -->",
            '  <!ENTITY kFontSizeScheme_Small "0">', '  <!ENTITY kFontSizeScheme_Regular "1">',
            '  <!ENTITY kFontSizeScheme_Large "2">', "]>", "<ThemeParameters>", "  <ThemeColors>"]

    # Frames at one brightness point share a Theme group and inherit its t.
    for point in ("Dark", "Medium", "kCSTextFlipT", "kCSTextFlipT2", "Light"):
        group = [(name, attrs) for name in names for p, attrs in curves[name] if p == point]
        out.append(f'    <Theme t="&{point};">')
        for name, attrs in group:
            out.append(f"      <KeyFrame {attributes(dict(name=f'&{name};', **attrs))}/>")
        out.append("    </Theme>")
    out += ["  </ThemeColors>", "  <ThemeFonts>"]
    sizes = [("kText_Main_Small", (8, 9, 13)), ("kText_Main_Large", (9, 11, 15)), ("kText_Title", (11, 13, 17))]
    for text, per_scheme in sizes:
        for scheme, size in zip(("Small", "Regular", "Large"), per_scheme):
            out.append(f'    <FontSize name="&{text};" size="{size}" scheme="&kFontSizeScheme_{scheme};"/>')
    out += ["  </ThemeFonts>", "</ThemeParameters>", ""]
    return "\n".join(out)


def main():
    names = read_colors()
    if len(names) != COLOR_COUNT or len(set(names)) != len(names):
        sys.exit(f"{COLORS.name}: {len(names)} names ({len(set(names))} distinct), expected {COLOR_COUNT}")
    check_only = "--check" in sys.argv[1:]
    from_toolkit = merge_toolkit(names, rewrite=not check_only)
    for number, name in PINNED.items():
        if names[number] != name:
            sys.exit(f"colour {number} must be {name}, is {names[number]}")
    text = build(names)
    if check_only:
        if OUTPUT.read_text(encoding="utf-8") != text:
            sys.exit(f"{OUTPUT.name} is stale: run scripts/make-theme.py")
        print(f"{OUTPUT.name} is up to date")
        return
    OUTPUT.write_text(text, encoding="utf-8")
    print(f"{OUTPUT.name}: {COLOR_COUNT} colours ({from_toolkit} named by the toolkit), "
          f"{KEYFRAME_COUNT} key frames")


if __name__ == "__main__":
    main()
