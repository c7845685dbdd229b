#pragma once

#include <QString>

// The reply to the wage book. On Windows the wage book is a window captioned "Wagebook"
// that waits for a registered window message. Here it is a local socket named after that
// caption in the user's runtime folder; a notification is one line,
//     <message name> <wParam> <lParam>\n
// answered by one line once the wage book has handled it.

inline constexpr char WagebookCaption[] = "Wagebook";
inline constexpr char WagebookMessageName[] = "MSG_TESTMESSAGE";

// Opens the address book modally in employee mode on addressId, then writes back the entry
// that was current when the window closed and sends it to the wage book.
void ShowEmployeeForWagebook(qint32 &addressId);

// The number registered for "MSG_TESTMESSAGE", cached after the first call.
quint32 GetWagebookMessageId();

// The platform's registration by name: every program that registers a name gets the same
// number (0xC000 to 0xFFFF, case ignored). Here it is derived from the name.
quint32 registerWindowMessage(const QString &name);

// $XDG_RUNTIME_DIR/corvane, else a folder of this user's under the temp folder. Only a
// folder that this user owns and nobody else may enter is used, so no other user can
// listen in the wage book's place.
QString wagebookFolder();
QString wagebookSocketPath();
// Creates the folder (mode 0700) when missing; true when it is there and private.
bool makeWagebookFolder();
bool wagebookFolderIsPrivate();

// Sends message (a number registered in this process) to the wage book and waits until it
// has been handled, at most AddressGlobals::wagebookReplyTimeoutMs. Returns false when no
// wage book listens or none answered in time; neither is an error.
bool sendWagebookMessage(quint32 message, qint32 wParam, qint32 lParam);
