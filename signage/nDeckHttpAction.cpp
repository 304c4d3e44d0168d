#include "signage/nDeckHttpAction.h"

nDeckHttpAction::~nDeckHttpAction() = default;
