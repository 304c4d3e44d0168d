// What the device image says about its versions is what was built, and what the build found.
#include "tests/house/sourceTree.h"
#include "tests/kit/plain/deviceFolder.h"
#include <QDir>
#include <QMap>
#include <QProcess>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace {

QMap<QString, QString> listed()
{
    QMap<QString, QString> versions;
    QXmlStreamReader xml(readText(imagePath("/phone/resource/module-version.xml")));
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("Module"))
            versions[xml.attributes().value("name").toString()] =
                xml.attributes().value("version").toString();
    }
    return versions;
}

// The version in the name of a built library.
QString builtVersion(const QString& library)
{
    const QString prefix = library + ".so.";
    const QStringList files =
        QDir(imagePath("/../lib")).entryList({prefix + "*.*"}, QDir::Files | QDir::NoSymLinks);
    return files.isEmpty() ? QString() : files.last().mid(prefix.size());
}

QString packageVersion(const QString& package)
{
    QProcess tool;
    tool.start("pkg-config", {"--modversion", package});
    EXPECT_TRUE(tool.waitForFinished());
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

} // namespace

TEST(Versions, OfThePhonesOwnModulesAreThoseOfTheBuiltLibraries)
{
    const QMap<QString, QString> versions = listed();
    ASSERT_NE(builtVersion("libNUX").toStdString(), "");
    EXPECT_EQ(versions["NUX"].toStdString(), builtVersion("libNUX").toStdString());
    for (const char* name : {"hxPhone", "hxSetting", "hxHost", "hxWeb", "hxMovie", "hxMedia", "imageScale"})
        EXPECT_EQ(versions[name].toStdString(), versions["NUX"].toStdString()) << name;
    const QString file = readText(imagePath("/phone/resource/version.ini"));
    EXPECT_TRUE(file.contains("strRomVersion=" + versions["NUX"] + "\n")) << qPrintable(file);
    EXPECT_TRUE(file.contains("strHardware=")) << qPrintable(file);
}

TEST(Versions, OfLibrariesAreThoseThatTheBuildLinks)
{
    const std::pair<const char*, const char*> packages[] = {{"Qt", "Qt6Core"},
                                                            {"Qt WebEngine", "Qt6WebEngineCore"},
                                                            {"GStreamer", "gstreamer-1.0"},
                                                            {"libjpeg-turbo", "libjpeg"},
                                                            {"libpng", "libpng"},
                                                            {"ISA-L", "libisal"},
                                                            {"Expat", "expat"},
                                                            {"libcurl", "libcurl"},
                                                            {"libxcrypt", "libxcrypt"}};
    const QMap<QString, QString> versions = listed();
    for (const auto& [name, package] : packages) {
        EXPECT_NE(versions[name].toStdString(), "") << name;
        EXPECT_EQ(versions[name].toStdString(), packageVersion(package).toStdString()) << name;
    }
}

TEST(Versions, StandUnderTheirRootAndTheHardwareHasItsName)
{
    QXmlStreamReader xml(readText(imagePath("/phone/resource/module-version.xml")));
    ASSERT_TRUE(xml.readNextStartElement());
    EXPECT_EQ(xml.name().toString().toStdString(), "Version");
    const QStringList lines = readText(imagePath("/phone/resource/version.ini")).split('\n');
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[0].toStdString(), "[Version]");
    EXPECT_TRUE(lines[2].startsWith("strHardware=")) << qPrintable(lines[2]);
    EXPECT_GT(lines[2].size(), QString("strHardware=").size());
}

TEST(Versions, ThatCannotBeWrittenAreTold)
{
    QProcess tool;
    tool.start(kit::program("hxVersionList"), {"/no/such/folder", "1.2.3", "Board 7"});
    EXPECT_TRUE(tool.waitForFinished());
    EXPECT_EQ(tool.exitCode(), 1);
    EXPECT_TRUE(tool.readAllStandardError().contains("/no/such/folder/version.ini"));
}
