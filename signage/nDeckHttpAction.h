#pragma once
// The transfer of one layout or media file.
#include "support/host/http.h"

class nDeckHttpAction : public HttpAction
{
public:
    ~nDeckHttpAction() override;

    chString strFile;       // bare name, without a suffix
    chString strMd5;        // as the schedule tells it
    unsigned int nTurn = 0; // which request for the file this is; 0: nobody counts
};
