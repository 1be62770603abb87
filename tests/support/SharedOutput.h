#pragma once

#include <QString>

#include <iostream>
#include <mutex>
#include <streambuf>
#include <string>

// Catches what all threads write to std::cout for as long as it lives.
class SharedOutput : private std::streambuf
{
public:
    SharedOutput()
        : former(std::cout.rdbuf(this))
    {}
    ~SharedOutput() override { std::cout.rdbuf(former); }
    SharedOutput(const SharedOutput &) = delete;
    SharedOutput &operator=(const SharedOutput &) = delete;

    QString all() const
    {
        const std::lock_guard lock(mutex);
        return QString::fromStdString(text);
    }
    int count(const char *part) const { return static_cast<int>(all().count(QLatin1String(part))); }

private:
    int_type overflow(int_type character) override
    {
        const std::lock_guard lock(mutex);
        if (!traits_type::eq_int_type(character, traits_type::eof()))
            text.push_back(traits_type::to_char_type(character));
        return traits_type::not_eof(character);
    }
    std::streamsize xsputn(const char *characters, std::streamsize count) override
    {
        const std::lock_guard lock(mutex);
        text.append(characters, static_cast<std::size_t>(count));
        return count;
    }

    std::streambuf *former;
    mutable std::mutex mutex; // guards the text
    std::string text;
};
