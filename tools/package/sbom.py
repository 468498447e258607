"""The software bill of materials of a package, as CycloneDX 1.4 in JSON.

Everything in it follows from the package's files, the commit and the installed Debian packages, so
that the same commit has the same bill: the serial number is made from the contents.
"""
import hashlib
import json
import re
import urllib.parse
import uuid

# The tools that decide the bytes of the executable and the pages, beside the libraries.
BUILD_TOOLS = ("g++-mingw-w64-x86-64-posix", "binutils-mingw-w64-x86-64", "cmark-gfm")

# An SPDX expression consists of identifiers, operators and brackets only.
_EXPRESSION = re.compile(r"\(*[\w.+-]+\)*( (AND|OR|WITH) \(*[\w.+-]+\)*)*")


def _licences(text):
    if not _EXPRESSION.fullmatch(text):
        return [{"license": {"name": text}}]  # words, for what SPDX has no identifier
    if " " in text:
        return [{"expression": text}]
    return [{"license": {"id": text}}]


def _package_url(name, version, architecture):
    quoted = urllib.parse.quote(version, safe=".-~:")
    return f"pkg:deb/debian/{urllib.parse.quote(name, safe='')}@{quoted}?arch={architecture}"


def _library(component, versions):
    version, architecture = versions[component["package"]]
    return {
        "type": "library",
        "bom-ref": f"library:{component['name']}",
        "name": component["name"],
        "version": version,
        "licenses": _licences(component["licence"]),
        "purl": _package_url(component["package"], version, architecture),
        "properties": [{"name": "mrlrantenna:licence-file",
                        "value": f"licences/{component['notice']}"}],
    }


def _file(name, content):
    return {
        "type": "file",
        "bom-ref": f"file:{name}",
        "name": name,
        "hashes": [{"alg": "SHA-256", "content": hashlib.sha256(content).hexdigest()}],
    }


def make(version, origin, components, versions, files):
    """The bill's bytes.

    version: the product's; origin: the commit; components: those in the executable; versions: of
    Debian packages, BUILD_TOOLS among them; files: {name: content} of all the package's others.
    """
    listed = [_library(component, versions) for component in components]
    listed += [_file(name, files[name]) for name in sorted(files)]
    product = "product:mrlrantenna"
    properties = [("mrlrantenna:commit", origin.commit or "unknown"),
                  ("mrlrantenna:uncommitted-changes", "true" if origin.modified else "false")]
    properties += [(f"mrlrantenna:built-with:{tool}", versions[tool][0]) for tool in BUILD_TOOLS]
    libraries = [entry["bom-ref"] for entry in listed if entry["type"] == "library"]
    bill = {
        "bomFormat": "CycloneDX",
        "specVersion": "1.4",
        "version": 1,
        "metadata": {
            "timestamp": origin.time.strftime("%Y-%m-%dT%H:%M:%SZ"),
            "component": {
                "type": "application",
                "bom-ref": product,
                "name": "mrlrantenna",
                "version": version,
                "licenses": _licences("MIT"),
            },
            "properties": [{"name": name, "value": value} for name, value in properties],
        },
        "components": listed,
        "dependencies": [{"ref": product, "dependsOn": libraries}]
                        + [{"ref": library} for library in libraries],
    }
    contents = json.dumps(bill, sort_keys=True).encode("utf-8")
    serial = uuid.UUID(bytes=hashlib.sha256(contents).digest()[:16], version=5)
    bill["serialNumber"] = f"urn:uuid:{serial}"
    return (json.dumps(bill, indent=2, ensure_ascii=False) + "\n").encode("utf-8")
