"""The package for Debian: its contents, that they are correct, and that it is reproducible."""
import gzip
import hashlib
import itertools
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

from linux_program import BUILD, DIST, LinuxProgramTest, environment, run_executable
from program import ROOT

TOOLS = ROOT / "tools" / "package"
sys.path.insert(0, str(TOOLS))
import compare_packages  # noqa: E402
import components  # noqa: E402
import help_pages  # noqa: E402
import make_deb  # noqa: E402

PAPERS = "usr/share/doc/mrlrantenna/"
COMPLETIONS = "usr/share/bash-completion/completions/"
MAN_PAGES = "usr/share/man/man1/"
PROGRAMS = ("mrlrantenna", "mrlrsignal")
LANGUAGES = sorted(path.stem for path in (ROOT / "resources" / "tesk5" / "texts").iterdir())


def made(output, **options):
    """Makes a package; returns its path."""
    run = subprocess.run([sys.executable, str(TOOLS / "make_deb.py"), str(BUILD), str(output)],
                         stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False, **options)
    if run.returncode != 0:
        raise AssertionError(run.stderr.decode("utf-8", "replace"))
    [package] = output.iterdir()
    return package


def lines_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE,
                          text=True).stdout.splitlines()


class PackageTest(LinuxProgramTest):
    """Tests of one package, made and unpacked once."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        place = pathlib.Path(folder.name)
        cls.package = made(place / "package")
        cls.root = place / "root"
        subprocess.run(["dpkg-deb", "--raw-extract", str(cls.package), str(cls.root)], check=True)
        cls.names = sorted(path.relative_to(cls.root).as_posix() for path in cls.root.rglob("*")
                           if path.is_file() and "DEBIAN" not in path.parts)

    @classmethod
    def read(cls, name):
        return (cls.root / name).read_bytes()

    @classmethod
    def text(cls, name):
        content = cls.read(name)
        return (gzip.decompress(content) if name.endswith(".gz") else content).decode("utf-8")

    def field(self, name):
        [value] = lines_of("dpkg-deb", "--field", str(self.package), name)
        return value


class Contents(PackageTest):
    def test_are_the_programs_their_texts_and_their_documents(self):
        expected = set()
        for program in PROGRAMS:
            expected |= {f"usr/share/{program}/{path.relative_to(ROOT / 'resources').as_posix()}"
                         for part in (program, "networkadapters", "tesk5")
                         for path in (ROOT / "resources" / part).rglob("*.json")}
            expected |= {f"usr/bin/{program}", f"{MAN_PAGES}{program}.1.gz",
                         f"{COMPLETIONS}{program}"}
        self.assertEqual({name for name in self.names if not name.startswith(PAPERS)}, expected)
        for name in ("copyright", "changelog.gz", "docs/technicians.html", "docs/report.html",
                     "examples/stations/station.py"):
            self.assertIn(PAPERS + name, self.names)

    def test_are_the_built_files(self):
        for program in PROGRAMS:
            self.assertEqual(self.read(f"usr/bin/{program}"), (DIST / program).read_bytes())
        for path in (DIST / "share").rglob("*.json"):
            name = f"usr/{path.relative_to(DIST).as_posix()}"
            self.assertEqual(self.read(name), path.read_bytes(), name)

    def test_belong_to_root_with_fixed_permissions_and_one_time(self):
        times = set()
        for line in lines_of("dpkg-deb", "--contents", str(self.package)):
            mode, owner, _, day, time, name = line.split(maxsplit=5)
            expected = ("drwxr-xr-x" if name.endswith("/") else
                        "-rwxr-xr-x" if name.startswith("./usr/bin/") else "-rw-r--r--")
            self.assertEqual((mode, owner), (expected, "root/root"), name)
            times.add((day, time))
        self.assertEqual(len(times), 1)

    def test_have_their_sums(self):
        sums = dict(reversed(line.split("  ", 1))
                    for line in self.text("DEBIAN/md5sums").splitlines())
        self.assertEqual(sums, {name: hashlib.md5(self.read(name)).hexdigest()
                                for name in self.names})

    def test_are_described(self):
        version = self.field("Version")
        self.assertRegex(version, r"\A6\.5\.000000001(\+modified)?\Z")
        self.assertEqual(self.package.name, f"mrlrantenna_{version}_amd64.deb")
        self.assertEqual(self.field("Package"), "mrlrantenna")
        self.assertEqual(self.field("Architecture"), "amd64")
        needed = re.findall(r"[\w.+-]+(?= \(| \||,|$)", self.field("Depends"))
        for package in ("libc6", "libstdc++6", "libnl-3-200", "libnl-genl-3-200", "libcap2-bin",
                        "debconf"):
            self.assertIn(package, needed)
        size = sum((self.root / name).stat().st_size for name in self.names) / 1024
        self.assertAlmostEqual(int(self.field("Installed-Size")), size, delta=len(self.names))

    def test_name_the_licences_of_everything_compiled_in(self):
        copyright_file = self.text(PAPERS + "copyright")
        self.assertIn((ROOT / "LICENSE").read_text(encoding="utf-8"), copyright_file)
        libraries = components.header_only(components.table(), (
            ROOT / "cmake" / "HeaderOnlyLibraries.cmake").read_text(encoding="utf-8"))
        self.assertGreaterEqual(len(libraries), 5)
        for library in libraries:
            self.assertIn(components.notice(library), copyright_file)

    def test_changelog_is_as_debian_reads_it(self):
        path = self.folder / "changelog"
        path.write_text(self.text(PAPERS + "changelog.gz"), encoding="utf-8")
        self.assertEqual(lines_of("dpkg-parsechangelog", "--file", str(path), "--show-field",
                                  "Version"), [self.field("Version")])


class Unpacked(PackageTest):
    def test_programs_find_their_texts(self):
        for language, program in itertools.product(LANGUAGES, PROGRAMS):
            with self.subTest(language, program=program):
                program = self.root / "usr" / "bin" / program
                texts = json.loads((ROOT / "resources" / "tesk5" / "texts" / f"{language}.json")
                                   .read_text(encoding="utf-8"))
                run = run_executable(program, "list", "--language", language)
                self.assertEqual((run.exit, run.err), (0, ""), run)
                self.assertTrue(run.out.startswith(texts["LIST_TESTS"] + "\n"), run)

    def test_man_pages_have_every_command_option_and_exit_value(self):
        for program in PROGRAMS:
            with self.subTest(program):
                self.assert_man_page_is_whole(program)

    def assert_man_page_is_whole(self, program):
        page = self.folder / f"{program}.1"
        page.write_text(self.text(f"{MAN_PAGES}{program}.1.gz"), encoding="utf-8")
        shown = subprocess.run(["man", "--warnings", "--local-file", str(page)],
                               env=environment(MANWIDTH="1000", LC_ALL="C.UTF-8"), check=True,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertEqual(shown.stderr.decode(), "")
        text = re.sub(r"\s+", " ", re.sub(r".\x08", "", shown.stdout.decode("utf-8")))
        overview, commands = help_pages.read(DIST / program)
        self.assertEqual([command.name for command in commands][:4],
                         ["list", "run", "doctor", "replay"])
        for command in commands:
            self.assertIn(f" {program} {command.usage} ", text)
            self.assertIn(f" {command.text} ", text)
            for example in command.examples:
                self.assertIn(f" {example} ", text)
        options = [option for _, group in overview.groups for option in group]
        self.assertGreater(len(options), 15)
        for option in options:
            head = f"{option.name} {option.argument}".strip()
            self.assertIn(f" {head} {option.text} ", text)
        self.assertEqual({int(value.split()[0]) for value, _ in overview.values},
                         {0, 1, 2, 3, 4, 5, 6, 8, 64, 65, 74})
        for value, meaning in overview.values:
            self.assertIn(f" {value} {meaning} ", text)
        self.assertIn(f'"sudo setcap cap_net_admin+ep /usr/bin/{program}"', text)

    def completed(self, line):
        """What the completion offers behind a command line; None where it leaves it to the shell's
        names of files."""
        words = re.findall(r"=|[^\s=]+", line) + ([""] if line.endswith(" ") else [])
        script = ("compopt() { [[ $2 != default ]] || echo FILES; }\n"
                  f"source {self.root / COMPLETIONS / words[0]}\n"
                  f"COMP_WORDS=({' '.join(word or chr(39) * 2 for word in words)})\n"
                  f"COMP_CWORD={len(words) - 1}\n"
                  f"_{words[0]}\n"
                  "((${#COMPREPLY[@]})) && printf '%s\\n' \"${COMPREPLY[@]}\"; true")
        offered = lines_of("bash", "-c", script)
        return None if offered == ["FILES"] else offered

    def test_completion_knows_commands_options_names_and_files(self):
        for line, offered in (
                ("mrlrantenna ", ["list", "run", "doctor", "replay", "history"]),
                ("mrlrantenna do", ["doctor"]),
                ("mrlrantenna run W", ["WirelessSignalStrengthVerificationTest"]),
                ("mrlrantenna run --set ", ["SSID=", "WarningSignalStrength=",
                                            "FailingSignalStrength="]),
                ("mrlrantenna run --js", ["--json"]),
                ("mrlrantenna doctor --js", []),
                ("mrlrantenna --js", ["--json"]),
                ("mrlrsignal do", ["doctor"]),
                ("mrlrsignal run Signal", ["SignalLevelTest"]),
                ("mrlrsignal run --set F", ["FailingLevel="]),
                ("mrlrantenna run --json ", None),
                ("mrlrantenna run --json=re", None),
                ("mrlrantenna replay ", None),
                ("mrlrantenna history ", None),
                ("mrlrantenna history --si", ["--since"]),
                ("mrlrantenna --log-level ", []),
                ("mrlrantenna --language ", LANGUAGES),
                ("mrlrantenna run --language=zh", ["zh-Hans"])):
            with self.subTest(line):
                self.assertEqual(self.completed(line), offered)


class Installation(PackageTest):
    """The scripts that dpkg starts, with programs of the test's own in the place of the system's."""

    def setUp(self):
        super().setUp()
        self.programs = self.folder / "usr" / "bin"
        self.programs.mkdir(parents=True)
        for program in PROGRAMS:
            (self.programs / program).write_bytes(b"")
        self.tools = self.folder / "tools"
        self.tools.mkdir()

    def tool(self, name, script="true"):
        path = self.tools / name
        path.write_text(f'#!/bin/sh\necho "{name} $*" >> "{self.folder}/calls"\n{script}\n')
        path.chmod(0o755)

    def configure(self, answer, setcap="true"):
        """Runs postinst with an answer to its question; returns (the calls it made for each program
        alike, its errors)."""
        (self.folder / "calls").unlink(missing_ok=True)
        for name in ("chown", "chmod", "groupadd"):
            self.tool(name)
        self.tool("getent", "false")
        self.tool("setcap", setcap)
        self.write("confmodule", f"db_get() {{ RET={answer}; }}\n")
        script = self.text("DEBIAN/postinst").replace("/usr/share/debconf/confmodule",
                                                      str(self.folder / "confmodule"))
        run = subprocess.run(
            ["sh", "-c", script, "postinst", "configure"], check=True, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE, text=True,
            env=dict(os.environ, DPKG_ROOT=str(self.folder),
                     PATH=f"{self.tools}:{os.environ['PATH']}"))
        calls = (self.folder / "calls").read_text().splitlines()
        of_all = [call for call in calls if str(self.programs) not in call]
        first, second = ([call.removesuffix(f" {self.programs / program}") for call in calls
                          if call.endswith(f"/{program}")] for program in PROGRAMS)
        self.assertEqual(first, second)
        return of_all + first, run.stderr

    def test_gives_the_capability_to_nobody_unless_it_is_wanted(self):
        for answer in ("nobody", "''"):
            self.assertEqual(self.configure(answer),
                             (["chown root:root", "chmod 0755"], ""), answer)

    def test_gives_it_to_everyone(self):
        self.assertEqual(self.configure("everyone"),
                         (["chown root:root", "chmod 0755", "setcap cap_net_admin+ep"], ""))

    def test_gives_it_to_the_members_of_a_group_who_alone_can_start_the_program_then(self):
        self.assertEqual(self.configure("group"),
                         (["getent group netdev", "groupadd --system netdev", "chown root:netdev",
                           "chmod 0750", "setcap cap_net_admin+ep"], ""))

    def test_goes_on_where_files_keep_no_capabilities(self):
        calls, errors = self.configure("everyone", setcap="exit 1")
        self.assertEqual(calls[-1], "setcap cap_net_admin+ep")
        self.assertIn("scanning needs root", errors)

    def test_question_is_asked_at_low_priority_with_nobody_as_its_default(self):
        self.assertIn("db_input low mrlrantenna/scanning", self.text("DEBIAN/config"))
        templates = self.text("DEBIAN/templates")
        fields = dict(re.findall(r"^([A-Za-z][\w.-]*): (.*)$", templates, re.MULTILINE))
        self.assertEqual(fields["Default"], "nobody")
        self.assertEqual(fields["Choices"], "nobody, group, everyone")
        for language in ("ar", "de", "es", "fr", "ja", "zh_CN"):
            self.assertEqual(len(fields[f"Choices-{language}.UTF-8"].split(",")), 3, language)
            self.assertTrue(fields[f"Description-{language}.UTF-8"].endswith(":"), language)

    def test_scripts_are_plain_shell(self):
        for name in make_deb.SCRIPTS:
            path = self.root / "DEBIAN" / name
            self.assertEqual(path.stat().st_mode & 0o777, 0o755, name)
            subprocess.run(["dash", "-n", str(path)], check=True)


class Repetition(LinuxProgramTest):
    def test_gives_the_same_bytes_for_every_user_folder_and_time_zone(self):
        packages = [
            made(self.folder / "first", cwd=ROOT, umask=0o022, env=environment(TZ="UTC")),
            made(self.folder / "second", cwd=self.folder, umask=0o077,
                 env=environment(TZ="Pacific/Kiritimati", LC_ALL="C", LANG="de_DE.UTF-8",
                                 HOME=str(self.folder), PYTHONHASHSEED="7",
                                 SOURCE_DATE_EPOCH="1"))]
        self.assertEqual(compare_packages.differences(*packages), [])

    def test_is_compared_down_to_the_file_that_differs(self):
        files = {"usr/bin/mrlrantenna": b"x", "usr/share/doc/mrlrantenna/a": b"text"}
        other = {**files, "usr/share/doc/mrlrantenna/a": b"teXt"}
        time = make_deb.make_package.ZIP_EPOCH
        first, second = self.folder / "one.deb", self.folder / "other.deb"
        make_deb.pack("1", files, "libc6", time, first)
        make_deb.pack("1", other, "libc6", time, second)
        self.assertEqual(compare_packages.differences(first, second), [
            "names: one.deb, other.deb",
            "DEBIAN/md5sums: 116 and 116 bytes, first difference at 0x36",
            "usr/share/doc/mrlrantenna/a: 4 and 4 bytes, first difference at 0x2"])


class Refusal(LinuxProgramTest):
    def test_names_what_is_missing(self):
        run = subprocess.run([sys.executable, str(TOOLS / "make_deb.py"), str(self.folder),
                              str(self.folder / "output")], stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual(run.returncode, 64)
        self.assertIn("mrlrantenna is missing: build the preset linux first", run.stderr)
        self.assertFalse((self.folder / "output").exists())


if __name__ == "__main__":
    unittest.main()
