#include "controls/windowlogic.h"

void WindowLogic::markChanged()
{
    if (m_batchDepth == 0)
        emit changed();
}
