// What the command line has otherwise than the platform: message boxes, division faults, standard input.
#include "commandLineSystem.h"

#include "messageBox.h"
#include "report.h"

#include <qxBinaryBuffer.h>
#include <qxConsole.h>

#include <cstdio>

using qx::string;

commandLineSystem& commandLineSystem::instance()
{
    static commandLineSystem* const system = new commandLineSystem;
    return *system;
}

void commandLineSystem::provide(const qx::file& name, std::string content)
{
    mProvidedName = name.fullName();
    mProvided = std::move(content);
    mProvidedAt = utcNow();
}

bool commandLineSystem::status(const string& name, qx::fileStatus& status)
{
    if (name.empty() || name != mProvidedName)
        return platformSystem::status(name, status);
    status = {false, mProvided.size(), mProvidedAt};
    return true;
}

bool commandLineSystem::readFile(const string& name, qx::byteSink& sink)
{
    if (name.empty() || name != mProvidedName)
        return platformSystem::readFile(name, sink);
    return sink.take(mProvided.data(), mProvided.size());
}

int commandLineSystem::messageBox(void*, const string& text, const string& caption, qx::uint flags)
{
    if (qx::questionsCanBeAnswered())
        return askForButton(text, caption, flags, readInputLine);
    printError(caption + L": " + text);
    return qx::messageBoxButtons(flags).front();
}

void commandLineSystem::divisionFault()
{
    throw qx::unexpectedErrorException(L"integer division fault");
}

std::string standardInput()
{
    std::string content;
    char piece[16 * 1024];
    for (std::size_t size = 1; size > 0; content.append(piece, size)) {
        size = std::fread(piece, 1, sizeof piece, stdin);
        if (content.size() + size > qx::binaryBuffer::mostOfText)
            throw qx::unexpectedErrorException(L"Standard input is too large");
    }
    if (std::ferror(stdin))
        throw qx::unexpectedErrorException(L"Error reading standard input");
    std::clearerr(stdin); // a terminal goes on behind the end, with the answers to message boxes
    return content;
}
