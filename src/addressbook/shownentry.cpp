#include "addressbook/shownentry.h"

#include "data/changedbyanother.h"
#include "messages/errorreport.h"
#include "messages/savechanges.h"

using namespace AddressFields;

namespace {

bool isProtected(int field)
{
    return field == BusName || field == ContactLastName;
}

} // namespace

QString ShownEntry::field(int field) const
{
    return isField(field) ? m_values.fields[std::size_t(field)] : QString();
}

bool ShownEntry::show(const AddressStore &store, qint32 id, bool flaggedOnly)
{
    const std::optional<AddressStore::Entry> entry = store.readEntry(id);
    if (!entry || (flaggedOnly && !entry->values.flags[WageFlag]))
        return false;
    m_values = m_stored = entry->values;
    ++m_shownRevision;
    m_refused = {};
    m_id = id;
    // A heading that is no longer listed leaves the list as it was.
    if (m_headingList.count() > 0) {
        const QVariant &account = entry->headingAccount;
        const qint64 heading = account.isNull() ? 0 : account.toLongLong();
        for (int i = 0; i < m_headingList.count(); ++i) {
            if (i == 0 ? heading == 0 : m_headingList.itemData(i) == heading) {
                m_headingList.setListIndex(i);
                break;
            }
        }
    }
    m_storedHeadingIndex = m_headingList.listIndex();
    m_headingChosen = false;
    return true;
}

void ShownEntry::loadNotes(const AddressStore &store)
{
    ++m_shownRevision;
    m_notes = m_storedNotes = store.readNotes(m_id);
}

void ShownEntry::clear()
{
    ++m_shownRevision;
    m_values = {};
    m_stored = {};
    m_refused = {};
    m_id = 0;
    m_headingList.setListIndex(-1);
    m_headingList.setText(QString());
    m_headingChosen = false;
}

void ShownEntry::clearNotes()
{
    ++m_shownRevision;
    m_notes.clear();
    m_storedNotes.clear();
}

void ShownEntry::edit(int field, const QString &text)
{
    if (!isField(field))
        return;
    m_values.fields[std::size_t(field)] = text;
    m_refused[std::size_t(field)] = false;
}

void ShownEntry::normalise(int field, const QString &text)
{
    if (!isField(field) || m_values.fields[std::size_t(field)] == text)
        return;
    edit(field, text);
    ++m_shownRevision;
}

bool ShownEntry::edited(int field) const
{
    return isField(field) &&
           m_values.fields[std::size_t(field)] != m_stored.fields[std::size_t(field)];
}

void ShownEntry::setFlag(int flag, bool on)
{
    m_values.flags[std::size_t(flag)] = on;
}

void ShownEntry::focusIn(int field)
{
    if (isProtected(field))
        m_protectedText = m_values.fields[std::size_t(field)];
}

void ShownEntry::focusOut(int field)
{
    if (isProtected(field) && m_values.fields[std::size_t(field)].isEmpty()) {
        m_values.fields[std::size_t(field)] = m_protectedText;
        ++m_shownRevision;
    }
}

void ShownEntry::chooseHeading(int index)
{
    if (index < -1 || index >= m_headingList.count())
        return;
    m_headingList.setListIndex(index);
    m_headingChosen = true;
}

void ShownEntry::fillLastName()
{
    if (m_id != 0 && m_values.fields[ContactLastName].isEmpty()) {
        m_values.fields[ContactLastName] = lastWord(m_values.fields[BusName]);
        ++m_shownRevision;
    }
}

QString ShownEntry::lastWord(const QString &name)
{
    const qsizetype blank = name.left(qMax<qsizetype>(name.size() - 1, 0)).lastIndexOf(u' ');
    return blank < 0 ? name : name.mid(blank + 1);
}

// What the user changed, but for values refused until edited again.
std::vector<int> ShownEntry::changedFields() const
{
    std::vector<int> fields;
    for (std::size_t i = 0; i < m_values.fields.size(); ++i) {
        if (!m_refused[i] && m_values.fields[i] != m_stored.fields[i])
            fields.push_back(int(i));
    }
    return fields;
}

std::vector<int> ShownEntry::changedFlags() const
{
    std::vector<int> flags;
    for (std::size_t f = 0; f < m_values.flags.size(); ++f) {
        if (m_values.flags[f] != m_stored.flags[f])
            flags.push_back(int(f));
    }
    return flags;
}

// Another user changed values this save would overwrite: the user chooses, and the save
// runs again over their values (Keep Mine) or with theirs shown and kept (Take Theirs).
void ShownEntry::throwConflict(const std::vector<AddressStore::Conflict> &conflicts)
{
    const auto caption = [](int field) {
        if (field < 0)
            return QStringLiteral("Notes");
        if (field == BusAddress2 || field == BusAddress3)
            return QStringLiteral("Street Address line %1").arg(field - BusAddress1 + 1);
        if (field == TaxNumber)
            return QStringLiteral("Tax number");
        QString c = QString(table[std::size_t(field)].caption);
        return c.remove(QStringLiteral(" :"));
    };
    const auto shown = [](const QString &text) {
        const QString line = text.simplified();
        if (line.isEmpty())
            return QStringLiteral("(empty)");
        return line.size() > 60 ? line.left(57) + QStringLiteral("...") : line;
    };
    std::vector<ChangedByAnother::Difference> differences;
    for (const AddressStore::Conflict &c : conflicts) {
        const QString &mine = c.field < 0 ? m_notes : m_values.fields[std::size_t(c.field)];
        differences.push_back({caption(c.field), shown(mine), shown(c.theirs)});
    }
    throw ChangedByAnother(
        QStringLiteral("AddressBook"),
        QStringLiteral("Someone else changed this entry since it was shown."),
        std::move(differences), [this, conflicts](bool keepMine) {
            ++m_shownRevision;
            for (const AddressStore::Conflict &c : conflicts) {
                QString &read = c.field < 0 ? m_storedNotes : m_stored.fields[std::size_t(c.field)];
                QString &mine = c.field < 0 ? m_notes : m_values.fields[std::size_t(c.field)];
                read = c.theirs; // seen now: the next save writes over it, or leaves it
                if (!keepMine)
                    mine = c.theirs;
            }
        });
}

void ShownEntry::saveHeading(AddressStore &store)
{
    const int index = m_headingList.listIndex();
    if (index == 0 && m_headingList.text() == u"None")
        store.writeHeading(m_id, QVariant());
    else if (index >= 1 && m_headingList.itemData(index) >= 1)
        store.writeHeading(m_id, m_headingList.itemData(index));
}

SaveOutcome ShownEntry::save(Database &db, bool withNotes)
{
    if (m_id == 0)
        return SaveOutcome::Saved;
    const bool notesChanged = withNotes && m_notes != m_storedNotes;
    const std::vector<int> fields = changedFields();
    const std::vector<int> flags = changedFlags();
    // Nothing the user did not change is written.
    if (fields.empty() && flags.empty() && !m_headingChosen && !notesChanged)
        return SaveOutcome::Saved;
    const QString name = m_stored.fields[BusName];
    AddressStore::Written written;
    // Both parts are checked before the user is asked, once; what was written is then
    // rolled back with the rest.
    std::vector<AddressStore::Conflict> conflicts;
    const auto conflicted = [&conflicts](const std::vector<AddressStore::Conflict> &found) {
        conflicts.insert(conflicts.end(), found.begin(), found.end());
    };
    const SaveOutcome outcome =
        saveChanges(db, name.isEmpty() ? QStringLiteral("this entry") : name, [&] {
            AddressStore store(db);
            conflicts.clear();
            written = store.writeEntry(m_id, m_values, m_stored, conflicted, fields, flags);
            if (m_headingChosen)
                saveHeading(store);
            if (notesChanged)
                store.writeNotes(m_id, m_notes, m_storedNotes, conflicted);
            if (!conflicts.empty())
                throwConflict(conflicts);
        });
    // Told once the save is over, as the bound data source tells its own: a message
    // shown inside the transaction would hold both files while the user reads it.
    for (const AddressStore::Refusal &r : written.refused) {
        m_refused[std::size_t(r.field)] = true;
        showErrorReport(r.error, ErrorOrigin::PrimaryRsError,
                        QStringLiteral("Error %1 Error").arg(r.error.number()));
    }
    switch (outcome) {
    case SaveOutcome::Saved:
        for (int i : written.fields)
            m_stored.fields[std::size_t(i)] = m_values.fields[std::size_t(i)];
        m_stored.flags = m_values.flags;
        m_storedHeadingIndex = m_headingList.listIndex();
        m_headingChosen = false;
        if (notesChanged)
            m_storedNotes = m_notes;
        break;
    case SaveOutcome::Discarded:
        // The entry as it was read comes back, without reading it again (the file
        // may still be held).
        ++m_shownRevision;
        m_values = m_stored;
        m_refused = {};
        if (m_headingChosen) {
            m_headingList.setListIndex(m_storedHeadingIndex);
            m_headingChosen = false;
        }
        if (withNotes)
            m_notes = m_storedNotes;
        break;
    case SaveOutcome::Kept:
        break;
    }
    return outcome;
}
