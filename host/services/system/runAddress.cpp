#include "host/services/system/runAddress.h"
#include "host/services/system/runFolder.h"
#include <fcntl.h>
#include <unistd.h>

runAddress::runAddress(const std::string& file)
{
    std::string path = runFolder::path() + '/' + file;
    if (path.size() >= sizeof m_address.sun_path) {
        m_nFolder = open(runFolder::path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        path = "/proc/self/fd/" + std::to_string(m_nFolder) + '/' + file;
    }
    m_address.sun_family = AF_UNIX;
    path.copy(m_address.sun_path, sizeof m_address.sun_path - 1);
}

runAddress::~runAddress()
{
    if (m_nFolder >= 0)
        close(m_nFolder);
}
