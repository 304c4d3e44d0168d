#pragma once
// A show that ends when anything else comes up: a call, a menu, a box. User-interface thread.
#include "media/fullScreenDialog.h"

class dlgDemo : public FullScreenDialog
{
    Q_OBJECT
protected:
    void focusOutEvent(QFocusEvent* event) override;
};
