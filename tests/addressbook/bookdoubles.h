#pragma once

#include "addressbook/helpopener.h"
#include "addressbook/paydetailsopener.h"
#include "controls/inputboxservice.h"

#include <deque>
#include <QStringList>
#include <vector>

// The address window's services as a test drives them, for its logic and its widget tests
// alike: the input box answers with the queued texts (then cancel), the openers keep what
// they were asked.
class BookDoubles : public InputBoxService, public PayDetailsOpener, public HelpOpener
{
public:
    QString ask(const QString &prompt, const QString &title, const QString &) override
    {
        prompts << title + ": " + prompt;
        if (answers.empty())
            return QString();
        const QString answer = answers.front();
        answers.pop_front();
        return answer;
    }
    void openPayDetails(qint32 addressId) override { payDetails.push_back(addressId); }
    void openHelp(const QString &file, const QString &topic) override
    {
        help << file + '#' + topic;
    }
    void closeHelp() override { ++helpClosed; }

    std::deque<QString> answers;
    QStringList prompts; // "title: prompt"
    std::vector<qint32> payDetails;
    QStringList help;
    int helpClosed = 0;
};
