#include "tests/sip/certificates.h"
#include <QFile>
#include <QProcess>
#include <QStringList>

namespace {

bool openssl(const QString& folder, const QString& arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start("openssl", arguments.split(' '));
    return process.waitForFinished() && process.exitCode() == 0;
}

// What a key of ours is made by.
const QString kKey = "-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes ";

} // namespace

bool makeCertificates(const QString& folder, const QString& name, int days)
{
    const bool areMade =
        openssl(folder, "req -x509 -days 2 " + kKey + "-subj /CN=Authority -keyout ca.key -out cafile.pem") &&
        openssl(folder, "req " + kKey + "-subj /CN=" + name + " -keyout server.key -out server.csr") &&
        openssl(folder,
                "x509 -req -in server.csr -CA cafile.pem -CAkey ca.key -CAcreateserial -out server.pem "
                "-days " +
                    QString::number(days)) &&
        // The phone's own: no server of a test asks for it.
        openssl(folder, "req -x509 -days 2 " + kKey + "-subj /CN=phone -keyout agent.pem -out own.pem");
    QFile own(folder + "/own.pem"), agent(folder + "/agent.pem");
    return areMade && own.open(QIODevice::ReadOnly) && agent.open(QIODevice::Append) &&
           agent.write(own.readAll()) > 0;
}
