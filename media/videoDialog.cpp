#include "media/videoDialog.h"
#include "media/videoAssistant.h"
#include "support/host/phone.h"

namespace {

constexpr int kViewerMode = 1;
constexpr int kVolumeStep = 10;

void changeVolume(int step)
{
    dev_set_output_volume(dev_get_output_volume() + step);
}

} // namespace

VideoDialog::VideoDialog(int mute) : m_pVideo(nullptr)
{
    dev_set_output_mute(mute);
    m_pVideo = new videoAssistant(kViewerMode, this);
    m_pVideo->setGeometry(rect());
}

void VideoDialog::Destruct()
{
    m_pVideo->DestructRes();
    close();
}

void VideoDialog::closeEvent(QCloseEvent* event)
{
    m_pVideo->DestructRes();
    FullScreenDialog::closeEvent(event);
}

bool VideoDialog::TryPlayerKey(int key)
{
    switch (key) {
    case Qt::Key_Return:
        m_pVideo->SwitchPlayPause();
        return true;
    case Qt::Key_Up:
        changeVolume(kVolumeStep);
        return true;
    case Qt::Key_Down:
        changeVolume(-kVolumeStep);
        return true;
    case Qt::Key_F7:
        m_pVideo->SetOutPutMute(!dev_get_output_mute());
        return true;
    default:
        return false;
    }
}
