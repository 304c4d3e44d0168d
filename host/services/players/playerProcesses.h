#pragma once
// The two player programs, which are started with the phone and kept running. User-interface thread.
#include "host/services/players/keptProcess.h"

class HX_HOST_API playerProcess : public keptProcess
{
public:
    // program: its bare name.
    playerProcess(const QString& program, QObject* parent);
};

// Starts both; they end with the application object.
HX_HOST_API void playerProcessesStart();
