#include "host/desktop/callerPicture.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/host/picture.h"
#include "support/host/text.h"
#include <utility>

namespace {

const char* const kFile = "/tmp/hxCaller/picture";

} // namespace

callerPicture::~callerPicture()
{
    stop();
}

void callerPicture::stop()
{
    if (m_action)
        m_action->Abandon();
    m_action.reset();
    pictureCancel(std::exchange(m_nRequest, 0));
}

void callerPicture::fetch(const QString& address, const QSize& size, Told told)
{
    stop();
    if (address.isEmpty())
        return;
    m_size = size;
    m_told = std::move(told);
    chString folder = kFile;
    pathRemoveFileSpec(folder);
    pathMakeDirectories(folder);
    m_action = std::make_unique<HttpAction>();
    m_action->strRemoteUrl = fromQString(address);
    m_action->strLocalFile = kFile;
    m_action->nSizeLimit = MAX_BYTES;
    m_action->nTimeLimit = MAX_MS;
    m_action->bFlush = 0;
    m_action->SetCallback(this);
    PostAction(*m_action);
}

void callerPicture::OnCallback(taskAction* action)
{
    if (!m_action || action != m_action.get())
        return;
    // The queue still holds the action, so it is only put away here.
    const std::unique_ptr<HttpAction> ended = std::move(m_action);
    if (!ended->nResult)
        return;
    tagPictureWish wish;
    wish.strPath = kFile;
    wish.nWidth = m_size.width();
    wish.nHeight = m_size.height();
    wish.eFit = PICTURE_FIT_COVER;
    m_nRequest = pictureRequest(wish, m_pOwner, [this](PICTURE_RESULT, const QPixmap& picture) {
        m_nRequest = 0;
        fileRemove(kFile);
        if (!picture.isNull())
            m_told(picture);
    });
}
