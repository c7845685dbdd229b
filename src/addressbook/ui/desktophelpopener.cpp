#include "addressbook/ui/desktophelpopener.h"

#include <QDesktopServices>
#include <QUrl>

void DesktopHelpOpener::openHelp(const QString &helpFile, const QString &topic)
{
    QUrl url = QUrl::fromLocalFile(helpFile);
    if (!topic.isEmpty())
        url.setFragment(topic);
    QDesktopServices::openUrl(url);
}
