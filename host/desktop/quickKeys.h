#pragma once
// The quick keys of the home screen, as "/rundata/data/picture-dial.xml" has them. User-interface thread.
#include "support/text/chString.h"
#include <QList>
#include <QPixmap>
#include <QString>

struct tagQuickKey
{
    QString strName;    // empty: the key is free
    QString strPicture; // device path
    chString strFile;   // the picture's name, as the slot's file has it
    chString strNumber;
    int nLine = -1; // 0 to 3, -1 the default one
};

// At most six, in the order of the file; free ones for those that it does not have.
QList<tagQuickKey> quickKeysRead();
// Dials the number; a free key opens the page that fills it. row: of the key, from 0; picture: what it shows.
void quickKeyPress(const tagQuickKey& key, int row, const QPixmap& picture);
// Opens the page at the slot of the key.
void quickKeyEdit(const tagQuickKey& key, int row, const QPixmap& picture);
