// The root of everything that the system throws as an object, and the failures of the utility library.
//
//     try { ... }
//     catch (const qx::exception& failure) {
//         for (const qx::locString& message : failure.messages())   // outermost first
//             show(message.text());
//     }
//
// An exception keeps the messages of the one that it was built from, and so the whole chain. The chain is
// shared and immutable: copying an exception never throws, and a link costs the same at any depth.
#pragma once

#include "qxExport.h"
#include "qxFormat.h"
#include "qxLocString.h"
#include "qxString.h"

#include <exception>
#include <vector>

namespace qx
{

class file;

class QXUTILS_API exception : public std::exception
{
public:
    // `previous` may be null: the failure that led to this one. Nothing of it is borrowed.
    exception(const locString& message, const exception* previous);
    exception(const exception& other) noexcept;
    exception& operator=(const exception& other) noexcept;
    ~exception() override;

    // This failure's own message.
    const locString& message() const noexcept;

    // The messages of the whole chain, this one first, the reason last.
    std::vector<locString> messages() const;

    // This failure's own text in UTF-8, in the current language. Valid until the next call on this object or
    // its end.
    const char* what() const noexcept override;

protected:
    // The fields of the message, for the constructors of derived classes.
    locStringParams& fields() noexcept;

private:
    struct body;

    body* mpBody;
    mutable std::string mWhat;
};

// A failed check inside the system. The text is formatted, see qxFormat.h.
class QXUTILS_API unexpectedErrorException : public exception
{
public:
    template <class... Args>
    explicit unexpectedErrorException(const wchar_t* format, const Args&... arguments)
        : unexpectedErrorException(string::sformat(format, arguments...))
    {}
    explicit unexpectedErrorException(const string& text);
};

class QXUTILS_API outOfMemoryException : public exception
{
public:
    outOfMemoryException();
};

// Category: failures of files.
class QXUTILS_API fileException : public exception
{
protected:
    using exception::exception;
};

class QXUTILS_API fileNotFoundException : public fileException
{
public:
    explicit fileNotFoundException(const file& missing);
};

class QXUTILS_API readFileException : public fileException
{
public:
    // `previous` may be null.
    readFileException(const file& unreadable, const exception* previous);
};

} // namespace qx
