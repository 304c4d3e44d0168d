#pragma once
// The box that tells or asks.
#include "host/widgets/boxDialog.h"

class dlgMessageBox : public BoxDialog
{
    Q_OBJECT
public:
    // type: BOX_NOTE or BOX_QUESTION.
    dlgMessageBox(const QString& title, const QString& text, int type, QWidget* parent);
};
