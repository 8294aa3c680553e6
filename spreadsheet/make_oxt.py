#!/usr/bin/env python3
"""Makes the add-in for LibreOffice Calc: the component, its Python package and the functions of the
sheet, with their names and words for Calc's function wizard, all made from the component's own
description and the comments of its headers.

usage: make_oxt.py OUT.oxt EPOCH LIBRARY...
    EPOCH    in seconds, the time that each file bears
    LIBRARY  libvqmath63.so, vqmath63.dll: those that go in; the first is run here
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
from xml.sax.saxutils import escape, quoteattr

ROOT = pathlib.Path(__file__).resolve().parent.parent
HERE = ROOT / "spreadsheet"
# Typed as they come: a text or an empty cell is no 0 then, and 2.7 no whole number. Results may be of
# several cells, so that a range where one number is wanted has a result for each.
ARGUMENT, RESULT = "any", "sequence< sequence< any > >"
DOCUMENT = "[in] com::sun::star::beans::XPropertySet document"


def idl(known):
    """The interface, as text: LibreOffice reads its types from there."""
    lines = []
    for each in known:
        given = [DOCUMENT] * each.wants_document
        given += [f"[in] {ARGUMENT} {p.name}" for p in each.parameters]
        lines.append(f"  {RESULT} {each.identifier}({', '.join(given)});")
    lines.append(f"  {RESULT} Why({DOCUMENT}, [in] string name, [in] sequence< any > arguments);")
    return ("module org { module vqmath63 {\n"
            "interface XFunctions : com::sun::star::uno::XInterface {\n"
            + "\n".join(lines) + "\n};\n}; };\n")


def _value(name, text):
    return (f'<prop oor:name="{name}"><value xml:lang="en">{escape(text)}</value></prop>')


def _node(identifier, name, words, parameters):
    lines = [f'<node oor:name={quoteattr(identifier)} oor:op="replace">', _value("DisplayName", name),
             _value("Description", words), '<prop oor:name="Category"><value>Add-In</value></prop>',
             '<prop oor:name="CompatibilityName"><value xml:lang="en">'
             f"{escape(name)}</value></prop>", '<node oor:name="Parameters">']
    for own, text in parameters:
        lines.append(f'<node oor:name={quoteattr(own)} oor:op="replace">{_value("DisplayName", own)}'
                     f'{_value("Description", text)}</node>')
    return "\n".join([*lines, "</node></node>"])


def _plain(text):
    """A doc comment's words without its marks."""
    return re.sub(r"\s+", " ", re.sub(r"`([^`]*)`", r"\1", text)).strip()


def _capital(text):
    return text[:1].upper() + text[1:]


def argument_words(notes, function, parameter):
    """What the header says of an argument, and its type where that tells more."""
    if parameter.help:
        return _capital(parameter.help)
    of = notes[function.member.class_name]
    for section in of.sections:
        for names, note in section.groups:
            if function.member.name in names:
                for each in (note, section.note, of.note):
                    if parameter.name in each.params:
                        return _capital(_plain(each.params[parameter.name]))
    raise SystemExit(f"no words for {parameter.name} of {function.name}")


def xcu(known, notes, addin):
    nodes = []
    for each in known:
        words = []
        for p in each.parameters:
            text = argument_words(notes, each, p)
            words.append((p.name, text + (" (may be left out)" if p.optional else "")))
        nodes.append(_node(each.identifier, addin.PREFIX + each.name, each.help, words))
    text, *words = addin.WHY_HELP
    nodes.append(_node("Why", addin.PREFIX + addin.WHY, text, [(n, _capital(t)) for n, t in words]))
    return ('<?xml version="1.0" encoding="UTF-8"?>\n'
            '<oor:component-data xmlns:oor="http://openoffice.org/2001/registry" '
            'xmlns:xs="http://www.w3.org/2001/XMLSchema" oor:name="CalcAddIns" '
            'oor:package="org.openoffice.Office">\n<node oor:name="AddInInfo">'
            f'<node oor:name="{addin.SERVICE}" oor:op="replace"><node oor:name="AddInFunctions">\n'
            + "\n".join(nodes) + "\n</node></node></node></oor:component-data>\n")


COMPONENTS = """<?xml version="1.0" encoding="UTF-8"?>
<components xmlns="http://openoffice.org/2010/uno-components">
  <component loader="com.sun.star.loader.Python" uri="vqmath63_calc.py">
    <implementation name="{service}">
      <service name="{service}"/>
      <service name="com.sun.star.sheet.AddIn"/>
    </implementation>
  </component>
</components>
"""
MANIFEST = """<?xml version="1.0" encoding="UTF-8"?>
<manifest:manifest xmlns:manifest="http://openoffice.org/2001/manifest">
  <manifest:file-entry manifest:full-path="functions.idl" \
manifest:media-type="application/vnd.sun.star.uno-typelibrary;type=RDB"/>
  <manifest:file-entry manifest:full-path="vqmath63.components" \
manifest:media-type="application/vnd.sun.star.uno-components"/>
  <manifest:file-entry manifest:full-path="CalcAddIns.xcu" \
manifest:media-type="application/vnd.sun.star.configuration-data"/>
</manifest:manifest>
"""
DESCRIPTION = """<?xml version="1.0" encoding="UTF-8"?>
<description xmlns="http://openoffice.org/extensions/description/2006" \
xmlns:xlink="http://www.w3.org/1999/xlink">
  <identifier value="org.vqmath63.calc"/>
  <version value="{version}"/>
  <platform value="{platforms}"/>
  <display-name><name lang="en">vqmath63: numerical routines for petroleum engineering</name>\
</display-name>
  <publisher><name lang="en">vqmath63</name></publisher>
  <extension-description><src lang="en" xlink:href="about.txt"/></extension-description>
</description>
"""
ABOUT = """Special functions, statistics, fits, derivatives and integrals of sampled curves, geometry of
grid cells, volume factors, and production profiles on calendar periods: functions whose names begin
with VQ., in the function wizard under Add-In. =VQ.WHY("VQ.INTEGRAL"; ...) tells why one failed.
"""
PLATFORMS = {".so": "linux_x86_64", ".dll": "windows_x86_64"}


def main():
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    out, epoch, *libraries = sys.argv[1:]
    os.environ["VQMATH63_LIBRARY"] = os.path.abspath(libraries[0])
    sys.path[:0] = [str(HERE), str(ROOT / "python"), str(ROOT / "tools")]
    sys.dont_write_bytecode = True
    from reference import comments
    from vqmath63_sheet import addin
    known = list(addin.functions().values())
    notes = comments.read_headers(ROOT)
    version = re.search(r"project\(vqmath63 VERSION ([0-9.]+)",
                        (ROOT / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
    with tempfile.TemporaryDirectory() as folder:
        stage = pathlib.Path(folder) / "oxt"
        inside = stage / "pythonpath"
        for package in (ROOT / "python/vqmath63", HERE / "vqmath63_sheet"):
            shutil.copytree(package, inside / package.name,
                            ignore=shutil.ignore_patterns("__pycache__", "*.so*", "*.dll"))
        for library in libraries:
            name = os.path.basename(library)
            shutil.copy(library, inside / "vqmath63" / (
                "libvqmath63.so" if ".so" in name else "vqmath63.dll"))
        shutil.copy(HERE / "vqmath63_calc.py", stage)
        platforms = ",".join(text for end, text in PLATFORMS.items()
                             if any(end in os.path.basename(library) for library in libraries))
        for name, text in {
                "functions.idl": idl(known), "CalcAddIns.xcu": xcu(known, notes, addin),
                "vqmath63.components": COMPONENTS.format(service=addin.SERVICE),
                "META-INF/manifest.xml": MANIFEST, "about.txt": ABOUT,
                "description.xml": DESCRIPTION.format(version=version, platforms=platforms)}.items():
            (stage / name).parent.mkdir(parents=True, exist_ok=True)
            (stage / name).write_text(text, encoding="utf-8")
        subprocess.run([sys.executable, str(ROOT / "packaging/make_zip.py"), os.path.abspath(out),
                        str(stage), epoch, "--inside"], check=True)
    print(f"{len(known) + 1} functions: {out}")


main()
