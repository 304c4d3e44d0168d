#pragma once
// One picture over the whole screen. User-interface thread.
#include "media/dlgDemo.h"

class QLabel;
class QPixmap;

class dlgImagePreview : public dlgDemo
{
    Q_OBJECT
public:
    // file: device path. picture: what was read of it; null when it is still to be read.
    dlgImagePreview(const char* file, const QPixmap& picture);

protected:
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;

private:
    QLabel* m_pLabel;
};
