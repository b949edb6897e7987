// The system under the scripts of the command line.
#pragma once

#include <qxFile.h>
#include <qxPlatformSystem.h>

// The platform, but a message box is a question on the terminal where there is one, a script's integer
// division by zero is a failure to report and not the end of the process, and one file may have its content
// from elsewhere than the disk.
class commandLineSystem : public qx::platformSystem
{
public:
    // The one of the process; never destroyed.
    static commandLineSystem& instance();

    // From now on there is a file of this name with this content, whatever the disk holds. One at a time, and
    // not while scripts run.
    void provide(const qx::file& name, std::string content);

    bool status(const qx::string& name, qx::fileStatus& status) override;
    bool readFile(const qx::string& name, qx::byteSink& sink) override;
    int messageBox(void* window, const qx::string& text, const qx::string& caption, qx::uint flags) override;
    [[noreturn]] void divisionFault() override;

private:
    qx::string mProvidedName; // in full; empty for none
    std::string mProvided;
    long long mProvidedAt = 0;
};

// All that stands on standard input. Throws unexpectedErrorException when it cannot be read or is larger than
// a script file may be.
std::string standardInput();
