"""Looks at pages with a real browser, without a window."""
import subprocess
import tempfile

from program import LIMIT_SECONDS, ROOT

SCREENSHOTS = ROOT / "build" / "screenshots"
HEIGHT = 1700


def browse(*arguments):
    """Starts the browser for one task; returns what it wrote on both outputs."""
    with tempfile.TemporaryDirectory() as profile:
        run = subprocess.run(
            ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
             "--enable-logging=stderr", f"--user-data-dir={profile}", *map(str, arguments)],
            capture_output=True, text=True, timeout=LIMIT_SECONDS, check=True)
    return run.stdout, run.stderr


def screenshot(page, name, width, *arguments):
    """Writes a picture of the page to SCREENSHOTS; returns the browser's complaints."""
    SCREENSHOTS.mkdir(parents=True, exist_ok=True)
    picture = SCREENSHOTS / name
    picture.unlink(missing_ok=True)
    _, complaints = browse(f"--screenshot={picture}", f"--window-size={width},{HEIGHT}",
                           *arguments, page.as_uri())
    if not picture.is_file():
        raise AssertionError(f"no picture of {page}: {complaints}")
    return complaints
