#include "frame/noteBox.h"
#include "support/host/box.h"
#include "support/host/language.h"
#include "support/host/screen.h"
#include "support/host/ui.h"
#include <QWidget>

void noteBox(const char* text, QWidget* parent, int timeoutMs)
{
    xMessageBox(Translate("Note"), Translate(text), BOX_NOTE, parent, timeoutMs);
}

namespace {

bool isCovered(QWidget* page)
{
    const QList<QWidget*> windows = QWSServer::clientWindows();
    return windows.isEmpty() || (windows.first() != page && !isChildOf(windows.first(), page));
}

} // namespace

void noteUnlessCovered(const char* text, QWidget* page, int timeoutMs)
{
    if (!isCovered(page))
        noteBox(text, page, timeoutMs);
}

int questionBox(const char* text, QWidget* parent, const char* title)
{
    return xMessageBox(Translate(title), Translate(text), BOX_QUESTION, parent, -1);
}

int noteUnlessSaved(int saved, QWidget* parent)
{
    if (!saved)
        noteBox(HX_TR("The settings cannot be saved!"), parent);
    return saved;
}
