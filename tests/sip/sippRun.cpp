#include "tests/sip/sippRun.h"
#include "places.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/udpPeer.h"
#include <QFile>
#include <gtest/gtest.h>

void SippRun::start(const QByteArray& scenario, uint32_t localPort, uint32_t remotePort, int calls,
                    const QStringList& further)
{
    run(QString(HX_SOURCE_DIR "/tests/") + scenario, localPort, remotePort, calls, further);
}

void SippRun::startText(const QByteArray& scenario, uint32_t localPort, uint32_t remotePort, int calls,
                        const QStringList& further)
{
    ASSERT_TRUE(m_program.write("scenario.xml", scenario));
    run(m_program.path("scenario.xml"), localPort, remotePort, calls, further);
}

void SippRun::run(const QString& file, uint32_t localPort, uint32_t remotePort, int calls,
                  const QStringList& further)
{
    ASSERT_TRUE(m_program.start("sipp", QStringList{"127.0.0.1:" + QString::number(remotePort), "-sf", file,
                                                    "-i", "127.0.0.1", "-p", QString::number(localPort), "-m",
                                                    QString::number(calls), "-nostdin", "-timeout",
                                                    QString::number(m_nLimit), "-trace_err", "-error_file",
                                                    m_program.path("errors")} +
                                            further))
        << "sipp (package sip-tester) is missing";
    ASSERT_TRUE(
        kit::waits([&] { return UdpPeer("127.0.0.1", localPort).port() == 0; }, kit::SideProgram::WAIT_MS));
}

void SippRun::expectDone()
{
    ASSERT_TRUE(m_program.ends((m_nLimit + 20) * 1000));
    QFile errors(m_program.path("errors"));
    const QByteArray said = errors.open(QIODevice::ReadOnly) ? errors.readAll() : QByteArray();
    EXPECT_EQ(m_program.end(), 0) << said.left(4000).constData();
}
