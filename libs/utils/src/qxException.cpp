// Exceptions: a chain of shared, immutable links, each with its message and a counted
// pointer to the link before. Chains are long, so they end in a loop and not by recursion.
#include "qxException.h"

#include "qxFile.h"
#include "qxLocks.h"

#include <utility>

namespace qx
{

// One link. The exceptions that wrap it and the copies of its own share it.
struct exception::body
{
    body(const locString& text, body* reason) : message(text), previous(reason) {}

    static body* share(body* link) noexcept
    {
        if (link)
            interlockedIncrement(&link->counter);
        return link;
    }

    // Lets go of a link and then of each reason that nobody else shares, one after the other: chains are
    // long.
    static void release(body* link) noexcept
    {
        while (link && interlockedDecrement(&link->counter) == 0) {
            body* const reason = link->previous;
            delete link;
            link = reason;
        }
    }

    uint counter = 1;
    locString message;
    body* previous;
};

exception::exception(const locString& message, const exception* previous) : mpBody(new body(message, nullptr))
{
    mpBody->previous = body::share(previous ? previous->mpBody : nullptr);
}

exception::exception(const exception& other) noexcept
    : std::exception(other), mpBody(body::share(other.mpBody))
{}

exception& exception::operator=(const exception& other) noexcept
{
    body::release(std::exchange(mpBody, body::share(other.mpBody)));
    return *this;
}

exception::~exception()
{
    body::release(mpBody);
}

const locString& exception::message() const noexcept
{
    return mpBody->message;
}

std::vector<locString> exception::messages() const
{
    std::vector<locString> chain;
    for (const body* link = mpBody; link; link = link->previous)
        chain.push_back(link->message);
    return chain;
}

const char* exception::what() const noexcept
{
    try {
        mWhat = locString(mpBody->message).text().utf8();
        return mWhat.c_str();
    } catch (...) {
        return "qx::exception";
    }
}

locStringParams& exception::fields() noexcept
{
    return mpBody->message.params();
}

unexpectedErrorException::unexpectedErrorException(const string& text)
    : exception(locString(locStringId(), locMessage(text.c_str())), nullptr)
{}

outOfMemoryException::outOfMemoryException()
    : exception(locString(L"Msg_EOutOfMem", L"Out of memory"), nullptr)
{}

fileNotFoundException::fileNotFoundException(const file& missing)
    : fileException(locString(L"Msg_EFileNotFound", L"File [File] not found!"), nullptr)
{
    fields().set(missing.fullName(), L"File");
}

readFileException::readFileException(const file& unreadable, const exception* previous)
    : fileException(locString(L"Msg_EReadFile", L"Error reading file [File]"), previous)
{
    fields().set(unreadable.fullName(), L"File");
}

} // namespace qx
