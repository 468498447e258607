#include "GuiObjects.h"

#include <winternl.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace dialogprobe {

namespace {

struct CloseProcess {
    void operator()(HANDLE process) const { CloseHandle(process); }
};
using Process = std::unique_ptr<void, CloseProcess>;

[[noreturn]] void fail(const char* what) {
    throw std::runtime_error(std::string(what) + ": error " + std::to_string(GetLastError()));
}

// An entry of the table of drawing objects that each process has mapped; a free one has no type.
struct TableEntry {
    ULONGLONG object;
    ULONG owner;
    USHORT unique;
    UCHAR type;
    UCHAR flags;
    ULONGLONG userData;
};
static_assert(sizeof(TableEntry) == 24);
constexpr std::size_t TABLE_SIZE = 0x4000;
// Of the table's address, in bytes from the beginning of the environment block of a process.
constexpr std::size_t TABLE_OFFSET = 0xF8;

using QueryProcess = LONG(WINAPI*)(HANDLE, int, PVOID, ULONG, PULONG);

void read(HANDLE process, const void* address, void* target, std::size_t size) {
    if (!ReadProcessMemory(process, address, target, size, nullptr)) {
        fail("the process's memory cannot be read");
    }
}

std::size_t countTableEntries(HANDLE process) {
    const auto query = reinterpret_cast<QueryProcess>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess")));
    PROCESS_BASIC_INFORMATION basic{};
    if (query == nullptr ||
        query(process, ProcessBasicInformation, &basic, sizeof basic, nullptr) < 0) {
        throw std::runtime_error("the process's environment block cannot be found");
    }
    const void* table = nullptr;
    read(process, reinterpret_cast<const char*>(basic.PebBaseAddress) + TABLE_OFFSET, &table,
         sizeof table);
    if (table == nullptr) {
        return 0; // nothing drawn so far
    }
    std::vector<TableEntry> entries(TABLE_SIZE);
    read(process, table, entries.data(), TABLE_SIZE * sizeof(TableEntry));
    return static_cast<std::size_t>(std::count_if(
        entries.begin(), entries.end(), [](const TableEntry& entry) { return entry.type != 0; }));
}

struct WindowCount {
    DWORD processId;
    std::size_t windows = 0;
};

BOOL CALLBACK countWindow(HWND window, LPARAM place) {
    auto& count = *reinterpret_cast<WindowCount*>(place);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    count.windows += owner == count.processId ? 1 : 0;
    return TRUE;
}

std::size_t countWindows(DWORD processId) {
    WindowCount count{processId};
    const auto withChildren = [](HWND window, LPARAM place) -> BOOL {
        countWindow(window, place);
        EnumChildWindows(window, countWindow, place);
        return TRUE;
    };
    EnumWindows(withChildren, reinterpret_cast<LPARAM>(&count));
    for (HWND window = nullptr;
         (window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;) {
        withChildren(window, reinterpret_cast<LPARAM>(&count));
    }
    return count.windows;
}

} // namespace

GuiObjects guiObjectsOf(DWORD processId) {
    const Process process(
        OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    if (!process) {
        fail("the process cannot be opened");
    }
    GuiObjects objects;
    objects.gdi = GetGuiResources(process.get(), GR_GDIOBJECTS);
    if (objects.gdi == 0) {
        objects.gdi = countTableEntries(process.get());
    }
    objects.user = GetGuiResources(process.get(), GR_USEROBJECTS);
    if (objects.user == 0) {
        objects.user = countWindows(processId);
    }
    return objects;
}

} // namespace dialogprobe
