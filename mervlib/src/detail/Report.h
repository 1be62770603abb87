#pragma once

#include <iostream>
#include <locale>
#include <sstream>
#include <string>

namespace MERV::detail {

// The parts behind each other as text, numbers as the "C" locale writes them.
template <class... Parts>
std::string classicText(const Parts &...parts)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    (text << ... << parts);
    return text.str();
}

// A line on standard output in the words of the voxel library.
template <class... Parts>
void report(const Parts &...parts)
{
    std::cout << classicText("Common >> ", parts..., '\n');
}

} // namespace MERV::detail
