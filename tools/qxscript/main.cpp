// qxscript: runs, checks and lists scripts from the command line. Here its arguments are read; what the
// commands are and do is in commands.cpp.
#include "commandLineSystem.h"
#include "commands.h"
#include "report.h"

#include <qxConsole.h>
#include <qxLocString.h>
#include <qxLog.h>

#include <CLI/CLI.hpp>

#include <algorithm>

namespace
{

using qx::string;

constexpr int statusFailed = 1;
constexpr int statusWrongUsage = 2;

const std::map<std::string, qxlog::level> logLevels = {
    {"off", qxlog::level::off},   {"error", qxlog::level::error}, {"warning", qxlog::level::warning},
    {"info", qxlog::level::info}, {"debug", qxlog::level::debug}, {"trace", qxlog::level::trace}};

class errorStreamSink : public qxlog::sink
{
public:
    void write(qxlog::level severity, const string& logger, const string& text) override
    {
        for (const auto& [name, level] : logLevels)
            if (level == severity)
                printError(string::fromUtf8(name) + L" " + logger + L": " + text);
    }
};

// The language that the environment asks for, without its encoding and variant. Empty for the languages of
// programs, which leave the texts as they are.
string languageOfEnvironment()
{
    string language;
    for (const wchar_t* variable : {L"LC_ALL", L"LC_MESSAGES", L"LANG"})
        if (qx::system::current().environmentVariable(variable, language) && !language.empty())
            break;
    language.resize(std::min(language.size(), language.find_first_of(L".@")));
    return language == L"C" || language == L"POSIX" ? string() : language;
}

std::vector<string> wide(const std::vector<std::string>& texts)
{
    std::vector<string> result;
    result.reserve(texts.size());
    for (const std::string& text : texts)
        result.push_back(string::fromUtf8(text));
    return result;
}

constexpr const char* baseOption = "--base";
constexpr const char* logOption = "--log";

// The number of leading arguments that are ours. What follows the last parameter of a command that passes
// arguments on is the script's, whatever it looks like: the parser must not see it.
std::size_t countOwn(const std::vector<std::string>& arguments)
{
    std::size_t wordsLeft = 0; // 0 before the command
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (!optionsEnded && argument.starts_with('-') && argument != "-") {
            optionsEnded = argument == "--";
            i += argument == baseOption || argument == logOption; // and its value
        } else if (wordsLeft == 0) {
            const command* const asked = findCommand(argument);
            if (!asked || !asked->passesArguments)
                break;
            wordsLeft = asked->parameterCount();
        } else if (--wordsLeft == 0)
            return i + 1;
    }
    return arguments.size();
}

// The command line: made from the table of commands, it reads which one is asked for, and with what.
class commandLine
{
public:
    commandLine()
    {
        mApp.require_subcommand(1);
        mApp.fallthrough();
        mApp.set_version_flag("--version", "qxscript " QXSCRIPT_VERSION, "Print the version");
        mApp.add_option(logOption, mLogLevel, "Write log lines up to LEVEL to standard error")
            ->option_text("LEVEL")
            ->transform(CLI::CheckedTransformer(logLevels).description("off|error|warning|info|debug|trace"));
        for (const command& described : allCommands())
            add(described);
    }

    int execute(std::vector<std::string> arguments)
    {
        const auto own = static_cast<std::ptrdiff_t>(countOwn(arguments));
        mCall.passedOn = wide({arguments.begin() + own, arguments.end()});
        arguments.resize(static_cast<std::size_t>(own));
        std::reverse(arguments.begin(), arguments.end()); // as the parser wants them
        try {
            mApp.parse(std::move(arguments));
        } catch (const CLI::ParseError& stopped) {
            return mApp.exit(stopped) == 0 ? 0 : statusWrongUsage;
        }
        qxlog::logManager::setLevel(mLogLevel);
        return mpAsked->run(mCall);
    }

private:
    void add(const command& described)
    {
        CLI::App& made = *mApp.add_subcommand(described.name, described.summary);
        made.callback([this, &described] { mpAsked = &described; });
        if (described.base) {
            const auto take = [this](const std::string& folder) { mCall.base = string::fromUtf8(folder); };
            made.add_option_function<std::string>(baseOption, take, described.base)->option_text("DIR");
        }
        for (const commandParameter& parameter : described.parameters)
            add(made, parameter);
    }

    // Words are taken in the order in which their parameters are added.
    void add(CLI::App& made, const commandParameter& parameter)
    {
        const auto take = [this](const std::string& word) { mCall.words.push_back(string::fromUtf8(word)); };
        const auto takeAll = [this](const std::vector<std::string>& words) { mCall.words = wide(words); };
        switch (parameter.wanted) {
        case commandParameter::none:
            break;
        case commandParameter::required:
            made.add_option_function<std::string>(parameter.name, take, parameter.summary)->required();
            break;
        case commandParameter::optional:
            made.add_option_function<std::string>(parameter.name, take, parameter.summary);
            break;
        case commandParameter::several:
            made.add_option_function<std::vector<std::string>>(parameter.name, takeAll, parameter.summary)
                ->required();
            break;
        }
    }

    CLI::App mApp{"Runs, checks and lists scripts.", "qxscript"};
    const command* mpAsked = nullptr; // not null once the arguments are read
    commandCall mCall;
    qxlog::level mLogLevel = qxlog::level::off;
};

int guarded(int count, const char* const* arguments)
{
    try {
        std::vector<std::string> texts;
        for (const string& argument : qx::programArguments(count, arguments))
            texts.push_back(argument.utf8());
        return commandLine().execute(std::move(texts));
    } catch (const qx::exception& failure) {
        printFailure(failure);
    } catch (const string& thrownByScript) {
        printError(thrownByScript);
    } catch (const std::exception& failure) {
        printError(L"qxscript: " + string::fromUtf8(failure.what()));
    } catch (...) {
        printError(L"qxscript: failed without a message");
    }
    return statusFailed;
}

} // namespace

int main(int count, char** arguments)
{
    qx::prepareConsole();
    qx::system::setCurrent(&commandLineSystem::instance());
    qx::locString::setLanguage(languageOfEnvironment());
    static errorStreamSink sink;
    qxlog::logManager::setSink(&sink);
    const int status = guarded(count, arguments);
    if (!outputArrived()) {
        printError(L"qxscript: standard output cannot be written");
        return statusFailed;
    }
    return status;
}
