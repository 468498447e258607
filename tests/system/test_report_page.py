"""The HTML report in a real browser. Screenshots are written to build/screenshots."""
import html.parser
import re
import subprocess
import unittest

import browser
import side_by_side
from program import RESULTS, VERIFICATION, ProgramTest, settings

load_tests = side_by_side.load_tests

# Names that would run a script, load a file or reverse the text if they were not escaped.
HOSTILE = [b"<img src=x onerror=alert(1)>\x1b\n", b"</bdi><script>alert(2)</script>",
           b"{{exit}}{{{exit}}}'\"&lt;"]
HOSTILE_CARD = "Card \u202e</title><script>alert(3)</script>"
ALLOWED = {"html", "head", "meta", "title", "style", "body", "header", "main", "footer", "section",
           "article", "h1", "h2", "h3", "p", "span", "strong", "small", "i", "a", "bdi", "time",
           "dl", "div", "dt", "dd", "ul", "li", "table", "caption", "thead", "tbody", "tr", "th",
           "td", "details", "summary", "pre", "svg", "rect", "line", "path", "text", "wbr"}


class Page(html.parser.HTMLParser):
    """The elements, attributes and visible text of a document."""

    def __init__(self, text):
        super().__init__()
        self.elements, self.attributes, self.words = set(), [], ""
        self._hidden = False
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        self.elements.add(tag)
        self.attributes += attrs
        self._hidden = tag == "style"

    def handle_data(self, data):
        if not self._hidden:
            self.words += data

    def handle_endtag(self, tag):
        self._hidden = False


class ReportPage(ProgramTest):
    def page_of(self, *arguments, scenario=None):
        run = self.run_program("run", VERIFICATION, *arguments, "--html", "report.html",
                               scenario=scenario)
        return run, self.folder / "report.html"

    def hostile_page(self, *arguments):
        scenario = {"interfaces": [{"accessPoints": [
            {"ssid": "Bench AP", "signal": 34}, {"ssid": "Guests", "signal": 55},
            *({"ssidHex": name.hex(), "signal": 60 + i} for i, name in enumerate(HOSTILE))]}]}
        cards = self.write("cards.json", [
            {"name": HOSTILE_CARD, "capabilities": ["Wireless", "NetworkCard"], "properties": {
                "DeviceSystemName": "\\DEVICE\\{8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20}",
                "wlanAPISupported": "true"}}])
        run, path = self.page_of(
            "--devices", cards.name, *arguments, scenario=scenario,
            *settings(SSID="Bench AP", WarningSignalStrength=40, FailingSignalStrength=20))
        self.assertEqual(run.exit, RESULTS["WARN"], run)
        self.assertNotIn("SSID Being Compared", run.err, "the log is on the page alone")
        return path

    def looked_at(self, path):
        """The document as the browser has it after loading, which it did without a complaint."""
        dom, complaints = browser.browse("--dump-dom", path.as_uri())
        self.assertNotIn("CONSOLE", complaints)
        return Page(dom)

    def screenshot(self, path, name, width, *arguments):
        complaints = browser.screenshot(path, f"report-{name}.png", width, *arguments)
        self.assertNotIn("CONSOLE", complaints)

    def test_names_made_of_markup_are_shown_and_do_nothing(self):
        path = self.hostile_page()
        page = self.looked_at(path)
        self.assertEqual(page.elements - ALLOWED, set())
        self.assertEqual([name for name, _ in page.attributes
                          if name.startswith("on") or name in ("src", "style")], [])
        self.assertEqual([value for name, value in page.attributes
                          if name == "href" and not value.startswith("#")], [])
        for name in (r"<img src=x onerror=alert(1)>\x1B\n", "</bdi><script>alert(2)</script>",
                     "{{exit}}{{{exit}}}'\"&lt;",
                     r"Card \u202E</title><script>alert(3)</script>"):
            self.assertIn(name, page.words)
        for words in ("Passed with a warning", "34%", "at or below the warning limit of 40",
                      'The signal of the access point "Bench AP" is weak: 34% was detected'):
            self.assertIn(words.replace(" %", "\u00a0%") if words == "34%" else words, page.words)
        self.assertIn("SSID Being Compared: Bench AP", page.words, "the log, though none was asked for")

        self.screenshot(path, "light", 1000)
        self.screenshot(path, "dark", 1000, "--blink-settings=preferredColorScheme=0")
        # The browser's own window is never narrower than 500 pixels: a frame is.
        phone = self.write("phone.html", f'<body style="margin:0"><iframe src="{path.name}" '
                                         'style="border:0" width="360" height="1700"></iframe>')
        self.screenshot(phone, "phone", 500)

        paper = self.folder / "report.pdf"
        browser.browse("--no-pdf-header-footer", f"--print-to-pdf={paper}", path.as_uri())
        words = subprocess.run(["pdftotext", "-layout", paper, "-"], capture_output=True,
                               text=True, check=True).stdout
        self.assertIn("Passed with a warning", words)
        self.assertIn("Bench AP", words)
        self.assertNotIn("SSID Being Compared", words, "paper shows the same without the log")
        subprocess.run(["pdftoppm", "-r", "80", "-png", "-singlefile", paper,
                        browser.SCREENSHOTS / "report-paper"], check=True)

    def test_the_browser_applies_the_style_sheet_that_the_policy_names(self):
        _, path = self.page_of()
        whole = path.read_text(encoding="utf-8")
        self.looked_at(path)
        broken = self.write("broken.html", whole.replace("max-width: 52rem", "max-width: 53rem"))
        _, complaints = browser.browse("--dump-dom", broken.as_uri())
        self.assertIn("Content Security Policy", complaints)

    def test_a_language_that_is_read_from_the_right_mirrors_the_page(self):
        path = self.hostile_page("--language", "ar")
        text = path.read_text(encoding="utf-8")
        self.assertIn('<html lang="ar" dir="rtl">', text)
        bar = re.search(r'class="bar" x="([\d.]+)%" y="\d+" width="([\d.]+)%"', text)
        self.assertEqual((float(bar[1]), float(bar[2])), (66, 34))
        self.looked_at(path)
        self.screenshot(path, "arabic", 1000)


if __name__ == "__main__":
    unittest.main()
