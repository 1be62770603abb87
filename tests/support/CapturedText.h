#pragma once

#include <iostream>
#include <mutex>
#include <streambuf>
#include <string>

// Keeps what is written to it. Any thread may write while another one reads, as workers do.
class SharedText : public std::streambuf
{
public:
    std::string text() const
    {
        const std::lock_guard lock(mutex);
        return written;
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
class CapturedText
{
public:
    CapturedText()
        : formerOut(std::cout.rdbuf(&out))
        , formerErr(std::cerr.rdbuf(&err))
    {}
    ~CapturedText()
    {
        std::cout.rdbuf(formerOut);
        std::cerr.rdbuf(formerErr);
    }
    CapturedText(const CapturedText &) = delete;
    CapturedText &operator=(const CapturedText &) = delete;

    std::string text() const { return out.text(); } // of std::cout
    std::string errors() const { return err.text(); }

private:
    SharedText out, err;
    std::streambuf *formerOut;
    std::streambuf *formerErr;
};
