#include "frame/dlgLoadingTip.h"
#include "frame/flushScreen.h"
#include "frame/popupDialog.h"
#include "support/host/image.h"
#include "support/host/language.h"
#include "support/host/ui.h"
#include "ui_dlgLoadingTip.h"
#include <QApplication>
#include <QPointer>

dlgLoadingTip::dlgLoadingTip(QWidget* parent)
    : QDialog(parent, Qt::FramelessWindowHint), ui(new Ui_dlgLoadingTip)
{
    ui->setupUi(this);
    setModal(false);
    QPalette brushes = palette();
    brushes.setBrush(QPalette::Window, QBrush(GetImageManager()->GetImage(HX_THEME("misc/dlg_loading.png"))));
    brushes.setColor(QPalette::WindowText, Qt::white);
    setPalette(brushes);
    setAttribute(Qt::WA_TranslucentBackground); // the picture has round corners
    setAutoFillBackground(true);
    setFontStyle(28, -1, ui->labLoading, false);
    ui->labLoading->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    ui->labLoading->setText("Loading...");
    ui->labLoadingIcon->setPixmap(GetImageManager()->GetImage(HX_THEME("misc/loading.png")));
    qApp->installEventFilter(this);
}

dlgLoadingTip::~dlgLoadingTip()
{
    delete ui;
}

void dlgLoadingTip::SetOwner(QWidget* owner)
{
    setParent(owner, windowFlags());
}

bool dlgLoadingTip::eventFilter(QObject* watched, QEvent* event)
{
    const bool left = event->type() == QEvent::FocusOut || event->type() == QEvent::WindowDeactivate;
    if (watched == this && left) {
        SetOwner(nullptr);
        hide();
    }
    return false;
}

void ShowLoadingTipBox()
{
    // Ends with its owner when that is destroyed while the box is up.
    static QPointer<dlgLoadingTip> tip;
    if (!tip)
        tip = new (std::nothrow) dlgLoadingTip(nullptr);
    if (tip) {
        tip->SetOwner(QApplication::focusWidget());
        tip->setGeometry(192, 157, 416, 166);
        tip->show();
    }
    flushScreen();
}
