#pragma once

#include <functional>
#include <memory>
#include <QObject>

// The address book window as the start-up code and CvAddress see it. The real window
// (a QWidget in the address book's ui target) implements it through a small adapter, so
// that this layer needs no widgets and tests can stand in a window of their own.
//
// Lifecycle, as the suite's forms behave: the object lives from first reference until the
// process ends; closing the window unloads it, and the next show loads it again.
class AddressWindow : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Runs the load handler unless the window is loaded already: opens the data files and
    // reads the launch globals (LaunchMode, CurrentAddressID, the help globals).
    virtual void load() = 0;
    virtual bool isLoaded() const = 0;

    // Shows the window, loading it first if needed, and returns at once. A window that is
    // already open comes to the front.
    virtual void showModeless() = 0;

    // Shows the window modally, loading it first if needed. Returns when the user has
    // closed it; CurrentAddressID then holds the entry that was current.
    virtual void showModal() = 0;

    // True from a show until the window has closed.
    virtual bool isOpen() const = 0;

signals:
    // Emitted once per show, after the window has closed and unloaded.
    void closed();
};

// Makes the one main window; installed at start-up by the program that has the real window.
using AddressWindowFactory = std::function<std::unique_ptr<AddressWindow>()>;
