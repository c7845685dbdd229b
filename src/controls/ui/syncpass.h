#pragma once

#include <functional>

// Copies a logic object's state into a view's widgets. Setting a widget can make
// it report back (a field losing the focus as it is hidden), and the logic then
// changes again: such a call during a pass is not run inside it, but makes the
// pass run once more when it ends.
class SyncPass
{
public:
    void run(const std::function<void()> &pass);
    // True while a pass is setting the widgets: their change signals are the
    // program's, not the user's.
    bool running() const { return m_running; }

private:
    bool m_running = false;
    bool m_again = false;
};
