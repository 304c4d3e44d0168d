#pragma once
#include "support/text/chString.h"
#include <QList>
#include <QString>

// One file of a type of the media table.
struct tagFileOfType
{
    QString strShown; // its name behind the folder's short name
    chString strPath; // device path
};

// The files of one type of a media table, folder by folder; empty when there is no such type. User-interface
// thread.
QList<tagFileOfType> mediaFilesOf(const char* table, const char* type);
