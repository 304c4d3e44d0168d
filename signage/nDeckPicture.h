#pragma once
#include "support/text/chString.h"
#include <QLabel>

// A picture that fills its place, also one that reaches far beyond the frame: only what can be seen is
// painted, and no copy of the whole is kept then. User-interface thread.
class nDeckPicture : public QLabel
{
    Q_OBJECT
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent* event) override;
};

// path: device path of a picture that is fit to be shown.
bool IsImageValid(const chString& path);
