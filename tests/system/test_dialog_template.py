"""The dialog template in the executable is what the resource script says, by the rules of Windows'
resource compiler: the one that builds it here leaves out some of the default styles."""
import functools
import re
import subprocess
import unittest

from program import EXECUTABLE, ROOT

WINDRES = "x86_64-w64-mingw32-windres"
MODULE = ROOT / "modules" / "src" / "windows" / "diag" / "mrlrantenna"

VALUES = {
    "WS_CHILD": 0x40000000, "WS_VISIBLE": 0x10000000, "WS_DISABLED": 0x08000000,
    "WS_BORDER": 0x00800000, "WS_VSCROLL": 0x00200000, "WS_GROUP": 0x00020000,
    "WS_TABSTOP": 0x00010000, "BS_DEFPUSHBUTTON": 1, "BS_GROUPBOX": 7, "CBS_DROPDOWNLIST": 3,
    "CBS_SORT": 0x100, "SS_ETCHEDFRAME": 0x12, "SS_NOPREFIX": 0x80, "SS_NOTIFY": 0x100,
    "SS_CENTERIMAGE": 0x200, "IDCANCEL": 2}
# Window class and default style of each statement, beside WS_CHILD and WS_VISIBLE.
STATEMENTS = {
    "LTEXT": ("STATIC", ("WS_GROUP",)),
    "GROUPBOX": ("BUTTON", ("BS_GROUPBOX",)),
    "PUSHBUTTON": ("BUTTON", ("WS_TABSTOP",)),
    "DEFPUSHBUTTON": ("BUTTON", ("BS_DEFPUSHBUTTON", "WS_TABSTOP")),
    "COMBOBOX": ("COMBOBOX", ("WS_TABSTOP",)),
    "CONTROL": (None, ())}
CLASSES = {"WC_STATIC": "STATIC", "130": "STATIC", "PROGRESS_CLASS": "MSCTLS_PROGRESS32"}

FIELD = re.compile(r'\s*("(?:[^"]|"")*"|[^,]+?)\s*(?:,|$)')


def style_of(expression, default):
    """The style that an expression makes of the default one."""
    style = default
    for term in expression.split("|"):
        name = term.strip()
        if name.startswith("NOT "):
            style &= ~VALUES[name.removeprefix("NOT ").strip()]
        else:
            style |= VALUES[name] if name in VALUES else int(name, 0)
    return style


def controls_of(script, ids, has_defaults):
    """The controls of the dialog in a script: id, class, text, place and style, in their order."""
    controls = []
    begin = re.search(r"^\w+ DIALOGEX.*?^BEGIN$(.*?)^END$", script, re.M | re.S)
    for line in begin[1].strip().splitlines():
        if not line.strip():
            continue
        statement, rest = line.strip().split(" ", 1)
        window_class, defaults = STATEMENTS[statement]
        fields = FIELD.findall(rest)
        text = "" if statement == "COMBOBOX" else fields.pop(0)[1:-1].replace('""', '"')
        control_id = fields.pop(0)
        style = ""
        if statement == "CONTROL":
            window_class = fields.pop(0).strip('"')
            style = fields.pop(0)
        place = tuple(map(int, fields[:4]))
        style = style or (fields[4] if len(fields) > 4 else "0")
        default = sum(VALUES[name] for name in ("WS_CHILD", "WS_VISIBLE", *defaults))
        controls.append((ids.get(control_id) or int(control_id),
                         CLASSES.get(window_class, window_class).upper(), text, place,
                         style_of(style, default if has_defaults else 0)))
    return controls


@functools.cache
def scripts():
    """The controls by the script, and those of the executable."""
    ids = {name: int(value) for name, value in re.findall(
        r"^#define (\w+) (\d+)$", (MODULE / "resource.h").read_text(encoding="utf-8"), re.M)}
    source = (MODULE / "mrlrantenna.rc").read_text(encoding="utf-8")
    shipped = subprocess.run([WINDRES, "-J", "coff", "-O", "rc", "-i", str(EXECUTABLE)], check=True,
                             stdout=subprocess.PIPE).stdout.decode("utf-8", "replace")
    return (controls_of(source, ids | {"IDCANCEL": VALUES["IDCANCEL"]}, True),
            controls_of(shipped, {}, False))


class Template(unittest.TestCase):
    maxDiff = None

    def test_the_executable_has_what_the_script_says(self):
        written, shipped = scripts()
        self.assertEqual(len(shipped), 31)
        self.assertEqual([(*control[:4], hex(control[4])) for control in shipped],
                         [(*control[:4], hex(control[4])) for control in written])

    def test_the_arrow_keys_stay_on_the_button_and_in_the_list(self):
        groups = [[]]
        for control_id, window_class, _, _, style in scripts()[1]:
            if style & VALUES["WS_GROUP"]:
                groups.append([])
            if window_class != "STATIC" and not style & VALUES["WS_DISABLED"]:
                groups[-1].append(control_id)
        self.assertEqual([group for group in groups if group], [[1017], [1021], [1001], [1015]])


if __name__ == "__main__":
    unittest.main()
