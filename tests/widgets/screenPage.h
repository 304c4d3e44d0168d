#pragma once
// A full-screen page for tests of the widgets on it.
#include "host/look/look.h"
#include "support/host/api.h"
#include "tests/kit/phoneTest.h"
#include <QDialog>

class ScreenPage : public QDialog
{
public:
    explicit ScreenPage(QWidget* parent = nullptr) : QDialog(parent, Qt::FramelessWindowHint)
    {
        setGeometry(0, 0, look::kScreenWidth, look::kScreenHeight);
        setAutoFillBackground(true);
    }
    void open()
    {
        show();
        kit::settle();
    }
    template <class T, class... Arguments>
    T* add(const QRect& rect, Arguments... arguments)
    {
        T* widget = new T(arguments..., this);
        widget->setGeometry(rect);
        return widget;
    }
};

inline ::testing::AssertionResult isColour(const QImage& image, int x, int y, QRgb wanted, int tolerance = 3)
{
    const QRgb is = image.pixel(x, y);
    const int off = std::max({std::abs(qRed(is) - qRed(wanted)), std::abs(qGreen(is) - qGreen(wanted)),
                              std::abs(qBlue(is) - qBlue(wanted))});
    if (off <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "(" << x << "," << y << ") is " << std::hex << (is & RGB_MASK)
                                         << ", not " << (wanted & RGB_MASK);
}

// The smallest rectangle within area around all pixels that are not near any of the background colours.
inline QRect inkIn(const QImage& image, const QRect& area, QRgb background, int tolerance = 60)
{
    QRect ink;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (!isColour(image, x, y, background, tolerance))
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}
