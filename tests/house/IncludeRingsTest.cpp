// No rings: neither do rooms use each other, nor the classes of a room. A class is its pair of files, so what
// its source includes counts as well as what its header does.
#include "tests/house/sourceTree.h"
#include <QMap>
#include <QSet>
#include <gtest/gtest.h>

namespace {

using Graph = QMap<QString, QSet<QString>>;

// Classes and whole rooms that still need each other. The list only gets shorter: the last test asks for it.
const QStringList StillInRings = {
    "frame/modSetting",
    "frame/pageTable", // a page row opens a menu by the entry that says so in the log
    "host/desktop/directorySearch",
    "host/desktop/ldapCopySearch", // the search that is there without another
    "host/services/phone/phoneService",
    "host/services/phone/phoneSimulation", // the backend likewise
    "host/services/players/speaker",
    "host/services/players/filmSound",
    "host/services/transfers/httpService",
    "host/services/transfers/httpTransfer",
    "host/services/messages", // threads, their queues and their receivers
    "support/file",           // saving keeps aside, and keeping aside saves
    "support/xml",            // the nodes of one tree
};

QString classOf(const QString& path)
{
    return path.section('.', 0, -2);
}

QString roomOf(const QString& path)
{
    return path.section('/', 0, -2);
}

struct Edge
{
    QString file;
    QString include;
};

const QVector<Edge>& allIncludes()
{
    static const QVector<Edge> edges = [] {
        QVector<Edge> found;
        const QStringList folders = phoneRooms() + QStringList{"tools", "tests", "bench"};
        for (const SourceFile& file : sourceFiles(folders, {".cpp", ".h"})) {
            for (const Include& include : includesOf(file))
                found.append({file.path, include.path});
        }
        return found;
    }();
    return edges;
}

Graph graphOfRooms()
{
    Graph graph;
    for (const Edge& edge : allIncludes()) {
        if (roomOf(edge.file) != roomOf(edge.include))
            graph[roomOf(edge.file)].insert(roomOf(edge.include));
    }
    return graph;
}

// Each within its room.
Graph graphOfClasses()
{
    Graph graph;
    for (const Edge& edge : allIncludes()) {
        if (roomOf(edge.file) == roomOf(edge.include) && classOf(edge.file) != classOf(edge.include))
            graph[classOf(edge.file)].insert(classOf(edge.include));
    }
    return graph;
}

// All that can be reached from there.
QSet<QString> reached(const Graph& graph, const QString& from)
{
    QSet<QString> seen;
    QStringList open = graph.value(from).values();
    while (!open.isEmpty()) {
        const QString next = open.takeLast();
        if (seen.contains(next))
            continue;
        seen.insert(next);
        open += graph.value(next).values();
    }
    return seen;
}

// Who comes back to itself.
QStringList inRings(const Graph& graph)
{
    QStringList names;
    for (const QString& name : graph.keys()) {
        if (reached(graph, name).contains(name))
            names.append(name);
    }
    return names;
}

} // namespace

TEST(IncludeRings, TheSearchFindsARingAndOnlyThat)
{
    const Graph ring = {{"a", {"b"}}, {"b", {"c"}}, {"c", {"b", "d"}}, {"e", {"a", "d"}}};
    EXPECT_EQ(inRings(ring), (QStringList{"b", "c"}));
    EXPECT_EQ(inRings({{"a", {"b", "c"}}, {"b", {"c"}}}), QStringList());
}

TEST(IncludeRings, NoTwoRoomsIncludeEachOther)
{
    const Graph rooms = graphOfRooms();
    EXPECT_GT(rooms.size(), 20);
    EXPECT_EQ(inRings(rooms).join(" ").toStdString(), "");
}

TEST(IncludeRings, NoTwoClassesOfARoomIncludeEachOther)
{
    const Graph classes = graphOfClasses();
    EXPECT_GT(classes.size(), 100);
    for (const QString& name : inRings(classes)) {
        const bool known = StillInRings.contains(name) || StillInRings.contains(roomOf(name));
        EXPECT_TRUE(known) << qPrintable(name) << " needs a class that needs it";
    }
}

TEST(IncludeRings, WhatIsInNoRingAnyMoreLeavesTheList)
{
    const QStringList classes = inRings(graphOfClasses());
    QStringList found = classes;
    for (const QString& name : classes)
        found.append(roomOf(name));
    for (const QString& name : StillInRings)
        EXPECT_TRUE(found.contains(name)) << qPrintable(name);
}
