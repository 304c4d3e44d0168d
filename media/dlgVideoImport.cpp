#include "media/dlgVideoImport.h"
#include "media/videoPreview.h"

namespace {

constexpr int kDelayMs = 0;

} // namespace

dlgVideoImport::dlgVideoImport(const char* type, QWidget* parent) : dlgMediaImport(type, parent)
{
    HidePreview();
    Open(new videoPreview(this, kDelayMs, PREVIEW_VIDEO));
}

void dlgVideoImport::ShowSoftKey()
{
    ShowPreviewKey(HX_TR("Preview"));
    ShowImportKey();
    ShowDeleteKey();
}
