// Reading a key from a key file that did not change, as pages and timers do all the time.
#include "bench/ratioReporter.h"
#include "support/file/deviceRoot.h"
#include "support/host/registry.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

namespace {

const char* const kFile = "/rundata/config/user/user.ini";

// A file of the size of the phone's own.
class KeyFiles
{
public:
    KeyFiles()
    {
        QDir(m_folder.path()).mkpath("rundata/config/user");
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no room for the key file");
        for (int section = 0; section < 20; ++section) {
            file.write("[Section" + QByteArray::number(section) + "]\n");
            for (int key = 0; key < 6; ++key)
                file.write("strKey" + QByteArray::number(key) + "=value " + QByteArray::number(key) + "\n");
            file.write("nRing=20\n\n");
        }
        file.close();
        deviceSetRoot(m_folder.path().toUtf8().constData());
    }
    QString path() const { return m_folder.path() + kFile; }

private:
    QTemporaryDir m_folder;
};

KeyFiles& keyFiles()
{
    static KeyFiles files;
    return files;
}

void readInt(benchmark::State& state)
{
    keyFiles();
    for (auto _ : state)
        benchmark::DoNotOptimize(nuxGetRegistryInt(kFile, "Section10", "nRing", 0));
}

void readHandle(benchmark::State& state)
{
    keyFiles();
    HREGISTRY handle = registryOpen(kFile, "Section10");
    for (auto _ : state)
        benchmark::DoNotOptimize(registryGetInt(handle, "nRing", 0));
}

void readString(benchmark::State& state)
{
    keyFiles();
    for (auto _ : state)
        benchmark::DoNotOptimize(NUX_SubClass::nuxGetRegistryString(kFile, "Section10", "strKey3", ""));
}

void readSettingsInt(benchmark::State& state)
{
    const QString path = keyFiles().path();
    for (auto _ : state) {
        const QSettings settings(path, QSettings::IniFormat);
        benchmark::DoNotOptimize(settings.value("Section10/nRing", 0).toInt());
    }
}

void readSettingsString(benchmark::State& state)
{
    const QString path = keyFiles().path();
    for (auto _ : state) {
        const QSettings settings(path, QSettings::IniFormat);
        benchmark::DoNotOptimize(settings.value("Section10/strKey3", "").toString());
    }
}

BENCHMARK(readInt);
BENCHMARK(readHandle);
BENCHMARK(readString);
BENCHMARK(readSettingsInt);
BENCHMARK(readSettingsString);

} // namespace

int main(int argc, char** argv)
{
    return runWithRatios(argc, argv,
                         {{"number of an unchanged key file", "readInt", "readSettingsInt", 1.0 / 50},
                          {"the same by its handle", "readHandle", "readSettingsInt", 1.0 / 50},
                          {"text of an unchanged key file", "readString", "readSettingsString", 1.0 / 50}});
}
