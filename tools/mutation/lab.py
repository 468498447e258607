"""Tries a mutant: compiles the changed text, links the tests with it, and runs them.

Neither the tree nor the objects of a build are touched. The changed text lies in a temporary folder
under the file's own path, is compiled with the command of the build (compile_commands.json), and its
object takes the place of the original in the test program's link command.
"""
import contextlib
import dataclasses
import hashlib
import json
import os
import pathlib
import queue
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests"))
import wine_starts

MODULE = "modules/src/windows/diag/mrlrantenna"
FRAMEWORK = "common/src/libtesk5/src"

# Sources by name, the build in which their mutants are tried, and the test programs that link them,
# the one that notices most first.
SOURCES = (
    (f"{MODULE}/mrlrantennaDlg*.cpp", "mutants-windows", ("test_mrlrantenna_dialog",)),
    (f"{MODULE}/DiversityTest.cpp", "mutants-windows", ("test_mrlrantenna_dialog",)),
    (f"{MODULE}/PostedRefresh.cpp", "mutants-threads", ("test_threads",)),
    (f"{MODULE}/TabletPc.cpp", "mutants-windows", ("test_mrlrantenna",)),
    (f"{MODULE}/MRLrAntennaApp.cpp", "mutants", ("test_mrlrantenna_frame", "test_mrlrantenna")),
    (f"{MODULE}/*.cpp", "mutants", ("test_mrlrantenna", "test_mrlrantenna_frame")),
    (f"{FRAMEWORK}/run/*Win32.cpp", "mutants-windows", ("test_tesk5",)),
    (f"{FRAMEWORK}/model/*.cpp", "mutants", ("test_tesk5", "test_mrlrantenna")),
    (f"{FRAMEWORK}/run/*.cpp", "mutants", ("test_tesk5", "test_mrlrantenna")),
)

# Hundreds of generated captures of whole runs: a minute, in which nothing of a source is asserted.
LEFT_OUT = "CaptureProperties.*"

# A mutant may be slower than the original, and many run side by side.
TIME_FACTOR = 10
LEAST_TIME_SECONDS = 20
LONGEST_SECONDS = 1800  # of a compilation, and of a program that is measured
LOOK_SECONDS = 1  # between two looks at what a program has written
# What runs away is stopped before it takes the machine along.
MEMORY_LIMIT = 4 << 30
OUTPUT_LIMIT = 64 << 20
# How many of the tests that noticed a file's mutants before are run before all the others, and the
# share of a program's time above which a test is not among them.
FIRST_TESTS = 12
SLOW_TEST = 0.01


def sources(root=ROOT):
    """(file, build, programs) for every source that is mutated."""
    listed = {}
    for pattern, build, programs in SOURCES:
        for path in sorted(root.glob(pattern)):
            listed.setdefault(path.relative_to(root).as_posix(), (build, programs))
    return [(file, *where) for file, where in sorted(listed.items())]


@dataclasses.dataclass(frozen=True)
class Verdict:
    result: str  # noticed, survived or unviable
    by: str = ""  # the test that noticed it, or what the compiler says


@dataclasses.dataclass(frozen=True)
class Desk:
    """Where a program runs; without values, anywhere and in the environment as it is."""

    settings: dict = dataclasses.field(default_factory=dict)  # of the environment
    processor: int | None = None

    @property
    def prefix(self):
        """What comes before a command that runs here."""
        return [] if self.processor is None else ["taskset", "-c", str(self.processor)]


class Processes:
    """Starts programs in process groups of their own, and ends all of them when it is stopped."""

    def __init__(self):
        self._running = set()
        self._lock = threading.Lock()
        self._stopped = False

    def run(self, command, seconds, output, quiet_seconds=None, **options):
        """The exit value; None when the time was over, or when nothing had been written for
        `quiet_seconds`. What the program waits for a processor does not count: other work on the
        machine does not make it hang."""
        with self._lock:
            if self._stopped:
                raise KeyboardInterrupt
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output,
                                       stderr=subprocess.STDOUT, start_new_session=True, **options)
            self._running.add(process)
        try:
            code = waited(process, seconds, output, quiet_seconds or seconds, _own_time)
            if code is None:
                self._kill(process)
        except BaseException:
            self._kill(process)
            raise
        finally:
            with self._lock:
                self._running.discard(process)
        if self._stopped:
            raise KeyboardInterrupt
        return code

    @staticmethod
    def _kill(process):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGKILL)
        process.wait()

    def stop(self):
        with self._lock:
            self._stopped = True
            for process in self._running:
                with contextlib.suppress(ProcessLookupError):
                    os.killpg(process.pid, signal.SIGKILL)


def waited(process, seconds, output, quiet_seconds, own_time):
    """The exit value of a process; None when it still runs after `seconds`, or has written nothing
    for `quiet_seconds`, by the clock `own_time`."""
    started = written = own_time(process)
    size = 0
    while (now := own_time(process)) < (end := min(started + seconds, written + quiet_seconds)):
        with contextlib.suppress(subprocess.TimeoutExpired):
            return process.wait(min(end - now, LOOK_SECONDS))
        if (grown := os.fstat(output.fileno()).st_size) != size:
            size, written = grown, own_time(process)
    return process.poll()


def _own_time(process):
    """A clock that stands still while the program waits for a processor."""
    return time.monotonic() - _queued(process)


def _queued(process):
    """How long the main thread has waited for a processor."""
    with contextlib.suppress(OSError, IndexError):
        queued_ns = pathlib.Path("/proc", str(process.pid), "schedstat").read_text().split()[1]
        return int(queued_ns) / 1e9
    return 0.0


def is_windows(build):
    return build.endswith("windows")


class Build:
    """One build folder: how it compiles a source, and how it links a test program with another
    object."""

    def __init__(self, name, root=ROOT):
        self.name = name
        self.is_windows = is_windows(name)
        self.has_sanitizer = name == "mutants-threads"
        self.folder = root / "build" / name
        self.bin = self.folder / "tests" / "bin"
        self._commands = {}
        for entry in json.loads((self.folder / "compile_commands.json").read_text()):
            self._commands.setdefault(entry["file"], []).append(shlex.split(entry["command"]))
        self._links = {}
        self._lock = threading.Lock()

    def program(self, name):
        return self.bin / (name + (".exe" if self.is_windows else ""))

    def _link_command(self, program):
        with self._lock:
            if program not in self._links:
                target = self.program(program).relative_to(self.folder).as_posix()
                commands = subprocess.run(["ninja", "-t", "commands", target], cwd=self.folder,
                                          check=True, capture_output=True, text=True).stdout
                self._links[program] = commands.splitlines()[-1]
            return self._links[program]

    def commands(self, source, program):
        """What compiles another text of `source` but for the -o, to be run in a folder in which that
        text lies under the source's own path; and a function that makes the command which links an
        object of it to an executable."""
        link = self._link_command(program)
        candidates = self._commands[str(source)]
        command = next((c for c in candidates if f" {_after(c, '-o')} " in link), candidates[0])
        original = f" {_after(command, '-o')} "
        target = f" -o {self.program(program).relative_to(self.folder).as_posix()} "

        def link_to(object_file, executable):
            if original in link:
                changed = link.replace(original, f" {object_file} ")
            else:
                # Ahead of the archives, so that the original is not taken from its own.
                changed = re.sub(r" (\S+\.a )", rf" {object_file} \1", link, count=1)
            changed = changed.replace(target, f" -o {executable} ")
            return re.sub(r" -Wl,--out-implib,\S+", "", changed)

        return _compile_command(command, source, self.has_sanitizer), link_to


def _compile_command(command, source, has_sanitizer):
    command = list(command)
    if pathlib.Path(command[0]).name == "ccache":
        del command[0]
    at = command.index("-o")
    del command[at:at + 2]
    command[command.index("-c") + 1] = source.relative_to(ROOT).as_posix()
    # Headers between quotes lie beside the original.
    command += ["-w", "-iquote", str(source.parent)]
    # The quickest object; but a precompiled header fits only the options that it was made with.
    if not _is_precompiled(command):
        command += ["-O0", "-g0", *([] if has_sanitizer else ["-fno-sanitize=all"])]
    return command


def _is_precompiled(command):
    return any("cmake_pch" in word for word in command)


def _includes(text):
    """The includes at the head of a source."""
    lines = []
    for line in text.splitlines():
        if line.startswith("#include"):
            lines.append(line)
        elif line and not line.startswith("//"):
            break
    return "\n".join(lines) + "\n"


def _write(path, text):
    path.parent.mkdir(parents=True)
    path.write_text(text, encoding="utf-8")


def _digest(file):
    return hashlib.sha256(file.read_bytes()).hexdigest()


def _after(command, option):
    return command[command.index(option) + 1]


class Lab:
    """Tries mutants on several threads; to be used in a `with`, which removes all that it made."""

    def __init__(self, jobs):
        self.processes = Processes()
        self._jobs = jobs
        self._builds = {}
        self._where = {file: (where, programs) for file, where, programs in sources()}
        self._limits = {}  # of a program: its seconds in all, and those without a word
        self._slow_suites = {}
        self._slow_tests = {}
        self._signatures = {}
        self._objects = {}
        self._heads = {}
        self._noticers = {}
        self._lock = threading.Lock()
        self._desks = queue.SimpleQueue()
        self._cleanup = contextlib.ExitStack()

    def __enter__(self):
        self.folder = pathlib.Path(self._cleanup.enter_context(tempfile.TemporaryDirectory()))
        return self

    def __exit__(self, *failure):
        self.stop()
        for build in self._builds.values():
            for left in build.bin.glob(f"mutant_{os.getpid()}_*"):
                left.unlink()
        self._cleanup.close()

    def stop(self):
        """Ends what runs; nothing can be tried any more."""
        self.processes.stop()

    def prepare(self, files):
        """Builds what the mutants of these files need, and measures their tests unchanged."""
        needed = {}
        for file in files:
            name, programs = self._where[file]
            needed.setdefault(name, set()).update(programs)
        for name, programs in sorted(needed.items()):
            self._make(name, sorted(programs))
            build = self._builds[name] = Build(name)
            # Of a run that was killed, not of one that goes on beside this one.
            for left in build.bin.glob("mutant_*"):
                if not pathlib.Path("/proc", left.name.split("_")[1]).exists():
                    left.unlink()
            for program in sorted(programs):
                self._measure(build, program)

    def _make(self, build, programs):
        wine = "build windows radiosim_dll; prepare_wine" if is_windows(build) else ":"
        script = (f"source tools/build/setup.sh; ensure_packages \"${{RUN_PACKAGES[@]}}\" \"${{TEST_PACKAGES[@]}}\";"
                  f"build {build} {' '.join(programs)}; {wine}; env -0")
        result = subprocess.run(["bash", "-c", script], cwd=ROOT, stdout=subprocess.PIPE,
                                stdin=subprocess.DEVNULL, check=False)
        if result.returncode != 0:
            raise SystemExit(result.returncode)
        if is_windows(build):
            for setting in result.stdout.split(b"\0"):
                key, _, value = setting.decode().partition("=")
                if key.startswith("WINE"):
                    os.environ[key] = value
            for number in range(self._jobs):
                self._open_desk(number)

    def _open_desk(self, number):
        """A display, a Wine and a processor for one program at a time: dialogs side by side would
        take the focus from each other, and a program and Wine's server, which wait for each other
        all the time, are several times as fast on one processor as on two."""
        settings = {"DISPLAY": self._open_display()}
        if number > 0:
            prefix = self.folder / f"wineprefix-{number}"
            shutil.copytree(os.environ["WINEPREFIX"], prefix, symlinks=True)
            settings["WINEPREFIX"] = str(prefix)
        processors = sorted(os.sched_getaffinity(0))
        desk = Desk(settings, processors[number % len(processors)])
        # Wine's services keep the output of the first program open, and start slowly.
        for command in (["wineserver", "--persistent"], ["wine", "cmd", "/c", "exit"]):
            subprocess.run([*desk.prefix, *command], env=os.environ | settings, check=False,
                           stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
        self._cleanup.callback(subprocess.run, ["wineserver", "--kill"],
                               env=os.environ | settings, check=False)
        self._desks.put(desk)

    def _open_display(self):
        reading, writing = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1200x24", "-nolisten", "tcp"],
            pass_fds=(writing,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            start_new_session=True)
        self._cleanup.callback(server.wait)
        self._cleanup.callback(server.terminate)
        os.close(writing)
        with os.fdopen(reading) as answer:
            return ":" + answer.readline().strip()

    @contextlib.contextmanager
    def _desk(self, build):
        """Where a program of this build runs; one of Wine's waits for its turn."""
        desk = self._desks.get() if build.is_windows else Desk()
        try:
            yield desk
        finally:
            if build.is_windows:
                self._desks.put(desk)

    def _measure(self, build, program):
        path = build.program(program)
        signature = self._signatures[build.name, program] = _digest(path)
        known = build.folder / f"{program}.times"
        measured = json.loads(known.read_text()) if known.exists() else {}
        if measured.get("signature") != signature:
            start = time.monotonic()
            code, output = self._run(build, path, (LONGEST_SECONDS, None), f"*-{LEFT_OUT}")
            if code != 0:
                raise SystemExit(f"{path} fails without any mutant:\n{output[-4000:]}")
            measured = {"signature": signature, "seconds": time.monotonic() - start,
                        "longest_test": max(_test_times(output).values(), default=0),
                        "slow_suites": _slow_suites(output), "slow_tests": _slow_tests(output)}
            known.write_text(json.dumps(measured))
        self._limits[build.name, program] = tuple(
            max(LEAST_TIME_SECONDS, TIME_FACTOR * measured[key])
            for key in ("seconds", "longest_test"))
        self._slow_suites[build.name, program] = measured["slow_suites"]
        self._slow_tests[build.name, program] = measured["slow_tests"]

    def signature(self, file):
        """Changes with the programs that try this file's mutants."""
        name, programs = self._where[file]
        return hashlib.sha256("".join(
            self._signatures[name, program] for program in programs).encode()).hexdigest()[:16]

    def remember(self, file, test):
        """A test that notices mutants of this file is run before others."""
        with self._lock:
            counts = self._noticers.setdefault(file, {})
            if re.fullmatch(r"[\w/]+\.[\w/]+", test):
                counts[test] = counts.get(test, 0) + 1

    def try_mutant(self, mutant, text):
        name, programs = self._where[mutant.file]
        build = self._builds[name]
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        try:
            _write(folder / mutant.file, mutant.applied(text))
            for program in programs:
                verdict = self._try_program(build, program, mutant.file, text, folder)
                if verdict.result != "survived":
                    break
            if verdict.result == "noticed":
                self.remember(mutant.file, verdict.by)
            return verdict
        finally:
            shutil.rmtree(folder, ignore_errors=True)

    def _commands(self, build, program, file, text):
        """As those of the build, but with the headers of the source compiled once for all mutants:
        they are most of the work."""
        command, link_to = build.commands(ROOT / file, program)
        if _is_precompiled(command):
            return command, link_to
        key = " ".join(command)
        with self._lock:
            if key not in self._heads:
                folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
                _write(folder / file, _includes(text))
                head = folder / "head.pch"
                at = command.index("-c")
                making = [*command[:at], "-x", "c++-header", *command[at + 1:], "-o", str(head)]
                if said := self._tool(making, folder):
                    raise SystemExit(f"the headers of {file} do not compile: {said}")
                self._heads[key] = head
            return [*command, "-include-pch", str(self._heads[key])], link_to

    def _try_program(self, build, program, file, text, folder):
        compile_command, link_to = self._commands(build, program, file, text)
        # Programs that share an object need one compilation.
        object_file = folder / (hashlib.sha256(" ".join(compile_command).encode()).hexdigest() + ".o")
        if not object_file.exists():
            said = self._tool([*compile_command, "-o", str(object_file)], folder)
            if said is not None:
                return Verdict("unviable", said)
            if _digest(object_file) == self._original(build, program, file, text):
                return Verdict("unviable", "the same object code")
        executable = build.bin / (f"mutant_{os.getpid()}_{folder.name}_"
                                  f"{build.program(program).name}")
        link = link_to(object_file, executable)
        try:
            said = self._tool(["sh", "-c", link], build.folder)
            if said is not None:
                return Verdict("unviable", said)
            return self._test(build, program, file, executable)
        finally:
            executable.unlink(missing_ok=True)

    def _tool(self, command, folder):
        """None when it did its work, else its first error."""
        with tempfile.TemporaryFile(dir=self.folder) as output:
            code = self.processes.run(command, LONGEST_SECONDS, output, cwd=folder)
            if code == 0:
                return None
            output.seek(0)
            said = output.read().decode(errors="replace")
            match = re.search(r"(?:error: |undefined reference ).*", said)
            return match.group()[:200] if match else said[-200:]

    def _original(self, build, program, file, text):
        """The digest of the object of the unchanged text, compiled in the same way."""
        key = (build.name, program, file)
        with self._lock:
            known = self._objects.get(key)
        if known is None:
            folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
            _write(folder / file, text)
            object_file = folder / "original.o"
            command, _ = self._commands(build, program, file, text)
            if said := self._tool([*command, "-o", str(object_file)], folder):
                raise SystemExit(f"{file} does not compile unchanged: {said}")
            known = _digest(object_file)
            shutil.rmtree(folder)
            with self._lock:
                self._objects[key] = known
        return known

    def _test(self, build, program, file, executable):
        with self._lock:
            counts = self._noticers.get(file, {})
            quick = set(counts).difference(self._slow_tests[build.name, program])
            first = sorted(quick, key=counts.get, reverse=True)[:FIRST_TESTS]
        slow = ":".join(f"{suite}.*" for suite in self._slow_suites[build.name, program])
        limits = self._limits[build.name, program]
        rounds = ([":".join(first)] if first else []) + \
            ([f"*-{slow}:{LEFT_OUT}", slow] if slow else [f"*-{LEFT_OUT}"])
        for chosen in rounds:
            code, output = self._run(build, executable, limits, chosen)
            if code != 0 or (build.is_windows and "err:heap:" in output):
                return Verdict("noticed", _noticing_test(output, code))
        return Verdict("survived")

    def _run(self, build, executable, limits, chosen):
        """(exit value or None, output) of a test program."""
        seconds, quiet_seconds = limits
        with self._desk(build) as desk, tempfile.TemporaryDirectory(dir=self.folder) as folder:
            command = [*desk.prefix, *(["wine"] if build.is_windows else []), str(executable)]
            environment = os.environ | desk.settings | {
                "GTEST_FAIL_FAST": "1", "GTEST_FILTER": chosen, "LC_ALL": "C.UTF-8"}

            def start():
                with tempfile.TemporaryFile(dir=self.folder) as output:
                    code = self.processes.run(command, seconds, output, quiet_seconds, cwd=folder,
                                              env=environment,
                                              preexec_fn=_limits_of(build))
                    output.seek(0)
                    said = output.read()
                return (code, said.decode(errors="replace")), \
                    build.is_windows and wine_starts.never_began(code, said)

            return wine_starts.with_one_repeat(executable.name, start)


def _limits_of(build):
    """What sets the limits of a program of this build; Wine needs its own."""
    def limit():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_FSIZE, (OUTPUT_LIMIT, OUTPUT_LIMIT))
        if not build.has_sanitizer:  # whose shadow memory is larger than any machine's
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))

    return None if build.is_windows else limit


def _slow_suites(output):
    """The suites that take two thirds of a program's time, as few as possible: they are run last."""
    times = {suite: int(time_ms) for suite, time_ms in re.findall(
        r"^\[----------\] \d+ tests? from (\S+?)(?:, where .*)? \((\d+) ms total\)", output,
        re.MULTILINE)}
    slow, taken = [], 0
    for suite in sorted(times, key=times.get, reverse=True):
        if 3 * taken >= 2 * sum(times.values()):
            break
        slow.append(suite)
        taken += times[suite]
    return slow


def _test_times(output):
    """In seconds, by the names of the tests."""
    return {test: int(time_ms) / 1000 for test, time_ms in re.findall(
        r"^\[       OK \] (\S+?)(?:, where .*)? \((\d+) ms\)", output, re.MULTILINE)}


def _slow_tests(output):
    times = _test_times(output)
    return [test for test, seconds in times.items() if seconds > SLOW_TEST * sum(times.values())]


def _noticing_test(output, code):
    failed = re.search(r"^\[  FAILED  \] ([\w/]+\.[\w/]+)", output, re.MULTILINE)
    if failed:
        return failed.group(1)
    started = re.findall(r"^\[ RUN      \] ([\w/]+\.[\w/]+)", output, re.MULTILINE)
    if started:
        return started[-1]
    return "no end in time" if code is None else f"exit value {code}"
