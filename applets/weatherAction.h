#pragma once
#include "support/host/http.h"

// A transfer for a view: an answer, or a picture. User-interface thread.
class WeatherAction : public HttpAction
{
public:
    WeatherAction();
    ~WeatherAction() override;
    // The view ends although it is counted, as a widget does: no transfer knows it any more.
    static void ForgetView(const chObject* view);
    // Pictures that are under way are wanted no more.
    static void AbandonPictures();
    // The view that waits for pictures of that search; null when none does.
    static chObject* ViewOfPictures(unsigned search);
    // Counts the view, and lets go of the one before.
    void SetUiObj(chObject* view);

    chObject* pUiObj = nullptr; // the view that asked, counted
    unsigned nSearch = 0;       // that it is part of
    bool bIsPicture = false;
};
