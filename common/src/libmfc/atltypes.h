// Points, sizes and rectangles with operations.
#pragma once

#include <windows.h>

class CSize : public SIZE {
public:
    CSize() : SIZE{} {}
    CSize(int initCX, int initCY) : SIZE{initCX, initCY} {}
    explicit CSize(SIZE initSize) : SIZE(initSize) {}
};

class CPoint : public POINT {
public:
    CPoint() : POINT{} {}
    CPoint(int initX, int initY) : POINT{initX, initY} {}
    explicit CPoint(POINT initPt) : POINT(initPt) {}

    void Offset(int xOffset, int yOffset) {
        x += xOffset;
        y += yOffset;
    }
};

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
    CSize Size() const { return {Width(), Height()}; }
    CPoint TopLeft() const { return {left, top}; }
    CPoint CenterPoint() const { return {(left + right) / 2, (top + bottom) / 2}; }
    /// Whether width or height is 0 or less.
    BOOL IsRectEmpty() const { return ::IsRectEmpty(this); }
    /// Whether the point lies inside; the right and bottom edges do not belong to it.
    BOOL PtInRect(POINT point) const { return ::PtInRect(this, point); }
    /// Moves the sides inwards.
    void DeflateRect(int x, int y) { ::InflateRect(this, -x, -y); }
};
