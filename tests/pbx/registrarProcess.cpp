#include "tests/pbx/registrarProcess.h"
#include "tests/kit/plain/deviceFolder.h"

bool RegistrarProcess::start(const QStringList& options)
{
    const bool isWritten = m_program.write(
        "accounts", "# of a test\n1001 " + passwordOf("1001") + " Anna\n1002 " + passwordOf("1002") +
                        " Ben\n1003 " + passwordOf("1003") + " Cleo & Co\n");
    if (!isWritten || !m_program.start(kit::program("hxRegistrar"), options + QStringList{"accounts"}))
        return false;
    const QByteArray mark = "sip:127.0.0.1:";
    while (!output().contains('\n') && m_program.prints())
        continue;
    m_nPort = output().startsWith(mark) ? output().mid(mark.size()).trimmed().toUInt() : 0;
    return m_nPort > 0;
}
