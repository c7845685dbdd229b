#pragma once

#include "controls/ui/inputbox.h"

#include <memory>
#include <QWidget>

class Database;
class PayDetailsEditor;
class PayDetailsPanel;

// The pay information page of the address window: the pay details of the
// entry on screen, in the window's own data files. The window loads it when
// an employee is shown and saves it (SaveWageTab) before it moves on.
class WagesTab : public QWidget
{
    Q_OBJECT

public:
    explicit WagesTab(QWidget *parent = nullptr);
    ~WagesTab() override;

    void loadWageTab(Database &suite, qint32 addressId);
    // False when what the page holds could not be saved and the user went back to it.
    bool SaveWageTab();

    PayDetailsEditor &editor() const { return *m_editor; }
    PayDetailsPanel *panel() const { return m_panel; }

private:
    std::unique_ptr<PayDetailsEditor> m_editor;
    PayDetailsPanel *m_panel = nullptr;
    InputBox m_inputBox{this}; // asks why pay changed
};
