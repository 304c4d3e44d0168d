#pragma once
// A slide show over the whole screen. User-interface thread.
#include "support/container/chList.h"
#include "support/text/chString.h"

class QLabel;
class QWidget;

class photoAssistant
{
public:
    using FileList = chObjList_dynamic<chString, 16>;

    // The label is a child of the dialog, which has to outlive this object.
    explicit photoAssistant(QWidget* dialog);
    photoAssistant(const photoAssistant&) = delete;
    photoAssistant& operator=(const photoAssistant&) = delete;

    // Takes a copy of the paths and shows the first; false for an empty list, which changes nothing.
    bool LoadFileList(const FileList& list);
    // A picture that cannot be shown leaves the one before it on the screen.
    void Show();
    void ShowFirstImage();
    void PlayNext();                                   // the first comes after the last
    void PlayLast();                                   // one back; the last comes before the first
    int GetFileSize() const { return m_files.size(); } // number of pictures
    QLabel* GetLabel() const { return m_pLabel; }

private:
    QLabel* m_pLabel;
    FileList::iterator m_pCurrent; // no place before the first load
    FileList m_files;
};
