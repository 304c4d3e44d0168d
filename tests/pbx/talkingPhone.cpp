#include "tests/pbx/talkingPhone.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include <QJsonArray>

namespace {

constexpr int kIdleMs = 10000;
const char* const kAccountFile = "/rundata/config/user/voip/sipAccount0.cfg";
const char* const kNowhere = "filesink async=false sync=true location=/dev/null";
const char* const kChanged = "65543";
const char* const kChangedAccount = "3";
const QPoint kLastSoftKey(700, 460);

} // namespace

TalkingPhone::~TalkingPhone()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    does({"quit"});
    if (!m_process.waitForFinished(WAIT_MS))
        m_process.kill();
    m_process.waitForFinished();
}

bool TalkingPhone::does(const QStringList& command)
{
    const QJsonValue value = m_link.ask(command, 3 * WAIT_MS);
    return m_link.isOpen() && !value.toObject().contains("error");
}

bool TalkingPhone::comesTo(const char* page)
{
    return does({"wait", "page", page, QString::number(WAIT_MS)}) &&
           does({"wait", "idle", QString::number(kIdleMs)});
}

bool TalkingPhone::start(const tagPhoneSetup& setup)
{
    if (!m_root.isValid() || !kit::fillDeviceFolder(m_root.path(), kit::Firmware::Link))
        return false;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_SCALE_FACTOR", "1");
    environment.insert("HX_SOUND_SOURCE", setup.says);
    environment.insert("HX_SOUND_SINK",
                       setup.bRecords ? kit::recordingSink(heardFile()) : QByteArray(kNowhere));
    environment.insert("HX_SOUND_PROCESSING", setup.bProcesses ? "on" : "off");
    environment.insert("HX_PICTURE_SOURCE", setup.shows);
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    kit::endWithUs(m_process);
    const QString control = filePath("control");
    m_process.start(kit::program("hxPhone"), {"--sysroot", m_root.path(), "--control", control, "--sip"});
    return m_process.waitForStarted() && m_link.open(control, WAIT_MS) && comesTo("frmDesktop") &&
           setAccount(setup) && isRegistered();
}

bool TalkingPhone::setAccount(const tagPhoneSetup& setup)
{
    const QList<QPair<QString, QString>> keys = {{"Enable", "1"},
                                                 {"DisplayName", setup.user},
                                                 {"UserName", setup.user},
                                                 {"password", setup.password},
                                                 {"SIPServerHost", "127.0.0.1"},
                                                 {"SIPServerPort", QString::number(setup.server)},
                                                 {"Encrypt", setup.bEncrypts ? "1" : "0"}};
    for (const auto& key : keys) {
        if (!does({"config", kAccountFile, "account", key.first, key.second}))
            return false;
    }
    return does({"post", "app_hxPhone", kChanged, kChangedAccount, "0"});
}

// As the page says it.
bool TalkingPhone::isRegistered()
{
    if (!does({"open", "Status"}) || !comesTo("dlgStatus"))
        return false;
    const bool isIn = kit::waits(
        [this] {
            for (const QJsonValue& widget : widgets()) {
                if (widget.toObject()["text"] == "Default account")
                    return true;
            }
            return false;
        },
        WAIT_MS);
    return touch(kLastSoftKey) && comesTo("frmDesktop") && isIn;
}

QJsonArray TalkingPhone::widgets()
{
    return m_link.ask({"tree"}).toObject()["windows"].toArray().first().toObject()["widgets"].toArray();
}

bool TalkingPhone::find(const QString& name, QPoint& middle)
{
    for (const QJsonValue& entry : widgets()) {
        const QJsonObject at = entry.toObject();
        if (at["name"] != name)
            continue;
        middle = {at["x"].toInt() + at["w"].toInt() / 2, at["y"].toInt() + at["h"].toInt() / 2};
        return true;
    }
    return false;
}

bool TalkingPhone::touch(const QPoint& place)
{
    return does({"touch", QString::number(place.x()), QString::number(place.y())});
}

bool TalkingPhone::dial(const QByteArray& number)
{
    for (const char digit : number)
        does({"key", QString(QLatin1Char(digit))});
    QPoint key;
    return comesTo("frmDial") && find("btnCall", key) && touch(key) && comesTo("frmCall");
}

bool TalkingPhone::rings()
{
    return comesTo("frmCall") && find("btnAnswer", m_answerKey);
}

bool TalkingPhone::answer()
{
    return touch(m_answerKey);
}

bool TalkingPhone::talks()
{
    return kit::waits([this] { return call()["state"] == "talking"; }, WAIT_MS);
}

bool TalkingPhone::hangUp()
{
    return touch(kLastSoftKey) && comesTo("frmDesktop");
}

QJsonObject TalkingPhone::call()
{
    return m_link.ask({"calls"}).toObject()["calls"].toArray().first().toObject();
}

qint64 TalkingPhone::mediaPid() const
{
    return kit::childOf(m_process.processId(), "hxMedia");
}
