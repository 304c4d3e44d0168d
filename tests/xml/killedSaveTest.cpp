#include "support/xml/xmlFile.h"
#include "tests/file/freshRoot.h"

#include <random>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>

namespace {

const int ROUNDS = 500;
const int LONGEST_LIFE_US = 3000; // behind the first save
const int ITEMS = 50;

bool saveGeneration(int generation)
{
    xmlFile file;
    xmlElement* list = file.AddChildElement("list");
    list->GetAttributeValue("generation") = fmtString("%d", generation);
    for (int i = 0; i < ITEMS; ++i)
        list->AddChildElement("item")->GetAttributeValue("generation") = fmtString("%d", generation);
    return file.SaveToFile("/list.xml") != 0;
}

// Saves one document after the other, each of them all of one generation, until it is killed. Tells
// of the first.
[[noreturn]] void saveForEver(int generation, int tell)
{
    while (saveGeneration(generation++))
        if (tell >= 0) {
            const bool told = write(tell, "", 1) == 1;
            tell = told ? -1 : tell;
        }
    _exit(1);
}

// The generation of the file; -1 when it is not one whole document of one save.
int generationOf(const char* path)
{
    xmlFile file;
    if (!file.LoadFromFile(path))
        return -1;
    xmlElement* list = file.GetRootElement();
    const chString generation = list->GetAttributeValue("generation").GetString();
    int items = 0;
    for (xmlElement* item = list->GetFirstChildElement(); item; item = xmlGetNextElement(item))
        items += item->GetAttributeValue("generation") == generation;
    return items == ITEMS ? atoi(generation) : -1;
}

// A process that saves, after its first save.
pid_t startSaving(int generation)
{
    int ends[2];
    if (pipe(ends) != 0)
        return -1;
    const pid_t child = fork();
    if (child == 0)
        saveForEver(generation, ends[1]);
    close(ends[1]);
    char byte;
    const bool started = read(ends[0], &byte, 1) == 1;
    close(ends[0]);
    return started ? child : -1;
}

TEST_F(FreshRoot, SaveKilledAtAnyMomentLeavesAWholeFile)
{
    std::mt19937 random(20240229);
    std::uniform_int_distribution<int> life(0, LONGEST_LIFE_US);
    int generation = 0;
    for (int round = 0; round < ROUNDS; ++round) {
        const pid_t child = startSaving(generation + 1);
        ASSERT_GT(child, 0) << "no first save in round " << round;
        // The moment of the kill is the point of the test.
        const timespec moment = {0, life(random) * 1000L};
        nanosleep(&moment, nullptr);
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed in round " << round;
        const int now = generationOf("/list.xml");
        ASSERT_GT(now, generation) << "round " << round << "\n" << get("/list.xml");
        generation = now;
        // What the killed saves leave does not pile up.
        ASSERT_LE(namesIn("/").size(), 2u);
    }
}

} // namespace
