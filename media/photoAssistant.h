#pragma once
// A slide show over the whole screen. User-interface thread.
#include "support/container/chList.h"
#include "support/text/chString.h"
#include <functional>

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
    // None of the pictures could be shown, nor one of a list before.
    bool IsNothingShown() const;
    // Told whenever a picture could not be shown and nothing is.
    void SetNothingTold(const std::function<void()>& told) { m_nothingTold = told; }

private:
    void OnShown(bool isShown);

    QLabel* m_pLabel;
    FileList::iterator m_pCurrent; // no place before the first load
    FileList m_files;
    int m_nRefused = 0; // pictures in a row that could not be shown
    std::function<void()> m_nothingTold;
};
