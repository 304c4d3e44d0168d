#pragma once
#include "support/host/object.h"

// What makes requests of questions, and records of replies. A member of its controller.
class MVCBusinessLogic : public chObject
{
public:
    ~MVCBusinessLogic() override;
};
