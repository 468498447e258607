"""Builds the machine's image from Debian's packages, as apt offers them: a kernel, and an initial
file system with the modules of its simulated radios, hostapd, wpa_supplicant, iw and busybox.

Nothing of it is installed on this machine. The image is kept in build/radiovm and built again when
a package or these sources have changed; equal packages give equal files.
"""
import fcntl
import hashlib
import lzma
import os
import pathlib
import re
import shutil
import stat
import subprocess
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
FOLDER = ROOT / "build" / "radiovm"

KERNEL = "linux-image-amd64"
PACKAGES = ("busybox-static", "hostapd", "iw", "wpasupplicant", "wireless-regdb")
# What these and the program link; of their packages only what a program in the image names.
LIBRARY_OWNERS = ("hostapd", "iw", "wpasupplicant", "libstdc++6", "libnl-genl-3-200")
# Path in the package, and in the image.
FILES = {"bin/busybox": "bin/busybox",
         "usr/sbin/hostapd": "bin/hostapd",
         "usr/sbin/hostapd_cli": "bin/hostapd_cli",
         "sbin/iw": "bin/iw",
         "sbin/wpa_supplicant": "bin/wpa_supplicant",
         "lib/firmware/regulatory.db-debian": "lib/firmware/regulatory.db",
         "lib/firmware/regulatory.db.p7s-debian": "lib/firmware/regulatory.db.p7s"}
# Loaded at the start, with the modules that they depend on. The ciphers are those that access
# points and stations use: the kernel would ask a program for them that the image does not have.
MODULES = ("virtio_pci", "9pnet_virtio", "9p", "rfkill", "cfg80211", "mac80211",
           "ccm", "ctr", "cmac", "gcm", "michael_mic")
# Loaded by the scenes, which say how many radios there are.
RADIO_MODULE = "mac80211_hwsim"
LOADER = "lib64/ld-linux-x86-64.so.2"
LIBRARIES = "lib/x86_64-linux-gnu"


class ImageError(Exception):
    """Why there is no image, and what to do about it; one line."""


def _run(command, remedy, **options):
    """Standard output of a command, in English."""
    try:
        return subprocess.run(command, check=True, capture_output=True, text=True,
                              env={**os.environ, "LC_ALL": "C"}, **options).stdout
    except OSError as failure:
        raise ImageError(f"{command[0]} cannot be started ({failure.strerror}): {remedy}") \
            from failure
    except subprocess.CalledProcessError as failure:
        reason = (failure.stderr.strip().splitlines() or [f"exit value {failure.returncode}"])[-1]
        raise ImageError(f"{' '.join(command[:3])} ... failed ({reason}): {remedy}") from failure


REFRESH = "run `apt-get update` as root and look whether Debian's archive can be reached"


def _offered():
    """Names of the packages: those above, the current kernel's, those of libraries; and the
    checksum of each file that apt would fetch."""
    depends = _run(["apt-cache", "depends", KERNEL], REFRESH)
    kernel = re.search(r"Depends: (linux-image-\d\S+)", depends)
    if kernel is None:
        raise ImageError(f"apt knows no kernel package behind {KERNEL}: {REFRESH}")
    closure = _run(["apt-cache", "depends", "--recurse", "--no-recommends", "--no-suggests",
                    "--no-conflicts", "--no-breaks", "--no-replaces", "--no-enhances",
                    *LIBRARY_OWNERS], REFRESH)
    libraries = set(re.findall(r"^(lib[a-z0-9.+-]*?\d[a-z0-9.+-]*)$", closure, re.MULTILINE))
    packages = [*PACKAGES, kernel.group(1), *sorted(libraries)]
    listing = _run(["apt-get", "download", "--print-uris", *packages], REFRESH)
    offers = dict(sorted(line.split()[1::2] for line in listing.splitlines()
                         if line.startswith("'")))
    if len(offers) != len(packages):
        raise ImageError(f"apt offers {len(offers)} of {len(packages)} packages: {REFRESH}")
    return packages, offers


def _fetch(packages, offers, folder):
    """Leaves exactly the offered packages in `folder`."""
    folder.mkdir(exist_ok=True)
    for path in folder.iterdir():
        if path.name not in offers:
            path.unlink()
    if all((folder / name).exists() for name in offers):
        return
    _run(["apt-get", "download", "-qq", *packages], REFRESH, cwd=folder)
    missing = [name for name in offers if not (folder / name).exists()]
    if missing:
        raise ImageError(f"apt-get did not fetch {missing[0]}: {REFRESH}")


def _module_name(path):
    return path.name.removesuffix(".ko").replace("-", "_")


def _with_dependencies(modules, wanted):
    """Names of `wanted` and of what they depend on, each after its own dependencies. `modules`:
    paths by name; what the kernel has built in is none of them."""
    ordered = []

    def add(name):
        if name in ordered or name not in modules:
            return
        depends = re.search(rb"\0depends=([^\0]*)\0", modules[name].read_bytes())
        for other in (depends.group(1).decode().split(",") if depends else []):
            add(other.replace("-", "_"))
        ordered.append(name)

    for name in wanted:
        add(name)
    return ordered


def _needed(path):
    """Names of the libraries that a program or library names."""
    headers = _run(["objdump", "-p", str(path)], "install the package binutils")
    return re.findall(r"^\s+NEEDED\s+(\S+)$", headers, re.MULTILINE)


def _put(source, target):
    target.parent.mkdir(parents=True, exist_ok=True)
    shutil.copyfile(source, target)
    target.chmod(0o755 if source.stat().st_mode & stat.S_IXUSR else 0o644)


def _put_modules(unpacked, tree):
    modules = {_module_name(path): path for path in unpacked.glob("lib/modules/*/kernel/**/*.ko")}
    if RADIO_MODULE not in modules:
        raise ImageError(f"the kernel's package has no module {RADIO_MODULE}: {REFRESH}")
    at_start = _with_dependencies(modules, MODULES)
    for name in _with_dependencies(modules, (*MODULES, RADIO_MODULE)):
        _put(modules[name], tree / "modules" / f"{name}.ko")
        if name != RADIO_MODULE and name not in at_start:
            at_start.append(name)
    (tree / "modules" / "order").write_text("".join(f"{name}\n" for name in at_start),
                                            encoding="utf-8")


def _put_libraries(unpacked, tree):
    """The libraries of the programs in `tree`, and those that the program under test may name."""
    found = {path.name: path for folder in ("lib", "usr/lib")
             for path in (unpacked / folder / "x86_64-linux-gnu").glob("*.so*")}
    waiting = [name for path in (tree / "bin").iterdir() for name in _needed(path)]
    waiting += ["libstdc++.so.6", "libgcc_s.so.1", "libm.so.6", "libnl-3.so.200",
                "libnl-genl-3.so.200"]
    while waiting:
        name = waiting.pop()
        target = tree / LIBRARIES / name
        if target.exists():
            continue
        if name not in found:
            raise ImageError(f"no package of the image has {name}: add its package's name to "
                             f"LIBRARY_OWNERS in {pathlib.Path(__file__).name}")
        _put(found[name].resolve(), target)
        waiting += _needed(target)
    (tree / LOADER).parent.mkdir(exist_ok=True)
    (tree / LOADER).symlink_to(f"/{LIBRARIES}/{pathlib.Path(LOADER).name}")


def pack(tree, archive):
    """Writes the tree as the kernel wants it: equal files give an equal archive, whatever their owner
    and whenever they were written. Failure: ImageError"""
    paths = sorted(path.relative_to(tree) for path in tree.rglob("*"))
    for path in [tree, *(tree / name for name in paths)]:
        if path.is_dir() and not path.is_symlink():
            path.chmod(0o755)
        os.utime(path, (0, 0), follow_symlinks=False)
    names = b"".join(os.fsencode(path) + b"\0" for path in paths)
    with open(archive, "wb") as output:
        try:
            subprocess.run(["cpio", "--null", "--create", "--format=newc", "--owner=+0:+0",
                            "--reproducible", "--quiet"], cwd=tree, input=names, stdout=output,
                           check=True)
        except (OSError, subprocess.CalledProcessError) as failure:
            raise ImageError(f"cpio failed ({failure}): install the package cpio") from failure


def _put_kernel(source, target):
    """Unpacks the kernel's own archive, which takes the emulated processor longer than a boot."""
    packed = source.read_bytes()
    start = packed.find(b"\xfd7zXZ\0")
    unpacked = lzma.LZMADecompressor().decompress(packed[start:]) if start >= 0 else b""
    target.write_bytes(unpacked if unpacked.startswith(b"\x7fELF") else packed)


def _build(packages, offers, folder):
    _fetch(packages, offers, FOLDER / "packages")
    with tempfile.TemporaryDirectory(dir=FOLDER) as work:
        unpacked, tree = pathlib.Path(work) / "unpacked", pathlib.Path(work) / "tree"
        for name in offers:
            _run(["dpkg-deb", "--extract", str(FOLDER / "packages" / name), str(unpacked)],
                 f"delete {FOLDER / 'packages' / name} and start this again")
        tree.mkdir()
        for source, target in FILES.items():
            if not (unpacked / source).exists():
                raise ImageError(f"no package of the image has {source}: its place has changed; "
                                 f"correct FILES in {pathlib.Path(__file__).name}")
            _put(unpacked / source, tree / target)
        _put(HERE / "guest" / "init", tree / "init")
        (tree / "init").chmod(0o755)
        _put_libraries(unpacked, tree)
        _put_modules(unpacked, tree)
        image = pathlib.Path(work) / "image"
        image.mkdir()
        pack(tree, image / "initrd")
        _put_kernel(next((unpacked / "boot").glob("vmlinuz-*")), image / "kernel")
        image.rename(folder)


def image():
    """The folder with the files `kernel` and `initrd`, built if necessary.

    Failure: ImageError
    """
    packages, offers = _offered()
    key = hashlib.sha256(repr(offers).encode())
    for source in (HERE / "image.py", HERE / "guest" / "init"):
        key.update(source.read_bytes())
    folder = FOLDER / f"image-{key.hexdigest()[:16]}"
    FOLDER.mkdir(parents=True, exist_ok=True)
    with open(FOLDER / "lock", "wb") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not folder.exists():
            for old in FOLDER.glob("image-*"):
                shutil.rmtree(old)
            _build(packages, offers, folder)
    return folder
