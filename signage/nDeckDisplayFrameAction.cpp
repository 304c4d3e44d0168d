#include "signage/nDeckDisplayFrameAction.h"

nDeckDisplayFrameAction::~nDeckDisplayFrameAction() = default;
