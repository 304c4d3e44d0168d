#include "host/desktop/displayPlace.h"
#include "host/look/look.h"
#include "support/host/module.h"
#include <QWidget>

namespace {

constexpr int kMount = 6;
constexpr QRgb kMountFill = 0x33ffffff;
const char* const kFrame = "frmNdeckFrame";

} // namespace

displayPlace::displayPlace(E_NDECKWINDOW_TYPE type, QWidget* parent, const QRect& rect)
    : m_eType(type), m_pParent(parent), m_rect(rect)
{
}

bool displayPlace::call(int show) const
{
    const auto windowDisplay = hostModule().windowDisplay;
    return windowDisplay && windowDisplay(show, m_eType, m_pParent, m_rect);
}

bool displayPlace::show()
{
    m_bShown = call(1);
    return m_bShown;
}

void displayPlace::hide()
{
    m_bShown = false;
    if (call(0) || !hasFrame())
        return;
    frame()->hide();
}

QWidget* displayPlace::frame() const
{
    return m_pParent ? m_pParent->findChild<QWidget*>(kFrame) : nullptr;
}

void displayPlace::paintMount(QPainter& painter) const
{
    look::paintBox(painter, m_rect.adjusted(-kMount, -kMount, kMount, kMount), look::kPanelCorner,
                   kMountFill);
}
