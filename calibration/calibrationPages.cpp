#include "calibration/calibrationPages.h"
#include "calibration/dlgCalibration.h"
#include "frame/pageClass.h"

HX_PAGE(dlgCalibration);

void calibrationPages() {}
