#pragma once
// Pictures that were read, by file and by how they were wanted, also those that could not be read: as long as
// the file is the same, the answer is. Bounded in memory; what was not asked for longest goes first.
// User-interface thread.
#include "host/services/pictures/pictureDecoder.h"
#include "support/file/fileTools.h"
#include <QByteArray>
#include <QHash>
#include <QPixmap>

struct tagImageKey
{
    QByteArray path; // device path
    tagPictureShape shape;
    PICTURE_RESULT (*check)(const char* path) = nullptr; // see tagPictureWish
    bool operator==(const tagImageKey& other) const
    {
        return shape == other.shape && check == other.check && path == other.path;
    }
};

size_t qHash(const tagImageKey& key, size_t seed);

// The file that a picture was read from, looked at before it was.
struct tagImageOrigin
{
    unsigned nRoot = 0; // of the device root
    tagFileStat stat;   // of a file that is not there, or could not be opened: all zero

    static tagImageOrigin of(const char* path);
    bool operator==(const tagImageOrigin& other) const { return nRoot == other.nRoot && stat == other.stat; }
};

struct tagImageNode
{
    PICTURE_RESULT eResult = PICTURE_MISSING;
    QPixmap pixmap;
    QSize sizeInFile; // pixels, the way up followed
    tagImageOrigin origin;
    qint64 nLookedMs = 0;
    quint64 nUsed = 0;
    bool bKept = false;

    qsizetype cost() const;
};

class ImageCache
{
public:
    static ImageCache& instance();

    enum LOOK { LOOK_NOW, LOOK_NOW_AND_THEN }; // at the file: for whoever asks once, and each time he paints
    // Null when it is not there or its file has changed. Valid until the next call.
    tagImageNode* find(const tagImageKey& key, LOOK look);
    // Takes the place of what was there, and is kept if that was. Valid until the next call.
    tagImageNode* store(const tagImageKey& key, const tagDecodedPicture& picture,
                        const tagImageOrigin& origin);
    void setKept(tagImageNode& node, bool kept);
    // In all its shapes.
    void remove(const QByteArray& path);
    // Of all pictures, those that are kept too.
    qsizetype bytes() const;

private:
    static bool isCurrent(tagImageNode& node, const QByteArray& path, LOOK look);
    void makeRoom(qsizetype needed);

    QHash<tagImageKey, tagImageNode> m_nodes;
    qsizetype m_nCost = 0; // of the nodes that are not kept
    quint64 m_nUses = 0;
};
