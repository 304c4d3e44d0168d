#pragma once
// The home screen and the loading screen. User-interface thread.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <QIcon>
#include <QWidget>

class HX_HOST_API frmLoading : public QWidget
{
    Q_OBJECT
public:
    explicit frmLoading(QWidget* parent = nullptr);
    // Shows the step that is being done, already translated, and one step more of progress.
    void setText(const QString& text);
    QString text() const;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_strText;
    int m_nStep = 0;
};

class HX_HOST_API frmDesktop : public QWidget
{
    Q_OBJECT
public:
    // The one home screen, made at the first call; lives until the process ends.
    static frmDesktop* GetInstance();
    ~frmDesktop() override;
    // The boot screen; null when the boot is over.
    frmLoading* m_pLoading = nullptr;

    // Ends the boot: the loading screen goes, the home screen comes.
    void FinishLoading();
    // Path of the wallpaper, a device path; null or empty takes the configured one.
    void SetWallPaper(const char* path);
    void ReloadQuickKeys();

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    bool eventFilter(QObject*, QEvent*) override;
    bool event(QEvent*) override;

private:
    frmDesktop();
    void moveFocus(int key);
    // The number that is typed on the home screen; true when the key belonged to it.
    bool opensDialScreen(QKeyEvent* event);
    struct Private;
    Private* m_p;
};

// One of the pictures that dial, as the desktop shows it.
class PicDialIconViewItem
{
public:
    PicDialIconViewItem(int row, const chString& file, const QIcon& decoration)
        : m_nRow(row), m_strFile(file), m_decoration(decoration)
    {
    }
    int GetRow() const { return m_nRow; }                 // its slot, from 0
    const chString& GetFile() const { return m_strFile; } // name of its picture, as the slot's file has it
    const QIcon& GetDecoration() const { return m_decoration; }

private:
    int m_nRow;
    chString m_strFile;
    QIcon m_decoration;
};

HX_HOST_API void desktop_SetWallPaper(const char* path);
HX_HOST_API void desktop_ReLoadPicXmlFile(); // reads the quick-dial pictures again
