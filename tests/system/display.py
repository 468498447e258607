"""A display and a Wine prefix for one program alone, so that its windows, focus, mouse and registry
affect neither other tests nor a person at the machine."""
import os
import pathlib
import select
import shutil
import subprocess
import tempfile

from program import ROOT, environment

SIZE = (1600, 1200)
START_SECONDS = 30
STOP_SECONDS = 10

# Without a window manager Wine must draw title bars and move the keyboard focus itself.
REGISTRY = """
[Software\\\\Wine\\\\X11 Driver]
"Managed"="N"

[Control Panel\\\\Desktop]
"LogPixels"=dword:{dpi:08x}
"""


def share(source, target):
    """Links a file into another prefix, unless it has just been removed. A registry file is copied:
    Wine rewrites a file with two links in place, which would change both prefixes."""
    try:
        if pathlib.Path(source).suffix == ".reg":
            shutil.copy2(source, target)
        else:
            os.link(source, target, follow_symlinks=False)
    except FileNotFoundError:
        pass


def what_is_temporary(folder, names):
    """The temporary files, which running programs may remove at any time."""
    return names if pathlib.Path(folder).name.lower() == "temp" else ()


def stop(process):
    """Ends a process: with SIGTERM, and with SIGKILL when it does not end in time."""
    if process.poll() is None:
        process.terminate()
    try:
        process.wait(STOP_SECONDS)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait(STOP_SECONDS)


class Display:
    """A virtual display with an unused number."""

    def __init__(self):
        reader, writer = os.pipe()
        with open(reader, "rb") as numbers:
            self._server = subprocess.Popen(
                ["Xvfb", "-displayfd", str(writer), "-screen", "0", "{}x{}x24".format(*SIZE),
                 "-nolisten", "tcp", "-noreset"],
                pass_fds=[writer], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL)
            os.close(writer)
            ready, _, _ = select.select([numbers], [], [], START_SECONDS)
            # The whole line: the server ends when the pipe closes before it has written all of it.
            number = numbers.readline().strip() if ready else b""
        if not number:
            self.close()
            raise RuntimeError("Xvfb did not start")
        self.name = ":" + number.decode("ascii")

    def close(self):
        stop(self._server)

    def press(self, *keys):
        """Presses keys, by their X names, in the window that has the keyboard focus."""
        self._run("xdotool", "key", "--delay", "50", *keys)

    def click(self, x, y):
        """Clicks with the real mouse."""
        self._run("xdotool", "mousemove", str(x), str(y), "click", "1")

    def picture(self, rect, path):
        """Writes what the display shows in a rectangle (left, top, right, bottom) into a file."""
        path.parent.mkdir(parents=True, exist_ok=True)
        self._run("import", "-window", "root", "-crop", self._crop(rect), "+repage", str(path))

    def colours(self, rect):
        """The colours in a rectangle, as a set of (red, green, blue)."""
        image = self._run("import", "-window", "root", "-crop", self._crop(rect), "+repage",
                          "-depth", "8", "ppm:-")
        # Head: "P6", width and height, the largest value, each ended by one line end.
        pixels = image.split(b"\n", 3)[3]
        return {tuple(pixels[i:i + 3]) for i in range(0, len(pixels) - 2, 3)}

    @staticmethod
    def _crop(rect):
        left, top = max(rect[0], 0), max(rect[1], 0)
        return f"{rect[2] - left}x{rect[3] - top}+{left}+{top}"

    def _run(self, *command):
        return subprocess.run(command, env=dict(os.environ, DISPLAY=self.name), check=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              timeout=START_SECONDS).stdout


class Prefix:
    """A copy of the project's Wine prefix, with a Wine server of its own."""

    def __init__(self, dpi=96):
        source = pathlib.Path(environment()["WINEPREFIX"])
        # Beside its source: nearly all files are shared with it by hard links.
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="dialog-", dir=source.parent))
        try:
            shutil.copytree(source, self.path, symlinks=True, copy_function=share,
                            ignore=what_is_temporary, dirs_exist_ok=True)
            registry = self.path / "user.reg"
            text = registry.read_text(encoding="utf-8", errors="surrogateescape")
            registry.write_text(text + REGISTRY.format(dpi=dpi), encoding="utf-8",
                                errors="surrogateescape")
        except BaseException:
            shutil.rmtree(self.path, ignore_errors=True)
            raise

    def close(self):
        subprocess.run(["wineserver", "--kill"], env=environment(WINEPREFIX=str(self.path)),
                       timeout=START_SECONDS, check=False)
        shutil.rmtree(self.path, ignore_errors=True)
