#pragma once
// Browses a removable disk and imports its files into the phone: what the pages of pictures, films and ring
// tones share. Made for one visit; whoever shows it makes it delete itself. User-interface thread.
#include "media/DeviceAssistant.h"
#include "support/host/bars.h"
#include "support/host/mediaview.h"
#include "support/host/message.h"
#include <QDialog>
#include <memory>

class ImportJob;
class QLabel;
class QListWidget;
class basePreview;
namespace Ui {
class dlgMediaImport;
}

// The look of the list of a disk's files.
void setupImportFileList(QListWidget* list);

class dlgMediaImport : public QDialog, public chMsgProcesser
{
    Q_OBJECT
public:
    ~dlgMediaImport() override;
    // What the disks tell; other messages are left to others.
    int TryThreadMessage(msgObject& msg) override;
    // source, target: device paths. True when the file is in its place. Returns when it is, with a box on the
    // screen when it takes long, and events are taken meanwhile: the page may be gone afterwards.
    virtual bool ImportFile(const chString& source, const chString& target) const;

protected:
    // type: a section of the media table.
    dlgMediaImport(const char* type, QWidget* parent);
    // The last call of a derived constructor: opens the list of disks. preview: our child.
    void Open(basePreview* preview);
    // For what has no picture to show: the list takes its place.
    void HidePreview();

    // The soft keys of a file.
    virtual void ShowSoftKey() = 0;
    // label: English key.
    void ShowPreviewKey(const char* label);
    void ShowImportKey();
    void ShowDeleteKey();
    void HideKey(int index);
    // Of the current row; empty without one.
    chString CurrentFile() const;
    // The current row is a file of the folder.
    bool IsFile() const;
    // The copy, and the picture's scaling to that size when both numbers are at least 1.
    bool Import(const chString& source, const chString& target, int width, int height) const;

    // Where a picture is previewed.
    QLabel* PreviewLabel() const;

    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void on_currentItemChanged();
    void on_click_Preview();
    void on_click_Import();
    void on_click_Delete();
    void on_click_Back();

private:
    void SetKey(int index, const char* name, const char* label, const char* slot);
    void ShowTexts();
    void ImportCurrent();
    void DeleteCurrent();
    void TellFailure(const chString& source, const chString& target);
    void TellSuccess(const chString& source, const chString& target);
    void DevRefresh();
    void DevRemove();

    std::unique_ptr<Ui::dlgMediaImport> ui;
    DeviceAssistant m_devices;
    qMediaImportView* m_pView;
    basePreview* m_pPreview = nullptr; // our child; null until Open()
    qSoftKeyBar* m_pSoftKeyBar;
    qTopBar* m_pTopBar;
    qLeftBar* m_pLeftBar;
    chString m_strMediaType;
    const char* m_aszLabels[SOFT_KEY_COUNT] = {}; // English keys; null: hidden
    bool m_bBusy = false;                         // a disk is waited for
    // Of the import that is under way.
    mutable std::shared_ptr<ImportJob> m_job;
    mutable chString m_strSource;
    mutable bool m_bCancelled = false; // the last one
    bool m_bDiskGone = false;          // while it was under way
};
