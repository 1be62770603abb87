#pragma once

#include <iostream>
#include <streambuf>

// Takes what is written to it, from any thread, and keeps nothing.
class NoText : public std::streambuf
{
protected:
    int_type overflow(int_type character) override { return traits_type::not_eof(character); }
    std::streamsize xsputn(const char *, std::streamsize count) override { return count; }
};

// Silences std::cout and std::cerr for as long as it lives. Workers that write must have ended before.
class SilentOutput
{
public:
    SilentOutput()
        : formerOut(std::cout.rdbuf(&nowhere))
        , formerErr(std::cerr.rdbuf(&nowhere))
    {}
    ~SilentOutput()
    {
        std::cout.rdbuf(formerOut);
        std::cerr.rdbuf(formerErr);
    }
    SilentOutput(const SilentOutput &) = delete;
    SilentOutput &operator=(const SilentOutput &) = delete;

private:
    NoText nowhere;
    std::streambuf *formerOut;
    std::streambuf *formerErr;
};
