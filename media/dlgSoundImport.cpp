#include "media/dlgSoundImport.h"
#include "media/soundPreview.h"

namespace {

constexpr int kDelayMs = 1000;

} // namespace

dlgSoundImport::dlgSoundImport(const char* type, QWidget* parent) : dlgMediaImport(type, parent)
{
    HidePreview();
    Open(new soundPreview(this, soundPreview::StoredVolume(), kDelayMs, PREVIEW_SOUND));
}

void dlgSoundImport::ShowSoftKey()
{
    ShowImportKey();
    ShowDeleteKey();
}
