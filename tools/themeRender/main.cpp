// Renders the theme's pictures into the device image: hxThemeRender THEME_FOLDER IMAGE_ROOT
#include "tools/themeRender/PictureMaker.h"
#include <QCoreApplication>
#include <cstdio>

namespace {

int Complain(const QString& error)
{
    std::fprintf(stderr, "hxThemeRender: %s\n", qPrintable(error));
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 3)
        return Complain("usage: hxThemeRender THEME_FOLDER IMAGE_ROOT");

    ThemeManifest manifest;
    if (!manifest.Load(arguments[1] + "/theme.json"))
        return Complain(manifest.Error());
    PictureMaker maker(arguments[1], manifest.Colours());
    for (const ThemePicture& picture : manifest.Pictures()) {
        if (!maker.Make(picture, arguments[2] + picture.devicePath))
            return Complain(picture.devicePath + ": " + maker.Error());
    }
    return 0;
}
