#pragma once

#include <QString>

#include <iostream>
#include <mutex>
#include <streambuf>
#include <string>

// Keeps what is written to it. Any thread may write while another one reads, as workers do.
class SharedText : public std::streambuf
{
public:
    QString text() const
    {
        const std::lock_guard lock(mutex);
        return QString::fromLocal8Bit(written.c_str());
    }

protected:
    int_type overflow(int_type character) override
    {
        const std::lock_guard lock(mutex);
        if (!traits_type::eq_int_type(character, traits_type::eof()))
            written.push_back(traits_type::to_char_type(character));
        return traits_type::not_eof(character);
    }
    std::streamsize xsputn(const char *characters, std::streamsize count) override
    {
        const std::lock_guard lock(mutex);
        written.append(characters, static_cast<std::size_t>(count));
        return count;
    }

private:
    mutable std::mutex mutex; // guards written
    std::string written;
};

// Catches what is written to std::cout and std::cerr for as long as it lives. Workers that write must have
// ended before.
class CapturedOutput
{
public:
    CapturedOutput()
        : formerOut(std::cout.rdbuf(&out))
        , formerErr(std::cerr.rdbuf(&err))
    {}
    ~CapturedOutput()
    {
        std::cout.rdbuf(formerOut);
        std::cerr.rdbuf(formerErr);
    }
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    QString standardOutput() const { return out.text(); }
    QString standardError() const { return err.text(); }

private:
    SharedText out, err;
    std::streambuf *formerOut;
    std::streambuf *formerErr;
};
