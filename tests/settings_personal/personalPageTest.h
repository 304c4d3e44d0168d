#pragma once
// What the tests of the personal settings share: the room's pages, and what the loudspeaker was told.
#include "host/services/players/soundOutput.h"
#include "settings/personal/personalPages.h"
#include "support/host/module.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/pageTest.h"

#define USER_FILE "/rundata/config/user/user.ini"

class PersonalPageTest : public PageTest
{
protected:
    PersonalPageTest()
    {
        settingsPersonalPages();
        soundOutput::setInstance(std::make_unique<Recorder>(m_heard, m_nLevel));
    }
    ~PersonalPageTest() override { soundOutput::setInstance(nullptr); }

    // Since the last call: "Chime.wav 30" is a file that was begun at that level, "tone 65 30" a key's tone,
    // "stop" the end of a file that sounded.
    QStringList heard()
    {
        QStringList told;
        told.swap(m_heard);
        return told;
    }
    int level() const { return m_nLevel; }

    // A box is answered in time that runs.
    void expectFullDiskTold()
    {
        const kit::RunningClocks running;
        expectFailedSave(USER_FILE);
    }
    // Of a phone without the manager's page, which says so.
    void askForManager()
    {
        const kit::RunningClocks running;
        kit::BoxAnswers boxes({"ok"});
        softKey(1);
        EXPECT_EQ(boxes.texts(), QStringList{"Unknow dialog type"});
    }

private:
    class Recorder : public soundOutput
    {
    public:
        Recorder(QStringList& heard, int& level) : m_heard(heard), m_nLevel(level) {}
        bool playFile(const QString& file, bool loop) override
        {
            m_bPlays = soundOutput::playFile(file, loop);
            if (m_bPlays)
                m_heard.append(file.section('/', -1) + ' ' + QString::number(m_nLevel));
            return m_bPlays;
        }
        void stopFile() override
        {
            if (m_bPlays)
                m_heard.append("stop");
            m_bPlays = false;
        }
        void playTone(int key) override { m_heard.append(QString("tone %1 %2").arg(key).arg(m_nLevel)); }
        void setLevel(int level) override { m_nLevel = level; }

    private:
        QStringList& m_heard;
        int& m_nLevel;
        bool m_bPlays = false;
    };

    QStringList m_heard;
    int m_nLevel = -1; // nothing was set
};
