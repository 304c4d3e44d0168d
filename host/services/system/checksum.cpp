#include "support/host/checksum.h"
#include "support/file/chFileStdio.h"
#include <QCryptographicHash>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kBlockSize = 64 * 1024;

} // namespace

chString md5GetFileCheckSum(const char* path)
{
    chFileStdio file;
    if (!file.Open(path, "rb"))
        return chString();
    QCryptographicHash hash(QCryptographicHash::Md5);
    std::vector<char> block(kBlockSize);
    int count;
    while ((count = file.Read(block.data(), kBlockSize)) > 0)
        hash.addData(QByteArrayView(block.data(), count));
    return file.IsEOF() ? chString(hash.result().toHex().constData()) : chString();
}

void qFree(void* memory)
{
    free(memory);
}
