#pragma once
// The page of the phone's own pictures, films or ring tones: a list with a preview, where files are deleted
// and imported. One page for all types of the media table; a load call makes it that of one.
// User-interface thread.
#include "frame/laterWork.h"
#include "frame/pageFrame.h"
#include "media/mediaTable.h"
#include "support/host/leftbar.h"
#include <QByteArray>
#include <QDialog>
#include <QRect>
#include <QSet>
#include <memory>
#include <vector>

class QTableWidgetItem;
class basePreview;
class qSoftButton;
namespace Ui {
class dlgMediaManager;
}

class dlgMediaManager : public QDialog, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgMediaManager(QWidget* parent, tagLeftBarInfo* info);
    ~dlgMediaManager() override;

    // title: English key; icon: device path. Answers 1.
    int SetTitle(const char* title, const char* icon);
    // Fill the list with the files of a type of the media table; null is a type without files. Answer 1.
    int LoadImageMedia(const char* type);
    int LoadVideoMedia(const char* type);
    int LoadSoundMedia(const char* type);

    // Of the current row: its device path, empty without one, and whether it belongs to the firmware.
    chString getCurrentMediaFullPath() const;
    bool getCurrentMediaReadOnly() const;
    // The row of a device path; -1 when the list does not have it.
    int findItemValue(const chString& path) const;

protected:
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void on_click_Preview();
    void on_click_Delete();
    void on_click_USB();
    void on_click_Back();
    void on_my_currentItemChanged();
    // Files that are new since the list was filled; rows of files that are gone stay.
    void on_reload_FileList();
    void on_exit_MediaImport();

private:
    void BeginLoad(const char* type);
    int EndLoad(basePreview* preview, const char* usbKey);
    void PlaceImagePreview();
    void PlaceList(bool isBesidePreview);
    void ShowPreviewKey(bool isThere);
    void InitData();
    bool fillFileListByType();
    void AppendFiles(const std::vector<tagMediaFile>& files);
    void AddRows(const std::vector<tagMediaFile>& files, size_t first);
    void addMediaItem(int row, const tagMediaFile& file);
    void DisplayDeleteButton();
    bool CallListMoveUp();
    bool CallListMoveDown();
    void ShowPlayIcon(int row, bool isThere);
    void PlayCurrentAgain();
    void on_click_USB(const qSoftButton* button);
    QDialog* NewImportPage(const QString& kind);

    void DeleteFile(const chString& path);
    void DeleteWallpaper(const chString& path);
    void DeleteContactImage(const chString& path);
    void DeleteOther(const chString& path);

    std::unique_ptr<Ui::dlgMediaManager> ui;
    PageFrame m_frame;
    QTableWidgetItem* m_pCurrentItem = nullptr; // of column 0 in the current row; the list's
    basePreview* m_pPreview = nullptr;          // our child; null before the first load
    chString m_strMediaType;
    LaterWork m_rowsToCome;
    QSet<QByteArray> m_paths; // of the rows that are there or to come
    QRect m_formPreview;      // where the form has the label
    QRect m_formList;
};
