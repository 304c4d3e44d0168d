#pragma once
// Imports ring tones. User-interface thread.
#include "media/dlgMediaImport.h"

class dlgSoundImport : public dlgMediaImport
{
    Q_OBJECT
public:
    dlgSoundImport(const char* type, QWidget* parent);

protected:
    void ShowSoftKey() override;
};
