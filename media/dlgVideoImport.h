#pragma once
// Imports films. User-interface thread.
#include "media/dlgMediaImport.h"

class dlgVideoImport : public dlgMediaImport
{
    Q_OBJECT
public:
    dlgVideoImport(const char* type, QWidget* parent);

protected:
    void ShowSoftKey() override;
};
