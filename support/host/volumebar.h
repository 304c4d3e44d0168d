#pragma once
#include "support/host/api.h"
#include <QSlider>

// A level from 0 to 100, set by finger or with left and right. User-interface thread.
class HX_HOST_API QVolumeBar : public QSlider
{
    Q_OBJECT
public:
    explicit QVolumeBar(QWidget* parent = nullptr);
    // One step louder or softer, within the range.
    void AddValue();
    void MinusValue();

signals:
    void value_changed(int value);

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
};
