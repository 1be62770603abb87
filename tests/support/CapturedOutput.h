#pragma once

#include <QString>

#include <iostream>
#include <sstream>

// Catches what is written to std::cout and std::cerr for as long as it lives.
class CapturedOutput
{
public:
    CapturedOutput()
        : formerOut(std::cout.rdbuf(out.rdbuf()))
        , formerErr(std::cerr.rdbuf(err.rdbuf()))
    {}
    ~CapturedOutput()
    {
        std::cout.rdbuf(formerOut);
        std::cerr.rdbuf(formerErr);
    }
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    QString standardOutput() const { return QString::fromLocal8Bit(out.str().c_str()); }
    QString standardError() const { return QString::fromLocal8Bit(err.str().c_str()); }

private:
    std::ostringstream out;
    std::ostringstream err;
    std::streambuf *formerOut;
    std::streambuf *formerErr;
};
