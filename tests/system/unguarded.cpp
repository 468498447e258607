// Loads a system DLL without restricting where it is searched for.
#include <windows.h>

int main() {
    return LoadLibraryW(L"iphlpapi.dll") == nullptr ? 1 : 0;
}
