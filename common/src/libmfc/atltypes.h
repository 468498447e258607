// Rectangles with operations.
#pragma once

#include <windows.h>

/// Converts to a RECT and to a pointer to one. All zero by default.
class CRect : public RECT {
public:
    CRect() : RECT{} {}
    CRect(int l, int t, int r, int b) : RECT{l, t, r, b} {}
    explicit CRect(const RECT& srcRect) : RECT(srcRect) {}

    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    SIZE Size() const { return {Width(), Height()}; }
    /// Whether width or height is 0 or less.
    BOOL IsRectEmpty() const { return ::IsRectEmpty(this); }
};
