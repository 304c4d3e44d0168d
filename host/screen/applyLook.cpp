#include "host/look/focusRing.h"
#include "host/look/hxStyle.h"
#include "host/look/look.h"
#include "host/screen/windowStack.h"
#include "support/file/deviceRoot.h"
#include "support/file/path.h"
#include <QApplication>
#include <QEvent>
#include <fontconfig/fontconfig.h>

namespace {

const char kFonts[] = "/phone/resource/fonts/fonts.conf";

// A phone has no pointer that could rest over a widget.
class TipStopper : public QObject
{
public:
    using QObject::QObject;
    bool eventFilter(QObject*, QEvent* event) override
    {
        return event->type() == QEvent::ToolTip || event->type() == QEvent::WhatsThis;
    }
};

// Made here, because the library's own way reads every description of the machine's fonts as well.
void useFonts(const char* file)
{
    FcConfig* config = FcConfigCreate();
    if (FcConfigParseAndLoad(config, reinterpret_cast<const FcChar8*>(file), FcTrue))
        FcConfigSetCurrent(config);
    FcConfigDestroy(config);
}

} // namespace

void hostPrepareFonts()
{
    if (!pathFileExist(kFonts))
        return;
    qputenv("FONTCONFIG_FILE", devicePath(kFonts).GetText()); // for the processes that it starts
    useFonts(devicePath(kFonts).GetText());
}

void hostApplyLook(QApplication& application)
{
    application.setStyle(new hxStyle);
    application.setFont(look::font(look::kTextSize));
    QApplication::setEffectEnabled(Qt::UI_AnimateCombo, false);
    QApplication::setEffectEnabled(Qt::UI_AnimateTooltip, false);
    application.installEventFilter(new TipStopper(&application));
    windowStack::instance();
    new focusRing(&application);
}
