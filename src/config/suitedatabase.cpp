#include "config/suitedatabase.h"

#include "config/folders.h"
#include "config/settings.h"
#include "core/cverror.h"
#include "data/database.h"

std::unique_ptr<Database> openSuiteDatabase()
{
    const Settings settings;
    if (const QString server = settings.DatabaseServer(); !server.isEmpty()) {
        try {
            return std::make_unique<Database>(Database::Server{server});
        } catch (const CvError &e) {
            if (e.number() != CvError::CannotOpenDatabase)
                throw;
            throw CvError(e.number(), e.source(),
                          e.description() +
                              QStringLiteral("\n\nThe server is set in %1, section [CORVANE], "
                                             "key DatabaseServer; leave it empty to use the data "
                                             "files.")
                                  .arg(suiteIniFile()));
        }
    }
    auto db = std::make_unique<Database>(settings.DatabaseName());
    db->attach(settings.WageDataBase(), QStringLiteral("wage"));
    return db;
}
