#include "tests/pbx/sippRun.h"
#include "places.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/udpPeer.h"
#include <QFile>
#include <gtest/gtest.h>

void SippRun::start(const char* scenario, uint32_t localPort, uint32_t remotePort, int calls,
                    const QStringList& further)
{
    kit::endWithUs(m_process);
    m_process.setWorkingDirectory(m_folder.path());
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start("sipp",
                    QStringList{"127.0.0.1:" + QString::number(remotePort), "-sf",
                                QString(HX_SOURCE_DIR "/tests/pbx/") + scenario, "-i", "127.0.0.1", "-p",
                                QString::number(localPort), "-m", QString::number(calls), "-nostdin",
                                "-timeout", "240", "-trace_err", "-error_file", m_folder.filePath("errors")} +
                        further);
    ASSERT_TRUE(m_process.waitForStarted()) << "sipp (package sip-tester) is missing";
    ASSERT_TRUE(kit::waits([&] { return UdpPeer("127.0.0.1", localPort).port() == 0; }, 15000));
}

void SippRun::expectDone()
{
    ASSERT_TRUE(m_process.waitForFinished(260000));
    QFile errors(m_folder.filePath("errors"));
    const QByteArray said = errors.open(QIODevice::ReadOnly) ? errors.readAll() : QByteArray();
    EXPECT_EQ(m_process.exitCode(), 0) << said.left(4000).constData();
}
