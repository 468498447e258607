"""Reads the parts of a Windows executable's header that the tests need."""
import struct

SUBSYSTEM_CONSOLE = 3
MACHINE_X64 = 0x8664
DLL_CHARACTERISTICS = {"high entropy ASLR": 0x20, "ASLR": 0x40, "DEP": 0x100,
                       "terminal server aware": 0x8000}
RELOCATIONS_STRIPPED = 0x1
# Entry of the data directory.
RELOCATIONS = 5
SECTION_CHARACTERISTICS = {"executable": 0x20000000, "writable": 0x80000000}


class Image:
    """The header and the imports of a 64-bit image; `sections` are characteristics by name."""

    def __init__(self, path):
        self.data = path.read_bytes()
        start = self._number("<I", 0x3C)
        self.machine, section_count, self.timestamp = self._numbers("<HHI", start + 4)
        optional = start + 24
        self.subsystem, self.dll_characteristics = self._numbers("<HH", optional + 68)
        headers = optional + self._number("<H", start + 20)
        # By name: size, address, size in the file, place in the file.
        self._places = {}
        self.sections = {}
        for header in range(headers, headers + 40 * section_count, 40):
            name = self.data[header:header + 8].rstrip(b"\0").decode("ascii")
            self._places[name] = self._numbers("<IIII", header + 8)
            self.sections[name] = self._number("<I", header + 36)
        self.image_base = self._number("<Q", optional + 24)
        self._import_directory = self._number("<I", optional + 112 + 8)
        self.relocations_size = self._number("<I", optional + 112 + 8 * RELOCATIONS + 4)
        self.characteristics = self._number("<H", start + 22)

    def has(self, characteristic):
        return bool(self.dll_characteristics & DLL_CHARACTERISTICS[characteristic])

    def imported_dlls(self):
        """Names of the DLLs that the loader brings in, in lower case."""
        names = []
        entry = self._offset(self._import_directory)
        while True:
            name = self._number("<I", entry + 12)
            if name == 0:
                return names
            begin = self._offset(name)
            names.append(self.data[begin:self.data.index(b"\0", begin)].decode("ascii").lower())
            entry += 20

    def calls_of(self, address):
        """How many near calls in the code lead to the function at `address` (with the base)."""
        target = address - self.image_base
        size, begin, _, raw = self._places[".text"]
        code = self.data[raw:raw + size]
        count, place = 0, code.find(b"\xE8")
        while 0 <= place <= len(code) - 5:
            if begin + place + 5 + struct.unpack_from("<i", code, place + 1)[0] == target:
                count += 1
            place = code.find(b"\xE8", place + 1)
        return count

    def _numbers(self, form, offset):
        return struct.unpack_from(form, self.data, offset)

    def _number(self, form, offset):
        return self._numbers(form, offset)[0]

    def _offset(self, address):
        for size, begin, _, raw in self._places.values():
            if begin <= address < begin + size:
                return raw + address - begin
        raise ValueError(f"address {address:#x} lies in no section")
