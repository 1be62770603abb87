// Two threads copy into one picture without a lock: all that is seen of it are calls of the C library.
#include "platform/WorkerThread.h"

#include <algorithm>
#include <iostream>
#include <vector>

int main()
{
    const std::vector<float> voxels(100000, 1.0f);
    std::vector<float> unguarded(voxels.size());
    WorkerThread worker([&] { std::copy(voxels.begin(), voxels.end(), unguarded.begin()); });
    worker.start();
    std::copy(voxels.begin(), voxels.end(), unguarded.begin());
    worker.join();
    std::cout << unguarded.back() << '\n';
}
