// Systems that stand in for the platform's, for the length of a test.
#pragma once

#include <qxPlatformSystem.h>

#include <vector>

// Puts itself in force and takes itself away at its end.
class fakeSystem : public qx::platformSystem
{
public:
    fakeSystem() { setCurrent(this); }
    ~fakeSystem() override { setCurrent(nullptr); }
};

// Clocks that stand still; the wall clock is given as milliseconds since 1970.
class stoppedClock : public fakeSystem
{
public:
    explicit stoppedClock(long long now) : mNow(now) {}
    long long utcNow() override { return mNow; }
    long long localNow() override { return mNow; }
    qx::uint64 tick() override { return 0; }

private:
    long long mNow;
};

// A program directory of the test's own.
class programIn : public fakeSystem
{
public:
    explicit programIn(const qx::string& directory) : mDirectory(directory) {}
    bool modulePath(const qx::string& module, qx::string& directory) override
    {
        if (!module.empty())
            return platformSystem::modulePath(module, directory);
        directory = mDirectory;
        return true;
    }

private:
    qx::string mDirectory;
};

// Counts the readings of files and directories, which can be made to fail.
class watchedDisk : public fakeSystem
{
public:
    bool readFile(const qx::string& name, qx::byteSink& sink) override
    {
        ++reads;
        return platformSystem::readFile(name, sink) && !failsToRead;
    }
    bool listDirectory(const qx::string& name, std::vector<qx::directoryEntry>& entries) override
    {
        ++listings;
        return !failsToList && platformSystem::listDirectory(name, entries);
    }
    int reads = 0;
    int listings = 0;
    bool failsToRead = false;
    bool failsToList = false;
};

// Reads that break off after the first piece, and directories and writes that fail.
class failingDisk : public fakeSystem
{
public:
    bool readFile(const qx::string&, qx::byteSink& sink) override
    {
        sink.take("part", 4);
        return false;
    }
    bool listDirectory(const qx::string&, std::vector<qx::directoryEntry>&) override { return false; }
    qx::appendResult appendToFile(const qx::string&, std::string_view) override
    {
        return qx::appendResult::notWritten;
    }
};
