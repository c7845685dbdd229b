#include "controls/windowlogic.h"

void WindowLogic::markChanged()
{
    if (m_batchDepth == 0)
        announce();
}

void WindowLogic::announce()
{
    ++m_revision;
    emit changed();
}
