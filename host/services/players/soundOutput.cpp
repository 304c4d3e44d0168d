#include "host/services/players/soundOutput.h"
#include "host/services/players/filmFile.h"

namespace {

std::unique_ptr<soundOutput>& theOutput()
{
    static std::unique_ptr<soundOutput> output = std::make_unique<soundOutput>();
    return output;
}

} // namespace

bool soundOutput::playFile(const QString& file, bool)
{
    QByteArray path;
    tagFileStat stat;
    return filmFileFind(file.toUtf8(), path, stat);
}

void soundOutput::stopFile() {}

void soundOutput::playTone(int) {}

void soundOutput::setLevel(int) {}

void soundOutput::setMute(bool) {}

soundOutput& soundOutput::instance()
{
    return *theOutput();
}

void soundOutput::setInstance(std::unique_ptr<soundOutput> output)
{
    theOutput() = output ? std::move(output) : std::make_unique<soundOutput>();
}
