// qxscript: runs, checks and lists scripts from the command line.
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
        for (const auto& [name, level] : logLevels) {
            if (level == severity) {
                printError(string::fromUtf8(name) + L" " + logger + L": " + text);
            }
        }
    }
};

// The language that the environment asks for, without its encoding and variant. Empty for the languages of
// programs, which leave the texts as they are.
string languageOfEnvironment()
{
    string language;
    for (const wchar_t* variable : {L"LC_ALL", L"LC_MESSAGES", L"LANG"}) {
        if (qx::system::current().environmentVariable(variable, language) && !language.empty()) {
            break;
        }
    }
    language.resize(std::min(language.size(), language.find_first_of(L".@")));
    return language == L"C" || language == L"POSIX" ? string() : language;
}

// The number of leading arguments that are ours; what follows the function or the code call is the script's,
// whatever it looks like.
std::size_t countOwn(const std::vector<std::string>& arguments)
{
    std::size_t words = 0;
    std::size_t wordsOfCommand = arguments.size();
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (!optionsEnded && argument == "--") {
            optionsEnded = true;
        } else if (!optionsEnded && (argument == "--base" || argument == "--log")) {
            ++i;
        } else if (optionsEnded || !argument.starts_with('-') || argument == "-") {
            ++words;
            if (words == 1 && argument == "run") {
                wordsOfCommand = 3;
            } else if (words == 1 && argument == "call") {
                wordsOfCommand = 2;
            }
            if (words == wordsOfCommand) {
                return i + 1;
            }
        }
    }
    return arguments.size();
}

std::vector<string> wide(const std::vector<std::string>& texts)
{
    std::vector<string> result;
    result.reserve(texts.size());
    for (const std::string& text : texts) {
        result.push_back(string::fromUtf8(text));
    }
    return result;
}

// The commands as the command line describes them, and what was asked for.
class commandLine
{
public:
    commandLine()
    {
        mApp.require_subcommand(1);
        mApp.fallthrough();
        mApp.set_version_flag("--version", "qxscript " QXSCRIPT_VERSION, "Print the version");
        mApp.add_option("--log", mLogLevel, "Write log lines up to LEVEL to standard error")
            ->option_text("LEVEL")
            ->transform(CLI::CheckedTransformer(logLevels).description("off|error|warning|info|debug|trace"));

        mpRun = mApp.add_subcommand(
            "run", "Run a function of a script file; further arguments go to it as they are");
        addBase(*mpRun, "Where FILE is looked for; without it FILE's own directory");
        mpRun
            ->add_option("FILE", mFirst,
                         "The script file, with or without its extension; - reads standard input")
            ->required();
        mpRun->add_option("FUNCTION", mSecond, "The function")->required();

        mpCall = mApp.add_subcommand("call", "Run a code call; further arguments go to it as they are");
        addBase(*mpCall, "Where the file of the call is looked for first");
        mpCall->add_option("CALL", mFirst, "type$file$function")->required();

        mpEval = mApp.add_subcommand("eval", "Run a text");
        mpEval->add_option("TEXT", mFirst, "The text; - reads standard input")->required();

        mpCheck =
            mApp.add_subcommand("check", "Load every function of script files and report every failure");
        mpCheck->add_option("FILE", mFiles, "The script files")->required();

        mpFunctions = mApp.add_subcommand("functions", "List the functions of a script file");
        mpFunctions->add_option("FILE", mFirst, "The script file")->required();

        mpStatements = mApp.add_subcommand("statements", "List the statements, or tell about one");
        mpStatements->add_option("NAME", mFirst, "The statement");

        mpScramble = mApp.add_subcommand("scramble", "Scramble a script file, or restore a scrambled one");
        mpScramble->add_option("IN", mFirst, "The file to read")->required();
        mpScramble->add_option("OUT", mSecond, "The file to write")->required();
    }

    int execute(std::vector<std::string> arguments)
    {
        const auto own = static_cast<std::ptrdiff_t>(countOwn(arguments));
        const std::vector<string> passedOn = wide({arguments.begin() + own, arguments.end()});
        arguments.resize(static_cast<std::size_t>(own));
        std::reverse(arguments.begin(), arguments.end()); // as the parser wants them
        try {
            mApp.parse(std::move(arguments));
        } catch (const CLI::ParseError& stopped) {
            return mApp.exit(stopped) == 0 ? 0 : statusWrongUsage;
        }
        qxlog::logManager::setLevel(mLogLevel);
        return dispatch(passedOn);
    }

private:
    void addBase(CLI::App& command, const char* description)
    {
        command.add_option("--base", mBase, description)->option_text("DIR");
    }

    int dispatch(const std::vector<string>& passedOn) const
    {
        const string first = string::fromUtf8(mFirst);
        const string second = string::fromUtf8(mSecond);
        scriptCall wanted;
        wanted.base = string::fromUtf8(mBase);
        wanted.arguments = passedOn;
        if (mpRun->parsed()) {
            wanted.hasBase = mpRun->count("--base") > 0;
            wanted.file = first;
            wanted.function = second;
            return runFunction(wanted);
        }
        if (mpCall->parsed()) {
            wanted.call = first;
            return runCall(wanted);
        }
        if (mpEval->parsed()) {
            return evaluate(first);
        }
        if (mpCheck->parsed()) {
            return checkFiles(wide(mFiles));
        }
        if (mpFunctions->parsed()) {
            return showFunctions(first);
        }
        if (mpStatements->parsed()) {
            return showStatements(first);
        }
        return scrambleCopy(first, second);
    }

    CLI::App mApp{"Runs, checks and lists scripts.", "qxscript"};
    CLI::App* mpRun;
    CLI::App* mpCall;
    CLI::App* mpEval;
    CLI::App* mpCheck;
    CLI::App* mpFunctions;
    CLI::App* mpStatements;
    CLI::App* mpScramble;
    std::string mBase;
    std::string mFirst;
    std::string mSecond;
    std::vector<std::string> mFiles;
    qxlog::level mLogLevel = qxlog::level::off;
};

int guarded(int count, const char* const* arguments)
{
    try {
        std::vector<std::string> texts;
        for (const string& argument : qx::programArguments(count, arguments)) {
            texts.push_back(argument.utf8());
        }
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
