#include "controls/ui/syncpass.h"

void SyncPass::run(const std::function<void()> &pass)
{
    if (m_running) {
        m_again = true;
        return;
    }
    do {
        m_again = false;
        m_running = true;
        pass();
        m_running = false;
    } while (m_again);
}
