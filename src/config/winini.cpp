#include "config/winini.h"

#include <array>
#include <utility>

namespace {

QLocale::Territory g_territoryOverride = QLocale::AnyTerritory;

// Territories the suite's customers and their neighbours live in; any other
// territory counts as having no code, like a missing iCountry.
constexpr std::array<std::pair<QLocale::Territory, int>, 24> kCodes{{
    {QLocale::NewZealand, 64},    {QLocale::Australia, 61},       {QLocale::Brazil, 55},
    {QLocale::Uruguay, 598},      {QLocale::UnitedStates, 1},     {QLocale::Canada, 1},
    {QLocale::UnitedKingdom, 44}, {QLocale::Ireland, 353},        {QLocale::SouthAfrica, 27},
    {QLocale::Fiji, 679},         {QLocale::Samoa, 685},          {QLocale::Tonga, 676},
    {QLocale::CookIslands, 682},  {QLocale::PapuaNewGuinea, 675}, {QLocale::Singapore, 65},
    {QLocale::Malaysia, 60},      {QLocale::India, 91},           {QLocale::China, 86},
    {QLocale::Japan, 81},         {QLocale::Germany, 49},         {QLocale::France, 33},
    {QLocale::Netherlands, 31},   {QLocale::Argentina, 54},       {QLocale::Chile, 56},
}};

} // namespace

int diallingCode(QLocale::Territory territory)
{
    for (const auto &[t, code] : kCodes) {
        if (t == territory)
            return code;
    }
    return 0;
}

void setWinIniTerritory(QLocale::Territory territory)
{
    g_territoryOverride = territory;
}

QString winIniValue(const QString &section, const QString &key)
{
    if (section.compare(QLatin1String("intl"), Qt::CaseInsensitive) != 0 ||
        key.compare(QLatin1String("iCountry"), Qt::CaseInsensitive) != 0)
        return QString();
    const QLocale::Territory territory = g_territoryOverride != QLocale::AnyTerritory
                                             ? g_territoryOverride
                                             : QLocale::system().territory();
    const int code = diallingCode(territory);
    return code ? QString::number(code) : QString();
}
