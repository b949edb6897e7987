// Programs for tests that run them in several ways: made of the statements that the library lists, so that a
// new one takes part by itself, and of the tables in twins.txt.
#pragma once

#include "utils/fakeSystem.h"

#include <qxScript>

#include <random>
#include <string>
#include <vector>

// A section of twins.txt, line by line.
const std::vector<qx::string>& programTable(const std::string& section);

// A variable of the programs; it is to be made where its name occurs.
struct programVariable
{
    qx::string name;
    qx::genericValue value;
    qx::string preparation; // statements that complete the value
};

const std::vector<programVariable>& programVariables();

// A shape for each statement, type and number of parameters, apart from those that do not end, leave the
// machine, or tell its state. The signs in it are those of twins.txt.
const std::vector<qx::string>& listedShapes();

// The machine that programs run on: it says the same in every run, in the last moment of 2024-03-09, reports
// the message boxes shown, and has division faults thrown.
class quietMachine : public stoppedClock
{
public:
    quietMachine() : stoppedClock(1710028799999) {}
    int messageBox(void*, const qx::string& text, const qx::string& caption, qx::uint flags) override
    {
        qx::assertMsg(L"box %s|%s|%u", caption, text, flags);
        return 1;
    }
    [[noreturn]] void divisionFault() override { throw qx::unexpectedErrorException(L"fault of the host"); }
};

// Replaces each sign of a shape by what `make` gives for it.
template <class Make>
qx::string filled(std::wstring_view shape, const Make& make)
{
    qx::string text;
    for (const wchar_t c : shape) {
        if (c == L'@' || c == L'~' || c == L'^')
            text += make(c);
        else
            text += c;
    }
    return text;
}

// Programs by chance, the same for the same seed.
class programsByChance
{
public:
    // `suitable` are the shapes to be preferred.
    programsByChance(unsigned seed, const std::vector<qx::string>& suitable)
        : mRandom(seed), mSuitable(suitable)
    {}

    qx::string name();
    qx::string operand();
    qx::string expression(int depth);
    qx::string program(int depth);

    std::size_t below(std::size_t count) { return mRandom() % count; }
    const qx::string& oneOf(const std::vector<qx::string>& all) { return all[below(all.size())]; }

private:
    std::mt19937 mRandom;
    const std::vector<qx::string>& mSuitable;
};
