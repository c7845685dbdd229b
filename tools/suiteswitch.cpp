// The suite's three files live in two folders (DIR/data and
// DIR/Corvane/Common), and rename(2) replaces one name at a time, so renaming
// the files into place one by one always has a moment with a new main file
// beside an old wage file. Instead each set of files is a *generation*, a
// folder of its own, and the files in place are symbolic links that never
// change:
//
//   DIR/data/Farm32.mdb            -> ../.cvsuite/current/Farm32.mdb
//   DIR/data/Wage32.mdb            -> ../.cvsuite/current/Wage32.mdb
//   DIR/Corvane/Common/Corvane.ini -> ../../.cvsuite/current/Corvane.ini
//   DIR/.cvsuite/current           -> suite-<time>-<id>
//
// A new suite is built in a fresh generation folder, synced to disk (files,
// then the folder), and switched to by renaming a new "current" link over the
// old one: one rename, so every path sees all old or all new files, at any
// moment, with no recovery step needed by the module or anyone else. SQLite
// resolves the links when it opens a file, so a data file's journal stays
// beside the file in its generation. Generations that "current" does not name
// are leftovers of a finished or killed run and are removed.
//
// A suite made before generations (plain files in place) is first taken over
// without changing what is seen: its files are hard-linked into a generation
// of their own, "current" is pointed there, and each plain file is then
// replaced by its link, which shows the very same file.
#include "suiteswitch.h"

#include "core/cverror.h"
#include "suitefiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace SuiteFiles {

const QStringList kSuiteFileNames{"Farm32.mdb", "Wage32.mdb", "Corvane.ini"};

namespace {

const char *kSource = "cvsuite";
const char kCurrent[] = "current";
const char kLock[] = "lock";
const char kNewLink[] = ".cvsuite-new";
// What SQLite may keep beside a data file; it must travel with the file.
const char *const kSidecars[] = {"-journal", "-wal", "-shm"};

// A file in place and the link that stands there.
struct Place
{
    QString path;
    QString name;
    QString linkText;
    bool dataFile;
};

QList<Place> places(const QString &dir)
{
    return {
        {farmPath(dir), kSuiteFileNames[0], "../.cvsuite/current/" + kSuiteFileNames[0], true},
        {wagePath(dir), kSuiteFileNames[1], "../.cvsuite/current/" + kSuiteFileNames[1], true},
        {iniPath(dir), kSuiteFileNames[2], "../../.cvsuite/current/" + kSuiteFileNames[2], false}};
}

// Each change on disk is preceded by a step. CVSUITE_STOP_AT=n stops the
// process (SIGSTOP) before its n-th step, so that a test can kill it there.
void step()
{
    static const int stopAt = qEnvironmentVariableIntValue("CVSUITE_STOP_AT");
    static int count = 0;
    if (++count == stopAt)
        raise(SIGSTOP);
}

[[noreturn]] void fail(const QString &what, const QString &path)
{
    throw CvError(CvError::PermissionDenied, kSource,
                  what + " " + path + ": " + QString::fromLocal8Bit(std::strerror(errno)));
}

QByteArray encoded(const QString &path)
{
    return QFile::encodeName(path);
}

// Makes what was written to a file, or the names in a folder, durable.
void syncToDisk(const QString &path)
{
    step();
    const int fd = ::open(encoded(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        fail("cannot open", path);
    const int rc = ::fsync(fd);
    const int saved = errno;
    ::close(fd);
    errno = saved;
    if (rc != 0)
        fail("cannot sync", path);
}

bool exists(const QString &path) // through links
{
    struct stat st;
    return ::stat(encoded(path).constData(), &st) == 0;
}

QString linkText(const QString &path) // empty when not a link
{
    char buffer[4096];
    const ssize_t n = ::readlink(encoded(path).constData(), buffer, sizeof buffer);
    return n > 0 ? QFile::decodeName(QByteArray(buffer, n)) : QString();
}

void makeFolder(const QString &path)
{
    if (QFileInfo(path).isDir())
        return;
    const QString parent = QFileInfo(path).path();
    makeFolder(parent);
    step();
    if (::mkdir(encoded(path).constData(), 0777) != 0 &&
        (errno != EEXIST || !QFileInfo(path).isDir()))
        fail("cannot make", path);
    syncToDisk(parent);
}

// Gives the file at from (links followed) a second name; a copy, synced, where
// the file system has no hard links.
void carry(const QString &from, const QString &to)
{
    step();
    if (::linkat(AT_FDCWD, encoded(from).constData(), AT_FDCWD, encoded(to).constData(),
                 AT_SYMLINK_FOLLOW) == 0)
        return;
    if (errno != EXDEV && errno != EPERM && errno != EMLINK && errno != EOPNOTSUPP)
        fail("cannot link", from);
    if (!QFile::copy(from, to))
        throw CvError(CvError::PermissionDenied, kSource, "cannot copy " + from + " to " + to);
    syncToDisk(to);
}

// Replaces whatever is at path by a link, in one rename.
void putLink(const QString &path, const QString &text)
{
    const QString fresh = path + kNewLink;
    step();
    if (::unlink(encoded(fresh).constData()) != 0 && errno != ENOENT)
        fail("cannot remove", fresh);
    step();
    if (::symlink(encoded(text).constData(), encoded(fresh).constData()) != 0)
        fail("cannot make", fresh);
    step();
    if (::rename(encoded(fresh).constData(), encoded(path).constData()) != 0)
        fail("cannot replace", path);
    syncToDisk(QFileInfo(path).path());
}

QString newGeneration(const QString &generations)
{
    const QString name = "suite-" + QDateTime::currentDateTimeUtc().toString("yyyyMMddHHmmsszzz") +
                         '-' + QUuid::createUuid().toString(QUuid::Id128).left(8);
    makeFolder(generations + '/' + name);
    return name;
}

// Removes the generations that "current" does not name, and links a killed
// run left half made. None of them is seen through the links in place.
void sweep(const QString &dir, const QString &generations)
{
    const QStringList keep{kCurrent, kLock, linkText(generations + '/' + kCurrent)};
    const QFileInfoList entries =
        QDir(generations)
            .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (keep.contains(entry.fileName()))
            continue;
        if (entry.isDir() && !entry.isSymLink())
            QDir(entry.filePath()).removeRecursively();
        else
            QFile::remove(entry.filePath());
    }
    QFile::remove(generations + '/' + kCurrent + kNewLink);
    for (const Place &place : places(dir))
        QFile::remove(place.path + kNewLink);
}

// Takes over files in place that are not our links, as described at the top.
void adopt(const QString &dir, const QString &generations)
{
    const QList<Place> all = places(dir);
    QList<Place> plain;
    for (const Place &place : all) {
        if (linkText(place.path) != place.linkText)
            plain << place;
    }
    if (plain.isEmpty())
        return;
    const QString name = newGeneration(generations);
    const QString folder = generations + '/' + name;
    for (const Place &place : all) {
        if (exists(place.path))
            carry(place.path, folder + '/' + place.name);
        for (const char *sidecar : kSidecars) {
            if (place.dataFile && exists(place.path + sidecar))
                carry(place.path + sidecar, folder + '/' + place.name + sidecar);
        }
    }
    syncToDisk(folder);
    putLink(generations + '/' + kCurrent, name);
    for (const Place &place : plain) {
        putLink(place.path, place.linkText);
        // The journal now lives beside the file in its generation.
        for (const char *sidecar : kSidecars) {
            const QString path = place.path + sidecar;
            if (place.dataFile && linkText(path).isEmpty() && QFileInfo::exists(path)) {
                step();
                QFile::remove(path);
            }
        }
    }
}

// Keeps two runs on one folder from removing each other's generations.
class FolderLock
{
public:
    explicit FolderLock(const QString &generations)
    {
        const QString path = generations + '/' + kLock;
        m_fd = ::open(encoded(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (m_fd < 0 || ::flock(m_fd, LOCK_EX) != 0)
            fail("cannot lock", path);
    }
    ~FolderLock() { ::close(m_fd); }
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

private:
    int m_fd = -1;
};

} // namespace

QString generationsFolder(const QString &dir)
{
    return dir + "/.cvsuite";
}

void switchSuite(const QString &dir, const QStringList &keep,
                 const std::function<void(const QString &folder)> &fill)
{
    const QString generations = generationsFolder(dir);
    makeFolder(generations);
    for (const Place &place : places(dir))
        makeFolder(QFileInfo(place.path).path());
    FolderLock lock(generations);
    sweep(dir, generations);

    const QString name = newGeneration(generations);
    const QString folder = generations + '/' + name;
    try {
        for (const Place &place : places(dir)) {
            if (keep.contains(place.name) && exists(place.path))
                carry(place.path, folder + '/' + place.name);
        }
        fill(folder);
        for (const QString &file : kSuiteFileNames) {
            if (!QFileInfo(folder + '/' + file).isFile())
                throw CvError(CvError::FileNotFound, kSource,
                              "the new suite has no " + file + "; nothing was replaced");
            syncToDisk(folder + '/' + file);
        }
        syncToDisk(folder);
    } catch (...) {
        QDir(folder).removeRecursively();
        throw;
    }
    try {
        adopt(dir, generations);
        // The one step that replaces the suite.
        putLink(generations + '/' + kCurrent, name);
    } catch (...) {
        sweep(dir, generations);
        throw;
    }
    sweep(dir, generations);
}

} // namespace SuiteFiles
