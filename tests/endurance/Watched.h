#pragma once

#include <QObject>

#include <stdexcept>
#include <string>

// What must hold does not.
struct Violation : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

inline void require(bool holds, const std::string &what)
{
    if (!holds)
        throw Violation(what);
}

// An object that tells how many listeners each of its signals has.
template <class Object>
class Watched : public Object
{
public:
    using Object::Object;

    // signal as SIGNAL() makes it.
    int listeners(const char *signal) const { return this->receivers(signal); }
};
