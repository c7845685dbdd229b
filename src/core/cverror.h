#pragma once

#include <exception>
#include <QString>
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
        ObjectVariableNotSet = 91,
        ObjectRequired = 424,
        UpdateWithoutEdit = 3020,
        NoCurrentRecord = 3021,
        CannotOpenDatabase = 3024,
        DiskFull = 3026,
        NotUpdatable = 3027,
        NoTransaction = 3034,
        DiskOrNetworkError = 3043,
        FileReadOnly = 3051,
        SqlError = 3061,
        SyntaxError = 3075,
        ExpressionError = 3077,
        NotValidBookmark = 3159,
        FieldTooSmall = 3163,
        FieldNotUpdatable = 3164,
        RecordDeleted = 3167,
        DataChanged = 3197,
        DatabaseLocked = 3260,
        ItemNotFound = 3265,
        UnrecognizedFormat = 3343,
        ObjectInvalid = 3420,
    };

    CvError(int number, QString source, QString description);

    // A failure of the disk or of another program's lock, not of the values written:
    // the same save may succeed when the user retries.
    bool isTransient() const;

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
