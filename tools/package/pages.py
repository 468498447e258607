"""The user's pages of docs/ as HTML: readable without a network, each link inside the package.

cmark-gfm makes the HTML; headings get the anchors that source hosts give them, because the pages'
links name these.
"""
import html
import posixpath
import re
import subprocess

from components import FOLDER, PackagingError

# Each page with its name in the bar at the top, in the bar's order.
PAGES = {"technicians": "Technicians", "signal": "Levels", "watch": "Live levels",
         "networks": "Networks", "limits": "Limits", "measuring": "What levels prove",
         "command-line": "Command line", "report": "Reports", "history": "Many runs",
         "formats": "Formats", "captures": "Captures", "stations": "Stations", "hosts": "Hosts",
         "localization": "Languages"}
STYLE = "style.css"
HEADING = re.compile(r"<h([1-6])>(.*?)</h\1>")
TARGET = re.compile(r'(<a href="|<img src=")([^"]*)')
OUTSIDE = re.compile(r"[a-z]+:")
PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{title} - mrlrantenna</title>
<link rel="stylesheet" href="{style}">
</head>
<body>
<nav>{bar}</nav>
<main>
{body}</main>
</body>
</html>
"""


def _words(markup):
    return html.unescape(re.sub(r"<[^>]*>", "", markup))


def _anchor(words):
    return re.sub(r"[^\w -]", "", words.lower()).replace(" ", "-")


def _converted(text):
    try:
        run = subprocess.run(["cmark-gfm", "--extension", "table"], input=text.encode("utf-8"),
                             stdout=subprocess.PIPE, check=True)
    except (OSError, subprocess.CalledProcessError) as failure:
        raise PackagingError(f"the pages cannot be made with cmark-gfm: {failure}") from None
    return run.stdout.decode("utf-8")


def _with_page_ending(target):
    """The target of a link, with the ending of a page where it leads to one."""
    path, separator, anchor = target.partition("#")
    name = path.removesuffix(".md")
    return (f"{name}.html" if path != name and name in PAGES else path) + separator + anchor


def _bar(current):
    items = (f"<b>{title}</b>" if name == current else f'<a href="{name}.html">{title}</a>'
             for name, title in PAGES.items())
    return " ".join(items)


def _page(name, text):
    """(HTML of a page, its anchors, the targets of its links and pictures)."""
    body = _converted(text)
    headings = [_words(heading[2]) for heading in HEADING.finditer(body)]
    body = HEADING.sub(lambda heading: '<h{0} id="{1}">{2}</h{0}>'.format(
        heading[1], _anchor(_words(heading[2])), heading[2]), body)
    body = TARGET.sub(lambda link: link[1] + _with_page_ending(link[2]), body)
    # A table that is wider than the window scrolls by itself.
    body = body.replace("<table>", '<div class="wide"><table>')
    body = body.replace("</table>", "</table></div>")
    page = PAGE.format(title=html.escape(headings[0]), style=STYLE, bar=_bar(name), body=body)
    return page, set(map(_anchor, headings)), [link[2] for link in TARGET.finditer(body)]


def _refuse_dead_links(pages, files):
    anchors = {f"docs/{name}.html": found for name, (_, found, _) in pages.items()}
    for name, (_, _, targets) in pages.items():
        for target in targets:
            path, _, anchor = target.partition("#")
            place = posixpath.normpath(posixpath.join("docs", path or f"{name}.html"))
            found = place in files and (not anchor or anchor in anchors.get(place, ()))
            if not found and not OUTSIDE.match(target):
                raise PackagingError(f"docs/{name}.md links to {target}, which the package does "
                                     "not have: link to something else, or add it")


def add(texts, files):
    """Adds the pages to {name in the package: content}, which has what they link to.

    texts: {name: Markdown} for each of PAGES.
    """
    pages = {name: _page(name, texts[name]) for name in PAGES}
    for name, (page, _, _) in pages.items():
        files[f"docs/{name}.html"] = page.encode("utf-8")
    files[f"docs/{STYLE}"] = (FOLDER / STYLE).read_bytes()
    _refuse_dead_links(pages, files)
