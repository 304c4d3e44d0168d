#pragma once
// The other side's picture on the call screen, by the same surface as films; shaded above and below where the
// call's texts and buttons lie upon it. User-interface thread.
#include "support/host/video.h"

class callPicture : public QVideoViewer
{
    Q_OBJECT
public:
    enum SHADE {
        SHADE_NONE, // the picture alone
        SHADE_EDGES,
        SHADE_QUESTION // for what asks, over the lower half
    };

    explicit callPicture(QWidget* parent = nullptr);
    void setShade(SHADE shade);
    // How far down the texts above reach, which are to be read upon the brightest picture.
    void setTextsAbove(int bottom);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    SHADE m_eShade = SHADE_NONE;
    int m_nTexts = 0;
};
