// Drop-down lists of names that come from outside, such as those of networks.
#pragma once

#include "Subclass.h"

#include <string>
#include <vector>

namespace libUikit {

/// `text` with its control characters made visible, as the console and the reports show them.
/// Platform: none; mrl::escapeControls()
std::wstring shownName(const std::wstring& text);

/// Shows the entries of a drop-down list with their control characters made visible, while its
/// messages (CB_GETLBTEXT, CB_SELECTSTRING ...) go on with the names as they are. A list without
/// entries that has the keyboard focus does not look like a selected entry.
class NameList {
public:
    explicit NameList(HWND list);
    NameList(const NameList&) = delete;
    NameList& operator=(const NameList&) = delete;
    ~NameList() = default;

private:
    static LRESULT CALLBACK onMessage(HWND list, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR, DWORD_PTR self);
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT insert(UINT message, WPARAM wParam, const std::wstring& name);
    void paintEmpty() const;

    HWND m_list;
    std::vector<std::wstring> m_names; // entry by entry
    Subclass m_messages;
};

} // namespace libUikit
