#pragma once
// The page of one camera. It is filled from an icon or by a title before it is shown. User-interface thread.
#include "frame/settingPage.h"
#include "support/text/chString.h"
#include <memory>

class IPCameraIconViewItem;
namespace Ui {
class dlgIpCamera;
}

class dlgIpCamera : public SettingPage
{
    Q_OBJECT
public:
    dlgIpCamera(QWidget* parent, tagLeftBarInfo* info);
    ~dlgIpCamera() override;

    // What the next show shows. A null item changes nothing.
    void initDataByIconViewItem(QWidget* parent, IPCameraIconViewItem* item);
    // A title that the file does not have leaves all but the title. Without the file, which every phone has,
    // the process ends.
    void initDataByTitle(QString title);

protected:
    void showEvent(QShowEvent* event) override;

protected slots:
    void on_click_save();
    void on_click_Back() override;

private slots:
    void InitData();

private:
    int refuseName(const char* message);
    bool isDisplayNameExist(const QString& name) const;
    // 0 when the file could not be written.
    int saveData2Xml(QString& title);
    void showFields();

    std::unique_ptr<Ui::dlgIpCamera> ui;
    QString m_strTitle;
    chString m_strDisplayName;
    chString m_strPhoneNumber;
    chString m_strAccessPIN;
    int m_iDeviceModel = 0;
    int m_iAccount = -1;
    bool m_bFullscreen = false;
    bool m_bNotSendVideo = false;
    bool m_bNotSendAudio = false;
    int m_iItemIndex = -1; // among the "item" elements of the file
};
