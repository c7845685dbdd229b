#pragma once

#include <QString>
#include <exception>
#include <string>

// A run-time error: number, source and description, like the platform's error
// object. Thrown by every layer; caught where a procedure reports its own errors.
class CvError : public std::exception
{
public:
    // Error numbers the module raises itself.
    enum Number : int {
        InvalidProcedureCall = 5,
        Overflow = 6,
        SubscriptOutOfRange = 9,
        TypeMismatch = 13,
        FileNotFound = 53,
        PermissionDenied = 70,
        ObjectRequired = 424,
        NoCurrentRecord = 3021,
        CannotOpenDatabase = 3024,
        ItemNotFound = 3265,
        DatabaseLocked = 3260,
        UnrecognizedFormat = 3343,
        SqlError = 3061,
    };

    CvError(int number, QString source, QString description);

    int number() const { return m_number; }
    const QString &source() const { return m_source; }
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_what.c_str(); }

private:
    int m_number;
    QString m_source;
    QString m_description;
    std::string m_what;
};
