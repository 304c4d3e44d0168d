#include "media/dlgImageImport.h"
#include "media/PhotoFile.h"
#include "media/imagePreview.h"
#include "media/pictureScaling.h"
#include "support/file/chDiskWork.h"
#include "support/file/chPathNameA.h"
#include "support/file/path.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "support/host/trace.h"
#include <QRegularExpression>
#include <algorithm>
#include <iterator>
#include <string>

namespace {

enum { KEY_ENTER = 0, KEY_IMPORT = 1 };

constexpr int kDelayMs = 500;
constexpr int kAtOnceMs = 8; // for a look at a file; a disk may take longer

// What no program takes for anything but a name.
bool isPlainName(const char* name)
{
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z0-9_. ]+\\z"));
    return plain.match(QString::fromUtf8(name)).hasMatch();
}

// The time of day takes the place of a name in other letters.
chString timeName(const chString& source, const chString& target)
{
    chPathNameA path(target);
    path.RemoveFileSpec();
    const chString now = chTime(netGetLocalTime()).Format("%Y%m%d%H%M%S");
    return path.Append(now + pathGetFileExtensionPos(source)).GetPath();
}

std::string withoutBlanks(const chString& path)
{
    const std::string text = path.GetText();
    std::string result;
    std::copy_if(text.begin(), text.end(), std::back_inserter(result),
                 [](char letter) { return letter != ' '; });
    return result;
}

} // namespace

dlgImageImport::dlgImageImport(const char* type, int width, int height, QWidget* parent)
    : dlgMediaImport(type, parent), m_nTargetWidth(width), m_nTargetHeight(height)
{
    Open(new imagePreview(this, PreviewLabel(), kDelayMs, PREVIEW_IMAGE));
}

dlgImageImport::dlgImageImport(const char* type, QWidget* parent) : dlgImageImport(type, 0, 0, parent) {}

dlgImageImport::~dlgImageImport() = default;

bool dlgImageImport::IsImageOK(const char* path)
{
    return PhotoFile().IsOk(path, IMAGE_SIZE_LIMIT);
}

// The file is looked at where it lies, which a slow disk does not hold the page up for.
void dlgImageImport::ShowSoftKey()
{
    ShowDeleteKey();
    HideKey(KEY_ENTER);
    HideKey(KEY_IMPORT);
    if (!m_look || m_look->IsOver())
        LookAtCurrent();
}

void dlgImageImport::LookAtCurrent()
{
    m_strLooked = CurrentFile();
    m_look = std::make_unique<chDiskWork>(
        [path = std::string(m_strLooked.GetText())] { return IsImageOK(path.c_str()) ? 1 : 0; });
    if (m_look->Wait(kAtOnceMs))
        OnLooked();
    else
        m_look->Tell(
            [this] { QMetaObject::invokeMethod(this, &dlgImageImport::OnLooked, Qt::QueuedConnection); });
}

// The row may be another one meanwhile.
void dlgImageImport::OnLooked()
{
    if (IsFile() && m_strLooked != CurrentFile()) {
        LookAtCurrent();
    } else if (IsFile() && m_look->Result()) {
        ShowPreviewKey(HX_TR("Preview"));
        ShowImportKey();
    }
}

bool dlgImageImport::ImportFile(const chString& source, const chString& target) const
{
    if (m_nTargetWidth < 1 || m_nTargetHeight < 1)
        return dlgMediaImport::ImportFile(source, target);
    const bool isPlain = isPlainName(pathGetFileNamePos(source));
    const std::string place = withoutBlanks(isPlain ? target : timeName(source, target));
    if (scaleCommand({source.GetText(), place, m_nTargetWidth, m_nTargetHeight}).empty()) {
        nuxTrace(TRACE_NOTE, "(%s) has too long a name to be scaled", source.GetText());
        return false;
    }
    return Import(source, place.c_str(), m_nTargetWidth, m_nTargetHeight);
}
