// What waits for the first window: OLE and window classes bring Windows' whole user interface into
// the process, which a console program may never need. Until then nobody can tell, for whoever
// could ask would have to load the same DLLs.
#pragma once

#include <afxwin.h>

namespace afx {

/// Starts OLE on the calling thread if AfxOleInit() has promised it there.
/// \return false when it cannot be started
bool startPromisedOle();

/// Registers the classes that AfxRegisterWndClass() has promised. Any thread.
/// \return false when one cannot be registered; it is tried again the next time
bool registerPromisedClasses();

} // namespace afx
