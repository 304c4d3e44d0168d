#include "host/desktop/lineSeizure.h"
#include "host/desktop/frmDial.h"

void lineSeize(int line)
{
    dialScreenOpen(QString(), line);
}
