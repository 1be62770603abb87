// Reads behind the size of a vector, but within the memory that it holds.
#include <iostream>
#include <vector>

int main(int argc, char **)
{
    std::vector<int> numbers;
    numbers.reserve(16);
    numbers.assign(4, 1);
    std::cout << numbers[static_cast<std::size_t>(argc) + 3] << '\n';
}
