#include "applets/weatherAction.h"
#include "support/host/trace.h"
#include <QSet>

namespace {

QSet<WeatherAction*>& theActions()
{
    static QSet<WeatherAction*>* actions = new QSet<WeatherAction*>; // outlives those of statics
    return *actions;
}

} // namespace

WeatherAction::WeatherAction()
{
    theActions().insert(this);
}

WeatherAction::~WeatherAction()
{
    chTraceStack trace("~WeatherAction");
    theActions().remove(this);
    SetUiObj(nullptr);
}

void WeatherAction::SetUiObj(chObject* view)
{
    if (view)
        view->AddRef();
    if (pUiObj)
        pUiObj->Release();
    pUiObj = view;
}

void WeatherAction::ForgetView(const chObject* view)
{
    for (WeatherAction* action : std::as_const(theActions())) {
        if (action->pUiObj == view)
            action->SetUiObj(nullptr);
    }
}

void WeatherAction::AbandonPictures()
{
    for (WeatherAction* action : std::as_const(theActions())) {
        if (!action->bIsPicture)
            continue;
        action->Abandon();
        action->SetUiObj(nullptr);
    }
}

chObject* WeatherAction::ViewOfPictures(unsigned search)
{
    for (const WeatherAction* action : std::as_const(theActions())) {
        if (action->bIsPicture && action->nSearch == search && action->pUiObj)
            return action->pUiObj;
    }
    return nullptr;
}
