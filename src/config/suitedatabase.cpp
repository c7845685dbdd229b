#include "config/suitedatabase.h"

#include "data/database.h"
#include "config/settings.h"

std::unique_ptr<Database> openSuiteDatabase()
{
    const Settings settings;
    auto db = std::make_unique<Database>(settings.DatabaseName());
    db->attach(settings.WageDataBase(), QStringLiteral("wage"));
    return db;
}
