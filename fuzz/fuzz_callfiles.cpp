// The files behind keys, pictures, door phones and cameras, which pages, other programs and a bad disk write:
// what the phone reads of them is within its bounds, no name leads out of its folder, and no file is changed.
#include "fuzz/fuzzRoot.h"
#include "host/desktop/quickKeys.h"
#include "host/managers/dssKeys.h"
#include "support/file/atomicSave.h"
#include "support/file/fileTools.h"
#include "support/file/keepAside.h"
#include "support/file/path.h"
#include "support/host/managers.h"
#include "support/host/phone.h"
#include <QString>
#include <string>

namespace {

const char* const kFiles[] = {"/rundata/data/dsskey.xml", "/rundata/data/picture-dial.xml",
                              "/rundata/data/doorphonedata.xml", "/rundata/data/ipcameradata.xml"};

struct Root : FuzzRoot
{
    Root()
    {
        fileSetReportSink([](const char*) {});
        expect(pathMakeDirectories("/rundata/data"));
    }
};

bool isLine(int line)
{
    return line >= -1 && line < PHONE_ACCOUNT_COUNT;
}

void expectKeys()
{
    GetDssKeyManager()->LoadFile(kFiles[0], 0);
    expect(dssKeys().size() <= DSS_KEYS_MAX);
    for (const tagDssKey& key : dssKeys())
        expect(isLine(key.nLine));
}

void expectPictures()
{
    const QString folder = "/rundata/picture-dial/";
    const QList<tagQuickKey> keys = quickKeysRead();
    expect(keys.size() == 6);
    for (const tagQuickKey& key : keys) {
        expect(isLine(key.nLine));
        const bool isOwn = key.strPicture.startsWith(folder);
        expect(isOwn ? !key.strPicture.mid(folder.size()).contains('/')
                     : key.strPicture.startsWith("/phone/"));
    }
}

void expectDevices()
{
    GetDoorPhoneIconViewManager()->RefreshIconView();
    for (const DoorPhoneIconViewItem* door : GetDoorPhoneIconViewManager()->GetItems())
        expect(door != nullptr);
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    for (const IPCameraIconViewItem* camera : GetIPCameraIconViewManager()->GetItems())
        expect(camera->m_iIndex >= 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static Root root;
    const std::string file(reinterpret_cast<const char*>(data), size);
    for (const char* path : kFiles)
        expect(fileSaveAtomic(path, file.data(), file.size()));
    expectKeys();
    expectPictures();
    expectDevices();
    for (const char* path : kFiles) {
        std::string after;
        expect(fileReadWhole(path, after) && after == file);
    }
    return 0;
}
