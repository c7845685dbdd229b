#pragma once

#include "addressbook/addressstore.h"
#include "controls/combolist.h"
#include "messages/savechanges.h"

#include <array>
#include <QString>
#include <vector>

class Database;

// The entry the address window shows: its first tab's values as read and as the user has
// them now, its cashbook heading and its notes. It reads the entry, takes the user's
// edits and saves what the user changed and nothing else; the window decides when.
class ShownEntry
{
public:
    // The entry's identifier, 0 when none is shown.
    qint32 id() const { return m_id; }
    QString field(int field) const;
    bool flag(int flag) const { return m_values.flags[std::size_t(flag)]; }
    const ComboList &headingList() const { return m_headingList; }
    ComboList &headingList() { return m_headingList; }
    QString notes() const { return m_notes; }
    // Moves on whenever the values, flags or notes change other than by the user's
    // own edits, which the view already shows.
    quint64 shownRevision() const { return m_shownRevision; }

    // Reads the entry; with flaggedOnly only one flagged for the wage book. False when
    // there is no such entry: the one shown stays. The caller has saved the one shown.
    bool show(const AddressStore &store, qint32 id, bool flaggedOnly);
    // Reads the notes of the entry shown.
    void loadNotes(const AddressStore &store);
    // Shows no entry: nothing is written until the next one is shown.
    void clear();
    void clearNotes();

    void edit(int field, const QString &text);
    // A value put in its normal form by the logic (an IRD number with its dashes): shown
    // again, and saved as a change of the user's.
    void normalise(int field, const QString &text);
    // Whether the box differs from the entry as read.
    bool edited(int field) const;
    void setFlag(int flag, bool on);
    // The name and last name boxes cannot be left empty: leaving one empty puts back
    // the text it had when the user entered it.
    void focusIn(int field);
    void focusOut(int field);
    void chooseHeading(int index);
    void editNotes(const QString &text) { m_notes = text; }
    // An empty last name becomes the name's last word.
    void fillLastName();

    // Saves the user's changes, and the notes when withNotes, in one transaction (Saved
    // when there are none); a value its column refuses is reported once and kept on
    // screen. After Discarded the entry is as read; after Kept as the user left it.
    SaveOutcome save(Database &db, bool withNotes);

    // The text after the last blank among all characters but the final one; the whole
    // name when there is none.
    static QString lastWord(const QString &name);

private:
    [[noreturn]] void throwConflict(const std::vector<AddressStore::Conflict> &conflicts);
    std::vector<int> changedFields() const;
    std::vector<int> changedFlags() const;
    void saveHeading(AddressStore &store);

    qint32 m_id = 0;
    AddressStore::Values m_values;
    AddressStore::Values m_stored;
    // Values the column refused: reported once, kept on screen, not retried
    // until the user edits them.
    std::array<bool, AddressFields::Count> m_refused{};
    QString m_protectedText; // the name or last name box: its text on focus in

    ComboList m_headingList;
    bool m_headingChosen = false;  // picked by the user since the entry was shown
    int m_storedHeadingIndex = -1; // the list's item for the entry as it was read
    QString m_notes;
    QString m_storedNotes; // as read, to write them only when the user changed them
    quint64 m_shownRevision = 0;
};
