// The INI reader and writer on any file bytes. Properties: reading never fails
// whatever the file holds; a value written reads back as written, and writing
// one key leaves another key's value alone.
#include "fuzzcheck.h"
#include "config/profilestring.h"
#include "config/readini.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

QTemporaryDir *dir = nullptr;

QString read(const QString &section, const QString &key, const QString &file)
{
    return readProfileString(section, key, QStringLiteral("<none>"), file);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // Every run writes the file through QSaveFile, which syncs: in memory that is cheap.
    dir = QDir(QStringLiteral("/dev/shm")).exists()
              ? new QTemporaryDir(QStringLiteral("/dev/shm/cvfuzz-XXXXXX"))
              : new QTemporaryDir;
    // ReadIni logs a missing key to the suite's error log: keep it in here.
    QDir(dir->path()).mkpath(QStringLiteral("Corvane/Common"));
    qputenv("CORVANE_SHARED_DOCUMENTS", dir->path().toUtf8());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString file = dir->filePath(QStringLiteral("Corvane.ini"));
    {
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        out.write(reinterpret_cast<const char *>(data), qint64(size));
    }
    (void)ReadIni(QStringLiteral("CORVANE"), QStringLiteral("DataRoot"), file);
    (void)ReadIni(QStringLiteral("start"), QStringLiteral("Firm"), file);
    (void)readTextLines(file);

    const QString firm = read(QStringLiteral("START"), QStringLiteral("Firm"), file);
    fuzzCheck(writeProfileString(QStringLiteral("Fuzz"), QStringLiteral("Key"),
                                 QStringLiteral("v 1"), file),
              "write a new key");
    fuzzCheck(read(QStringLiteral("FUZZ"), QStringLiteral("key"), file) == u"v 1",
              "new key reads back",
              QString::fromLatin1(
                  QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size))));
    fuzzCheck(writeProfileString(QStringLiteral("START"), QStringLiteral("Firm"),
                                 QStringLiteral("Acme Ltd"), file),
              "write an old key");
    fuzzCheck(read(QStringLiteral("Start"), QStringLiteral("FIRM"), file) == u"Acme Ltd",
              "old key reads back", firm);
    fuzzCheck(read(QStringLiteral("Fuzz"), QStringLiteral("Key"), file) == u"v 1",
              "other key kept");
    return 0;
}
