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
    if (isShown())
        return true;
    hide();
    m_bShown = call(1);
    return m_bShown;
}

void displayPlace::hide()
{
    const bool isHere = m_pParent ? hasFrame() : m_bShown;
    m_bShown = false;
    if (isHere && !call(0) && m_pParent)
        frame()->hide();
}

bool displayPlace::hasFrame() const
{
    return frame() && !frame()->isHidden();
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
