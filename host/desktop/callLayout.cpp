#include "host/desktop/callLayout.h"
#include "host/look/look.h"
#include "support/host/ui.h"
#include "ui_frmCall.h"

namespace callLayout {
namespace {

constexpr int kKeepWeight = -1;
constexpr int kOthersGap = 5;
constexpr QRgb kPale = 0xffd3e0ee;

struct tagPlaces
{
    int nNameSize, nNumberSize, nStateSize, nDurationSize; // of the texts, in pixels
    Qt::Alignment align;                                   // of the first three
    Qt::Alignment durationAlign;
    QRect portrait, name, number, state, duration, marks, others, mute, volume, bar;
};

// About the middle of a part of the screen.
tagPlaces column(const QRect& part)
{
    const int x = part.left();
    const int width = part.width();
    tagPlaces places;
    places.nNameSize = 36;
    places.nNumberSize = places.nStateSize = 20;
    places.nDurationSize = 26;
    places.align = places.durationAlign = Qt::AlignCenter;
    places.portrait = QRect(QPoint(x + (width - kPortrait.width()) / 2, 56), kPortrait);
    places.name = QRect(x, 196, width, 52);
    places.number = QRect(x, 250, width, 30);
    places.state = QRect(x, 290, width, 30);
    places.duration = QRect(x, 322, width, 38);
    places.marks = QRect(part.right() - 71, 46, 72, 72);
    places.mute = QRect(510, 0, 166, 40);
    places.volume = QRect(290, 0, 98, 40);
    places.bar = QRect(398, 5, 100, 30);
    return places;
}

tagPlaces whole()
{
    tagPlaces places = column(QRect(40, 40, 720, 336));
    places.marks = QRect(498, 46, 290, 72);
    places.others = QRect(12, 46, 314, 72);
    return places;
}

tagPlaces beside()
{
    tagPlaces places = column(QRect(14, 40, 276, 336));
    places.others = QRect(304, 42, 480, 22);
    return places;
}

tagPlaces besidePad()
{
    tagPlaces places = column(QRect(14, 40, 406, 312));
    places.marks = QRect(290, 46, 130, 72);
    places.others = QRect(12, 46, 130, 72);
    return places;
}

// What asks is larger, and has buttons below.
tagPlaces asked()
{
    tagPlaces places = whole();
    places.portrait.moveTop(64);
    places.name.setRect(40, 212, 720, 50);
    places.state.setRect(40, 262, 720, 28);
    places.number.setRect(40, 290, 720, 24);
    places.nNumberSize = look::kSmallSize;
    return places;
}

tagPlaces uponPicture()
{
    tagPlaces places;
    places.nNameSize = places.nDurationSize = 26;
    places.nNumberSize = places.nStateSize = look::kSmallSize;
    places.align = Qt::AlignLeft | Qt::AlignVCenter;
    places.durationAlign = Qt::AlignRight | Qt::AlignVCenter;
    places.name = QRect(20, 8, 520, 36);
    places.number = QRect(20, 44, 520, 24);
    places.state = QRect(20, 68, 520, 24);
    places.duration = QRect(548, 8, 232, 36);
    places.marks = QRect(716, 48, 64, 24);
    places.others = QRect(20, 96, 520, 72);
    places.mute = QRect(548, 46, 160, 24);
    places.volume = QRect(20, 312, 98, 40);
    places.bar = QRect(128, 317, 100, 30);
    return places;
}

tagPlaces placesOf(CALL_LAYOUT layout)
{
    switch (layout) {
    case CALL_LAYOUT_BESIDE:
        return beside();
    case CALL_LAYOUT_PAD:
        return besidePad();
    case CALL_LAYOUT_ASKED:
    case CALL_LAYOUT_ASKED_PICTURE:
        return asked();
    case CALL_LAYOUT_PICTURE:
    case CALL_LAYOUT_FULL:
        return uponPicture();
    default:
        return whole();
    }
}

constexpr QRect kPicture(0, 0, look::kScreenWidth, look::kScreenHeight - look::kSoftKeyHeight);
constexpr QRect kFull(0, 0, look::kScreenWidth, look::kScreenHeight);
constexpr QRect kCorner(604, 84, 176, 118);
constexpr QRect kCornerOfFull(604, 20, 176, 118);

void put(QLabel* label, const QRect& place, int size, Qt::Alignment align)
{
    label->setGeometry(place);
    label->setAlignment(align);
    setFontStyle(size, kKeepWeight, label, true);
}

callPicture::SHADE shadeOf(CALL_LAYOUT layout)
{
    return layout == CALL_LAYOUT_FULL            ? callPicture::SHADE_NONE
           : layout == CALL_LAYOUT_ASKED_PICTURE ? callPicture::SHADE_QUESTION
                                                 : callPicture::SHADE_EDGES;
}

} // namespace

void apply(Ui_frmCall& ui, CALL_LAYOUT layout)
{
    const tagPlaces places = placesOf(layout);
    const bool isAsked = layout == CALL_LAYOUT_ASKED || layout == CALL_LAYOUT_ASKED_PICTURE;
    const bool isFull = layout == CALL_LAYOUT_FULL;
    const bool isUpon = isFull || layout == CALL_LAYOUT_PICTURE;
    put(ui.labName, places.name, places.nNameSize, places.align);
    put(ui.labNumber, places.number, places.nNumberSize, places.align);
    put(ui.labState, places.state, places.nStateSize, places.align);
    put(ui.labDuration, places.duration, places.nDurationSize, places.durationAlign);
    QPalette palette = ui.labState->palette();
    palette.setColor(QPalette::WindowText, look::colour(isAsked ? kPale : look::kTextOnBar));
    ui.labState->setPalette(palette);
    ui.labNumber->setPalette(palette);
    ui.labPicture->setGeometry(places.portrait);
    ui.wgtMarks->setGeometry(places.marks);
    ui.wgtMarks->setCodecsShown(!isUpon);
    ui.labOthers->setGeometry(places.others);
    ui.labMute->setGeometry(places.mute);
    ui.labVolume->setGeometry(places.volume);
    ui.barVolume->setGeometry(places.bar);
    ui.wgtPicture->setGeometry(isFull ? kFull : kPicture);
    ui.wgtPicture->setShade(shadeOf(layout));
    ui.wgtPicture->setVisible(hasPicture(layout));
    ui.wgtCorner->setGeometry(isFull ? kCornerOfFull : kCorner);
    ui.labPicture->setVisible(!hasPicture(layout));
    ui.labLine->setVisible(!isUpon);
    ui.labClock->setVisible(!isUpon);
    QWidget* const texts[] = {ui.labName,  ui.labNumber, ui.labState, ui.labDuration,
                              ui.wgtMarks, ui.labOthers, ui.labMute};
    for (QWidget* text : texts)
        text->setVisible(!isFull);
}

void putOthers(Ui_frmCall& ui)
{
    const int below = ui.labState->geometry().bottom() + kOthersGap;
    ui.labOthers->move(ui.labOthers->x(), ui.labState->text().isEmpty() ? ui.labState->y() : below);
    const QString others = ui.labOthers->text();
    const int lines = others.isEmpty() ? 0 : int(others.count('\n')) + 1;
    ui.wgtPicture->setTextsAbove(ui.labOthers->y() + lines * ui.labOthers->fontMetrics().lineSpacing());
}

} // namespace callLayout
