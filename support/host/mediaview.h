#pragma once
// Browses removable storage for files of one media type. Folders and files that a link leads to are not
// shown, nor is anything else than folders and files. User-interface thread.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <QListWidget>

class HX_HOST_API qMediaImportView : public QListWidget
{
    Q_OBJECT
public:
    explicit qMediaImportView(QWidget* parent = nullptr);
    ~qMediaImportView() override;
    // table: device path of the media table; type: one of its elements. 0 when there is no such type.
    int LoadMediaType(const char* table, const char* type);
    bool itemIsDirectory(int row) const;
    chString itemFullPath(int row) const; // device path; empty for a row out of range
    chString getImportPath() const;       // the folder that files of the type are imported to
    chString GetCurPath() const;          // the folder on view; "/storage": the list of storages
    // 1 when path is a folder of a storage that is there, or "/storage"; else the view stays as it is. The
    // rows of a large folder, or of a slow disk, come a moment later; the way up is there at once.
    int EnterDirectory(const char* path);
    bool isReading() const; // rows are still to come
    void removeCurrentSelect();

public slots:
    void itemClicked(QListWidgetItem* item);

private:
    struct Private;
    Private* m_p;
};

HX_HOST_API qMediaImportView* qReplaceMediaImportView(QWidget* placeholder);
