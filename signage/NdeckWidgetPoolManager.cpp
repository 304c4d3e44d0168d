#include "signage/NdeckWidgetPoolManager.h"
#include "support/host/trace.h"
#include <QApplication>
#include <QWidget>

namespace {

unsigned shortAddress(const void* object)
{
    return unsigned(reinterpret_cast<quintptr>(object));
}

} // namespace

QWidget* NdeckWidgetPoolManager::Take(bool (*fits)(QWidget* widget))
{
    for (tagNdeckWidget& record : m_list) {
        if (record.bInUse || !fits(record.pWidget))
            continue;
        record.bInUse = true;
        return record.pWidget;
    }
    return nullptr;
}

void NdeckWidgetPoolManager::Add(QWidget* widget)
{
    const auto place = m_list.append(tagNdeckWidget{widget, 0, true});
    nuxTrace(TRACE_DETAIL, "!!!push_back( WidegtInfo:%x; typeWidget:%x) list-size(%d)", shortAddress(&*place),
             shortAddress(widget), m_list.size());
}

void NdeckWidgetPoolManager::DestroyWidget(QWidget* widget)
{
    if (!widget)
        return;
    for (tagNdeckWidget& record : m_list) {
        if (record.pWidget != widget)
            continue;
        record.bInUse = false;
        ++record.nReleases;
        break;
    }
    widget->setParent(nullptr);
}

void NdeckWidgetPoolManager::ClearWidget()
{
    for (tagNdeckWidget& record : m_list) {
        if (record.bInUse)
            continue;
        record.pWidget->setParent(nullptr);
        record.pWidget->setAttribute(Qt::WA_DeleteOnClose);
        record.pWidget->close();
    }
    m_list.clear();
}

int NdeckWidgetPoolManager::GetInUseCount() const
{
    int count = 0;
    for (const tagNdeckWidget& record : m_list)
        count += record.bInUse ? 1 : 0;
    return count;
}

const tagNdeckWidget* NdeckWidgetPoolManager::Find(const QWidget* widget) const
{
    for (const tagNdeckWidget& record : m_list) {
        if (record.pWidget == widget)
            return &record;
    }
    return nullptr;
}

// Ends with the event loop, while widgets can still be deleted.
NdeckWidgetPoolManager& GetNdeckWidgetPoolManager()
{
    static NdeckWidgetPoolManager* manager = [] {
        auto* pool = new NdeckWidgetPoolManager;
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, [pool] { pool->ClearWidget(); });
        return pool;
    }();
    return *manager;
}
