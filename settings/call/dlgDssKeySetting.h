#pragma once
// The editor of one programmable key: one for the whole phone, over the list of keys or by itself.
// User-interface thread.
#include "frame/settingPage.h"
#include <memory>

class CDssKeyInfo;
class xmlElement;
namespace Ui {
class dlgDssKeySetting;
}

class dlgDssKeySetting : public SettingPage
{
    Q_OBJECT
public:
    ~dlgDssKeySetting() override;
    // Made at the first call; parent and info are those of that call.
    static dlgDssKeySetting* getInstance(QWidget* parent, tagLeftBarInfo* info);
    bool eventFilter(QObject* watched, QEvent* event) override;

    // index: from 0. Nothing is shown for a key that the file does not have.
    HX_MODULE_API void ShowByDsskeyIndex(int index);
    // keyNumber: from 1.
    void ShowByDssKeyInfo(const CDssKeyInfo& info, int keyNumber);
    // True, whatever became of it: whether all is stored is known afterwards.
    bool SaveValue2Xml();
    bool SaveValue2Ini();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

protected slots:
    void on_click_Save() override;
    void on_click_Back() override;

private slots:
    void on_cmbType_currentIndexChanged(int index);

private:
    dlgDssKeySetting(QWidget* parent, tagLeftBarInfo* info);
    void initControls();
    void SetValueByDssKeyInfo(const CDssKeyInfo& info);
    void showKeyName();
    void AddAUTOItem();
    void DeleteAUTOItem();
    void storeKey(xmlElement* item);
    void tellChange(int type);

    static dlgDssKeySetting* m_pDlgDsskeySetting;

    std::unique_ptr<Ui::dlgDssKeySetting> ui;
    chString m_strKeyName;
    int m_iKeyIndex = 0; // from 1
    int m_bBLFKey = 0;   // the key on view watches extensions, or did
    bool m_bXmlStored = false;
    bool m_bIniStored = false;
};

// The editor; never null.
dlgDssKeySetting* getDssKeySettingDlg();
HX_MODULE_API dlgDssKeySetting* GetDssKeySetting();
