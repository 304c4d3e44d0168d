#include "media/importJob.h"
#include "support/file/chAtomicFile.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/text/chString.h"

ImportJob::ImportJob(const char* source, const char* target, int width, int height)
    : m_copy(source, target), m_order{source, target, width, height}
{
}

int ImportJob::Run()
{
    const bool done = CopyAndScale();
    if (m_bCancelled)
        fileRemove(m_order.strTarget.c_str());
    return done && !m_bCancelled ? 1 : 0;
}

bool ImportJob::CopyAndScale()
{
    chString folder(m_order.strTarget.c_str());
    if (!pathRemoveFileSpec(folder) || !pathMakeDirectories(folder))
        return false;
    chAtomicFile::Sweep(folder); // of imports that a loss of power ended
    if (!m_copy.Run())
        return false;
    const bool isScaled = m_order.nWidth > 0 && m_order.nHeight > 0;
    return !isScaled || scalePicture(m_order, m_bAborted);
}

void ImportJob::Abort()
{
    m_bAborted = true;
    m_copy.Cancel();
}

void ImportJob::Cancel()
{
    m_bCancelled = true;
    Abort();
}
