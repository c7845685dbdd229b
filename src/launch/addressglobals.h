#pragma once

#include "launch/addresswindow.h"
#include "launch/launchcontext.h"

#include <QString>

class Settings;

// The program's launch state, shared by the entry routine, CvAddress, the address book
// window and the pay details editor. These are the only process-wide objects of the module;
// reset() puts them back as at process start, for tests.
namespace AddressGlobals {

// The launch state the window is given; the names below are its fields under the names
// the suite's programs know.
LaunchContext &context();
extern qint16 &LaunchMode;
extern qint32 &CurrentAddressID;
extern bool &LaunchModal;
extern bool &LaunchForWagebook;
extern QString &helpModuleName;
extern qint32 &helpContextId;
extern QString &helpFilePath;

// The number registered for the wage book's message; 0 until GetWagebookMessageId asks.
extern quint32 wagebookMessageId;
// How long the reply to the wage book may take before the sender gives up.
extern int wagebookReplyTimeoutMs;
inline constexpr int DefaultWagebookReplyTimeoutMs = 5000;

// The shared Settings instance, created on first need.
bool hasSettings();
Settings &settings();

// The main window is made through a factory so that the real window plugs in from the top
// of the layer order. Without a factory, referring to the window raises a run-time error.
void setWindowFactory(AddressWindowFactory factory);
bool hasWindowFactory();
bool hasMainWindow();
AddressWindow &mainWindow();
// Destroys the window, closing it if open; the next reference creates a new one.
void releaseMainWindow();

void reset();

} // namespace AddressGlobals

// The application title shown by the task list (the platform's App.Title).
void setApplicationTitle(const QString &title);
