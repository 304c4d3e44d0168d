#pragma once
// A line of white text on a dark page, shrunk rather than cut.
#include "host/widgets/fittedLabel.h"

class lightLabel : public fittedLabel
{
    Q_OBJECT
public:
    explicit lightLabel(QWidget* parent = nullptr);
};
