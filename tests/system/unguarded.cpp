// Loads a DLL of the system as programs do that do not ask where from.
#include <windows.h>

int main() {
    return LoadLibraryW(L"iphlpapi.dll") == nullptr ? 1 : 0;
}
