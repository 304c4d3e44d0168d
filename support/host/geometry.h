#pragma once
// Sizes and rectangles in pixels. right and bottom lie inside, as a screen rectangle 0,0 to 799,479 does.
#include <QRect>

struct chSize
{
    int cx = 0;
    int cy = 0;
};

struct chRect
{
    chRect() = default;
    chRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}
    int Width() const { return right - left + 1; }
    int Height() const { return bottom - top + 1; }
    bool IsEmpty() const { return right < left || bottom < top; }
    bool operator==(const chRect& o) const
    {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
    bool operator!=(const chRect& o) const { return !(*this == o); }
    QRect ToQRect() const { return QRect(QPoint(left, top), QPoint(right, bottom)); }

    int left = 0;
    int top = 0;
    int right = -1;
    int bottom = -1;
};
