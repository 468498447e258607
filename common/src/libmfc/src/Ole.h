// The end of what AfxOleInit() starts.
#pragma once

namespace afx {

/// Ends OLE on the calling thread if AfxOleInit() has started it there.
/// Platform: OleUninitialize
void endOle();

} // namespace afx
