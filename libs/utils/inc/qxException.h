// The root of everything that the system throws as an object, and the failures of the
// utility library.
//
//     try { ... }
//     catch (const qx::exception& failure) {
//         for (const qx::locString& message : failure.messages())   // outermost first
//             show(message.text());
//     }
//
// An exception keeps the messages of the one that it was built from, and so the whole
// chain. The chain is one shared, immutable block: copying an exception never throws and a
// link costs the same at any depth. Copies may be kept and read on other threads; one
// object is for one thread at a time, since what() keeps its text in it.
//
// Beside these the library throws the bool value false for misuse (qxAssert.h) and
// std::bad_alloc.
//
// A failure of one's own names its message once, with parameters that a language file can
// place:
//
//     class tooExpensive : public qx::exception
//     {
//     public:
//         explicit tooExpensive(double price, const qx::exception* reason = nullptr)
//             : exception(qx::locString(L"ETooExpensive", L"[Price] is more than anybody pays"), reason)
//         {
//             fields().set(price, L"Price");
//         }
//     };
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

// Thrown by value and caught by reference. Classes that derive from it name a failure and
// fill its message in; a host may derive its own.
class QXUTILS_API exception : public std::exception
{
public:
    // `previous` may be null: the failure that led to this one. Its messages are kept; the
    // object itself may end. Throws std::bad_alloc.
    exception(const locString& message, const exception* previous);
    // Share the chain.
    exception(const exception& other) noexcept;
    exception& operator=(const exception& other) noexcept;
    ~exception() override;

    // This failure's own message. Valid as long as this exception or a copy of it.
    const locString& message() const noexcept;

    // The messages of the whole chain, this one first, the reason last; never empty.
    std::vector<locString> messages() const;

    // This failure's own text in UTF-8, in the current language. Valid until the next call
    // on this object or its end.
    const char* what() const noexcept override;

protected:
    // The parameters of the message, for the constructors of derived classes: nobody else
    // may have a copy yet.
    locStringParams& fields() noexcept;

private:
    // The block of this link: the message, and a count on the link before. Shared by all
    // copies.
    struct body;

    // Never null. Counted atomically.
    body* mpBody;
    // What what() gave last.
    mutable std::string mWhat;
};

// A failed check inside the system, or a limit that was reached. The text is formatted, see
// qxFormat.h, and shown as it is in every language.
class QXUTILS_API unexpectedErrorException : public exception
{
public:
    template <class... Args>
    explicit unexpectedErrorException(const wchar_t* format, const Args&... arguments)
        : unexpectedErrorException(string::sformat(format, arguments...))
    {}
    // The text as it is: no directive in it is interpreted.
    explicit unexpectedErrorException(const string& text);
};

// Memory is exhausted, told as a link of the chain. Making it takes memory itself, so
// std::bad_alloc may come in its place.
class QXUTILS_API outOfMemoryException : public exception
{
public:
    outOfMemoryException();
};

// Category: failures of files. Not thrown itself.
class QXUTILS_API fileException : public exception
{
protected:
    using exception::exception;
};

// There is no such file. The message has its full name.
class QXUTILS_API fileNotFoundException : public fileException
{
public:
    explicit fileNotFoundException(const file& missing);
};

class QXUTILS_API readFileException : public fileException
{
public:
    // The file exists and cannot be read. The message has its full name. `previous` may be
    // null.
    readFileException(const file& unreadable, const exception* previous);
};

} // namespace qx
