// The interactive test: runs the dialog, and a new one after an exception in it.
#include "mrlrantennaDlg.h"

#include "MRLrAntenna.h"
#include "ScanNotification.h"

#include <libUikit/GdiResourceManager.h>
#include <libUikit/MrlrGetCUIHandle.h>
#include <libUikit/UiLanguage.h>

#include <tesk5/Language.h>

#include <mrl/System.h>
#include <mrl/TraceLogger.h>

#include <new>
#include <utility>

using tesk5::TestResult;

namespace {

// Beside MODULE_SOURCE_FILE: fixed, as its other lines are.
constexpr int TRACE_LINE = 305;

// Time for the host's own windows to settle before the dialog opens over them.
constexpr unsigned int PAUSE_BEFORE_DIALOG_MS = 1000;

} // namespace

const char* diversityTestObstacle() {
    return nullptr;
}

TestResult DiversityTest(const tesk5::DiagDevice& device) {
    const mrl::TraceLogger trace(moduleLogger(), "Enter DiversityTest", MODULE_SOURCE_FILE,
                                 TRACE_LINE);
    mrl::System::mssleep(PAUSE_BEFORE_DIALOG_MS);

    const mrl::String language(tesk5::Language::current().tag().c_str());
    libUikit::setUiLanguage(libUikit::languageOf(language.getUCS2Buffer()));
    INT_PTR modalResult = IDOK;
    for (bool ended = false; !ended;) {
        MRLRAntennaDlg* dialog = nullptr;
        try {
            const GdiResourceManager resources;
            dialog = ::new (std::nothrow) MRLRAntennaDlg(device, MrlrGetCUIHandle());
            if (dialog != nullptr) {
                g_scanCompleteContext = dialog;
                g_scanCompleteHandler = &MRLRAntennaDlg::refreshNetworks;
                modalResult = dialog->DoModal();
                dialog->recordObservations();
                dialog->DestroyWindow();
                delete std::exchange(dialog, nullptr);
            }
            ended = true;
        } catch (...) {
            // The technician goes on in a new dialog, whatever the exception was and however often
            // one comes.
            if (dialog != nullptr) {
                dialog->EndDialog(0);
                dialog->DestroyWindow();
                delete dialog;
            }
        }
    }
    return modalResult == IDCANCEL ? TestResult::USERABORTED() : TestResult::COMPLETED();
}
