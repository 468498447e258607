"""The zip for Windows: its contents, that they are correct, and that it is reproducible."""
import datetime
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

import jsonschema

import browser
from program import (DIST, EXECUTABLE, OUTPUT_LOST, PROGRAMS, REPLAY_DIFFERS, RESOURCES, RESULTS,
                     ROOT, SIGNAL, WRONG_USAGE, ProgramTest)

TOOLS = ROOT / "tools" / "package"
sys.path.insert(0, str(TOOLS))
import compare_packages  # noqa: E402
import components  # noqa: E402
import make_package  # noqa: E402
import pages  # noqa: E402

BUILD = DIST.parent
BILL = "mrlrantenna.cdx.json"
CMAKE_LIBRARIES = (ROOT / "cmake" / "HeaderOnlyLibraries.cmake").read_text(encoding="utf-8")
# What every executable of this toolchain has in it, whatever else it uses.
RUN_TIME = {"libstdc++", "libgcc", "libssp", "winpthreads", "MinGW-w64 runtime"}
# The pages of docs/ that are for users.
PAGES = ("technicians", "signal", "watch", "networks", "limits", "measuring", "command-line",
         "report", "history", "formats", "captures", "stations", "hosts", "localization")
# What has the same place in the package as in the source tree.
AS_IN_THE_TREE = [path.relative_to(ROOT).as_posix()
                  for folder in ("docs/images", "docs/schemas", "examples")
                  for path in (ROOT / folder).rglob("*") if path.is_file()]
AS_IN_THE_TREE += ["tests/structure/check_texts.py", "tests/structure/tree_check.py"]
# Words by which a licence is known.
LICENCE_WORDS = {
    "MIT": ["Permission is hereby granted, free of charge", "THE SOFTWARE IS PROVIDED"],
    "BSD-3-Clause": ["Redistributions in binary form must reproduce", "endorse or promote"],
    "BSL-1.0": ["Boost Software License - Version 1.0"],
    "Apache-2.0": ["Apache License", "Version 2.0"],
    "GPL-3.0-or-later": ["GNU GENERAL PUBLIC LICENSE", "END OF TERMS AND CONDITIONS"],
    "GCC-exception-3.1": ["GCC RUNTIME LIBRARY EXCEPTION", "Grant of Additional Permission"],
    "ZPL-2.1": ["Zope Public License", "Servicemarks"],
}


def make(output, build=BUILD, **options):
    """Makes a package; returns the finished process."""
    return subprocess.run([sys.executable, str(TOOLS / "make_package.py"), str(build), str(output)],
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False, **options)


def made(output, **options):
    """Makes a package; returns its path."""
    run = make(output, **options)
    if run.returncode != 0:
        raise AssertionError(run.stderr.decode("utf-8", "replace"))
    [package] = output.iterdir()
    return package


class PackageTest(ProgramTest):
    """Tests of one package, made once."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.package = made(pathlib.Path(folder.name))
        cls.zip = zipfile.ZipFile(cls.package)
        cls.addClassCleanup(cls.zip.close)
        cls.top = cls.package.stem + "/"
        cls.names = [name.removeprefix(cls.top) for name in cls.zip.namelist()]
        cls.bill = json.loads(cls.read(BILL))

    @classmethod
    def read(cls, name):
        return cls.zip.read(cls.top + name)

    @classmethod
    def unpack(cls, folder):
        """Unpacks the zip; returns the package's own folder."""
        cls.zip.extractall(folder)
        return folder / cls.top

    def libraries(self):
        return {entry["name"]: entry for entry in self.bill["components"]
                if entry["type"] == "library"}

    def licence_file(self, library):
        [name] = [entry["value"] for entry in library["properties"]
                  if entry["name"] == "mrlrantenna:licence-file"]
        return name


class Contents(PackageTest):
    def test_are_the_programs_their_resources_and_their_documents_and_nothing_else(self):
        resources = {path.relative_to(ROOT).as_posix()
                     for part in RESOURCES for path in part.rglob("*") if path.is_file()}
        papers = {"README.txt", "LICENSE.txt", BILL}
        licences = {name for name in self.names if name.startswith("licences/")}
        pages = {f"docs/{name}.html" for name in PAGES} | {"docs/style.css"}
        programs = {f"{program.stem}.{ending}" for program in PROGRAMS for ending in ("k5x", "cmd")}
        self.assertEqual(set(self.names), {*programs, *resources, *papers, *licences, *pages,
                                           *AS_IN_THE_TREE})
        self.assertEqual(licences, {self.licence_file(library)
                                    for library in self.libraries().values()})

    def test_are_the_built_files(self):
        for name in self.names:
            if name.endswith(".k5x") or name.startswith("resources/"):
                with self.subTest(name):
                    self.assertEqual(self.read(name), (DIST / name).read_bytes())
        for name in AS_IN_THE_TREE:
            with self.subTest(name):
                self.assertEqual(self.read(name), (ROOT / name).read_bytes())

    def test_are_in_one_folder_with_the_name_of_the_zip(self):
        for name in self.zip.namelist():
            self.assertTrue(name.startswith(self.top), name)

    def test_have_names_that_every_unpacker_accepts(self):
        for name in self.names:
            with self.subTest(name):
                self.assertRegex(name, r"\A[A-Za-z0-9_][A-Za-z0-9._/-]*\Z")
                self.assertNotIn("..", name)
        self.assertEqual(len({name.lower() for name in self.names}), len(self.names))

    def test_are_sorted_and_carry_fixed_permissions_and_one_time(self):
        self.assertEqual(self.names, sorted(self.names))
        self.assertEqual(len({entry.date_time for entry in self.zip.infolist()}), 1)
        for entry in self.zip.infolist():
            with self.subTest(entry.filename):
                program = entry.filename.endswith(".k5x")
                expected = 0o100755 if program else 0o100644
                self.assertEqual(entry.external_attr >> 16, expected)


class Papers(PackageTest):
    def text(self, name):
        return self.read(name).decode("ascii")

    def test_end_their_lines_as_windows_does(self):
        for name in self.names:
            if name.endswith((".txt", ".cmd")):
                with self.subTest(name):
                    text = self.text(name)
                    self.assertEqual(text.count("\r\n"), text.count("\n"))
                    self.assertEqual(text.count("\r"), text.count("\n"))
                    self.assertTrue(text.endswith("\r\n"))

    def test_readme_has_version_commands_exit_values_location_setting_help_and_licences(self):
        readme = self.text("README.txt")
        self.assertTrue(readme.startswith("mrlrantenna 6.5 build 000000001\r\n"))
        self.assertNotRegex(readme, r"[{}]", "every place of the template is filled")
        self.assertLessEqual(max(map(len, readme.split("\r\n"))), 100, "fits a narrow window")
        first = readme.index("mrlrantenna ", readme.index("----"))
        self.assertTrue(readme[first:].startswith("mrlrantenna doctor "), "doctor comes first")
        for text in ("mrlrantenna list", r".\mrlrantenna list", "%ERRORLEVEL%", "$LASTEXITCODE",
                     "Privacy & security > Location", "--help", "LICENSE.txt", BILL):
            with self.subTest(text):
                self.assertIn(text, readme)
        for result, value in {**RESULTS, "COMPLETED": 0}.items():
            with self.subTest(result):
                self.assertRegex(readme, rf"(?m)^  {value} .*\b{result}\b")
        for value in (WRONG_USAGE, REPLAY_DIFFERS, OUTPUT_LOST):
            self.assertRegex(readme, rf"(?m)^  {value} ")

    def test_licence_of_the_program_is_the_repositorys(self):
        self.assertEqual(self.text("LICENSE.txt").replace("\r\n", "\n"),
                         (ROOT / "LICENSE").read_text(encoding="utf-8"))

    def test_licence_of_every_library_is_there(self):
        for library in self.libraries().values():
            with self.subTest(library["name"]):
                text = self.text(self.licence_file(library))
                self.assertIn("Copyright", text)
                self.assertIn(library["name"].split(" ")[0].lower(), text.lower())
                for word in re.findall(r"[\w.+-]+", json.dumps(library["licenses"])):
                    for known in LICENCE_WORDS.get(word, ()):
                        self.assertIn(known, text)


class BillOfMaterials(PackageTest):
    def test_is_one(self):
        schema = json.loads((pathlib.Path(__file__).parent / "cyclonedx-subset.schema.json")
                            .read_text(encoding="utf-8"))
        jsonschema.Draft7Validator.check_schema(schema)
        jsonschema.validate(self.bill, schema, jsonschema.Draft7Validator)

    def test_lists_every_other_file_with_its_hash(self):
        listed = {entry["name"]: entry["hashes"][0]["content"]
                  for entry in self.bill["components"] if entry["type"] == "file"}
        self.assertEqual(listed, {name: hashlib.sha256(self.read(name)).hexdigest()
                                  for name in self.names if name != BILL})

    def test_lists_every_header_only_library_and_the_run_time_libraries(self):
        packages = re.findall(r"^mrlr_header_only\(.* (\S+)\)$", CMAKE_LIBRARIES, re.MULTILINE)
        self.assertGreaterEqual(len(packages), 4)
        places = [library["purl"] for library in self.libraries().values()]
        for package in packages:
            with self.subTest(package):
                self.assertEqual(len([place for place in places if f"/{package}@" in place]), 1)
        self.assertLessEqual(RUN_TIME, set(self.libraries()))

    def test_has_the_installed_versions_and_a_licence_for_each(self):
        for library in self.libraries().values():
            with self.subTest(library["name"]):
                package = re.match(r"pkg:deb/debian/([^@]+)@", library["purl"]).group(1)
                version = subprocess.check_output(
                    ["dpkg-query", "-W", "-f", "${Version}", package], text=True)
                self.assertEqual(library["version"], version)
                self.assertTrue(library["licenses"])

    def test_refers_only_to_what_it_lists(self):
        references = [entry["bom-ref"] for entry in self.bill["components"]]
        references.append(self.bill["metadata"]["component"]["bom-ref"])
        self.assertEqual(len(set(references)), len(references))
        for dependency in self.bill["dependencies"]:
            self.assertIn(dependency["ref"], references)
            self.assertLessEqual(set(dependency.get("dependsOn", ())), set(references))


class Unpacked(PackageTest):
    def run_unpacked(self, folder_name, *arguments, program=EXECUTABLE):
        self.executable = self.unpack(self.folder / folder_name) / program.name
        return self.run_program(*arguments)

    def test_runs_from_folders_of_any_name_and_has_the_version_in_its_own(self):
        for name in ("plain", "Pr\u00fcfstand 7 & (mehr)", "\u30a2\u30f3\u30c6\u30ca \u691c\u67fb"):
            with self.subTest(name):
                run = self.run_unpacked(name, "--version")
                self.assertEqual(run.exit, 0, run)
                self.assertEqual(run.out, "mrlrantenna 6.5 (build 000000001)\n")
        run = self.run_unpacked("plain", "--version", program=SIGNAL)
        self.assertEqual(run.out, "mrlrsignal 6.5 (build 000000001)\n")
        self.assertRegex(self.package.name,
                         r"\Amrlrantenna-6\.5\.000000001-win64(-modified)?\.zip\Z")

    def test_knows_every_command_and_option_of_its_readme_which_names_every_report(self):
        readme = self.read("README.txt").decode("ascii")
        options = set(re.findall(r"--[a-z]+", readme))
        self.assertLessEqual({"--set", "--language", "--help"}, options)
        for program in PROGRAMS:
            page = self.run_unpacked("here", "--help", program=program).out
            commands = set(re.findall(rf"(?m)^  {program.stem} (\w+)", readme))
            self.assertLessEqual({"doctor", "list", "run"}, commands)
            for word in commands | options:
                with self.subTest(program=program.stem, word=word):
                    self.assertRegex(page, rf"(?m)^  ({program.stem}\.k5x \[?)?{word}\b")
        reports = (ROOT / "common/src/libtesk5/src/reports/ReportKinds.cpp").read_text("utf-8")
        for report in {"--events", *re.findall(r'"(--[a-z]+)"', reports)}:
            self.assertRegex(readme, rf"(?m)^  {report} ")

    def test_checks_the_texts_of_a_language_that_was_added(self):
        folder = self.unpack(self.folder)
        check = [sys.executable, folder / "tests" / "structure" / "check_texts.py"]
        self.assertEqual(subprocess.run(check, capture_output=True, check=True).stdout, b"")
        (folder / "resources" / "tesk5" / "texts" / "nl.json").write_text("{}")
        run = subprocess.run(check, capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 1)
        self.assertIn("resources/tesk5/texts/nl.json: missing: ", run.stdout)


class StartScript(PackageTest):
    """mrlrantenna.cmd, under Wine's command interpreter."""

    # What stands in a batch file, and the names of tests that the program then gets. Wine's
    # interpreter, unlike that of Windows, reads percent signs of a script's arguments once more.
    NAMES = (('"a b"', "a b"), ('"a & b"', "a & b"), ('"a&b|c<d>e"', "a&b|c<d>e"),
             ('"x^y"', "x^y"), ("p!q", "p!q"), ('"p!q! (z)"', "p!q! (z)"), ("a=b,c;d", "a=b,c;d"),
             ('"5%%%% of %%%%PATH%%%%"', "5% of %PATH%"), (r'"a\"b"', 'a"b'), (r"a\"b", 'a"b'),
             (r'"end\\"', "end\\"), ("'q'", "'q'"))

    def setUp(self):
        super().setUp()
        self.tree = self.unpack(self.folder / "it's here & (there) ^!")

    def by_batch_file(self, line):
        (self.tree / "start.cmd").write_text(f"@{line}\n", newline="\r\n")
        self.executable = self.tree / "start.cmd"
        return self.run_program(RADIOSIM_TRACE=os.devnull)

    def test_passes_every_argument_on(self):
        for typed, name in self.NAMES:
            with self.subTest(typed):
                run = self.by_batch_file(f'"%~dp0mrlrantenna.cmd" run {typed}')
                self.assertEqual(run.exit, WRONG_USAGE, run)
                self.assertIn(f'"{name}"', run.err)

    def test_ends_with_the_programs_value(self):
        for arguments, value in (("--version", 0), ("run", RESULTS["BADPARAMS"]),
                                 ("run DiversityTest --device none", RESULTS["CANNOTRUN"]),
                                 ("nonsense", WRONG_USAGE)):
            with self.subTest(arguments):
                self.assertEqual(
                    self.by_batch_file(f'"%~dp0mrlrantenna" {arguments}').exit, value)
        run = self.by_batch_file('if 1==1 call "%~dp0mrlrantenna.cmd" run\n'
                                 "@echo value %ERRORLEVEL%")
        self.assertIn(f"value {RESULTS['BADPARAMS']}", run.out)
        self.assertEqual(self.by_batch_file('"%~dp0mrlrsignal" run').exit, WRONG_USAGE)

    def test_is_the_name_that_help_shows(self):
        run = self.by_batch_file('"%~dp0mrlrantenna" --help')
        self.assertIn("\n  mrlrantenna run [TEST...] [OPTIONS]\n", run.out)
        self.assertNotIn("mrlrantenna.k5x", run.out)


class Pages(PackageTest):
    """The pages of docs/ in a real browser. Screenshots are written to build/screenshots."""

    def test_show_their_pictures_and_headings_without_a_complaint(self):
        folder = self.unpack(self.folder)
        for name in PAGES:
            with self.subTest(name):
                page = folder / "docs" / f"{name}.html"
                browser.screenshot(page, f"page-{name}.png", 1000)
                dom, complaints = browser.browse("--dump-dom", page.as_uri())
                self.assertNotIn("CONSOLE", complaints)
                self.assertNotRegex(dom, r'(?:src|href)="[a-z]+:(?!//toml\.io/)')
                source = (ROOT / "docs" / f"{name}.md").read_text(encoding="utf-8")
                for heading in re.findall(r"(?m)^## ([^`\n]+)$", source):
                    self.assertRegex(dom, rf"<h2 id=[^>]*>{re.escape(heading)}</h")
                self.assertEqual(dom.count("<table>"), len(re.findall(r"(?m)^\| ---", source)))

    def test_link_only_to_what_is_in_the_package(self):
        made = dict.fromkeys(self.names, b"")
        texts = {name: "# A\n" for name in PAGES}
        for text, good in (("[B](#a)", True), ("[B](hosts.md)", True), ("[B](hosts.md#a)", True),
                           ("![B](images/dialog.png)", True), ("[B](https://a.example)", True),
                           ("[B](#b)", False), ("[B](hosts.md#b)", False),
                           ("[B](development.md)", False), ("![B](images/none.png)", False)):
            with self.subTest(text):
                texts["report"] = "# A\n" + text
                if good:
                    pages.add(texts, made)
                else:
                    with self.assertRaisesRegex(components.PackagingError, "report.md links to"):
                        pages.add(texts, made)


class Repetition(ProgramTest):
    def test_gives_the_same_bytes_for_every_user_folder_and_time_zone(self):
        surroundings = (
            dict(umask=0o022, cwd=ROOT, TZ="UTC", LC_ALL="C.UTF-8"),
            dict(umask=0o077, cwd=self.folder, TZ="Pacific/Kiritimati", LC_ALL="POSIX",
                 HOME=str(self.folder), USER="tester", LOGNAME="tester",
                 PYTHONHASHSEED="7"),
        )
        packages = []
        for index, variables in enumerate(surroundings):
            options = {key: variables.pop(key) for key in ("umask", "cwd")}
            packages.append(made(self.folder / str(index), **options,
                                 env=dict(os.environ, **variables)))
        self.assertEqual(compare_packages.differences(*packages), [])

    def test_is_compared_down_to_the_entry_that_differs(self):
        first, second = (self.folder / name for name in ("one.zip", "other.zip"))
        time = datetime.datetime(2026, 1, 2, tzinfo=datetime.timezone.utc)
        first.write_bytes(make_package.packed("p", {"a": b"same", "b": b"text", "c": b""}, time))
        second.write_bytes(make_package.packed("p", {"a": b"same", "b": b"teXt"}, time))
        self.assertEqual(compare_packages.differences(first, second), [
            "names: one.zip, other.zip",
            "p/c: only in the first",
            "p/b: 4 and 4 bytes, first difference at 0x2",
        ])
        later = time + datetime.timedelta(days=1)
        second.write_bytes(
            make_package.packed("p", {"a": b"same", "b": b"text", "c": b""}, later))
        self.assertIn("the same files, packed differently",
                      compare_packages.differences(first, second))


class Refusal(ProgramTest):
    """Builds that would give an incomplete package, or one with unknown files."""

    MEMBERS = ("/usr/lib/gcc/x86_64-w64-mingw32/12/libstdc++.a(tree.o)",
               "/usr/lib/gcc/x86_64-w64-mingw32/12/libgcc.a(_ctors.o)")

    def linker_map(self, *members):
        return ("Archive member included to satisfy reference by file (symbol)\n\n"
                + "".join(f"{member}\n          main.obj (f)\n" for member in members)
                + "\nDiscarded input sections\n")

    def used(self, table=None, cmake=CMAKE_LIBRARIES, members=MEMBERS):
        return [entry["name"] for entry in components.used(
            components.table() if table is None else table, cmake, self.linker_map(*members))]

    def refused(self, build, *naming):
        output = self.folder / "output"
        run = make(output, build=build)
        message = run.stderr.decode("utf-8")
        self.assertEqual(run.returncode, WRONG_USAGE, message)
        self.assertEqual(message.count("\n"), 1, message)
        for text in naming:
            self.assertIn(text, message)
        self.assertFalse(output.exists(), "nothing is written")

    def test_of_a_header_only_library_that_the_table_does_not_have(self):
        with self.assertRaisesRegex(components.PackagingError, "newlib of libnewlib-dev"):
            self.used(cmake=CMAKE_LIBRARIES + "mrlr_header_only(third_party_new newlib libnewlib-dev)\n")
        for entry in components.table():
            if "headers" in entry:
                with self.subTest(entry["name"]):
                    table = [other for other in components.table() if other != entry]
                    with self.assertRaisesRegex(components.PackagingError, entry["package"]):
                        self.used(table=table)

    def test_of_a_linked_library_that_the_table_does_not_have(self):
        with self.assertRaisesRegex(components.PackagingError, r"libnew\.a\(part\.o\)"):
            self.used(members=(*self.MEMBERS, "/usr/lib/libnew.a(part.o)"))

    def test_of_a_map_without_libraries(self):
        with self.assertRaisesRegex(components.PackagingError, "names no library"):
            self.used(members=())

    def test_of_a_library_without_its_licence(self):
        with self.assertRaisesRegex(components.PackagingError, "licence of new is missing"):
            components.notice({"name": "new", "notice": "new.txt"})

    def test_does_not_concern_a_part_of_the_run_time_library_with_a_licence_of_its_own(self):
        self.assertNotIn("fast_float", self.used())
        part = "/usr/lib/gcc/x86_64-w64-mingw32/12/libstdc++.a(floating_from_chars.o)"
        self.assertIn("fast_float", self.used(members=(*self.MEMBERS, part)))

    def test_of_a_tree_that_is_not_built_or_not_as_it_was_built(self):
        self.refused(self.folder / "nothing", "mrlrantenna.k5x is missing")
        for file, content, naming in (
                ("notes.txt", b"not for customers", ("notes.txt",)),
                ("resources/mrlrantenna/texts/en.json", b"{}", ("en.json", "build again")),
                (EXECUTABLE.name, b"MZ", ("version",)),
                (SIGNAL.name, SIGNAL.read_bytes().replace("6.5 build".encode("utf-16-le"),
                                                          "6.4 build".encode("utf-16-le")),
                 ("not of one version",))):
            with self.subTest(file):
                build = self.folder / pathlib.Path(file).stem
                shutil.copytree(DIST, build / "dist")
                for program in PROGRAMS:
                    name = f"{program.stem}.map"
                    (build / name).symlink_to(BUILD / name)
                (build / "dist" / file).write_bytes(content)
                self.refused(build, *naming)


class Origin(ProgramTest):
    """Which commit a package is of, and whether it is exactly that."""

    def git(self, *arguments):
        subprocess.run(["git", "-c", "user.name=Tester", "-c", "user.email=s@example.com",
                        "-c", "commit.gpgsign=false", *arguments], cwd=self.folder, check=True,
                       stdout=subprocess.DEVNULL,
                       env=dict(os.environ, GIT_COMMITTER_DATE="2026-03-04T05:06:07+0200"))

    def committed(self):
        (self.folder / "resources").mkdir()
        self.write("resources/text.json", "{}")
        self.write(".gitignore", "*.tmp\n")
        self.git("init", "--quiet")
        self.git("add", ".")
        self.git("commit", "--quiet", "--message", "first")

    def test_is_the_commit_and_its_time_in_utc(self):
        self.committed()
        origin = make_package.origin(self.folder)
        self.assertRegex(origin.commit, r"\A[0-9a-f]{40}\Z")
        self.assertFalse(origin.modified)
        self.assertEqual(origin.time.isoformat(), "2026-03-04T03:06:07+00:00")

    def test_includes_whether_there_are_uncommitted_changes(self):
        self.committed()
        for change in ("resources/text.json", "new.cpp", "resources/left-over.tmp"):
            with self.subTest(change):
                path = self.write(change, "changed")
                self.assertTrue(make_package.origin(self.folder).modified)
                if change == "resources/text.json":
                    path.write_text("{}")
                else:
                    path.unlink()
                self.assertFalse(make_package.origin(self.folder).modified)

    def test_of_a_tree_without_history_is_unknown(self):
        origin = make_package.origin(self.folder)
        self.assertIsNone(origin.commit)
        self.assertTrue(origin.modified)

    def test_of_a_broken_history_is_refused(self):
        (self.folder / ".git").mkdir()
        with self.assertRaisesRegex(components.PackagingError, "Git does not tell the commit"):
            make_package.origin(self.folder)

    def test_is_in_the_package(self):
        origin = make_package.origin(ROOT)
        changed = make_package.Origin("0123456789abcdef" * 2 + "01234567", True, origin.time)
        for tree, name_end, sentence in (
                (changed._replace(modified=False), "-win64", b"From commit 0123456789ab of "),
                (changed, "-win64-modified", b"changes that are not committed; not a release."),
                (changed._replace(commit=None), "-win64-modified", b"not a release.")):
            with self.subTest(name_end):
                name, files = make_package.contents(BUILD, tree)
                self.assertTrue(name.endswith(name_end), name)
                self.assertIn(sentence, files["README.txt"])
                properties = {entry["name"]: entry["value"] for entry in
                              json.loads(files[BILL])["metadata"]["properties"]}
                self.assertEqual(properties["mrlrantenna:commit"], tree.commit or "unknown")
                self.assertEqual(properties["mrlrantenna:uncommitted-changes"],
                                 str(tree.modified).lower())


if __name__ == "__main__":
    unittest.main()
