#include "support/host/mvcView.h"

MVCView::MVCView(const char* name) : strViewName(name) {}

MVCView::~MVCView() = default;
