#include <iostream>
#include <limits>

int main(int argc, char **)
{
    std::cout << std::numeric_limits<int>::max() + argc << '\n';
}
