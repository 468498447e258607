"""The figures, the floor with which each is compared, and how far above it the figure may be."""
import dataclasses


@dataclasses.dataclass(frozen=True)
class Goal:
    """A figure. `ratio` limits figure / floor; a figure without a floor has a `limit` in `unit`."""
    key: str
    what: str
    unit: str
    floor: str = ""
    ratio: float = 0
    limit: float = 0


GOALS = (
    Goal("refresh", "A refresh of the visible-network list, 64 networks, logging off", "us",
         "the simulator's call, and each name copied into a buffer that is there already", ratio=6),
    Goal("scan_result", "Messages of Linux' scan result to the network list, 64 networks", "us",
         "libnl's parse of the same messages alone", ratio=3),
    Goal("history", "A journal of 100,000 runs, 165 MB, to the text and the page of its history", "ms",
         limit=2000),
    Goal("memory", "What 1,000 refreshes leave behind, beyond the blocks kept on purpose", "bytes",
         limit=0),
    Goal("run_cpu", "Processor time of a whole verification run, access point seen at once", "ms",
         "a program that makes the same platform calls and sleeps as long", ratio=1.5),
    Goal("run_wall", "Its wall time", "ms",
         "the sum of its pauses, and that program's start", ratio=1.01),
    Goal("start", "From the start of the executable to the first call of the framework", "ms",
         "a program that imports the same DLLs and starts OLE", ratio=1.5),
    # The adapters of the PC and the wireless service are queried besides.
    Goal("list", "The command `list`", "ms",
         "a program that imports the same DLLs and starts OLE", ratio=1.8),
    Goal("run_memory", "Memory that a search in vain gains, from its first scan to its end", "KiB",
         "the lists that its calls hand out and that are kept, without the executable", ratio=1.5),
    Goal("size", "The executable, stripped", "MB", limit=3),
    Goal("dialog_idle", "Processor time of the open dialog, for each idle minute", "s", limit=0.1),
    Goal("dialog_click", "From a click on the network list to the new details, less the pauses",
         "ms", limit=20),
)
