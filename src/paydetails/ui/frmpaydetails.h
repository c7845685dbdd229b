#pragma once

#include "controls/ui/inputbox.h"

#include <memory>
#include <QDialog>

class QPushButton;
class FormEvents;
class PayDetailsEditor;
class PayDetailsPanel;

// The modal pay details dialog. There is no cancel: every way of closing it
// (OK, the close box, Escape) asks the editor, which saves, or keeps the
// dialog open when the KiwiSaver rate is still to be chosen.
class frmPaydetails : public QDialog
{
    Q_OBJECT

public:
    explicit frmPaydetails(qint32 addressId, QWidget *parent = nullptr);
    ~frmPaydetails() override;

    // Shows the dialog for the entry and returns once it has closed and saved.
    static void showFor(qint32 addressId, QWidget *parent = nullptr);

    PayDetailsEditor &editor() const { return *m_editor; }
    PayDetailsPanel *panel() const { return m_panel; }

    void done(int result) override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void syncCaptions();

    std::unique_ptr<PayDetailsEditor> m_editor;
    qint32 m_addressId;
    bool m_loaded = false;
    PayDetailsPanel *m_panel = nullptr;
    QPushButton *m_ok = nullptr;
    std::unique_ptr<FormEvents> m_events; // Enter on OK moves on
    InputBox m_inputBox{this};            // asks why pay changed
};
