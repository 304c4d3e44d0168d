#pragma once
// One picture over the whole screen. User-interface thread.
#include "media/dlgDemo.h"

class QLabel;

class dlgImagePreview : public dlgDemo
{
    Q_OBJECT
public:
    // file: device path.
    explicit dlgImagePreview(const char* file);

protected:
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;

private:
    QLabel* m_pLabel;
};
