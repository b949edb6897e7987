// Collects what is reported through assertMsg for the length of a test.
#pragma once

#include <qxAssert.h>

#include <utility>
#include <vector>

class assertRecorder
{
public:
    assertRecorder() : mBefore(qx::setAssertHandler(record)) { kept().clear(); }
    assertRecorder(const assertRecorder&) = delete;
    assertRecorder& operator=(const assertRecorder&) = delete;
    ~assertRecorder() { qx::setAssertHandler(mBefore); }

    // The reports since the last call.
    static std::vector<qx::string> take() { return std::exchange(kept(), {}); }

private:
    static std::vector<qx::string>& kept()
    {
        static std::vector<qx::string> reports;
        return reports;
    }
    static void record(const qx::string& text) { kept().push_back(text); }

    qx::assertHandler mBefore;
};
