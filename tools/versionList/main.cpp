// Writes what the phone says about its versions, for the device image: "version.ini", and
// "module-version.xml" with the phone's own modules and the libraries that they use. A library that can be
// asked answers itself; one that the phone loads later is as its headers are.
#include "settings/system/ownModules.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QXmlStreamWriter>
#include <QtWebEngineCore/qtwebenginecoreversion.h>
#include <crypt.h>
#include <curl/curlver.h>
#include <expat.h>
#include <gst/gst.h>
#include <isa-l.h>
#include <jconfig.h>
#include <png.h>

namespace {

#define TEXT_OF(number) #number
#define AS_TEXT(number) TEXT_OF(number)

struct tagModule
{
    QString strName;
    QString strVersion;
};

QString gstreamerVersion()
{
    guint major = 0, minor = 0, micro = 0, nano = 0;
    gst_version(&major, &minor, &micro, &nano);
    return QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(micro);
}

QList<tagModule> modules(const QString& version)
{
    QList<tagModule> all;
    for (const char* name : kOwnModules)
        all.append(tagModule{QString::fromLatin1(name), version});
    const XML_Expat_Version expat = XML_ExpatVersionInfo();
    all.append(tagModule{"Qt", qVersion()});
    all.append(tagModule{"Qt WebEngine", QTWEBENGINECORE_VERSION_STR});
    all.append(tagModule{"GStreamer", gstreamerVersion()});
    all.append(tagModule{"libjpeg-turbo", AS_TEXT(LIBJPEG_TURBO_VERSION)});
    all.append(tagModule{"libpng", png_get_libpng_ver(nullptr)});
    all.append(tagModule{"ISA-L", AS_TEXT(ISAL_MAJOR_VERSION) "." AS_TEXT(ISAL_MINOR_VERSION) "." AS_TEXT(
                                      ISAL_PATCH_VERSION)});
    all.append(
        tagModule{"Expat", QStringLiteral("%1.%2.%3").arg(expat.major).arg(expat.minor).arg(expat.micro)});
    all.append(tagModule{"libcurl", LIBCURL_VERSION});
    all.append(tagModule{"libxcrypt", XCRYPT_VERSION_STR});
    return all;
}

QByteArray moduleFile(const QString& version)
{
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement("Version");
    for (const tagModule& module : modules(version)) {
        xml.writeEmptyElement("Module");
        xml.writeAttribute("name", module.strName);
        xml.writeAttribute("version", module.strVersion);
    }
    xml.writeEndDocument();
    return text;
}

QByteArray versionFile(const QString& version, const QString& hardware)
{
    return QStringLiteral("[Version]\nstrRomVersion=%1\nstrHardware=%2\n").arg(version, hardware).toUtf8();
}

bool write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush())
        return true;
    fprintf(stderr, "hxVersionList: %s: %s\n", qPrintable(path), qPrintable(file.errorString()));
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        fprintf(stderr, "usage: hxVersionList FOLDER VERSION HARDWARE\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const QString version = QString::fromLocal8Bit(argv[2]);
    const bool done =
        write(folder.filePath("version.ini"), versionFile(version, QString::fromLocal8Bit(argv[3]))) &&
        write(folder.filePath("module-version.xml"), moduleFile(version));
    return done ? 0 : 1;
}
