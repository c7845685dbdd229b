#pragma once

#include <functional>
#include <QString>

class Database;

enum class SaveOutcome {
    Saved,     // everything the work wrote is stored
    Discarded, // nothing was stored, and the user chose to let the change go
    Kept       // nothing was stored; the user goes back to the change
};

// Runs what one user action stores as one transaction on db (the main data file with
// the wage file attached, so both files commit together or not at all). When it
// fails, nothing of it is stored and the user is asked once, in one message naming
// what was not saved and why: Retry runs the work again, Discard lets the change go,
// Cancel goes back to it. When the work throws ChangedByAnother with a way to go on,
// the user is asked instead whose values stand (Keep Mine, Take Theirs, or Cancel),
// and the work runs again. The caller moves on, closes or reloads only after Saved
// or Discarded.
SaveOutcome saveChanges(Database &db, const QString &what, const std::function<void()> &work);
